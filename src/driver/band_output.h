// band_output.h - where a band's results go, in row order, on the thread
// that called the band renderer: the program prints the progress lines and
// writes the rows into its picture file; the Python module keeps both in
// memory.
#pragma once

#include <cstdint>
#include <string>

namespace sciray {

class band_output {
 public:
  virtual ~band_output() = default;
  // Once the rendering threads exist, before the first line: the band has
  // `rows` rows of `width` pixels.
  virtual void start(int width, int rows) = 0;
  // The progress line before a row, with its line end.
  virtual void progress(const std::string& line) = 0;
  // Channel `channel` (0 red, 1 green, 2 blue) of band row `row` (0 is the
  // band's bottom row): `width` samples of 0 to 255, corner mark stamped in.
  virtual void put_row(int row, int channel, const std::uint16_t* samples) = 0;
};

}  // namespace sciray
