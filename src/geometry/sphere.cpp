// sphere.cpp - ray intersection and surface data of the sphere.
#include "geometry/sphere.h"

#include <cmath>

#include "shading/ray_state.h"
#include "shading/render_context.h"

namespace sciray {

sphere::sphere(const position& center, double radius)
    : center_(center),
      radius_(radius),
      pole_(normalise(vector(0.0, 0.0, 1.0))),
      equator_(normalise(vector(1.0, 0.0, 0.0))) {
  box_.widen(center_, radius_);
}

bool sphere::intersect(const ray& r, hit_record& hit, render_context& context) const {
  ++context.test_count;
  // Quadratic in t with leading coefficient 1, the direction being a unit vector.
  const vector oc = r.origin - center_;
  const double b = 2.0 * dot(r.dir, oc);
  const double c = dot(oc, oc) - radius_ * radius_;
  const double disc = b * b - 4.0 * c;
  // A grazing ray (disc exactly 0) misses.
  if (!(disc > 0.0)) return false;
  const double s = std::sqrt(disc);
  const double q1 = -0.5 * (b + s), q2 = -0.5 * (b - s);
  const double near = q1 < q2 ? q1 : q2, far = q1 < q2 ? q2 : q1;
  // The far root serves rays that start inside or on the surface.
  for (const double t : {near, far}) {
    if (t > self_hit_tolerance && t < hit.distance) {
      hit.distance = t;
      hit.object = this;
      return true;
    }
  }
  return false;
}

void sphere::surface(ray_state& state) const {
  const direction n = normalise(state.hit_point() - center_);
  state.hit.normal = n;
  // Longitude from the equator axis and latitude, both as arc lengths.
  const double x = dot(n, equator_);
  const double y = dot(n, cross(pole_, equator_));
  const double z = dot(n, pole_);
  state.hit.surface_coords = vector(radius_ * std::atan2(y, x), radius_ * std::asin(z), 0.0);
}

}  // namespace sciray
