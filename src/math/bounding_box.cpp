// bounding_box.cpp - widening boxes.
#include "math/bounding_box.h"

namespace sciray {

void interval::widen(double l, double h) {
  if (empty) {
    empty = 0;
    lo = l;
    hi = h;
    return;
  }
  if (l < lo) lo = l;
  if (h > hi) hi = h;
}

void bounding_box::widen(const bounding_box& b) {
  for (int a = 0; a < 3; ++a)
    if (!b.axis[a].empty) axis[a].widen(b.axis[a].lo, b.axis[a].hi);
}

void bounding_box::widen(const solid_box& b) {
  for (int a = 0; a < 3; ++a) axis[a].widen(b.lo[a], b.hi[a]);
}

void bounding_box::widen(const position& p) {
  for (int a = 0; a < 3; ++a) axis[a].widen(p[a], p[a]);
}

namespace {

// One axis of a cube: the smaller and the larger of c - half and c + half.
interval cube_axis(double c, double half) {
  const double l = c - half, h = c + half;
  return {0, l < h ? l : h, l < h ? h : l};
}

}  // namespace

// Written out, as widen() would leave them: the box of every sphere and
// cylinder is worked out again at every level of the hierarchy's build.
bounding_box bounding_box::cube(const position& p, double half) {
  return {{cube_axis(p.x, half), cube_axis(p.y, half), cube_axis(p.z, half)}};
}

bounding_box bounding_box::cubes(const position& p, const position& q, double half) {
  bounding_box box = cube(p, half);
  for (int a = 0; a < 3; ++a) {
    const interval second = cube_axis(q[a], half);
    if (second.lo < box.axis[a].lo) box.axis[a].lo = second.lo;
    if (second.hi > box.axis[a].hi) box.axis[a].hi = second.hi;
  }
  return box;
}

}  // namespace sciray
