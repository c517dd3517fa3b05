// cylinder.cpp - ray intersection and surface data of the open tube.
#include "geometry/cylinder.h"

#include <cmath>

#include "shading/ray_state.h"
#include "shading/render_context.h"

namespace sciray {

cylinder::cylinder(const position& start, const position& end, double radius)
    : start_(start), end_(end), radius_(radius), axis_(normalise(end - start)), length_(sciray::length(end - start)) {
  box_.widen(start_, radius_);
  box_.widen(end_, radius_);
  // The angle coordinate starts from a fixed perpendicular to the axis.
  if (axis_.x == 0.0 && axis_.y == 0.0 && axis_.z == 1.0)
    reference_ = direction(1.0, 0.0, 0.0);
  else
    reference_ = normalise(cross(vector(0.0, 0.0, 1.0), axis_));
}

bool cylinder::intersect(const ray& r, hit_record& hit, render_context& context) const {
  ++context.test_count;
  if (length_ == 0.0 || radius_ == 0.0) return false;
  // Work with the parts of origin and direction perpendicular to the axis.
  const vector o = r.origin - start_;
  const vector d_perp = r.dir - dot(r.dir, axis_) * axis_;
  const vector o_perp = o - dot(o, axis_) * axis_;
  const double a = dot(d_perp, d_perp);
  if (a == 0.0) return false;
  const double b = dot(o_perp, d_perp);
  const double c = dot(o_perp, o_perp) - radius_ * radius_;
  const double disc = b * b - a * c;
  // A tangent ray (disc exactly 0) hits.
  if (disc < 0.0) return false;
  const double s = std::sqrt(disc);
  const double t1 = (-b - s) / a, t2 = (-b + s) / a;
  const double near = t1 < t2 ? t1 : t2, far = t1 < t2 ? t2 : t1;
  // A near root beyond an end still lets the far root show the inside wall.
  for (const double t : {near, far}) {
    if (!(t > self_hit_tolerance && t < hit.distance)) continue;
    const double h = dot(o + t * r.dir, axis_);
    if (h >= 0.0 && h <= length_) {
      hit.distance = t;
      hit.object = this;
      return true;
    }
  }
  return false;
}

void cylinder::surface(ray_state& state) const {
  const position p = state.hit_point();
  const double h = dot(p - start_, axis_);
  const position foot = start_ + h * axis_;
  const vector radial = p - foot;
  state.hit.normal = normalise(radial);
  const double s = h / length_;
  state.hit.value = (1.0 - s) * value_start + s * value_end;
  const double u = radius_ * std::atan2(dot(radial, cross(axis_, reference_)), dot(radial, reference_));
  state.hit.surface_coords = vector(u, h, 0.0);
}

}  // namespace sciray
