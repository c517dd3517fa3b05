// png_write.cpp - the PNG writer. libpng reports errors by a jump back to
// write_png, whose frame holds nothing that needs destroying.
#include "image/png_write.h"

#include <png.h>

#include <csetjmp>

namespace sciray {

namespace {

void failed(png_structp png, png_const_charp message) {
  *static_cast<std::string*>(png_get_error_ptr(png)) = message;
  png_longjmp(png, 1);
}

void warning_ignored(png_structp, png_const_charp) {}

}  // namespace

std::string write_png(std::FILE* file, std::uint32_t width, std::uint32_t height, const png_row_source& row) {
  std::string error;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &error, failed, warning_ignored);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  if (!info) {
    png_destroy_write_struct(&png, nullptr);
    return "out of memory";
  }
  if (setjmp(png_jmpbuf(png))) {
    png_destroy_write_struct(&png, &info);
    return error;
  }
  png_init_io(png, file);
  png_set_user_limits(png, 0x7fffffff, 0x7fffffff);
  png_set_IHDR(png, info, width, height, 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  for (std::uint32_t y = 0; y < height; ++y) png_write_row(png, row(y));
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  return error;
}

}  // namespace sciray
