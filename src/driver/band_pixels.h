// band_pixels.h - a band's rows kept in memory as red, green and blue bytes
// per pixel, top row first: the pixels the Python module hands to numpy and
// the program writes as a PNG.
#pragma once

#include <cstdint>
#include <vector>

namespace sciray {

class band_pixels {
 public:
  // Makes room for `rows` black rows of `width` pixels.
  void reset(int width, int rows);
  // Stores channel `channel` (0 red, 1 green, 2 blue) of band row `row`
  // (0 is the band's bottom row) from `width` samples of 0 to 255.
  void put_row(int row, int channel, const std::uint16_t* samples);

  int width() const { return width_; }
  int rows() const { return rows_; }
  // Row y counted from the top, 3 bytes a pixel.
  const unsigned char* row_from_top(int y) const { return bytes_.data() + offset(y); }
  // Hands the bytes over, leaving the band empty.
  std::vector<unsigned char> take();

 private:
  std::size_t offset(int y) const { return static_cast<std::size_t>(y) * width_ * 3; }

  int width_ = 0, rows_ = 0;
  std::vector<unsigned char> bytes_;
};

}  // namespace sciray
