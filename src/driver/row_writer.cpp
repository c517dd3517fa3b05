// row_writer.cpp - colour conversion and the corner mark.
#include "driver/row_writer.h"

#include <algorithm>

namespace sciray {

std::uint16_t to_sample(double v) {
  // Written to compile to MAXSD and MINSD rather than branches on the
  // colour: not-a-number and anything not above 0 become 0 (a -0 would
  // give 0 as well).
  v = v > 0.0 ? v : 0.0;
  v = v < 1.0 ? v : 1.0;
  return static_cast<std::uint16_t>(v * 255.0);
}

row_writer::row_writer(band_output& out, int width, int height, int band_start, bool mark)
    : out_(out),
      width_(width),
      band_start_(band_start),
      mark_(mark ? make_corner_mark(width) : corner_mark{}),
      mark_top_(height - mark_.height - mark_.margin),
      marked_(mark_.present() ? static_cast<std::size_t>(width) : 0) {}

void sample_row::set(int x, const colour& c) {
  for (int ch = 0; ch < 3; ++ch) samples_[static_cast<std::size_t>(ch) * width_ + x] = to_sample(c[ch]);
}

void row_writer::write(int row, const sample_row& samples) {
  const bool marked = mark_.present() && row >= mark_top_ && row < mark_top_ + mark_.height;
  for (int ch = 0; ch < 3; ++ch) {
    const std::uint16_t* out = samples.channel(ch);
    if (marked) {
      std::copy_n(out, width_, marked_.begin());
      std::copy_n(mark_.row(row - mark_top_), mark_.width, marked_.begin() + (width_ - mark_.width - mark_.margin));
      out = marked_.data();
    }
    out_.put_row(row - band_start_, ch, out);
  }
}

}  // namespace sciray
