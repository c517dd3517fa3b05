// adaptive_sampler.h - adaptive anti-aliasing. Each pixel is a square whose
// corners and centre are sampled; a weighted estimate close to all five is
// kept, otherwise the square is cut into quarters, down to a fixed depth.
// Corner and edge samples live in a grid shared by neighbouring pixels and
// by the next row, so no point of the window is traced twice (but centres).
#pragma once

#include <vector>

#include "driver/pixel_source.h"
#include "driver/screen_window.h"

namespace sciray {

class adaptive_sampler {
 public:
  // `tolerance` is clamped to 0..1 and `depth` to 1..4. Samples the lower
  // edge of the band's first row.
  adaptive_sampler(const pixel_source& source, const screen_window& window, int band_start, double tolerance,
                   int depth);

  // Starts pixel row `r`: samples its upper left corner.
  void begin_row(int r);
  // The colour of pixel column `c` of the current row (columns in order).
  colour pixel(int c);
  // Rolls the row's upper edge down to be the next row's lower edge.
  void end_row();

  int grid_step() const { return step_; }

 private:
  struct slot {
    colour c;
    int computed = 0;
  };
  slot& at(int j, int i) { return grid_[static_cast<std::size_t>(j) * columns_ + i]; }
  void sample_into(int j, int i, double x, double y);
  colour sample_square(double x0, double y0, double x1, double y1, int i0, int j0, int i1, int j1);

  pixel_source source_;
  const screen_window& window_;
  double tolerance_;
  int depth_left_;  // levels still allowed below the current square
  int step_;        // grid cells per pixel edge
  std::size_t columns_;
  std::vector<slot> grid_;
  double y_low_ = 0.0, y_high_ = 0.0;  // edges of the current row
};

}  // namespace sciray
