// leaf_candidates.cpp - the sphere, cylinder and triangle tests of
// sphere.h, cylinder.h and triangle.h, two shapes per SSE2 register. Pairs
// whose discriminants (a triangle: denominators) rule out every root skip
// the rest, as most pairs do.
#include "geometry/leaf_candidates.h"

#include <emmintrin.h>

#include <limits>

#include "geometry/hit_record.h"

namespace sciray {

namespace {

using v2 = __m128d;

v2 add(v2 a, v2 b) { return _mm_add_pd(a, b); }
v2 sub(v2 a, v2 b) { return _mm_sub_pd(a, b); }
v2 mul(v2 a, v2 b) { return _mm_mul_pd(a, b); }
v2 both(double x) { return _mm_set1_pd(x); }
// a.x * b.x + a.y * b.y + a.z * b.z, summed left to right.
v2 dot3(v2 ax, v2 ay, v2 az, v2 bx, v2 by, v2 bz) { return add(add(mul(ax, bx), mul(ay, by)), mul(az, bz)); }
// mask ? a : b
v2 select(v2 mask, v2 a, v2 b) { return _mm_or_pd(_mm_and_pd(mask, a), _mm_andnot_pd(mask, b)); }
const v2 none = both(std::numeric_limits<double>::quiet_NaN());

// The ray, each quantity in both lanes.
struct ray_lanes {
  explicit ray_lanes(const ray& r)
      : ox(both(r.origin.x)), oy(both(r.origin.y)), oz(both(r.origin.z)),
        dx(both(r.dir.x)), dy(both(r.dir.y)), dz(both(r.dir.z)) {}
  v2 ox, oy, oz, dx, dy, dz;
};

}  // namespace

bool sphere_candidates(const sphere_set& s, std::uint32_t first, std::uint32_t count, const ray& r, double* t) {
  const ray_lanes ray2(r);
  const v2 tolerance = both(self_hit_tolerance);
  bool any = false;
  for (std::uint32_t i = 0; i < count; i += 2) {
    const std::uint32_t k = first + i;
    const v2 ocx = sub(ray2.ox, _mm_loadu_pd(s[sx] + k));
    const v2 ocy = sub(ray2.oy, _mm_loadu_pd(s[sy] + k));
    const v2 ocz = sub(ray2.oz, _mm_loadu_pd(s[sz] + k));
    const v2 b = mul(both(2.0), dot3(ray2.dx, ray2.dy, ray2.dz, ocx, ocy, ocz));
    const v2 c = sub(dot3(ocx, ocy, ocz, ocx, ocy, ocz), _mm_loadu_pd(s[s_radius_squared] + k));
    const v2 disc = sub(mul(b, b), mul(both(4.0), c));
    const v2 live = _mm_cmpgt_pd(disc, _mm_setzero_pd());
    if (_mm_movemask_pd(live) == 0) {
      _mm_storeu_pd(t + i, none);
      continue;
    }
    const v2 root = _mm_sqrt_pd(disc);
    const v2 q1 = mul(both(-0.5), add(b, root)), q2 = mul(both(-0.5), sub(b, root));
    const v2 near = _mm_min_pd(q1, q2);  // q1 < q2 ? q1 : q2
    const v2 far = _mm_max_pd(q2, q1);   // q1 < q2 ? q2 : q1
    const v2 taken = select(_mm_cmpgt_pd(near, tolerance), near, far);
    _mm_storeu_pd(t + i, select(_mm_and_pd(live, _mm_cmpgt_pd(taken, tolerance)), taken, none));
    any = true;
  }
  return any;
}

bool cylinder_candidates(const cylinder_set& c, std::uint32_t first, std::uint32_t count, const ray& r, double* t) {
  const ray_lanes ray2(r);
  const v2 tolerance = both(self_hit_tolerance), zero = _mm_setzero_pd();
  const v2 sign = both(-0.0);
  bool any = false;
  for (std::uint32_t i = 0; i < count; i += 2) {
    const std::uint32_t k = first + i;
    const v2 ax = _mm_loadu_pd(c[c_axis_x] + k), ay = _mm_loadu_pd(c[c_axis_y] + k);
    const v2 az = _mm_loadu_pd(c[c_axis_z] + k);
    // The parts of origin and direction perpendicular to the axis.
    const v2 ox = sub(ray2.ox, _mm_loadu_pd(c[cx] + k)), oy = sub(ray2.oy, _mm_loadu_pd(c[cy] + k));
    const v2 oz = sub(ray2.oz, _mm_loadu_pd(c[cz] + k));
    const v2 da = dot3(ray2.dx, ray2.dy, ray2.dz, ax, ay, az);
    const v2 dpx = sub(ray2.dx, mul(da, ax)), dpy = sub(ray2.dy, mul(da, ay)), dpz = sub(ray2.dz, mul(da, az));
    const v2 oa = dot3(ox, oy, oz, ax, ay, az);
    const v2 opx = sub(ox, mul(oa, ax)), opy = sub(oy, mul(oa, ay)), opz = sub(oz, mul(oa, az));
    const v2 a = dot3(dpx, dpy, dpz, dpx, dpy, dpz);
    const v2 b = dot3(opx, opy, opz, dpx, dpy, dpz);
    const v2 cc = sub(dot3(opx, opy, opz, opx, opy, opz), _mm_loadu_pd(c[c_radius_squared] + k));
    const v2 disc = sub(mul(b, b), mul(a, cc));
    // Parallel to the axis, or a negative discriminant: no root.
    const v2 live = _mm_and_pd(_mm_cmpneq_pd(a, zero), _mm_cmpnlt_pd(disc, zero));
    if (_mm_movemask_pd(live) == 0) {
      _mm_storeu_pd(t + i, none);
      continue;
    }
    const v2 s = _mm_sqrt_pd(disc);
    const v2 minus_b = _mm_xor_pd(b, sign);
    const v2 t1 = _mm_div_pd(sub(minus_b, s), a), t2 = _mm_div_pd(add(minus_b, s), a);
    const v2 near = _mm_min_pd(t1, t2);  // t1 < t2 ? t1 : t2
    const v2 far = _mm_max_pd(t2, t1);   // t1 < t2 ? t2 : t1
    const v2 length = _mm_loadu_pd(c[c_length] + k);
    // A root counts if above 1e-6 and within the segment, ends included.
    const auto counts = [&](v2 root) {
      const v2 h = dot3(add(ox, mul(root, ray2.dx)), add(oy, mul(root, ray2.dy)), add(oz, mul(root, ray2.dz)), ax, ay,
                        az);
      return _mm_and_pd(_mm_cmpgt_pd(root, tolerance), _mm_and_pd(_mm_cmpge_pd(h, zero), _mm_cmple_pd(h, length)));
    };
    const v2 near_counts = counts(near), far_counts = counts(far);
    const v2 taken = select(near_counts, near, far);
    _mm_storeu_pd(t + i, select(_mm_and_pd(live, _mm_or_pd(near_counts, far_counts)), taken, none));
    any = true;
  }
  return any;
}

bool triangle_candidates(const triangle_set& tri, std::uint32_t first, std::uint32_t count, const ray& r, double* t,
                         double* b1, double* b2) {
  const ray_lanes ray2(r);
  const v2 tolerance = both(self_hit_tolerance), zero = _mm_setzero_pd(), one = both(1.0);
  bool any = false;
  for (std::uint32_t i = 0; i < count; i += 2) {
    const std::uint32_t k = first + i;
    const v2 nx = _mm_loadu_pd(tri[n_x] + k), ny = _mm_loadu_pd(tri[n_y] + k), nz = _mm_loadu_pd(tri[n_z] + k);
    const v2 denom = dot3(ray2.dx, ray2.dy, ray2.dz, nx, ny, nz);
    const v2 root = _mm_div_pd(sub(_mm_loadu_pd(tri[t_offset] + k), dot3(ray2.ox, ray2.oy, ray2.oz, nx, ny, nz)), denom);
    // Parallel to the plane, or the root not above 1e-6: no hit.
    const v2 live = _mm_and_pd(_mm_cmpneq_pd(denom, zero), _mm_cmpgt_pd(root, tolerance));
    if (_mm_movemask_pd(live) == 0) {
      _mm_storeu_pd(t + i, none);
      continue;
    }
    const v2 px = add(ray2.ox, mul(root, ray2.dx)), py = add(ray2.oy, mul(root, ray2.dy));
    const v2 pz = add(ray2.oz, mul(root, ray2.dz));
    const auto weight = [&](triangle_column x) {
      return add(dot3(_mm_loadu_pd(tri[x] + k), _mm_loadu_pd(tri[x + 1] + k), _mm_loadu_pd(tri[x + 2] + k), px, py, pz),
                 _mm_loadu_pd(tri[x + 3] + k));
    };
    const v2 w1 = weight(w1_x), w2 = weight(w2_x);
    const v2 w0 = sub(sub(one, w1), w2);
    // Each weight within 0 .. 1, ends included: a weight is refused only
    // below 0 or above 1.
    const auto within = [&](v2 w) { return _mm_and_pd(_mm_cmpnlt_pd(w, zero), _mm_cmpngt_pd(w, one)); };
    const v2 inside = _mm_and_pd(within(w1), _mm_and_pd(within(w2), within(w0)));
    _mm_storeu_pd(t + i, select(_mm_and_pd(live, inside), root, none));
    _mm_storeu_pd(b1 + i, w1);
    _mm_storeu_pd(b2 + i, w2);
    any = true;
  }
  return any;
}

}  // namespace sciray
