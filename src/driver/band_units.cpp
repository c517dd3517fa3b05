// band_units.cpp - rows and block rows of a band.
#include "driver/band_units.h"

#include <algorithm>

namespace sciray {

std::vector<band_unit> band_units(band_rows rows, int height, int block) {
  std::vector<band_unit> units;
  if (block <= 1) {
    for (int y = rows.start; y < rows.end; ++y) units.push_back({y, y, y + 1});
    return units;
  }
  for (int y0 = 0, size = first_block(height, block); y0 < height; y0 += size, size = block) {
    const int y1 = y0 + size;
    if (y1 > rows.start && y0 < rows.end) units.push_back({y0, std::max(y0, rows.start), std::min(y1, rows.end)});
  }
  return units;
}

}  // namespace sciray
