// rle.h - the run-length scheme of compressed picture rows: packets of a
// count value (0x80 set for literal values, clear for one repeated value)
// of at most 126, ended by a count of 0.
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/byte_order.h"

namespace sciray {

// Compresses `count` samples into `output`, which must hold the worst case
// (count + count / 126 + 4 values); returns the number of values written,
// the terminating 0 included.
std::size_t rle_compact(const std::uint16_t* input, unsigned char* output, value_layout layout, std::size_t count);

// Expands `length` bytes of one compressed row into exactly `count` samples.
// Returns count, or -1 after reporting a stream that would overrun the row
// or its own bytes, or that leaves the row short.
int rle_expand(const unsigned char* input, std::size_t length, value_layout layout, std::uint16_t* output,
               std::size_t count);

}  // namespace sciray
