// corner_mark.h - the small grey-level mark stamped into the upper right
// corner of every picture: the letters "SR" on a dark plate, drawn for the
// size class that fits the picture's width.
#pragma once

#include <cstdint>
#include <vector>

namespace sciray {

struct corner_mark {
  int width = 0, height = 0, margin = 0;
  std::vector<std::uint16_t> samples;  // width x height, bottom row first

  bool present() const { return width > 0; }
  const std::uint16_t* row(int k) const { return samples.data() + static_cast<std::size_t>(k) * width; }
};

// The mark of the largest size class whose minimum width is at most
// `picture_width`; an absent mark (width 0) below 100 pixels.
corner_mark make_corner_mark(int picture_width);

}  // namespace sciray
