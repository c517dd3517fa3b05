// triangle.cpp - the triangle's plane and inverted corner frame, and the
// interpolated shading data of a hit.
#include "geometry/triangle.h"

#include <limits>

#include "math/matrix4.h"

namespace sciray {

triangle::triangle(const position& p0, const position& p1, const position& p2) {
  const vector e1 = p1 - p0, e2 = p2 - p0;
  shape.normal = normalise(cross(e1, e2));
  shape.offset = dot(shape.normal, p0);

  // The frame's columns are e1, e2, the normal and p0; the first two rows of
  // its inverse map a point to the weights of corners 1 and 2. A degenerate
  // triangle has no inverse and is never hit.
  const matrix4 frame{{{e1.x, e2.x, shape.normal.x, p0.x},
                       {e1.y, e2.y, shape.normal.y, p0.y},
                       {e1.z, e2.z, shape.normal.z, p0.z},
                       {0.0, 0.0, 0.0, 1.0}}};
  matrix4 to_local{};
  valid = invert(frame, to_local);
  for (int c = 0; c < 4; ++c) {
    shape.weight1[c] = to_local[0][c];
    shape.weight2[c] = to_local[1][c];
  }
  if (!valid) shape.offset = std::numeric_limits<double>::quiet_NaN();

  box = bounding_box::corners(p0, p1, p2);
}

void fill_triangle_hit(const direction corner_normal[3], const double corner_value[3], double b1, double b2,
                       hit_record& hit) {
  const double b0 = (1.0 - b1) - b2;
  hit.normal = normalise((b0 * corner_normal[0] + b1 * corner_normal[1]) + b2 * corner_normal[2]);
  hit.value = (b0 * corner_value[0] + b1 * corner_value[1]) + b2 * corner_value[2];
}

}  // namespace sciray
