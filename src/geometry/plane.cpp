// plane.cpp - the ray-plane step shared with the triangle, and the plane's
// own intersection and surface data.
#include "geometry/plane.h"

#include "shading/ray_state.h"
#include "shading/render_context.h"

namespace sciray {

plane::plane()
    : normal_(normalise(vector(0.0, 0.0, 1.0))),
      point_(0.0, 0.0, 0.0),
      offset_(0.0),
      u_axis_(normalise(vector(1.0, 0.0, 0.0))),
      v_axis_(normalise(vector(1.0, 0.0, 0.0))) {}

bool plane::plane_root(const ray& r, double& t) const {
  // Either side counts: there is no back-face culling.
  const double denom = dot(r.dir, normal_);
  if (denom == 0.0) return false;
  t = (offset_ - dot(r.origin, normal_)) / denom;
  return t > self_hit_tolerance;
}

bool plane::intersect(const ray& r, hit_record& hit, render_context& context) const {
  ++context.test_count;
  double t;
  // A root at exactly the current distance is still taken.
  if (!plane_root(r, t) || t > hit.distance) return false;
  hit.distance = t;
  hit.object = this;
  return true;
}

void plane::surface(ray_state& state) const {
  const vector local = state.hit_point() - point_;
  state.hit.normal = normal_;
  state.hit.surface_coords = vector(dot(local, u_axis_), dot(local, v_axis_), 0.0);
}

}  // namespace sciray
