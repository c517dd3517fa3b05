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

  static vector reciprocal(const direction& d) {
    return {d.x == 0.0 ? 1.0 : 1.0 / d.x, d.y == 0.0 ? 1.0 : 1.0 / d.y, d.z == 0.0 ? 1.0 : 1.0 / d.z};
  }
};

}  // namespace sciray
