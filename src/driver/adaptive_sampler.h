// adaptive_sampler.h - adaptive anti-aliasing. Each pixel is a square whose
// corners and centre are sampled; a weighted estimate close to all five is
// kept, otherwise the square is cut into quarters, down to a fixed depth.
// Corner and edge samples are shared by neighbouring pixels, and the samples
// on the edge between two pixel rows by both rows, so no point of the window
// is traced twice (but centres).
//
// The samples between two rows live in a sample_edge, which the lower row
// fills as it goes and the upper row then reads and may add to; the upper
// row waits, pixel by pixel, until the lower one has finished the pixel
// below, so that two threads can render neighbouring rows at once and trace
// exactly the samples one thread would, each in the row that would trace it.
#pragma once

#include <atomic>
#include <vector>

#include "driver/pixel_source.h"
#include "driver/screen_window.h"

namespace sciray {

struct sample_slot {
  colour c;
  int computed = 0;
};

struct sample_edge {
  std::vector<sample_slot> slots;  // grid step x picture width + 1
  std::atomic<int> below{-2};      // the pixel row this edge is the upper edge of, once made ready for it
  std::atomic<int> finished{0};    // pixels of that row whose part of this edge is final
  // The count of finished pixels the upper row sleeps for, if it sleeps:
  // the lower row wakes it only then, since a wake-up is a system call.
  std::atomic<int> wanted{no_sleeper};
  static constexpr int no_sleeper = 1 << 30;
};

class adaptive_sampler {
 public:
  // `tolerance` is clamped to 0..1 and `depth` to 1..4.
  adaptive_sampler(const screen_window& window, double tolerance, int depth);

  int grid_step() const { return step_; }
  // Makes `edge` empty and ready to be filled as the upper edge of row `r`.
  void clear(sample_edge& edge, int r) const;
  // Samples every pixel corner of the lower edge of row `r` into `edge`.
  void sample_lower_edge(sample_edge& edge, int r, const pixel_source& source) const;
  // Renders pixel row `r` between `lower` (the upper edge of row r - 1,
  // which may still be filling) and `upper` (cleared for row r), giving
  // each pixel's colour to pixel(c, colour) in column order.
  template <typename Pixel>
  void render_row(int r, sample_edge& lower, sample_edge& upper, const pixel_source& source, Pixel&& pixel);

 private:
  // The rows of slots of the pixel being sampled: its lower edge, its inner
  // rows (kept here) and its upper edge. Grid columns count from the
  // picture's left edge.
  sample_slot& at(int j, int i);
  void sample_into(int j, int i, double x, double y);
  // Starts pixel column c: waits for the row below and moves the inner
  // column shared with the pixel to the left into place.
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

template <typename Pixel>
void adaptive_sampler::render_row(int r, sample_edge& lower, sample_edge& upper, const pixel_source& source,
                                  Pixel&& pixel) {
  source_ = &source;
  lower_ = &lower;
  upper_ = &upper;
  const double y0 = window_.edge_y(r), y1 = window_.edge_y(r + 1);
  for (int b = lower.below.load(std::memory_order_acquire); b != r - 1; b = lower.below.load(std::memory_order_acquire))
    lower.below.wait(b, std::memory_order_acquire);
  column_ = 0;
  sample_into(step_, 0, window_.edge_x(0), y1);  // the upper left corner
  for (int c = 0; c < window_.columns; ++c) {
    begin_pixel(c);
    const double x0 = window_.edge_x(c), x1 = window_.edge_x(c + 1);
    sample_into(step_, (c + 1) * step_, x1, y1);  // the upper right corner
    pixel(c, sample_square(x0, y0, x1, y1, c * step_, 0, (c + 1) * step_, step_));
    // Sequentially consistent with begin_pixel: either the sleeper sees this
    // pixel finished or this row sees the sleeper waiting for it.
    upper.finished.store(c + 1, std::memory_order_seq_cst);
    if (upper.wanted.load(std::memory_order_seq_cst) <= c + 1) upper.finished.notify_all();
  }
}

}  // namespace sciray
