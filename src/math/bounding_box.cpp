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

void bounding_box::widen(const position& p) {
  for (int a = 0; a < 3; ++a) axis[a].widen(p[a], p[a]);
}

void bounding_box::widen(const position& p, double half) {
  for (int a = 0; a < 3; ++a) {
    const double l = p[a] - half, h = p[a] + half;
    axis[a].widen(l < h ? l : h, l < h ? h : l);
  }
}

}  // namespace sciray
