// rle.cpp - compressing and expanding rows in the run-length scheme.
#include "image/rle.h"

#include <algorithm>

#include "image/image_file.h"

namespace sciray {

namespace {

constexpr std::size_t max_packet = 126;
constexpr std::uint16_t literal_flag = 0x80;

}  // namespace

std::size_t rle_compact(const std::uint16_t* input, unsigned char* output, value_layout layout, std::size_t count) {
  std::size_t written = 0;
  auto emit = [&](std::uint16_t v) { store_value(output + written++ * layout.bytes, v, layout); };

  std::size_t i = 0;
  while (i < count) {
    // Literal run: everything up to the next three equal values. Looking two
    // ahead and stepping back two leaves the row's last two values to the
    // repeat step.
    std::size_t start = i;
    i += 2;
    while (i < count && !(input[i - 2] == input[i - 1] && input[i - 1] == input[i])) ++i;
    i -= 2;
    for (std::size_t left = i - start; left > 0;) {
      const std::size_t todo = std::min(left, max_packet);
      left -= todo;
      emit(static_cast<std::uint16_t>(literal_flag | todo));
      for (std::size_t k = 0; k < todo; ++k) emit(input[start++]);
    }

    // Repeat run of the value at i.
    start = i;
    const std::uint16_t c = input[i++];
    while (i < count && input[i] == c) ++i;
    for (std::size_t left = i - start; left > 0;) {
      const std::size_t todo = std::min(left, max_packet);
      left -= todo;
      emit(static_cast<std::uint16_t>(todo));
      emit(c);
    }
  }
  emit(0);
  return written;
}

int rle_expand(const unsigned char* input, std::size_t length, value_layout layout, std::uint16_t* output,
               std::size_t count) {
  const std::size_t values = length / layout.bytes;
  std::size_t in = 0, out = 0;
  auto next = [&] { return load_value(input + in++ * layout.bytes, layout); };

  // The stream ends at a count of 0 or, leniently, at the end of its bytes.
  while (in < values) {
    const std::uint16_t packet = next();
    const std::size_t n = packet & 0x7f;
    if (n == 0) break;
    if (n > count - out) {
      image_error("rle_expand: run of %d values overflows the row", static_cast<int>(n));
      return -1;
    }
    const bool literal = (packet & literal_flag) != 0;
    if ((literal ? n : 1) > values - in) {
      image_error("rle_expand: row data ends inside a run");
      return -1;
    }
    if (literal) {
      for (std::size_t k = 0; k < n; ++k) output[out++] = next();
    } else {
      std::fill_n(output + out, n, next());
      out += n;
    }
  }
  if (out != count) {
    image_error("rle_expand: row ends after %d of %d values", static_cast<int>(out), static_cast<int>(count));
    return -1;
  }
  return static_cast<int>(count);
}

}  // namespace sciray
