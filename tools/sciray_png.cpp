// sciray_png.cpp - joins the band files of one picture into a PNG:
//   sciray-png out.png band1.rgb [band2.rgb ...]
// Band 1 is the bottom of the picture. Every file is read whole before the
// PNG is started, and the PNG is written under a temporary name that is
// renamed only on success, so a failure never leaves a partial picture.
#include <png.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "image/image.h"
#include "image/image_file.h"

namespace {

std::string library_message;  // the image library's last error
std::string output_name;      // the PNG asked for
std::string temporary_name;   // the PNG being written, removed on failure

[[noreturn]] void fail(const std::string& file, const std::string& reason) {
  if (!temporary_name.empty()) std::remove(temporary_name.c_str());
  std::fprintf(stderr, "sciray-png: %s: %s\n", file.c_str(), reason.c_str());
  std::exit(1);
}

// One band's pixels, bottom row first, red, green and blue bytes.
struct band {
  unsigned width = 0, height = 0;
  std::vector<unsigned char> rgb;
};

band read_band(const char* name) {
  sciray::image_file* image = sciray::iopen(name, "r", 0, 0, 0, 0, 0);
  if (!image) fail(name, library_message);
  auto refuse = [&](const std::string& reason) {
    sciray::iclose(image);
    fail(name, reason);
  };
  const unsigned channels = image->dim == 3 ? image->zsize : 1;
  if (channels != 3) refuse("expected 3 channels, found " + std::to_string(channels));
  const unsigned bytes = sciray::bytes_per_value(image->type);
  if (bytes != 1) refuse("expected 1 byte per value, found " + std::to_string(bytes));

  band b;
  b.width = image->xsize;
  b.height = image->ysize;
  b.rgb.resize(std::size_t{3} * b.width * b.height);
  std::vector<std::uint16_t> row(b.width);
  for (unsigned y = 0; y < b.height; ++y) {
    for (unsigned z = 0; z < 3; ++z) {
      if (sciray::getrow(image, row.data(), y, z) < 0) refuse(library_message);
      unsigned char* out = &b.rgb[std::size_t{3} * b.width * y + z];
      for (unsigned x = 0; x < b.width; ++x) out[3 * x] = static_cast<unsigned char>(row[x]);
    }
  }
  sciray::iclose(image);
  return b;
}

void png_failure(png_structp, png_const_charp message) { fail(output_name, message); }

void png_warning_ignored(png_structp, png_const_charp) {}

// Writes the bands, last band's top row first, to output_name.
void write_png(const std::vector<band>& bands) {
  const std::string& out = output_name;
  unsigned height = 0;
  for (const band& b : bands) height += b.height;
  const unsigned width = bands.front().width;

  const std::string temporary = out + "." + std::to_string(getpid()) + ".tmp";
  std::FILE* file = std::fopen(temporary.c_str(), "wbx");
  if (!file) fail(out, std::string("can't create ") + temporary + ": " + std::strerror(errno));
  temporary_name = temporary;

  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, png_failure, png_warning_ignored);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  if (!info) fail(out, "out of memory");
  png_init_io(png, file);
  png_set_IHDR(png, info, width, height, 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  for (auto b = bands.rbegin(); b != bands.rend(); ++b)
    for (unsigned y = b->height; y-- > 0;) png_write_row(png, &b->rgb[std::size_t{3} * width * y]);
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);

  if (std::fclose(file) != 0) fail(out, std::string("error on write: ") + std::strerror(errno));
  if (std::rename(temporary.c_str(), out.c_str()) != 0) fail(out, std::string("can't rename: ") + std::strerror(errno));
  temporary_name.clear();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: sciray-png out.png band1.rgb [band2.rgb ...]\n");
    return 1;
  }
  sciray::set_image_error_handler([](const char* message) { library_message = message; });

  std::vector<band> bands;
  for (int i = 2; i < argc; ++i) {
    bands.push_back(read_band(argv[i]));
    if (bands.back().width != bands.front().width)
      fail(argv[i], "width " + std::to_string(bands.back().width) + " differs from " +
                        std::to_string(bands.front().width) + " of " + argv[2]);
  }
  output_name = argv[1];
  write_png(bands);
  return 0;
}
