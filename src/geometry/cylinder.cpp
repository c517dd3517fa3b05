// cylinder.cpp - construction, bounds and surface data of the open tube.
#include "geometry/cylinder.h"

#include <limits>

namespace sciray {

cylinder::cylinder(const position& start, const position& end_point, double radius)
    : shape{start, normalise(end_point - start), length(end_point - start), radius * radius},
      surface{radius, 0.0, 0.0},
      end(end_point) {
  // Coincident ends or a zero radius: kept, never hit.
  if (shape.length == 0.0 || radius == 0.0) shape.length = std::numeric_limits<double>::quiet_NaN();
}

bounding_box cylinder::bounds() const { return bounding_box::cubes(shape.start, end, surface.radius); }

void cylinder_surface::fill(const cylinder_shape& shape, const position& p, hit_record& hit) const {
  const double h = dot(p - shape.start, shape.axis);
  const position foot = shape.start + h * shape.axis;
  const vector radial = p - foot;
  hit.normal = normalise(radial);
  const double s = h / shape.length;
  hit.value = (1.0 - s) * value_start + s * value_end;
}

}  // namespace sciray
