// sphere_columns.h - the scene's spheres, one array per quantity, so that
// the spheres of a leaf are tested several at a time.
#pragma once

#include <cstdint>
#include <vector>

#include "geometry/sphere.h"

namespace sciray {

struct sphere_columns {
  std::vector<double> x, y, z, radius_squared, radius;

  std::size_t size() const { return radius.size(); }
  void add(const sphere& s);
  // Spare entries at the end, so that a test of the last spheres may read
  // a few lanes beyond them.
  void pad();
  sphere at(std::uint32_t k) const;
};

// Tests spheres first .. first + count - 1 (at most 8) in that order, as
// sphere::intersect would one after the other: lowers `distance` to the
// root taken and returns the index of the last sphere that took one, or -1.
int take_spheres(const sphere_columns& s, std::uint32_t first, std::uint32_t count, const ray& r, double& distance);

}  // namespace sciray
