// scene_geometry.h - every primitive of the scene, ready for tracing: kept
// by kind in flat arrays in the order of the hierarchy's leaves, so that the
// walk tests a leaf's primitives without a virtual call and reads memory in
// order, with the shading data apart from what the tests read.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "geometry/cylinder.h"
#include "geometry/hit_record.h"
#include "geometry/leaf_candidates.h"
#include "geometry/sphere.h"
#include "geometry/triangle.h"
#include "math/bounding_hierarchy.h"
#include "math/ray.h"

namespace sciray {

class material;

// Where a triangle's corner normals and values are kept.
struct triangle_corners {
  static constexpr std::uint32_t face = ~std::uint32_t{0};  // a corner normal that is the face normal
  static constexpr std::uint32_t zeros = ~std::uint32_t{0};  // corner values all 0
  std::uint32_t normal[3] = {face, face, face};  // indices into the corner normal table
  std::uint32_t values = zeros;                  // index into the corner value table
};

class scene_geometry {
 public:
  std::size_t size() const { return spheres_.size() + cylinders_.size() + triangles_.size(); }

  // Tests every primitive of every leaf the ray enters, nearest box first,
  // adding one to `test_count` per test; `hit` ends holding the nearest hit,
  // and when a triangle was taken, the shading data of the last one taken.
  // True if any primitive was hit.
  bool intersect(const ray& r, hit_record& hit, std::uint32_t& test_count) const;
  // The normal (and a cylinder's value) of a sphere or cylinder hit (a
  // triangle's were written when it was hit).
  void surface(const ray& r, hit_record& hit) const;
  const material* material_of(primitive_ref p) const;

  const bounding_hierarchy& hierarchy() const { return hierarchy_; }
  // The primitives leaf by leaf, as the walk tests them.
  const std::vector<primitive_ref>& leaf_order() const { return items_; }
  sphere sphere_at(std::uint32_t i) const;
  cylinder_shape cylinder_at(std::uint32_t i) const;
  const cylinder_surface& cylinder_surface_at(std::uint32_t i) const { return cylinder_surfaces_[i]; }
  triangle_shape triangle_at(std::uint32_t i) const;
  // Corner k's normal and value of triangle i.
  direction corner_normal(std::uint32_t i, int k) const;
  double corner_value(std::uint32_t i, int k) const;

 private:
  friend class geometry_builder;

  // The tag of a leaf whose primitives are not all of one kind; a leaf of
  // one kind is tagged with the kind and starts at its first primitive in
  // that kind's array.
  static constexpr std::uint32_t mixed_leaf = 3;

  bounding_hierarchy hierarchy_;
  std::vector<primitive_ref> items_;
  // What the tests read, one array per quantity; what shading reads beside it.
  sphere_set spheres_;
  std::vector<double> sphere_radius_;
  cylinder_set cylinders_;
  std::vector<cylinder_surface> cylinder_surfaces_;
  triangle_set triangles_;
  // The triangles' corner data and materials stay in the order read: entry
  // i of triangle_source_ is where triangle i's are.
  std::vector<std::uint32_t> triangle_source_;
  std::vector<triangle_corners> triangle_corners_;
  std::vector<vector> corner_normals_;
  std::vector<std::array<double, 3>> corner_values_;
  std::array<std::vector<std::uint32_t>, 3> materials_;  // per kind, into material_list_
  std::vector<const material*> material_list_;
};

}  // namespace sciray
