// band_pixels.cpp - rows stored top first as they arrive bottom first.
#include "driver/band_pixels.h"

#include <utility>

namespace sciray {

void band_pixels::reset(int width, int rows) {
  width_ = width;
  rows_ = rows;
  bytes_.assign(offset(rows), 0);
}

void band_pixels::put_row(int row, int channel, const std::uint16_t* samples) {
  unsigned char* out = bytes_.data() + offset(rows_ - 1 - row) + channel;
  for (int x = 0; x < width_; ++x) out[3 * x] = static_cast<unsigned char>(samples[x]);
}

std::vector<unsigned char> band_pixels::take() {
  width_ = rows_ = 0;
  return std::exchange(bytes_, {});
}

}  // namespace sciray
