// bounding_box.h - axis-aligned boxes made of three intervals that may be empty.
#pragma once

#include "math/vector.h"

namespace sciray {

struct interval {
  int empty = 1;  // 1 while the interval holds nothing yet
  double lo = 0.0, hi = 0.0;

  void widen(double l, double h);  // union with [l, h]
  double extent() const { return empty ? 0.0 : hi - lo; }
};

struct bounding_box {
  interval axis[3];  // x, y, z

  void widen(const bounding_box& b);
  void widen(const position& p);
  bool any_empty() const { return axis[0].empty || axis[1].empty || axis[2].empty; }
  // The box an empty box widened by the cube of half-side `half` around `p`
  // becomes; with a second cube around `q`, widened by that too.
  static bounding_box cube(const position& p, double half);
  static bounding_box cubes(const position& p, const position& q, double half);
  double centre(int a) const { return (axis[a].lo + axis[a].hi) * 0.5; }
};

}  // namespace sciray
