// band.cpp - the even split of the picture's rows into bands.
#include "driver/band.h"

#include <cstdint>

namespace sciray {

namespace {

// Where band k ends: Bresenham's walk of k steps of height / count rows,
// each step one row longer when the error term says so, counted in closed
// form so that a huge band index costs no more than the first. The larger
// steps among the first k number floor((2 r k + n) / (2 n)) for the
// remainder r of height / n; the product stays below 2^63.
std::int64_t band_end(std::int64_t height, std::int64_t n, std::int64_t k) {
  const std::int64_t q = height / n, r = height - q * n;
  const auto larger = static_cast<std::int64_t>(
      (2 * static_cast<std::uint64_t>(r) * static_cast<std::uint64_t>(k) + static_cast<std::uint64_t>(n)) /
      (2 * static_cast<std::uint64_t>(n)));
  return q * k + larger;
}

}  // namespace

band_rows split_band(int height, band_choice b) {
  return {static_cast<int>(band_end(height, b.count, b.index - 1)), static_cast<int>(band_end(height, b.count, b.index))};
}

}  // namespace sciray
