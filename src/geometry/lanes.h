// lanes.h - what the fast tests of the shapes share: two shapes per SSE2
// register (two doubles, present on every x86-64), each lane doing the
// IEEE operations of the scalar reference test in its order, so that both
// lanes give the bits the reference gives. MINPD and MAXPD return their
// second operand when the first comparison fails, exactly as
// `a < b ? a : b` does, not-a-number included.
#pragma once

#include <emmintrin.h>

#include <cstdint>
#include <limits>

#include "math/ray.h"

namespace sciray::lanes {

using v2 = __m128d;

inline v2 add(v2 a, v2 b) { return _mm_add_pd(a, b); }
inline v2 sub(v2 a, v2 b) { return _mm_sub_pd(a, b); }
inline v2 mul(v2 a, v2 b) { return _mm_mul_pd(a, b); }
inline v2 both(double x) { return _mm_set1_pd(x); }
// Two consecutive entries of a column, from entry k.
inline v2 load(const double* column, std::uint32_t k) { return _mm_loadu_pd(column + k); }
// a.x * b.x + a.y * b.y + a.z * b.z, summed left to right.
inline v2 dot3(v2 ax, v2 ay, v2 az, v2 bx, v2 by, v2 bz) { return add(add(mul(ax, bx), mul(ay, by)), mul(az, bz)); }
// mask ? a : b
inline v2 select(v2 mask, v2 a, v2 b) { return _mm_or_pd(_mm_and_pd(mask, a), _mm_andnot_pd(mask, b)); }
// The root of a lane that has none.
inline v2 none() { return both(std::numeric_limits<double>::quiet_NaN()); }

// The ray, each quantity in both lanes.
struct ray_lanes {
  explicit ray_lanes(const ray& r)
      : ox(both(r.origin.x)), oy(both(r.origin.y)), oz(both(r.origin.z)),
        dx(both(r.dir.x)), dy(both(r.dir.y)), dz(both(r.dir.z)) {}
  v2 ox, oy, oz, dx, dy, dz;
};

}  // namespace sciray::lanes
