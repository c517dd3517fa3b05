// band.h - which horizontal band of the picture this run renders.
#pragma once

namespace sciray {

struct band_choice {
  int index = 1;
  int count = 1;
};

struct band_rows {
  int start = 0;  // first picture row, inclusive (row 0 is the bottom)
  int end = 0;    // last row, exclusive
  bool empty() const { return start == end; }
};

// Splits `height` rows into `b.count` bands whose sizes differ by at most
// one row, spreading the larger ones evenly (a Bresenham-style walk), and
// gives band `b.index` of them (1 <= index <= count).
band_rows split_band(int height, band_choice b);

}  // namespace sciray
