// sphere.cpp - bounds and surface data of the sphere.
#include "geometry/sphere.h"

namespace sciray {

bounding_box sphere::bounds() const { return bounding_box::cube(center, radius); }

void sphere::surface(const position& p, hit_record& hit) const { hit.normal = normalise(p - center); }

}  // namespace sciray
