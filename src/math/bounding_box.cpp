// bounding_box.cpp - widening boxes and the slab test of the hierarchy walk.
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

bool enter_box(const bounding_box& box, const ray& r, double current_distance, double& entry) {
  // A box that is still empty on some axis holds nothing to enter.
  if (box.any_empty()) return false;

  const auto within = [&r](const interval& slab, int a) { return slab.lo <= r.origin[a] && r.origin[a] <= slab.hi; };
  if (within(box.axis[0], 0) && within(box.axis[1], 1) && within(box.axis[2], 2)) {
    entry = 0.0;
    return true;
  }

  // Slab rule: the latest entry into an axis slab and the earliest exit.
  double near_all = -1e20, far_all = 1e20;
  for (int a = 0; a < 3; ++a) {
    const interval& slab = box.axis[a];
    if (r.dir[a] == 0.0) {
      if (!within(slab, a)) return false;
      continue;
    }
    const double t1 = (slab.lo - r.origin[a]) * r.inv_dir[a];
    const double t2 = (slab.hi - r.origin[a]) * r.inv_dir[a];
    const double t_near = t1 < t2 ? t1 : t2;
    const double t_far = t1 < t2 ? t2 : t1;
    if (!(t_far > 0.0)) return false;
    if (t_near > near_all) near_all = t_near;
    if (t_far < far_all) far_all = t_far;
  }
  if (near_all > far_all || near_all > current_distance) return false;
  entry = near_all;
  return true;
}

}  // namespace sciray
