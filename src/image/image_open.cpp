// image_open.cpp - iopen and iclose, shared by reading and writing.
#include "image/image_file.h"

namespace sciray {

image_file* iopen(const char* name, const char* mode, unsigned type, unsigned dim, unsigned xsize, unsigned ysize,
                  unsigned zsize) {
  if (mode[0] != '\0' && mode[1] == '+') {
    image_error("iopen: read/write mode not supported");
    return nullptr;
  }
  if (mode[0] == 'w') return open_for_writing(name, type, dim, xsize, ysize, zsize);
  return open_for_reading(name);
}

int iclose(image_file* image) {
  int result = 0;
  if ((image->flags & flag_write) && finish_writing(*image) < 0) result = -1;
  if (std::fclose(image->file) != 0) result = -1;
  image->file = nullptr;
  delete image;
  return result;
}

}  // namespace sciray
