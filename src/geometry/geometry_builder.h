// geometry_builder.h - collects the primitives while the scene is read, then
// builds the bounding hierarchy over them and lays them out for tracing.
//
// A large mesh is most of a scene's memory, so a triangle is kept as the
// numbers of its three corners in a table of distinct points (and of its
// corner normals in a table of distinct normals) until the hierarchy is
// built; its box is worked out from the corners when the build asks, and
// its plane and weight rows are made once, in leaf order, afterwards.
#pragma once

#include <array>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "geometry/point_table.h"
#include "geometry/scene_geometry.h"

namespace sciray {

class geometry_builder : private box_source {
 public:
  void add_sphere(const position& center, double radius, const material* m);
  // A segment; contour lines give the data values at its two ends.
  void add_cylinder(const position& start, const position& end, double radius, const material* m,
                    double value_start = 0.0, double value_end = 0.0);
  // A triangle; `normals` (three, or null for the face normal at every
  // corner) and `values` (three, or null for 0) belong to its corners.
  void add_triangle(const position& p0, const position& p1, const position& p2, const direction* normals,
                    const double* values, const material* m);

  std::size_t size() const { return added_.size(); }
  // The union of the boxes of all primitives, widened in the order added.
  const bounding_box& root_box() const { return root_box_; }

  // Builds the hierarchy with leaves of at most `leaf_size` primitives and
  // moves everything into `geometry`, leaving the builder empty.
  void build(int leaf_size, scene_geometry& geometry);

 private:
  primitive_ref next_ref(shape_kind kind, std::size_t count) const;
  void added(primitive_ref p, const bounding_box& box, const material* m);
  void boxes(const std::uint32_t* objects, std::size_t count, solid_box* out) const override;
  bounding_box triangle_box(std::uint32_t t) const;
  void lay_out(std::array<std::vector<std::uint32_t>, 3> by_kind, scene_geometry& g);

  std::vector<primitive_ref> added_;  // in the order added
  bounding_box root_box_;
  std::vector<sphere> spheres_;
  std::vector<cylinder> cylinders_;
  point_table points_;                                   // triangle corners
  std::vector<std::array<std::uint32_t, 3>> triangles_;  // corner numbers of each triangle
  point_table normals_;                                  // corner normals
  std::vector<triangle_corners> triangle_corners_;
  std::vector<std::array<double, 3>> corner_values_;
  std::array<std::vector<std::uint32_t>, 3> materials_;
  std::vector<const material*> material_list_;
  std::unordered_map<const material*, std::uint32_t> material_index_;
};

}  // namespace sciray
