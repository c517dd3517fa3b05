// cylinder.h - an open tube between two points; one segment of a poly-line.
// The walk reads only the cylinder's shape (64 bytes); shading reads its
// surface part as well.
#pragma once

#include <cmath>
#include <initializer_list>

#include "geometry/hit_record.h"
#include "math/bounding_box.h"
#include "math/ray.h"

namespace sciray {

struct cylinder_shape {
  position start;
  direction axis;         // unit vector from start towards the end
  double length;          // start to end; not a number for a cylinder that is never hit
  double radius_squared;

  // Takes the nearer root, else the farther one, that lies above 1e-6,
  // strictly below `distance` and within the segment (ends included),
  // writing it to `distance`. A tangent ray (zero discriminant) hits; a ray
  // parallel to the axis never does. Inline: the walk calls it for every
  // cylinder of every leaf it enters.
  bool intersect(const ray& r, double& distance) const {
    // Work with the parts of origin and direction perpendicular to the axis.
    const vector o = r.origin - start;
    const vector d_perp = r.dir - dot(r.dir, axis) * axis;
    const vector o_perp = o - dot(o, axis) * axis;
    const double a = dot(d_perp, d_perp);
    if (a == 0.0) return false;
    const double b = dot(o_perp, d_perp);
    const double c = dot(o_perp, o_perp) - radius_squared;
    const double disc = b * b - a * c;
    if (disc < 0.0) return false;
    const double s = std::sqrt(disc);
    const double t1 = (-b - s) / a, t2 = (-b + s) / a;
    const double near = t1 < t2 ? t1 : t2, far = t1 < t2 ? t2 : t1;
    // A near root beyond an end still lets the far root show the inside wall.
    for (const double t : {near, far}) {
      if (!(t > self_hit_tolerance && t < distance)) continue;
      const double h = dot(o + t * r.dir, axis);
      if (h >= 0.0 && h <= length) {
        distance = t;
        return true;
      }
    }
    return false;
  }
};

struct cylinder_surface {
  double radius;
  double value_start = 0.0, value_end = 0.0;  // data values at the ends (contour lines)

  // The outward normal (also on the inside wall) and the value interpolated
  // along the axis at the hit point `p`.
  void fill(const cylinder_shape& shape, const position& p, hit_record& hit) const;
};

// A cylinder as the scene reader makes it.
struct cylinder {
  cylinder(const position& start, const position& end, double radius);
  bounding_box bounds() const;

  cylinder_shape shape;
  cylinder_surface surface;
  position end;
};

}  // namespace sciray
