// row_writer.h - converts colours to 8-bit samples and hands finished rows,
// channel by channel, to the band's output, stamping the corner mark.
#pragma once

#include <cstdint>
#include <vector>

#include "driver/band_output.h"
#include "driver/corner_mark.h"
#include "math/vector.h"

namespace sciray {

// Clamp to 0..1, times 255, truncated; not-a-number gives 0.
std::uint16_t to_sample(double v);

// One picture row, converted: red, green and blue samples, `width` each.
class sample_row {
 public:
  explicit sample_row(int width) : width_(width), samples_(3 * static_cast<std::size_t>(width)) {}
  // Stores the converted colour of column x.
  void set(int x, const colour& c);
  const std::uint16_t* channel(int ch) const { return samples_.data() + static_cast<std::size_t>(ch) * width_; }

 private:
  int width_;
  std::vector<std::uint16_t> samples_;
};

class row_writer {
 public:
  // Without `mark` the rows go out as rendered, with no corner mark.
  row_writer(band_output& out, int width, int height, int band_start, bool mark = true);
  // Hands `samples` over as picture row `row` (a full-picture row index).
  void write(int row, const sample_row& samples);

 private:
  band_output& out_;
  int width_, band_start_;
  corner_mark mark_;
  int mark_top_;                       // lowest picture row the mark covers
  std::vector<std::uint16_t> marked_;  // a row's channel with the mark stamped in
};

}  // namespace sciray
