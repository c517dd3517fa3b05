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
  // Widens by the cube of half-side `half` centred on `p`.
  void widen(const position& p, double half);
  bool any_empty() const { return axis[0].empty || axis[1].empty || axis[2].empty; }
  double centre(int a) const { return (axis[a].lo + axis[a].hi) * 0.5; }
};

}  // namespace sciray
