// cylinder_lanes.h - the cylinder's fast test, written once for any lane
// type L (math/lanes_*.h): the operations of cylinder::intersect in its
// order, lane by lane, giving the root it takes under an unlimited
// distance. It tests two tubes against one ray (cylinder.cpp) and one tube
// against a group of rays (group_leaves.h). A file that builds code for
// other instructions includes it only after switching the compiler to them.
#pragma once

#include <limits>

#include "geometry/cylinder.h"
#include "math/lane_ray.h"

namespace sciray {

// The root, or not a number, of the tube whose quantity q
// (cylinder::set::column) in each lane is at(q). Compared as MINPD and
// MAXPD compare: `a < b ? a : b` is min(a, b), `a < b ? b : a` is max(b, a).
template <typename L, typename At>
[[gnu::always_inline]] inline typename L::v fast_root(const cylinder::set&, const lane_ray<L>& r, At&& at) {
  using v = typename L::v;
  using m = typename L::m;
  using q = cylinder::set::column;
  const v tolerance = L::set1(self_hit_tolerance), zero = L::set1(0.0);
  const v nan = L::set1(std::numeric_limits<double>::quiet_NaN());
  const v ax = at(q::axis_x), ay = at(q::axis_y), az = at(q::axis_z);
  // The parts of origin and direction perpendicular to the axis.
  const v ox = L::sub(r.ox, at(q::start_x)), oy = L::sub(r.oy, at(q::start_y)), oz = L::sub(r.oz, at(q::start_z));
  const v da = dot3<L>(r.dx, r.dy, r.dz, ax, ay, az);
  const v dpx = L::sub(r.dx, L::mul(da, ax)), dpy = L::sub(r.dy, L::mul(da, ay)), dpz = L::sub(r.dz, L::mul(da, az));
  const v oa = dot3<L>(ox, oy, oz, ax, ay, az);
  const v opx = L::sub(ox, L::mul(oa, ax)), opy = L::sub(oy, L::mul(oa, ay)), opz = L::sub(oz, L::mul(oa, az));
  const v a = dot3<L>(dpx, dpy, dpz, dpx, dpy, dpz);
  const v b = dot3<L>(opx, opy, opz, dpx, dpy, dpz);
  const v cc = L::sub(dot3<L>(opx, opy, opz, opx, opy, opz), at(q::radius_squared));
  const v disc = L::sub(L::mul(b, b), L::mul(a, cc));
  // Parallel to the axis, or a negative discriminant: no root. Most tubes
  // have none at all.
  const m live = L::both(L::neq(a, zero), L::nlt(disc, zero));
  if (!L::any(live)) return nan;
  const v s = L::sqrt(disc);
  const v minus_b = L::neg(b);
  const v t1 = L::div(L::sub(minus_b, s), a), t2 = L::div(L::add(minus_b, s), a);
  const v near = L::min(t1, t2);  // t1 < t2 ? t1 : t2
  const v far = L::max(t2, t1);   // t1 < t2 ? t2 : t1
  const v length = at(q::axis_length);
  // A root counts if above 1e-6 and within the segment, ends included.
  const auto counts = [&](v root) {
    const v h = dot3<L>(L::add(ox, L::mul(root, r.dx)), L::add(oy, L::mul(root, r.dy)),
                        L::add(oz, L::mul(root, r.dz)), ax, ay, az);
    return L::both(L::gt(root, tolerance), L::both(L::ge(h, zero), L::le(h, length)));
  };
  const m near_counts = counts(near), far_counts = counts(far);
  const v taken = L::select(near_counts, near, far);
  return L::select(L::both(live, L::either(near_counts, far_counts)), taken, nan);
}

}  // namespace sciray
