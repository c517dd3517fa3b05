// cylinder.h - an open tube between two points; one segment of a poly-line.
#pragma once

#include "geometry/primitive.h"

namespace sciray {

class cylinder : public primitive {
 public:
  cylinder(const position& start, const position& end, double radius);

  const bounding_box* bounds() const override { return &box_; }
  bool intersect(const ray& r, hit_record& hit, render_context& context) const override;

  // Data values at the two ends (contour lines); written by the reader.
  double value_start = 0.0;
  double value_end = 0.0;

  const direction& axis() const { return axis_; }
  const direction& reference() const { return reference_; }
  double length() const { return length_; }

 private:
  void surface(ray_state& state) const override;

  position start_, end_;
  double radius_;
  direction axis_;
  double length_;
  bounding_box box_;
  direction reference_;  // zero of the angle coordinate, perpendicular to the axis
};

}  // namespace sciray
