// image_write.cpp - creating a picture file, appending rows, and writing the
// final header and tables when it is closed.
#include <cstring>

#include "image/image_file.h"
#include "image/rle.h"

namespace sciray {

namespace {

// Points row y of channel z at the next free bytes of the file; the bytes of
// an earlier copy of the row stay behind as waste.
void set_row_size(image_file& image, std::int32_t length, unsigned y, unsigned z) {
  if (y >= image.ysize || z >= image.zsize) return;  // img_seek reports it
  const std::size_t i = y + static_cast<std::size_t>(z) * image.ysize;
  image.rowstart[i] = image.data_end;
  if (image.rowsize[i] != -1) image.waste_bytes += static_cast<std::uint32_t>(image.rowsize[i]);
  image.rowsize[i] = length;
  image.data_end += static_cast<std::uint32_t>(length);
}

bool write_all(std::FILE* file, const void* data, std::size_t bytes) {
  return std::fwrite(data, 1, bytes, file) == bytes;
}

}  // namespace

image_file* open_for_writing(const char* name, unsigned type, unsigned dim, unsigned xsize, unsigned ysize,
                             unsigned zsize) {
  std::FILE* file = std::fopen(name, "wb");
  if (!file) {
    image_error("iopen: can't open output file %s", name);
    return nullptr;
  }
  // Until iclose has written the tables the file is unreadable: an error
  // that stops the run before then takes it away again.
  remove_on_fatal(name);
  return start_writing(file, name, type, dim, xsize, ysize, zsize);
}

image_file* fiopen(std::FILE* file, unsigned type, unsigned dim, unsigned xsize, unsigned ysize, unsigned zsize) {
  return start_writing(file, "", type, dim, xsize, ysize, zsize);
}

image_file* start_writing(std::FILE* file, const char* name, unsigned type, unsigned dim, unsigned xsize,
                          unsigned ysize, unsigned zsize) {
  auto image = std::make_unique<image_file>();
  image->file = file;
  image->path = name;
  // Unbuffered, so that the header and each row go out in one write call
  // and a failed write is seen at once.
  std::setvbuf(image->file, nullptr, _IONBF, 0);

  image->magic = image_magic;
  image->type = static_cast<std::uint16_t>(type);
  image->xsize = static_cast<std::uint16_t>(xsize);
  image->ysize = static_cast<std::uint16_t>(dim > 1 ? ysize : 1);
  image->zsize = static_cast<std::uint16_t>(dim > 2 ? zsize : 1);
  image->dim = image->zsize != 1 ? 3 : image->ysize != 1 ? 2 : 1;
  image->min_value = 10000000;
  image->max_value = 0;
  std::strncpy(image->name, "no name", sizeof image->name);

  unsigned char header[header_bytes];
  encode_header(*image, header);
  if (!write_all(image->file, header, header_bytes)) {
    image_error("iopen: error on write of image header");
    return nullptr;
  }
  image->flags = flag_write;
  if (allocate_buffers(*image) < 0) return nullptr;
  if (storage_of(type) == storage_rle) {
    image->data_end = static_cast<std::uint32_t>(table_offset + 8 * image->table_entries());
    std::fill_n(image->rowsize.get(), image->table_entries(), -1);
  }
  std::fseek(image->file, table_offset, SEEK_SET);
  return image.release();
}

int putrow(image_file* image, const std::uint16_t* samples, unsigned y, unsigned z) {
  if (!(image->flags & (flag_read | flag_write))) return -1;
  if (check_type(*image, "putrow") < 0) return -1;
  normalise_row(*image, y, z);

  const std::size_t xsize = image->xsize;
  for (std::size_t x = 0; x < xsize; ++x) {
    if (samples[x] < image->min_value) image->min_value = samples[x];
    if (samples[x] > image->max_value) image->max_value = samples[x];
  }

  const value_layout layout = image->layout();
  unsigned char* buffer = image->tmpbuf.get();
  std::size_t bytes = xsize * layout.bytes;
  if (storage_of(image->type) == storage_rle) {
    bytes = rle_compact(samples, buffer, layout, xsize) * layout.bytes;
    set_row_size(*image, static_cast<std::int32_t>(bytes), y, z);
  } else {
    for (std::size_t x = 0; x < xsize; ++x) store_value(buffer + x * layout.bytes, samples[x], layout);
  }
  if (img_seek(*image, y, z) < 0) return -1;
  if (!write_all(image->file, buffer, bytes)) {
    image_error("putrow: error on write of row %u of channel %u", y, z);
    return -1;
  }
  return static_cast<int>(xsize);
}

int finish_writing(image_file& image) {
  unsigned char header[header_bytes];
  encode_header(image, header);
  std::fseek(image.file, 0, SEEK_SET);
  if (!write_all(image.file, header, header_bytes)) {
    image_error("iclose: error on write of image header");
    return -1;
  }
  if (storage_of(image.type) != storage_rle) return 0;

  // The tables are not used again, so they are turned into file bytes in place.
  const std::size_t entries = image.table_entries();
  const bool big = image.swap_bytes != 0;
  auto* rowsize = reinterpret_cast<std::uint32_t*>(image.rowsize.get());
  encode_table(image.rowstart.get(), entries, big);
  encode_table(rowsize, entries, big);
  std::fseek(image.file, table_offset, SEEK_SET);
  if (!write_all(image.file, image.rowstart.get(), 4 * entries)) {
    image_error("iclose: error on write of rowstart");
    return -1;
  }
  if (!write_all(image.file, rowsize, 4 * entries)) {
    image_error("iclose: error on write of rowsize");
    return -1;
  }
  return 0;
}

}  // namespace sciray
