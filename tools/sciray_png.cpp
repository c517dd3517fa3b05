// sciray_png.cpp - joins the band files of one picture into a PNG:
//   sciray-png out.png band1.rgb [band2.rgb ...]
// Band 1 is the bottom of the picture. Every band file is checked before
// the PNG is started, and the PNG is written under a temporary name that is
// renamed only on success, so a failure never leaves a partial picture (a
// device or a pipe as the output is written directly).
#include <png.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "band_join.h"
#include "support/fatal_error.h"

namespace {

std::string output_name;  // the PNG asked for

[[noreturn]] void fail(const std::string& reason) { sciray::fatal("sciray-png: " + output_name + ": " + reason); }

void png_failure(png_structp, png_const_charp message) { fail(message); }

void png_warning_ignored(png_structp, png_const_charp) {}

// True when `name` exists and is not a regular file: a device or a pipe
// (/dev/stdout, say), which is written directly and never replaced.
bool is_special(const std::string& name) {
  struct stat info;
  return ::stat(name.c_str(), &info) == 0 && !S_ISREG(info.st_mode);
}

// Writes the joined bands, top row first, to output_name.
void write_png(sciray::band_join& bands) {
  // PNG counts rows in 31 bits.
  if (bands.height() > 0x7fffffffu) fail(std::to_string(bands.height()) + " rows are more than a PNG can hold");
  const bool special = is_special(output_name);
  const std::string temporary = special ? output_name : output_name + "." + std::to_string(getpid()) + ".tmp";
  std::FILE* file = std::fopen(temporary.c_str(), special ? "wb" : "wbx");
  if (!file) fail(std::string("can't create ") + temporary + ": " + std::strerror(errno));
  if (!special) sciray::remove_on_fatal(temporary);

  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, png_failure, png_warning_ignored);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  if (!info) fail("out of memory");
  png_init_io(png, file);
  png_set_user_limits(png, 0x7fffffff, 0x7fffffff);
  png_set_IHDR(png, info, bands.width(), static_cast<png_uint_32>(bands.height()), 8, PNG_COLOR_TYPE_RGB,
               PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  for (std::uint64_t y = 0; y < bands.height(); ++y) png_write_row(png, bands.next_row());
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);

  if (std::fclose(file) != 0) fail(std::string("error on write: ") + std::strerror(errno));
  if (special) return;
  if (std::rename(temporary.c_str(), output_name.c_str()) != 0) {
    fail(std::string("can't rename: ") + std::strerror(errno));
  }
  sciray::keep_on_fatal(temporary);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: sciray-png out.png band1.rgb [band2.rgb ...]\n");
    return 1;
  }
  sciray::band_join bands(std::vector<std::string>(argv + 2, argv + argc));
  output_name = argv[1];
  write_png(bands);
  return 0;
}
