// cylinder.cpp - construction, bounds and surface data of the open tube.
#include "geometry/cylinder.h"

#include <limits>

namespace sciray {

cylinder::cylinder(const position& start, const position& end_point, double radius)
    : shape{start, normalise(end_point - start), length(end_point - start), radius * radius},
      surface{radius, direction(), 0.0, 0.0},
      end(end_point) {
  // Coincident ends or a zero radius: kept, never hit.
  if (shape.length == 0.0 || radius == 0.0) shape.length = std::numeric_limits<double>::quiet_NaN();
  // The angle coordinate starts from a fixed perpendicular to the axis.
  const direction& a = shape.axis;
  surface.reference = (a.x == 0.0 && a.y == 0.0 && a.z == 1.0) ? direction(1.0, 0.0, 0.0)
                                                                : normalise(cross(vector(0.0, 0.0, 1.0), a));
}

bounding_box cylinder::bounds() const {
  bounding_box box;
  box.widen(shape.start, surface.radius);
  box.widen(end, surface.radius);
  return box;
}

void cylinder_surface::fill(const cylinder_shape& shape, const position& p, hit_record& hit) const {
  const double h = dot(p - shape.start, shape.axis);
  const position foot = shape.start + h * shape.axis;
  const vector radial = p - foot;
  hit.normal = normalise(radial);
  const double s = h / shape.length;
  hit.value = (1.0 - s) * value_start + s * value_end;
  const double u = radius * std::atan2(dot(radial, cross(shape.axis, reference)), dot(radial, reference));
  hit.surface_coords = vector(u, h, 0.0);
}

}  // namespace sciray
