// byte_order.h - 16- and 32-bit fields and channel values stored in a chosen
// byte order, so that picture files come out the same on every host.
#pragma once

#include <cstdint>

namespace sciray {

inline void put_u16(unsigned char* p, std::uint16_t v, bool big_endian) {
  p[big_endian ? 0 : 1] = static_cast<unsigned char>(v >> 8);
  p[big_endian ? 1 : 0] = static_cast<unsigned char>(v);
}

inline void put_u32(unsigned char* p, std::uint32_t v, bool big_endian) {
  for (int i = 0; i < 4; ++i) p[big_endian ? 3 - i : i] = static_cast<unsigned char>(v >> (8 * i));
}

inline std::uint16_t get_u16(const unsigned char* p, bool big_endian) {
  return static_cast<std::uint16_t>(big_endian ? p[0] << 8 | p[1] : p[1] << 8 | p[0]);
}

inline std::uint32_t get_u32(const unsigned char* p, bool big_endian) {
  std::uint32_t v = 0;
  for (int i = 0; i < 4; ++i) v |= static_cast<std::uint32_t>(p[big_endian ? 3 - i : i]) << (8 * i);
  return v;
}

// How a file stores channel values: 1 byte (the low byte of a sample) or
// 2 bytes in the file's byte order.
struct value_layout {
  unsigned bytes = 1;
  bool big_endian = false;
};

inline std::uint16_t load_value(const unsigned char* p, value_layout layout) {
  return layout.bytes == 1 ? p[0] : get_u16(p, layout.big_endian);
}

inline void store_value(unsigned char* p, std::uint16_t v, value_layout layout) {
  if (layout.bytes == 1)
    p[0] = static_cast<unsigned char>(v);
  else
    put_u16(p, v, layout.big_endian);
}

}  // namespace sciray
