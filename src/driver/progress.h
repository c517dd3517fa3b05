// progress.h - the progress line printed before every row: rays cast since
// the last line and in all, and the share of all possible ray-object tests
// the bounding hierarchy let through.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace sciray {

class progress_reporter {
 public:
  explicit progress_reporter(std::size_t objects) : objects_(static_cast<double>(objects)) {}

  // The line for `row` (with its line end) from the rays and tests counted
  // so far, advancing the remembered counts.
  std::string next_line(int row, std::uint32_t rays, std::uint32_t tests);

 private:
  double objects_;
  std::uint32_t rays_before_ = 0, tests_before_ = 0;
};

}  // namespace sciray
