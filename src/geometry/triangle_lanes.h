// triangle_lanes.h - the triangle's fast test, written once for any lane
// type L (math/lanes_*.h): the operations of triangle::intersect in its
// order, lane by lane, giving the root it takes under an unlimited
// distance. It tests two triangles against one ray (triangle.cpp) and one
// triangle against a group of rays (group_leaves.h). A file that builds
// code for other instructions includes it only after switching the
// compiler to them.
#pragma once

#include <limits>

#include "geometry/triangle.h"
#include "math/lane_ray.h"

namespace sciray {

// The root, or not a number, of the triangle whose quantity q
// (triangle::set::column) in each lane is at(q).
template <typename L, typename At>
[[gnu::always_inline]] inline typename L::v fast_root(const triangle::set&, const lane_ray<L>& r, At&& at) {
  using v = typename L::v;
  using m = typename L::m;
  using q = triangle::set::column;
  const v tolerance = L::set1(self_hit_tolerance), zero = L::set1(0.0), one = L::set1(1.0);
  const v nx = at(q::normal_x), ny = at(q::normal_y), nz = at(q::normal_z);
  const v denom = dot3<L>(r.dx, r.dy, r.dz, nx, ny, nz);
  const v root = L::div(L::sub(at(q::offset), dot3<L>(r.ox, r.oy, r.oz, nx, ny, nz)), denom);
  // Parallel to the plane, or the root not above 1e-6: no hit. Most
  // triangles have none at all.
  const m live = L::both(L::neq(denom, zero), L::gt(root, tolerance));
  if (!L::any(live)) return L::set1(std::numeric_limits<double>::quiet_NaN());
  const v px = L::add(r.ox, L::mul(root, r.dx)), py = L::add(r.oy, L::mul(root, r.dy));
  const v pz = L::add(r.oz, L::mul(root, r.dz));
  const auto weight = [&](q row) {
    return L::add(dot3<L>(at(row), at(q(row + 1)), at(q(row + 2)), px, py, pz), at(q(row + 3)));
  };
  const v w1 = weight(q::weight1_x), w2 = weight(q::weight2_x);
  const v w0 = L::sub(L::sub(one, w1), w2);
  // Each weight within 0 .. 1, ends included: a weight is refused only
  // below 0 or above 1.
  const auto within = [&](v w) { return L::both(L::nlt(w, zero), L::ngt(w, one)); };
  const m inside = L::both(within(w1), L::both(within(w2), within(w0)));
  return L::select(L::both(live, inside), root, L::set1(std::numeric_limits<double>::quiet_NaN()));
}

}  // namespace sciray
