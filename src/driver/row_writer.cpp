// row_writer.cpp - colour conversion, the corner mark, and putrow.
#include "driver/row_writer.h"

#include <algorithm>

#include "image/image.h"

namespace sciray {

std::uint16_t to_sample(double v) {
  if (!(v >= 0.0)) v = 0.0;  // also not-a-number
  if (v > 1.0) v = 1.0;
  return static_cast<std::uint16_t>(v * 255.0);
}

row_writer::row_writer(image_file* image, int width, int height, int band_start)
    : image_(image),
      width_(width),
      band_start_(band_start),
      mark_(make_corner_mark(width)),
      mark_top_(height - mark_.height - mark_.margin),
      rows_(3 * static_cast<std::size_t>(width)),
      marked_(mark_.present() ? rows_.size() : 0) {}

void row_writer::set(int x, const colour& c) {
  for (int ch = 0; ch < 3; ++ch) rows_[static_cast<std::size_t>(ch) * width_ + x] = to_sample(c[ch]);
}

void row_writer::write(int row) {
  const std::uint16_t* out = rows_.data();
  if (mark_.present() && row >= mark_top_ && row < mark_top_ + mark_.height) {
    std::copy(rows_.begin(), rows_.end(), marked_.begin());
    const int left = width_ - mark_.width - mark_.margin;
    for (int ch = 0; ch < 3; ++ch)
      std::copy_n(mark_.row(row - mark_top_), mark_.width, marked_.begin() + ch * width_ + left);
    out = marked_.data();
  }
  for (int ch = 0; ch < 3; ++ch)
    putrow(image_, out + static_cast<std::size_t>(ch) * width_, static_cast<unsigned>(row - band_start_),
           static_cast<unsigned>(ch));
}

}  // namespace sciray
