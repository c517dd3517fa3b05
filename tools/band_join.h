// band_join.h - the band files of one picture read as one picture. Every
// file is opened and checked before the first row is given out; then the
// rows come one at a time, the top row of the top band first, each as red,
// green and blue bytes per pixel. Only one row and one open file are held
// at a time, whatever the picture's size.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace sciray {

struct image_file;

class band_join {
 public:
  // `names` lists the bands bottom first. A file that is no band of 3
  // channels of 1 byte, or whose width differs from the first one's, stops
  // the run with "sciray-png: " + file name + ": " + the reason.
  explicit band_join(std::vector<std::string> names);
  ~band_join();
  band_join(const band_join&) = delete;
  band_join& operator=(const band_join&) = delete;

  unsigned width() const { return width_; }
  std::uint64_t height() const { return height_; }
  // The next row down; a row that cannot be read stops the run as above.
  const unsigned char* next_row();

 private:
  struct closer {
    void operator()(image_file* image) const;
  };
  // Opens band `k` and checks it; returns its height.
  unsigned open_band(std::size_t k);
  [[noreturn]] void fail(const std::string& name, const std::string& reason);

  std::vector<std::string> names_;
  unsigned width_ = 0;
  std::uint64_t height_ = 0;
  std::vector<unsigned> heights_;
  std::unique_ptr<image_file, closer> open_;  // the band being read
  std::size_t band_ = 0;                      // which one, counted from the top
  unsigned row_ = 0;                          // rows of it still to read
  std::vector<std::uint16_t> samples_;
  std::vector<unsigned char> rgb_;
};

}  // namespace sciray
