// image_file.h - the open picture file record and the operations its
// reading and writing halves share.
//
// File layout: a 512-byte header region (152 bytes used), then for
// run-length storage the row-offset table and the row-length table, each of
// ysize * zsize 32-bit entries indexed y + z * ysize, then the compressed
// rows in the order they were written. Every multi-byte field is
// little-endian in the files this library writes; big-endian files are read
// too.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "image/byte_order.h"
#include "image/image.h"
#include "support/fatal_error.h"

namespace sciray {

constexpr std::uint16_t image_magic = 474;
constexpr std::size_t header_bytes = 152;
constexpr long table_offset = 512;

// flags
constexpr std::uint16_t flag_read = 1;
constexpr std::uint16_t flag_write = 2;

// The high byte of `type` is the storage, the low byte the bytes per value.
constexpr unsigned storage_verbatim = 0;
constexpr unsigned storage_rle = 1;
inline unsigned storage_of(unsigned type) { return type >> 8; }
inline unsigned bytes_per_value(unsigned type) { return type & 0xff; }

struct image_file {
  // Header fields, in their order in the file.
  std::uint16_t magic = 0;
  std::uint16_t type = 0;
  std::uint16_t dim = 0;
  std::uint16_t xsize = 0, ysize = 0, zsize = 0;
  std::uint32_t min_value = 0, max_value = 0;
  std::uint32_t waste_bytes = 0;  // row bytes left unreachable by rewritten rows
  char name[80] = {};
  std::uint32_t colormap = 0;

  // Run-time state.
  std::FILE* file = nullptr;
  std::string path;  // the file's name, when open for writing
  std::uint16_t flags = 0;
  std::uint16_t swap_bytes = 0;  // the file is big-endian
  std::uint32_t data_end = 0;    // where the next compressed row goes
  std::unique_ptr<std::uint32_t[]> rowstart;
  std::unique_ptr<std::int32_t[]> rowsize;  // -1 for a row never written
  std::unique_ptr<unsigned char[]> tmpbuf;  // one row, compressed or verbatim
  std::size_t tmpbuf_bytes = 0;

  image_file() = default;
  image_file(const image_file&) = delete;
  image_file& operator=(const image_file&) = delete;
  ~image_file() {
    if (file) std::fclose(file);
    if (!path.empty()) keep_on_fatal(path);  // finished, or left to the caller that saw the error
  }

  std::size_t table_entries() const { return static_cast<std::size_t>(ysize) * zsize; }
  value_layout layout() const { return {bytes_per_value(type), swap_bytes != 0}; }
};

// Reports an error (see set_image_error_handler); returns only when a
// handler is installed.
void image_error(const char* format, ...) __attribute__((format(printf, 1, 2)));

void encode_header(const image_file& image, unsigned char* bytes);
void decode_header(const unsigned char* bytes, bool big_endian, image_file& image);
// Converts a table between host values and file bytes, in place.
void encode_table(std::uint32_t* table, std::size_t entries, bool big_endian);
void decode_table(std::uint32_t* table, std::size_t entries, bool big_endian);

// Allocates the tables (run-length storage) and tmpbuf; -1 after an error.
int allocate_buffers(image_file& image);
// Folds the row coordinates of images of fewer dimensions onto their one
// channel (dim 2) or one row (dim 1).
void normalise_row(const image_file& image, unsigned& y, unsigned& z);
// Checks the storage and bytes per value for `routine`; -1 after an error.
int check_type(const image_file& image, const char* routine);
// Positions the file at row y of channel z; -1 after an error.
int img_seek(image_file& image, unsigned y, unsigned z);

image_file* open_for_writing(const char* name, unsigned type, unsigned dim, unsigned xsize, unsigned ysize,
                             unsigned zsize);
// The writing half of both: the image takes `file` (named `name`, or "" when
// the caller looks after the file's name) and writes the first header.
image_file* start_writing(std::FILE* file, const char* name, unsigned type, unsigned dim, unsigned xsize,
                          unsigned ysize, unsigned zsize);
image_file* open_for_reading(const char* name);
// Writes the final header and both tables; -1 after an error.
int finish_writing(image_file& image);

}  // namespace sciray
