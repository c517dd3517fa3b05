// image_layout.cpp - where things are in a picture file: the header's
// fields, the two tables, and the position of each row.
#include <cstring>
#include <new>

#include "image/image_file.h"

namespace sciray {

namespace {

// Byte offsets of the header fields.
enum : std::size_t {
  at_magic = 0,
  at_type = 2,
  at_dim = 4,
  at_xsize = 6,
  at_ysize = 8,
  at_zsize = 10,
  at_min = 12,
  at_max = 16,
  at_waste = 20,
  at_name = 24,
  at_colormap = 104,
};

}  // namespace

void encode_header(const image_file& image, unsigned char* bytes) {
  const bool big = image.swap_bytes != 0;
  std::memset(bytes, 0, header_bytes);
  put_u16(bytes + at_magic, image.magic, big);
  put_u16(bytes + at_type, image.type, big);
  put_u16(bytes + at_dim, image.dim, big);
  put_u16(bytes + at_xsize, image.xsize, big);
  put_u16(bytes + at_ysize, image.ysize, big);
  put_u16(bytes + at_zsize, image.zsize, big);
  put_u32(bytes + at_min, image.min_value, big);
  put_u32(bytes + at_max, image.max_value, big);
  put_u32(bytes + at_waste, image.waste_bytes, big);
  std::memcpy(bytes + at_name, image.name, sizeof image.name);
  put_u32(bytes + at_colormap, image.colormap, big);
}

void decode_header(const unsigned char* bytes, bool big_endian, image_file& image) {
  image.magic = get_u16(bytes + at_magic, big_endian);
  image.type = get_u16(bytes + at_type, big_endian);
  image.dim = get_u16(bytes + at_dim, big_endian);
  image.xsize = get_u16(bytes + at_xsize, big_endian);
  image.ysize = get_u16(bytes + at_ysize, big_endian);
  image.zsize = get_u16(bytes + at_zsize, big_endian);
  image.min_value = get_u32(bytes + at_min, big_endian);
  image.max_value = get_u32(bytes + at_max, big_endian);
  image.waste_bytes = get_u32(bytes + at_waste, big_endian);
  std::memcpy(image.name, bytes + at_name, sizeof image.name);
  image.colormap = get_u32(bytes + at_colormap, big_endian);
}

void encode_table(std::uint32_t* table, std::size_t entries, bool big_endian) {
  auto* bytes = reinterpret_cast<unsigned char*>(table);
  for (std::size_t i = 0; i < entries; ++i) put_u32(bytes + 4 * i, table[i], big_endian);
}

void decode_table(std::uint32_t* table, std::size_t entries, bool big_endian) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(table);
  for (std::size_t i = 0; i < entries; ++i) table[i] = get_u32(bytes + 4 * i, big_endian);
}

int allocate_buffers(image_file& image) {
  if (storage_of(image.type) == storage_rle) {
    const std::size_t entries = image.table_entries();
    image.rowstart.reset(new (std::nothrow) std::uint32_t[entries]());
    image.rowsize.reset(new (std::nothrow) std::int32_t[entries]());
    if (!image.rowstart || !image.rowsize) {
      image_error("iopen: error on table alloc");
      return -1;
    }
  }
  // Room for the worst case of the encoding; the 8 extra bytes cover the
  // packets and terminator of rows of under four 2-byte values.
  image.tmpbuf_bytes = (image.xsize + image.xsize / 64u) * 4u + 8u;
  image.tmpbuf.reset(new (std::nothrow) unsigned char[image.tmpbuf_bytes]);
  if (!image.tmpbuf) {
    image_error("iopen: error on tmpbuf alloc %d", image.xsize);
    return -1;
  }
  return 0;
}

void normalise_row(const image_file& image, unsigned& y, unsigned& z) {
  if (image.dim < 3) z = 0;
  if (image.dim < 2) y = 0;
}

int check_type(const image_file& image, const char* routine) {
  const unsigned storage = storage_of(image.type), bytes = bytes_per_value(image.type);
  if (storage != storage_verbatim && storage != storage_rle) {
    image_error("%s: weird image type", routine);
    return -1;
  }
  if (bytes != 1 && bytes != 2) {
    image_error("%s: weird bpp", routine);
    return -1;
  }
  return 0;
}

int img_seek(image_file& image, unsigned y, unsigned z) {
  if (y >= image.ysize || z >= image.zsize) {
    image_error("img_seek: row number out of range");
    return -1;
  }
  if (image.dim < 1 || image.dim > 3) {
    image_error("img_seek: weird dim");
    return -1;
  }
  long position = 0;
  switch (storage_of(image.type)) {
    case storage_verbatim:
      position =
          table_offset + (static_cast<long>(y) * image.xsize + static_cast<long>(z) * image.xsize * image.ysize) *
                             bytes_per_value(image.type);
      break;
    case storage_rle:
      position = image.rowstart[y + static_cast<std::size_t>(z) * image.ysize];
      break;
    default:
      image_error("img_seek: weird image type");
      return -1;
  }
  std::fseek(image.file, position, SEEK_SET);
  return 0;
}

}  // namespace sciray
