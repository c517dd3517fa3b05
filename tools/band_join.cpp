// band_join.cpp - checking band files and reading them row by row, top
// band and top row first, through the image library.
#include "band_join.h"

#include "image/image.h"
#include "image/image_file.h"
#include "support/fatal_error.h"

namespace sciray {

namespace {

std::string library_message;  // the image library's last error

}  // namespace

void band_join::closer::operator()(image_file* image) const { iclose(image); }

band_join::band_join(std::vector<std::string> names) : names_(std::move(names)) {
  set_image_error_handler([](const char* message) { library_message = message; });
  for (std::size_t k = 0; k < names_.size(); ++k) {
    heights_.push_back(open_band(k));
    height_ += heights_.back();
    open_.reset();
  }
  samples_.resize(width_);
  rgb_.resize(std::size_t{3} * width_);
  band_ = names_.size();
}

band_join::~band_join() {
  open_.reset();
  set_image_error_handler(nullptr);
}

void band_join::fail(const std::string& name, const std::string& reason) {
  open_.reset();
  fatal("sciray-png: " + name + ": " + reason);
}

unsigned band_join::open_band(std::size_t k) {
  const std::string& name = names_[k];
  open_.reset(iopen(name.c_str(), "r", 0, 0, 0, 0, 0));
  if (!open_) fail(name, library_message);
  const image_file& image = *open_;
  const unsigned channels = image.dim == 3 ? image.zsize : 1;
  if (channels != 3) fail(name, "expected 3 channels, found " + std::to_string(channels));
  const unsigned bytes = bytes_per_value(image.type);
  if (bytes != 1) fail(name, "expected 1 byte per value, found " + std::to_string(bytes));
  if (k == 0) width_ = image.xsize;
  if (image.xsize != width_) {
    fail(name, "width " + std::to_string(image.xsize) + " differs from " + std::to_string(width_) + " of " + names_[0]);
  }
  // A file changed between the check and the reading is read as checked or refused.
  if (heights_.size() > k && image.ysize != heights_[k]) fail(name, "changed while it was read");
  return image.ysize;
}

const unsigned char* band_join::next_row() {
  while (row_ == 0) {
    if (band_ == 0) return nullptr;
    open_.reset();
    row_ = open_band(--band_);
  }
  --row_;
  for (unsigned z = 0; z < 3; ++z) {
    if (getrow(open_.get(), samples_.data(), row_, z) < 0) fail(names_[band_], library_message);
    for (unsigned x = 0; x < width_; ++x) rgb_[3 * std::size_t{x} + z] = static_cast<unsigned char>(samples_[x]);
  }
  return rgb_.data();
}

}  // namespace sciray
