// ray.h - a ray's origin and unit direction, with the reciprocal direction
// that the box test of the bounding hierarchy uses.
#pragma once

#include "math/vector.h"

namespace sciray {

struct ray {
  position origin;
  direction dir;
  vector inv_dir{1.0, 1.0, 1.0};  // 1 / component; a zero component gives 1.0

  ray() = default;
  ray(const position& o, const direction& d) : origin(o), dir(d), inv_dir(reciprocal(d)) {}

  // The point at distance t along the ray.
  position at(double t) const { return origin + t * dir; }

  static vector reciprocal(const direction& d) {
    return {d.x == 0.0 ? 1.0 : 1.0 / d.x, d.y == 0.0 ? 1.0 : 1.0 / d.y, d.z == 0.0 ? 1.0 : 1.0 / d.z};
  }
};

// The distance limit of a ray that goes on for ever.
inline constexpr double unlimited = 1e20;

// A ray and the distance it ends at.
struct bounded_ray {
  ray r;
  double limit = unlimited;
};

// The ray from `origin` to `target`.
inline bounded_ray ray_between(const position& origin, const position& target) {
  const vector to_target = target - origin;
  return {ray(origin, normalise(to_target)), length(to_target)};
}

}  // namespace sciray
