// polygon_split.cpp - the recursive halving of a polygon into triangles.
#include "scene_file/polygon_split.h"

namespace sciray {

namespace {

void split(const std::vector<int>& corners, std::vector<corner_indices>& triangles) {
  const std::size_t n = corners.size();
  if (n < 3) return;
  if (n == 3) {
    triangles.push_back({corners[0], corners[1], corners[2]});
    return;
  }
  const std::size_t m = n / 2;
  const std::vector<int> first(corners.begin(), corners.begin() + static_cast<std::ptrdiff_t>(m) + 1);
  std::vector<int> second(corners.begin() + static_cast<std::ptrdiff_t>(m), corners.end());
  second.push_back(corners[0]);
  split(first, triangles);
  split(second, triangles);
}

}  // namespace

std::vector<corner_indices> split_polygon(int corner_count) {
  std::vector<int> corners;
  for (int i = 0; i < corner_count; ++i) corners.push_back(i);
  std::vector<corner_indices> triangles;
  split(corners, triangles);
  return triangles;
}

}  // namespace sciray
