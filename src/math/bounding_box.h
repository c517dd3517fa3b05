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

// A box that holds something on every axis, as every primitive's box does:
// the six bounds alone, the hierarchy's build keeps one per primitive.
struct solid_box {
  double lo[3], hi[3];
  double centre(int a) const { return (lo[a] + hi[a]) * 0.5; }
};

struct bounding_box {
  interval axis[3];  // x, y, z

  void widen(const bounding_box& b);
  void widen(const solid_box& b);
  void widen(const position& p);
  bool any_empty() const { return axis[0].empty || axis[1].empty || axis[2].empty; }
  // The box an empty box widened by the cube of half-side `half` around `p`
  // becomes; with a second cube around `q`, widened by that too.
  static bounding_box cube(const position& p, double half);
  static bounding_box cubes(const position& p, const position& q, double half);
  // The box an empty box widened by p0, p1 and p2 in turn becomes.
  static bounding_box corners(const position& p0, const position& p1, const position& p2);
  double centre(int a) const { return (axis[a].lo + axis[a].hi) * 0.5; }
  // The bounds of a box that holds something on every axis.
  solid_box solid() const {
    return {{axis[0].lo, axis[1].lo, axis[2].lo}, {axis[0].hi, axis[1].hi, axis[2].hi}};
  }
};

}  // namespace sciray
