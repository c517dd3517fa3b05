// band.cpp - the even split of the picture's rows into bands.
#include "driver/band.h"

#include <cstdint>

namespace sciray {

band_rows split_band(int height, band_choice b) {
  // 64-bit arithmetic: with many bands 2n and the error term leave the int range.
  const std::int64_t h = height, n = b.count;
  const std::int64_t q = h / n;
  const std::int64_t step = 2 * h - 2 * q * n;
  std::int64_t error = 2 * h - (2 * q + 1) * n;
  std::int64_t start = 0, end = 0;
  for (std::int64_t k = 1; k <= b.index; ++k) {
    start = end;
    if (error < 0) {
      end += q;
      error += step;
    } else {
      end += q + 1;
      error += step - 2 * n;
    }
  }
  return {static_cast<int>(start), static_cast<int>(end)};
}

}  // namespace sciray
