// sphere.cpp - the sphere's bounds, its reference test and the same test two
// spheres at a time, and the normal of a hit.
#include "geometry/sphere.h"

#include <cmath>
#include <initializer_list>

#include "geometry/lanes.h"

namespace sciray {

bounding_box sphere::bounds() const { return bounding_box::cube(center, radius); }

bool sphere::intersect(const ray& r, double& distance) const {
  // Quadratic in t with leading coefficient 1, the direction being a unit vector.
  const vector oc = r.origin - center;
  const double b = 2.0 * dot(r.dir, oc);
  const double c = dot(oc, oc) - radius * radius;
  const double disc = b * b - 4.0 * c;
  if (!(disc > 0.0)) return false;
  const double s = std::sqrt(disc);
  const double q1 = -0.5 * (b + s), q2 = -0.5 * (b - s);
  const double near = q1 < q2 ? q1 : q2, far = q1 < q2 ? q2 : q1;
  for (const double t : {near, far}) {
    if (t > self_hit_tolerance && t < distance) {
      distance = t;
      return true;
    }
  }
  return false;
}

sphere::set::set(shape_list<sphere> read, const std::vector<std::uint32_t>& order) {
  columns_.reserve(order.size());
  for (const std::uint32_t i : order) {
    const sphere& s = read[i];
    columns_.add({s.center.x, s.center.y, s.center.z, s.radius * s.radius});
  }
  columns_.pad();
}

bool sphere::set::candidates(std::uint32_t first, std::uint32_t count, const ray& r, double* t) const {
  using namespace lanes;
  const ray_lanes ray2(r);
  const v2 tolerance = both(self_hit_tolerance);
  bool any = false;
  for (std::uint32_t i = 0; i < count; i += 2) {
    const std::uint32_t k = first + i;
    const v2 ocx = sub(ray2.ox, load(columns_[center_x], k));
    const v2 ocy = sub(ray2.oy, load(columns_[center_y], k));
    const v2 ocz = sub(ray2.oz, load(columns_[center_z], k));
    const v2 b = mul(both(2.0), dot3(ray2.dx, ray2.dy, ray2.dz, ocx, ocy, ocz));
    const v2 c = sub(dot3(ocx, ocy, ocz, ocx, ocy, ocz), load(columns_[radius_squared], k));
    const v2 disc = sub(mul(b, b), mul(both(4.0), c));
    const v2 live = _mm_cmpgt_pd(disc, _mm_setzero_pd());
    // Most pairs miss both: their discriminants rule out every root.
    if (_mm_movemask_pd(live) == 0) {
      _mm_storeu_pd(t + i, none());
      continue;
    }
    const v2 root = _mm_sqrt_pd(disc);
    const v2 q1 = mul(both(-0.5), add(b, root)), q2 = mul(both(-0.5), sub(b, root));
    const v2 near = _mm_min_pd(q1, q2);  // q1 < q2 ? q1 : q2
    const v2 far = _mm_max_pd(q2, q1);   // q1 < q2 ? q2 : q1
    const v2 taken = select(_mm_cmpgt_pd(near, tolerance), near, far);
    _mm_storeu_pd(t + i, select(_mm_and_pd(live, _mm_cmpgt_pd(taken, tolerance)), taken, none()));
    any = true;
  }
  return any;
}

void sphere::set::surface(std::uint32_t i, const position& p, hit_record& hit) const {
  const position center(columns_.at(center_x, i), columns_.at(center_y, i), columns_.at(center_z, i));
  hit.normal = normalise(p - center);
}

}  // namespace sciray
