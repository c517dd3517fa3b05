// triangle.h - a smooth-shaded polygon piece: the walk reads its plane and
// the two rows of its inverted corner frame that give barycentric weights;
// shading interpolates the corner normals and data values with them.
#pragma once

#include "geometry/hit_record.h"
#include "math/bounding_box.h"
#include "math/ray.h"

namespace sciray {

struct triangle_shape {
  direction normal;   // unit plane normal, e1 x e2 normalised
  double offset;      // normal . corner 0; not a number for a degenerate triangle, never hit
  double weight1[4];  // maps a point (x, y, z, 1) to the weight of corner 1
  double weight2[4];  // and of corner 2

  // The plane step (either side counts; a ray parallel to the plane misses),
  // then the weights: true with the root in `t` and the weights of corners
  // 1 and 2 when the root lies above 1e-6, not beyond `distance` (a root
  // equal to it is taken) and inside the triangle, edges and corners
  // included. Inline: the walk calls it for every triangle of every leaf it
  // enters.
  bool intersect(const ray& r, double distance, double& t, double& b1, double& b2) const {
    const double denom = dot(r.dir, normal);
    if (denom == 0.0) return false;
    t = (offset - dot(r.origin, normal)) / denom;
    if (!(t > self_hit_tolerance) || t > distance) return false;
    const position p = r.origin + t * r.dir;
    b1 = weight1[0] * p.x + weight1[1] * p.y + weight1[2] * p.z + weight1[3];
    if (b1 < 0.0 || b1 > 1.0) return false;
    b2 = weight2[0] * p.x + weight2[1] * p.y + weight2[2] * p.z + weight2[3];
    if (b2 < 0.0 || b2 > 1.0) return false;
    const double b0 = (1.0 - b1) - b2;
    return !(b0 < 0.0 || b0 > 1.0);
  }
};

// A triangle as the scene reader makes it from three corners, counter-
// clockwise seen from the front.
struct triangle {
  triangle(const position& p0, const position& p1, const position& p2);
  bounding_box bounds() const { return box; }

  triangle_shape shape;
  bool valid;  // false when the corners are collinear or coincide
  bounding_box box;
};

// The shading data of a hit with weights b1, b2 (b0 = 1 - b1 - b2): the
// interpolated corner normal, normalised, and the interpolated corner value.
void fill_triangle_hit(const direction corner_normal[3], const double corner_value[3], double b1, double b2,
                       hit_record& hit);

}  // namespace sciray
