// cylinder.cpp - the tube's bounds, its axis frame, its reference test and
// the same test two tubes at a time, and the normal and value of a hit.
#include "geometry/cylinder.h"

#include <cmath>
#include <initializer_list>
#include <limits>

#include "geometry/lanes.h"

namespace sciray {

namespace {

// What the tests read of a tube.
struct tube {
  position start;
  direction axis;  // unit vector from start towards the end
  double length;   // start to end; not a number for a tube that is never hit
  double radius_squared;
};

tube tube_of(const cylinder& c) {
  const vector along = c.end - c.start;
  tube t{c.start, normalise(along), length(along), c.radius * c.radius};
  // Coincident ends or a zero radius: kept, never hit.
  if (t.length == 0.0 || c.radius == 0.0) t.length = std::numeric_limits<double>::quiet_NaN();
  return t;
}

}  // namespace

bounding_box cylinder::bounds() const { return bounding_box::cubes(start, end, radius); }

bool cylinder::intersect(const ray& r, double& distance) const {
  const tube c = tube_of(*this);
  // Work with the parts of origin and direction perpendicular to the axis.
  const vector o = r.origin - c.start;
  const vector d_perp = r.dir - dot(r.dir, c.axis) * c.axis;
  const vector o_perp = o - dot(o, c.axis) * c.axis;
  const double a = dot(d_perp, d_perp);
  if (a == 0.0) return false;
  const double b = dot(o_perp, d_perp);
  const double cc = dot(o_perp, o_perp) - c.radius_squared;
  const double disc = b * b - a * cc;
  if (disc < 0.0) return false;
  const double s = std::sqrt(disc);
  const double t1 = (-b - s) / a, t2 = (-b + s) / a;
  const double near = t1 < t2 ? t1 : t2, far = t1 < t2 ? t2 : t1;
  for (const double t : {near, far}) {
    if (!(t > self_hit_tolerance && t < distance)) continue;
    const double h = dot(o + t * r.dir, c.axis);
    if (h >= 0.0 && h <= c.length) {
      distance = t;
      return true;
    }
  }
  return false;
}

cylinder::set::set(shape_list<cylinder> read, const std::vector<std::uint32_t>& order) {
  columns_.reserve(order.size());
  values_.reserve(order.size());
  for (const std::uint32_t i : order) {
    const tube c = tube_of(read[i]);
    columns_.add({c.start.x, c.start.y, c.start.z, c.axis.x, c.axis.y, c.axis.z, c.length, c.radius_squared});
    values_.push_back({read[i].value_start, read[i].value_end});
  }
  columns_.pad();
}

bool cylinder::set::candidates(std::uint32_t first, std::uint32_t count, const ray& r, double* t) const {
  using namespace lanes;
  const ray_lanes ray2(r);
  const v2 tolerance = both(self_hit_tolerance), zero = _mm_setzero_pd();
  const v2 sign = both(-0.0);
  bool any = false;
  for (std::uint32_t i = 0; i < count; i += 2) {
    const std::uint32_t k = first + i;
    const v2 ax = load(columns_[axis_x], k), ay = load(columns_[axis_y], k), az = load(columns_[axis_z], k);
    // The parts of origin and direction perpendicular to the axis.
    const v2 ox = sub(ray2.ox, load(columns_[start_x], k)), oy = sub(ray2.oy, load(columns_[start_y], k));
    const v2 oz = sub(ray2.oz, load(columns_[start_z], k));
    const v2 da = dot3(ray2.dx, ray2.dy, ray2.dz, ax, ay, az);
    const v2 dpx = sub(ray2.dx, mul(da, ax)), dpy = sub(ray2.dy, mul(da, ay)), dpz = sub(ray2.dz, mul(da, az));
    const v2 oa = dot3(ox, oy, oz, ax, ay, az);
    const v2 opx = sub(ox, mul(oa, ax)), opy = sub(oy, mul(oa, ay)), opz = sub(oz, mul(oa, az));
    const v2 a = dot3(dpx, dpy, dpz, dpx, dpy, dpz);
    const v2 b = dot3(opx, opy, opz, dpx, dpy, dpz);
    const v2 cc = sub(dot3(opx, opy, opz, opx, opy, opz), load(columns_[radius_squared], k));
    const v2 disc = sub(mul(b, b), mul(a, cc));
    // Parallel to the axis, or a negative discriminant: no root. Most pairs
    // have none at all.
    const v2 live = _mm_and_pd(_mm_cmpneq_pd(a, zero), _mm_cmpnlt_pd(disc, zero));
    if (_mm_movemask_pd(live) == 0) {
      _mm_storeu_pd(t + i, none());
      continue;
    }
    const v2 s = _mm_sqrt_pd(disc);
    const v2 minus_b = _mm_xor_pd(b, sign);
    const v2 t1 = _mm_div_pd(sub(minus_b, s), a), t2 = _mm_div_pd(add(minus_b, s), a);
    const v2 near = _mm_min_pd(t1, t2);  // t1 < t2 ? t1 : t2
    const v2 far = _mm_max_pd(t2, t1);   // t1 < t2 ? t2 : t1
    const v2 length = load(columns_[axis_length], k);
    // A root counts if above 1e-6 and within the segment, ends included.
    const auto counts = [&](v2 root) {
      const v2 h = dot3(add(ox, mul(root, ray2.dx)), add(oy, mul(root, ray2.dy)), add(oz, mul(root, ray2.dz)), ax, ay,
                        az);
      return _mm_and_pd(_mm_cmpgt_pd(root, tolerance), _mm_and_pd(_mm_cmpge_pd(h, zero), _mm_cmple_pd(h, length)));
    };
    const v2 near_counts = counts(near), far_counts = counts(far);
    const v2 taken = select(near_counts, near, far);
    _mm_storeu_pd(t + i, select(_mm_and_pd(live, _mm_or_pd(near_counts, far_counts)), taken, none()));
    any = true;
  }
  return any;
}

void cylinder::set::surface(std::uint32_t i, const position& p, hit_record& hit) const {
  const position start(columns_.at(start_x, i), columns_.at(start_y, i), columns_.at(start_z, i));
  const direction axis(columns_.at(axis_x, i), columns_.at(axis_y, i), columns_.at(axis_z, i));
  const double h = dot(p - start, axis);
  const position foot = start + h * axis;
  hit.normal = normalise(p - foot);
  const double s = h / columns_.at(axis_length, i);
  hit.value = (1.0 - s) * values_[i].start + s * values_[i].end;
}

}  // namespace sciray
