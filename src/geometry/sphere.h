// sphere.h - a ball given by centre and radius; symbols are drawn with it.
#pragma once

#include "geometry/shape.h"

namespace sciray {

struct sphere {
  position center;
  double radius;

  bounding_box bounds() const;
  // The reference test: the nearer root of the ray if it lies above 1e-6
  // and strictly below `distance`, else the farther one on the same terms
  // (a ray from inside, or from the surface). A grazing ray (a discriminant
  // of exactly 0) misses. set::candidates must match it.
  bool intersect(const ray& r, double& distance) const;

  class set;  // the shapes of this kind in a scene, laid out for the walk
};

// The spheres of a scene in leaf order: centre and squared radius.
class sphere::set {
 public:
  enum column : std::size_t { center_x, center_y, center_z, radius_squared, column_count };
  static constexpr bool takes_equal_roots = false;

  set() = default;
  set(shape_list<sphere> read, const std::vector<std::uint32_t>& order);

  std::size_t size() const { return columns_.size(); }
  double at(column q, std::uint32_t i) const { return columns_.at(q, i); }

  // The operations of sphere::intersect, two spheres at a time.
  bool candidates(std::uint32_t first, std::uint32_t count, const ray& r, double* t) const;
  // The outward normal at `p`, also for a ray from inside; `value` is left alone.
  void surface(std::uint32_t i, const position& p, hit_record& hit) const;

 private:
  shape_columns<column_count> columns_;
};

}  // namespace sciray
