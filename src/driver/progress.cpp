// progress.cpp - formatting of the progress line.
#include "driver/progress.h"

#include <cstdio>

namespace sciray {

namespace {

// Tests per possible ray-object pair, in percent; 0 when nothing was possible.
double share(double objects, std::int32_t rays, std::int32_t tests) {
  if (objects == 0.0 || rays == 0) return 0.0;
  return static_cast<double>(tests) / (objects * static_cast<double>(rays)) * 100.0;
}

}  // namespace

std::string progress_reporter::next_line(int row, std::uint32_t ray_count, std::uint32_t test_count) {
  // The counters are 32-bit and wrap; differences wrap the same way.
  const auto rays = static_cast<std::int32_t>(ray_count);
  const auto tests = static_cast<std::int32_t>(test_count);
  const auto new_rays = static_cast<std::int32_t>(ray_count - rays_before_);
  const auto new_tests = static_cast<std::int32_t>(test_count - tests_before_);
  char line[128];
  std::snprintf(line, sizeof line, "Row %5d : %9d (%7.4g) : %9d (%7.4g)\n", row, new_rays,
                share(objects_, new_rays, new_tests), rays, share(objects_, rays, tests));
  rays_before_ = ray_count;
  tests_before_ = test_count;
  return line;
}

}  // namespace sciray
