// band_units.h - the pieces a band is rendered in: one pixel row each, or
// in block mode one row of blocks; each piece has one progress line.
#pragma once

#include <vector>

#include "driver/band.h"

namespace sciray {

struct band_unit {
  int line_row;   // the row its progress line names, and the row it samples
  int first_row;  // the picture rows it writes, all inside the band
  int end_row;
};

// The size of the first (bottom or left) block of an extent cut into
// `block`-sized blocks: it takes the remainder.
inline int first_block(int extent, int block) { return extent % block == 0 ? block : extent % block; }

// The band's pixel rows for `block` 1; otherwise the rows of `block` x
// `block` blocks that reach into the band, aligned to the top of a picture
// `height` rows high (the lowest block row takes the remainder).
std::vector<band_unit> band_units(band_rows rows, int height, int block);

}  // namespace sciray
