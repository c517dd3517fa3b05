// sphere_columns.cpp - the sphere test two spheres at a time with SSE2.
//
// A sphere's test needs the current distance only at the very end: its
// root candidate - the near root if above 1e-6, else the far one, if that
// is above 1e-6, and nothing when the discriminant is not positive - is
// taken exactly when it lies below the distance (the far root is never
// below the distance when the near one is above 1e-6 but not below it). So
// the candidates are worked out two lanes at a time, with the same
// operations in the same order as the scalar test, and then taken in list
// order: the first of equal roots wins, as one test after another gives.
#include "geometry/sphere_columns.h"

#include <emmintrin.h>

#include <limits>

namespace sciray {

void sphere_columns::add(const sphere& s) {
  x.push_back(s.center.x);
  y.push_back(s.center.y);
  z.push_back(s.center.z);
  radius_squared.push_back(s.radius_squared);
  radius.push_back(s.radius);
}

void sphere_columns::pad() {
  for (std::vector<double>* column : {&x, &y, &z, &radius_squared}) column->resize(radius.size() + 1, 0.0);
}

sphere sphere_columns::at(std::uint32_t k) const { return sphere(position(x[k], y[k], z[k]), radius[k]); }

int take_spheres(const sphere_columns& s, std::uint32_t first, std::uint32_t count, const ray& r, double& distance) {
  const __m128d ox = _mm_set1_pd(r.origin.x), oy = _mm_set1_pd(r.origin.y), oz = _mm_set1_pd(r.origin.z);
  const __m128d dx = _mm_set1_pd(r.dir.x), dy = _mm_set1_pd(r.dir.y), dz = _mm_set1_pd(r.dir.z);
  const __m128d tolerance = _mm_set1_pd(self_hit_tolerance), zero = _mm_setzero_pd();
  const __m128d none = _mm_set1_pd(std::numeric_limits<double>::quiet_NaN());
  alignas(16) double candidate[8];
  bool any = false;
  for (std::uint32_t i = 0; i < count; i += 2) {
    const std::uint32_t k = first + i;
    const __m128d ocx = _mm_sub_pd(ox, _mm_loadu_pd(&s.x[k]));
    const __m128d ocy = _mm_sub_pd(oy, _mm_loadu_pd(&s.y[k]));
    const __m128d ocz = _mm_sub_pd(oz, _mm_loadu_pd(&s.z[k]));
    const __m128d b = _mm_mul_pd(
        _mm_set1_pd(2.0),
        _mm_add_pd(_mm_add_pd(_mm_mul_pd(dx, ocx), _mm_mul_pd(dy, ocy)), _mm_mul_pd(dz, ocz)));
    const __m128d c = _mm_sub_pd(
        _mm_add_pd(_mm_add_pd(_mm_mul_pd(ocx, ocx), _mm_mul_pd(ocy, ocy)), _mm_mul_pd(ocz, ocz)),
        _mm_loadu_pd(&s.radius_squared[k]));
    const __m128d disc = _mm_sub_pd(_mm_mul_pd(b, b), _mm_mul_pd(_mm_set1_pd(4.0), c));
    const __m128d hit = _mm_cmpgt_pd(disc, zero);
    if (_mm_movemask_pd(hit) == 0) {  // both miss, as most do: no square root
      _mm_store_pd(candidate + i, none);
      continue;
    }
    any = true;
    const __m128d root = _mm_sqrt_pd(disc);
    const __m128d q1 = _mm_mul_pd(_mm_set1_pd(-0.5), _mm_add_pd(b, root));
    const __m128d q2 = _mm_mul_pd(_mm_set1_pd(-0.5), _mm_sub_pd(b, root));
    const __m128d near = _mm_min_pd(q1, q2);  // q1 < q2 ? q1 : q2
    const __m128d far = _mm_max_pd(q2, q1);   // q1 < q2 ? q2 : q1
    const __m128d near_ok = _mm_cmpgt_pd(near, tolerance);
    const __m128d t = _mm_or_pd(_mm_and_pd(near_ok, near), _mm_andnot_pd(near_ok, far));
    const __m128d ok = _mm_and_pd(hit, _mm_cmpgt_pd(t, tolerance));
    _mm_store_pd(candidate + i, _mm_or_pd(_mm_and_pd(ok, t), _mm_andnot_pd(ok, none)));
  }
  int taken = -1;
  if (!any) return taken;
  for (std::uint32_t i = 0; i < count; ++i) {
    if (candidate[i] < distance) {
      distance = candidate[i];
      taken = static_cast<int>(i);
    }
  }
  return taken;
}

}  // namespace sciray
