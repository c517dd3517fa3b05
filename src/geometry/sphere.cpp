// sphere.cpp - the sphere's bounds, its reference test and the same test two
// spheres at a time, and the normal of a hit.
#include "geometry/sphere.h"

#include <cmath>
#include <initializer_list>

#include "geometry/sphere_lanes.h"
#include "geometry/pair_roots.h"

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
  return pair_roots(*this, columns_, first, count, r, t);
}

void sphere::set::surface(std::uint32_t i, const position& p, hit_record& hit) const {
  const position center(columns_.at(center_x, i), columns_.at(center_y, i), columns_.at(center_z, i));
  hit.normal = normalise(p - center);
}

}  // namespace sciray
