// bounding_box.cpp - widening boxes.
#include "math/bounding_box.h"

#include <initializer_list>

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

// Written out, as widen() would leave them: the hierarchy's build asks for
// every primitive's box again, and a large scene has millions.
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

// Each end starts at the first point and moves only for a smaller (larger)
// number, as widening does.
bounding_box bounding_box::corners(const position& p0, const position& p1, const position& p2) {
  bounding_box b;
  for (int a = 0; a < 3; ++a) {
    double lo = p0[a], hi = p0[a];
    for (const double v : {p1[a], p2[a]}) {
      if (v < lo) lo = v;
      if (v > hi) hi = v;
    }
    b.axis[a] = {0, lo, hi};
  }
  return b;
}

}  // namespace sciray
