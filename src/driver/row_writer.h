// row_writer.h - converts colours to 8-bit samples and writes finished rows,
// channel by channel, into the picture file, stamping the corner mark.
#pragma once

#include <cstdint>
#include <vector>

#include "driver/corner_mark.h"
#include "math/vector.h"

namespace sciray {

struct image_file;

// Clamp to 0..1, times 255, truncated; not-a-number gives 0.
std::uint16_t to_sample(double v);

class row_writer {
 public:
  row_writer(image_file* image, int width, int height, int band_start);

  // Stores the converted colour of column x in the row buffers.
  void set(int x, const colour& c);
  // Writes the buffers as picture row `row` (a full-picture row index).
  void write(int row);

 private:
  image_file* image_;
  int width_, band_start_;
  corner_mark mark_;
  int mark_top_;                       // lowest picture row the mark covers
  std::vector<std::uint16_t> rows_;    // three channels of width samples
  std::vector<std::uint16_t> marked_;  // a copy with the mark stamped in
};

}  // namespace sciray
