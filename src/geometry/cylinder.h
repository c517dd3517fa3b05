// cylinder.h - an open tube between two points, without end caps: one
// segment of a poly-line. Contour lines carry a data value at each end.
#pragma once

#include "geometry/shape.h"

namespace sciray {

struct cylinder {
  position start, end;
  double radius;
  double value_start = 0.0, value_end = 0.0;

  bounding_box bounds() const;
  // The reference test: the nearer, else the farther root of the ray that
  // lies above 1e-6, strictly below `distance` and within the segment (ends
  // included); a near root beyond an end lets the far one show the inside
  // wall. A tangent ray (zero discriminant) hits; a ray parallel to the axis
  // never does, nor does a tube of no length or no radius.
  // set::candidates must match it.
  bool intersect(const ray& r, double& distance) const;

  class set;  // the shapes of this kind in a scene, laid out for the walk
};

// The cylinders of a scene in leaf order: start, unit axis, length (not a
// number for a tube that is never hit) and squared radius; beside them the
// data values of the ends.
class cylinder::set {
 public:
  enum column : std::size_t {
    start_x, start_y, start_z, axis_x, axis_y, axis_z, axis_length, radius_squared,
    column_count
  };
  static constexpr bool takes_equal_roots = false;

  set() = default;
  set(shape_list<cylinder> read, const std::vector<std::uint32_t>& order);

  std::size_t size() const { return columns_.size(); }
  double at(column q, std::uint32_t i) const { return columns_.at(q, i); }
  double value_start(std::uint32_t i) const { return values_[i].start; }
  double value_end(std::uint32_t i) const { return values_[i].end; }

  // The operations of cylinder::intersect, two cylinders at a time.
  bool candidates(std::uint32_t first, std::uint32_t count, const ray& r, double* t) const;
  // The normal away from the axis at `p` (also on the inside wall) and the
  // data value interpolated along the axis.
  void surface(std::uint32_t i, const position& p, hit_record& hit) const;

 private:
  struct end_values {
    double start, end;
  };

  shape_columns<column_count> columns_;
  std::vector<end_values> values_;
};

}  // namespace sciray
