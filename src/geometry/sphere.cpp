// sphere.cpp - bounds and surface data of the sphere.
#include "geometry/sphere.h"

namespace sciray {

namespace {
// The axes of the surface coordinates: latitude about the pole, longitude
// from the equator axis.
const direction pole = normalise(vector(0.0, 0.0, 1.0));
const direction equator = normalise(vector(1.0, 0.0, 0.0));
}  // namespace

bounding_box sphere::bounds() const {
  bounding_box box;
  box.widen(center, radius);
  return box;
}

void sphere::surface(const position& p, hit_record& hit) const {
  const direction n = normalise(p - center);
  hit.normal = n;
  const double x = dot(n, equator);
  const double y = dot(n, cross(pole, equator));
  const double z = dot(n, pole);
  hit.surface_coords = vector(radius * std::atan2(y, x), radius * std::asin(z), 0.0);
}

}  // namespace sciray
