// triangle.cpp - the smooth-shaded triangle: barycentric weights from the
// inverted corner frame, and the interpolated normal and value of a hit.
#include "geometry/triangle.h"

#include "shading/ray_state.h"
#include "shading/render_context.h"

namespace sciray {

triangle::triangle(const position& p0, const position& p1, const position& p2) {
  const vector e1 = p1 - p0, e2 = p2 - p0;
  // Counter-clockwise corners, seen from the front, face the normal.
  normal_ = normalise(cross(e1, e2));
  point_ = p0;
  offset_ = dot(normal_, p0);
  for (direction& n : corner_normal_) n = normal_;

  // The frame's columns are e1, e2, the normal and p0; its inverse maps a
  // point to the weights of corners 1 and 2 (rows 0 and 1). A degenerate
  // triangle has no inverse and is never hit.
  const matrix4 frame{{{e1.x, e2.x, normal_.x, p0.x},
                       {e1.y, e2.y, normal_.y, p0.y},
                       {e1.z, e2.z, normal_.z, p0.z},
                       {0.0, 0.0, 0.0, 1.0}}};
  valid_ = invert(frame, to_local_) ? 1 : 0;

  box_.widen(p0);
  box_.widen(p1);
  box_.widen(p2);
}

void triangle::set_corner_normals(const direction& n0, const direction& n1, const direction& n2) {
  corner_normal_[0] = n0;
  corner_normal_[1] = n1;
  corner_normal_[2] = n2;
}

void triangle::set_corner_values(double v0, double v1, double v2) {
  corner_value_[0] = v0;
  corner_value_[1] = v1;
  corner_value_[2] = v2;
}

bool triangle::intersect(const ray& r, hit_record& hit, render_context& context) const {
  ++context.test_count;
  if (!valid_) return false;
  double t;
  if (!plane_root(r, t) || t > hit.distance) return false;
  const position p = r.origin + t * r.dir;

  // Edges and corners belong to the triangle: all bounds are inclusive.
  const auto& row0 = to_local_[0];
  const double b1 = row0[0] * p.x + row0[1] * p.y + row0[2] * p.z + row0[3];
  if (b1 < 0.0 || b1 > 1.0) return false;
  const auto& row1 = to_local_[1];
  const double b2 = row1[0] * p.x + row1[1] * p.y + row1[2] * p.z + row1[3];
  if (b2 < 0.0 || b2 > 1.0) return false;
  const double b0 = (1.0 - b1) - b2;
  if (b0 < 0.0 || b0 > 1.0) return false;

  // The weights are at hand, so the shading data is written here.
  hit.distance = t;
  hit.object = this;
  hit.normal = normalise((b0 * corner_normal_[0] + b1 * corner_normal_[1]) + b2 * corner_normal_[2]);
  hit.value = (b0 * corner_value_[0] + b1 * corner_value_[1]) + b2 * corner_value_[2];
  hit.surface_coords = vector(b1, b2, 0.0);
  return true;
}

// The weights were at hand in intersect(), which wrote the hit's surface data.
void triangle::surface(ray_state&) const {}

}  // namespace sciray
