// image_test_files.h - picture files for the image library and tool tests:
// writing and reading pictures through the library, raw file bytes, the
// standard big-endian form, and decoding with an independent SGI reader.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace sciray::testing {

using bytes = std::vector<unsigned char>;

bytes read_bytes(const std::string& path);
void write_bytes(const std::string& path, const bytes& data);
std::uint32_t le16(const bytes& data, std::size_t at);
std::uint32_t le32(const bytes& data, std::size_t at);
// Stores `value` little-endian in `width` bytes at `at`.
void put_le(bytes& data, std::size_t at, std::uint32_t value, int width = 4);

// Writes a 3-channel, run-length encoded picture whose value at column x,
// row y, channel z is value(x, y, z), rows written bottom row first.
void write_picture(const std::string& path, unsigned width, unsigned height,
                   const std::function<std::uint16_t(unsigned, unsigned, unsigned)>& value);

// A picture read with the library: rgb holds 3 bytes a pixel, bottom row first.
struct rgb_picture {
  unsigned width = 0, height = 0;
  bytes rgb;
};
rgb_picture read_picture(const std::string& path);

// The file in the standard big-endian form: the header's 16- and 32-bit
// fields and both tables byte-swapped, the row data unchanged.
bytes to_big_endian(bytes file);

// Decodes a picture with python3-pil; rgb comes back bottom row first, as
// read_picture has it. Empty `format` when decoding failed.
struct decoded_picture {
  std::string format;
  rgb_picture picture;
};
decoded_picture decode_with_pil(const std::string& path);

// Collects the image library's error messages for the life of the object.
class captured_errors {
 public:
  captured_errors();
  ~captured_errors();
  // The messages so far, one line each.
  std::string text() const;
};

}  // namespace sciray::testing
