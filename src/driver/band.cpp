// band.cpp - band arguments and the even split of the picture's rows.
#include "driver/band.h"

#include <cstdint>
#include <cstdio>
#include <cstring>

namespace sciray {

band_choice parse_band_arguments(int argc, const char* const* argv) {
  band_choice b;
  if (argc >= 5 && std::strcmp(argv[3], "-band") == 0) {
    int index = 0, count = 0;
    if (std::sscanf(argv[4], "%d/%d", &index, &count) == 2 && index >= 1 && count >= 1 && index <= count) {
      b.index = index;
      b.count = count;
    }
  }
  return b;
}

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
