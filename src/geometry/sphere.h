// sphere.h - a ball given by centre and radius; symbols are drawn with it.
#pragma once

#include <cstdint>
#include <vector>

#include "geometry/shape.h"
#include "geometry/shape_columns.h"

namespace sciray {

class sphere_set;

struct sphere {
  using list = shape_list<sphere>;
  using set = sphere_set;

  position center;
  double radius;

  bounding_box bounds() const;
  // The reference test: the nearer root of the ray if it lies above 1e-6
  // and strictly below `distance`, else the farther one on the same terms
  // (a ray from inside, or from the surface). A grazing ray (a discriminant
  // of exactly 0) misses. sphere_set::candidates must match it.
  bool intersect(const ray& r, double& distance) const;
};

// The spheres of a scene in leaf order: centre and squared radius.
class sphere_set {
 public:
  enum column : std::size_t { center_x, center_y, center_z, radius_squared, column_count };
  static constexpr bool takes_equal_roots = false;

  sphere_set() = default;
  sphere_set(sphere::list read, const std::vector<std::uint32_t>& order);

  std::size_t size() const { return columns_.size(); }
  double at(column q, std::uint32_t i) const { return columns_.at(q, i); }

  // The reference test, two spheres at a time.
  bool candidates(std::uint32_t first, std::uint32_t count, const ray& r, double* t) const;
  // The outward normal at `p`, also for a ray from inside; `value` is left alone.
  void surface(std::uint32_t i, const position& p, hit_record& hit) const;

 private:
  shape_columns<column_count> columns_;
};

}  // namespace sciray
