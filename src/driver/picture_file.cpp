// picture_file.cpp - an SGI picture written row by row as the rows come, or
// a PNG written from the rows kept in memory once they are all there (PNG
// rows go top first, and the rows come bottom first).
#include "driver/picture_file.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include "image/image.h"
#include "image/png_write.h"
#include "support/fatal_error.h"

namespace sciray {

namespace {

bool names_png(const std::string& name) { return name.size() >= 4 && name.compare(name.size() - 4, 4, ".png") == 0; }

}  // namespace

picture_file::picture_file(const char* program, std::string name)
    : program_(program), name_(std::move(name)), png_(names_png(name_)) {}

void picture_file::scene_read(std::size_t objects) { std::printf("Number of objects : %zu\n\n", objects); }

void picture_file::start(int width, int rows) {
  stream_ = file_.create(name_);
  if (!stream_) fatal("iopen: can't open output file " + name_);
  if (png_) {
    pixels_.reset(width, rows);
  } else {
    image_ = fiopen(std::exchange(stream_, nullptr), 257, 3, static_cast<unsigned>(width),
                    static_cast<unsigned>(rows), 3);
  }
}

void picture_file::progress(const std::string& line) {
  std::fputs(line.c_str(), stdout);
  std::fflush(stdout);
}

void picture_file::put_row(int row, int channel, const std::uint16_t* samples) {
  if (png_)
    pixels_.put_row(row, channel, samples);
  else
    putrow(image_, samples, static_cast<unsigned>(row), static_cast<unsigned>(channel));
}

void picture_file::close() {
  if (!stream_ && !image_) return;  // an empty band: no file
  if (png_) {
    const std::string error = write_png(stream_, static_cast<std::uint32_t>(pixels_.width()),
                                        static_cast<std::uint32_t>(pixels_.rows()),
                                        [this](std::uint32_t y) { return pixels_.row_from_top(static_cast<int>(y)); });
    if (!error.empty()) fail(error);
    if (std::fclose(std::exchange(stream_, nullptr)) != 0) fail(std::string("error on write: ") + std::strerror(errno));
  } else if (iclose(std::exchange(image_, nullptr)) != 0) {
    fail(std::string("error on write: ") + std::strerror(errno));
  }
  if (!file_.finish()) fail(std::string("can't put the picture in place: ") + std::strerror(errno));
}

void picture_file::fail(const std::string& reason) const { fatal(program_ + (": " + name_ + ": " + reason)); }

}  // namespace sciray
