// image_read.cpp - opening a picture file for reading (either byte order)
// and reading its rows. Files are untrusted: every size, table entry and
// run is checked before it is used.
#include "image/image_file.h"
#include "image/rle.h"

namespace sciray {

namespace {

const char* const table_error[2] = {"iopen: error on read of rowstart", "iopen: error on read of rowsize"};

long file_length(std::FILE* file) {
  if (std::fseek(file, 0, SEEK_END) != 0) return -1;
  return std::ftell(file);
}

}  // namespace

image_file* open_for_reading(const char* name) {
  auto image = std::make_unique<image_file>();
  image->file = std::fopen(name, "rb");
  if (!image->file) {
    image_error("iopen: can't open input file %s", name);
    return nullptr;
  }
  unsigned char header[header_bytes];
  if (std::fread(header, 1, header_bytes, image->file) != header_bytes) {
    image_error("iopen: error on read of image header");
    return nullptr;
  }
  const bool big_endian = get_u16(header, true) == image_magic;
  decode_header(header, big_endian, *image);
  if (image->magic != image_magic) {
    image_error("iopen: bad magic in image file %x", image->magic);
    return nullptr;
  }
  if (image->xsize == 0 || image->ysize == 0 || image->zsize == 0) {
    image_error("iopen: image has a size of 0");
    return nullptr;
  }
  image->swap_bytes = big_endian;
  image->flags = flag_read;

  const bool rle = storage_of(image->type) == storage_rle;
  const std::size_t entries = image->table_entries();
  // Both tables must lie inside the file before they are allocated.
  if (rle) {
    const long length = file_length(image->file);
    for (int k = 0; k < 2; ++k) {
      if (length < table_offset + static_cast<long>((k + 1) * 4 * entries)) {
        image_error("%s", table_error[k]);
        return nullptr;
      }
    }
  }
  if (allocate_buffers(*image) < 0) return nullptr;
  if (rle) {
    std::uint32_t* tables[2] = {image->rowstart.get(), reinterpret_cast<std::uint32_t*>(image->rowsize.get())};
    std::fseek(image->file, table_offset, SEEK_SET);
    for (int k = 0; k < 2; ++k) {
      if (std::fread(tables[k], 4, entries, image->file) != entries) {
        image_error("%s", table_error[k]);
        return nullptr;
      }
      decode_table(tables[k], entries, big_endian);
    }
  }
  return image.release();
}

int getrow(image_file* image, std::uint16_t* samples, unsigned y, unsigned z) {
  if (!(image->flags & (flag_read | flag_write))) return -1;
  if (check_type(*image, "getrow") < 0) return -1;
  normalise_row(*image, y, z);
  if (img_seek(*image, y, z) < 0) return -1;

  const value_layout layout = image->layout();
  const std::size_t xsize = image->xsize;
  std::size_t bytes = xsize * layout.bytes;
  if (storage_of(image->type) == storage_rle) {
    const std::int32_t length = image->rowsize[y + static_cast<std::size_t>(z) * image->ysize];
    if (length < 0 || static_cast<std::size_t>(length) > image->tmpbuf_bytes) {
      image_error("getrow: row %u of channel %u has a bad length", y, z);
      return -1;
    }
    bytes = static_cast<std::size_t>(length);
  }
  unsigned char* buffer = image->tmpbuf.get();
  if (std::fread(buffer, 1, bytes, image->file) != bytes) {
    image_error("getrow: row %u of channel %u lies outside the file", y, z);
    return -1;
  }
  if (storage_of(image->type) == storage_rle) return rle_expand(buffer, bytes, layout, samples, xsize);
  for (std::size_t x = 0; x < xsize; ++x) samples[x] = load_value(buffer + x * layout.bytes, layout);
  return static_cast<int>(xsize);
}

}  // namespace sciray
