// adaptive_sampler.h - adaptive anti-aliasing. Each pixel is a square whose
// corners and centre are sampled; a weighted estimate close to all five is
// kept, otherwise the square is cut into quarters, down to a fixed depth.
// Corner and edge samples are shared by neighbouring pixels, and the samples
// on the edge between two pixel rows by both rows, so no point of the window
// is traced twice (but centres).
//
// The samples between two rows are a sample_edge, which the lower row fills
// as it goes and the upper row then reads and may add to. A row needs of
// the row below only its finished pixels: render_row asks, before each
// pixel, for the pixel below it, so that another thread may still be
// rendering the row below (the band renderer hands the edges over).
#pragma once

#include <vector>

#include "driver/pixel_source.h"
#include "driver/screen_window.h"

namespace sciray {

struct sample_slot {
  colour c;
  int computed = 0;
};

// The samples on the line between two pixel rows: grid step x width + 1.
using sample_edge = std::vector<sample_slot>;

class adaptive_sampler {
 public:
  // `tolerance` is clamped to 0..1 and `depth` to 1..4.
  adaptive_sampler(const screen_window& window, double tolerance, int depth);

  int grid_step() const { return step_; }
  // Makes `edge` empty, to be filled as the upper edge of a row.
  void clear(sample_edge& edge) const;
  // Samples every pixel corner of the lower edge of row `r` into `edge`.
  void sample_lower_edge(sample_edge& edge, int r, const pixel_source& source) const;
  // Renders pixel row `r` between `lower` (the upper edge of row r - 1) and
  // `upper` (cleared), pixel by pixel: pixel_below(c) returns once the row
  // below has finished pixel c, and pixel(c, colour) takes the colour.
  template <typename Below, typename Pixel>
  void render_row(int r, sample_edge& lower, sample_edge& upper, const pixel_source& source, Below&& pixel_below,
                  Pixel&& pixel);

 private:
  // The rows of slots of the pixel being sampled: its lower edge, its inner
  // rows (kept here) and its upper edge. Grid columns count from the
  // picture's left edge.
  sample_slot& at(int j, int i);
  void sample_into(int j, int i, double x, double y);
  // Starts pixel column c: the inner column it shares with the pixel to the
  // left moves into place.
  void begin_pixel(int c);
  colour sample_square(double x0, double y0, double x1, double y1, int i0, int j0, int i1, int j1);

  const screen_window& window_;
  double tolerance_;
  int depth_left_;  // levels still allowed below the current square
  int step_;        // grid cells per pixel edge
  std::vector<sample_slot> inner_;  // (step - 1) rows of step + 1 slots

  // The row being rendered.
  const pixel_source* source_ = nullptr;
  sample_edge* lower_ = nullptr;
  sample_edge* upper_ = nullptr;
  int column_ = 0;  // the pixel column being sampled
};

template <typename Below, typename Pixel>
void adaptive_sampler::render_row(int r, sample_edge& lower, sample_edge& upper, const pixel_source& source,
                                  Below&& pixel_below, Pixel&& pixel) {
  source_ = &source;
  lower_ = &lower;
  upper_ = &upper;
  const double y0 = window_.edge_y(r), y1 = window_.edge_y(r + 1);
  column_ = 0;
  sample_into(step_, 0, window_.edge_x(0), y1);  // the upper left corner
  for (int c = 0; c < window_.columns; ++c) {
    pixel_below(c);
    begin_pixel(c);
    const double x0 = window_.edge_x(c), x1 = window_.edge_x(c + 1);
    sample_into(step_, (c + 1) * step_, x1, y1);  // the upper right corner
    pixel(c, sample_square(x0, y0, x1, y1, c * step_, 0, (c + 1) * step_, step_));
  }
}

}  // namespace sciray
