// image.h - the SGI image file library: run-length encoded rows of 8-bit
// (or 16-bit) channel values, written with iopen/putrow/iclose and read back
// with iopen/getrow/iclose.
#pragma once

#include <cstdint>
#include <cstdio>

namespace sciray {

struct image_file;

// mode "w" creates the file, "r" opens one for reading; none on failure.
image_file* iopen(const char* name, const char* mode, unsigned type, unsigned dim, unsigned xsize, unsigned ysize,
                  unsigned zsize);
// As iopen(name, "w", ...), into a stream the caller has created for
// writing, which the image owns from then on (iclose closes it). The caller
// looks after the file itself: removing it if the picture is not finished.
image_file* fiopen(std::FILE* file, unsigned type, unsigned dim, unsigned xsize, unsigned ysize, unsigned zsize);
// Writes row y of channel z from xsize samples; returns xsize, or -1.
int putrow(image_file* image, const std::uint16_t* samples, unsigned y, unsigned z);
// Reads row y of channel z into xsize samples; returns xsize, or -1.
int getrow(image_file* image, std::uint16_t* samples, unsigned y, unsigned z);
// Writes the header and tables (when writing), frees the image; 0 or -1.
int iclose(image_file* image);

// Errors are one formatted line. With no handler installed (the renderer's
// case) the line goes to standard error and the process exits with status 1;
// with one, the handler gets the line (without its line end) and the failing
// operation returns none or -1.
using image_error_handler = void (*)(const char* message);
void set_image_error_handler(image_error_handler handler);

}  // namespace sciray
