// sphere.h - a ball given by centre and radius; symbols are drawn with it.
#pragma once

#include <cmath>

#include "geometry/hit_record.h"
#include "math/bounding_box.h"
#include "math/ray.h"

namespace sciray {

struct sphere {
  sphere(const position& c, double r) : center(c), radius(r), radius_squared(r * r) {}

  bounding_box bounds() const;

  // Takes the ray's nearer root if it lies above 1e-6 and strictly below
  // `distance`, else the farther one on the same terms (a ray from inside or
  // from the surface), writing it to `distance`. A grazing ray (a zero
  // discriminant) misses. Inline: the walk calls it for every sphere of every
  // leaf it enters.
  bool intersect(const ray& r, double& distance) const {
    // Quadratic in t with leading coefficient 1, the direction being a unit vector.
    const vector oc = r.origin - center;
    const double b = 2.0 * dot(r.dir, oc);
    const double c = dot(oc, oc) - radius_squared;
    const double disc = b * b - 4.0 * c;
    if (!(disc > 0.0)) return false;
    const double s = std::sqrt(disc);
    const double q1 = -0.5 * (b + s), q2 = -0.5 * (b - s);
    const double near = q1 < q2 ? q1 : q2, far = q1 < q2 ? q2 : q1;
    if (near > self_hit_tolerance && near < distance) {
      distance = near;
      return true;
    }
    if (far > self_hit_tolerance && far < distance) {
      distance = far;
      return true;
    }
    return false;
  }

  // The outward normal at the hit point `p`, also for a ray from inside.
  void surface(const position& p, hit_record& hit) const;

  position center;
  double radius;
  double radius_squared;
};

}  // namespace sciray
