// sphere.cpp - bounds and surface data of the sphere.
#include "geometry/sphere.h"

namespace sciray {

bounding_box sphere::bounds() const {
  bounding_box box;
  box.widen(center, radius);
  return box;
}

void sphere::surface(const position& p, hit_record& hit) const { hit.normal = normalise(p - center); }

}  // namespace sciray
