// sphere_lanes.h - the sphere's fast test, written once for any lane type
// L (math/lanes_*.h): the operations of sphere::intersect in its order,
// lane by lane, giving the root it takes under an unlimited distance. It
// tests two spheres against one ray (sphere.cpp) and one sphere against a
// group of rays (group_leaves.h). A file that builds code for other
// instructions includes it only after switching the compiler to them.
#pragma once

#include <limits>

#include "geometry/sphere.h"
#include "math/lane_ray.h"

namespace sciray {

// The root, or not a number, of the sphere whose quantity q
// (sphere::set::column) in each lane is at(q). Compared as MINPD and MAXPD
// compare: `a < b ? a : b` is min(a, b), `a < b ? b : a` is max(b, a).
template <typename L, typename At>
[[gnu::always_inline]] inline typename L::v fast_root(const sphere::set&, const lane_ray<L>& r, At&& at) {
  using v = typename L::v;
  using q = sphere::set::column;
  const v tolerance = L::set1(self_hit_tolerance), nan = L::set1(std::numeric_limits<double>::quiet_NaN());
  const v ocx = L::sub(r.ox, at(q::center_x)), ocy = L::sub(r.oy, at(q::center_y)), ocz = L::sub(r.oz, at(q::center_z));
  const v b = L::mul(L::set1(2.0), dot3<L>(r.dx, r.dy, r.dz, ocx, ocy, ocz));
  const v c = L::sub(dot3<L>(ocx, ocy, ocz, ocx, ocy, ocz), at(q::radius_squared));
  const v disc = L::sub(L::mul(b, b), L::mul(L::set1(4.0), c));
  const typename L::m live = L::gt(disc, L::set1(0.0));
  // Most miss: their discriminants rule out every root.
  if (!L::any(live)) return nan;
  const v s = L::sqrt(disc);
  const v q1 = L::mul(L::set1(-0.5), L::add(b, s)), q2 = L::mul(L::set1(-0.5), L::sub(b, s));
  const v near = L::min(q1, q2);  // q1 < q2 ? q1 : q2
  const v far = L::max(q2, q1);   // q1 < q2 ? q2 : q1
  const v taken = L::select(L::gt(near, tolerance), near, far);
  return L::select(L::both(live, L::gt(taken, tolerance)), taken, nan);
}

}  // namespace sciray
