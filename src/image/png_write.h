// png_write.h - 8-bit RGB pictures as PNG files, written with libpng.
#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>

namespace sciray {

// Gives picture row y (0 is the top) as red, green and blue bytes per pixel.
using png_row_source = std::function<const unsigned char*(std::uint32_t y)>;

// Writes a PNG of width x height pixels to `file`, rows top first. Returns
// "" on success, else libpng's reason.
std::string write_png(std::FILE* file, std::uint32_t width, std::uint32_t height, const png_row_source& row);

}  // namespace sciray
