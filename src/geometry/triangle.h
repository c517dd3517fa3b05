// triangle.h - a smooth-shaded piece of a polygon: three corners, each with
// a normal and a data value that a hit interpolates with the barycentric
// weights of its point.
#pragma once

#include <array>
#include <optional>

#include "geometry/point_table.h"
#include "geometry/shape.h"

namespace sciray {

class triangle_list;

struct triangle {
  using list = triangle_list;

  std::array<position, 3> corner;  // counter-clockwise seen from the front
  // Without normals every corner has the face normal; without values, 0.
  std::optional<std::array<direction, 3>> normals = {};
  std::optional<std::array<double, 3>> values = {};

  bounding_box bounds() const;
  // The reference test: the root of the ray in the triangle's plane (either
  // side counts; a ray parallel to it misses) if it lies above 1e-6, not
  // beyond `distance` (a root equal to it is taken) and inside the triangle,
  // edges and corners included. Collinear or coincident corners are never
  // hit. set::candidates must match it.
  bool intersect(const ray& r, double& distance) const;

  class set;  // the shapes of this kind in a scene, laid out for the walk
};

// Where a triangle's corner normals and values are kept.
struct triangle_corners {
  static constexpr std::uint32_t face = ~std::uint32_t{0};   // a corner normal that is the face normal
  static constexpr std::uint32_t zeros = ~std::uint32_t{0};  // corner values all 0
  std::uint32_t normal[3] = {face, face, face};  // numbers in the table of corner normals
  std::uint32_t values = zeros;                  // number in the table of corner values
};

// The triangles as read. A large mesh is most of a scene's memory, and its
// triangles share corners (and corner normals): each distinct point is kept
// once, and a triangle keeps the numbers of its corners.
class triangle_list {
 public:
  void add(const triangle& t);
  std::size_t size() const { return corners_.size(); }
  bounding_box bounds(std::uint32_t i) const;
  // Frees the lookup of distinct points once no more triangles come.
  void close();

 private:
  friend class triangle::set;

  point_table points_;
  std::vector<std::array<std::uint32_t, 3>> corners_;  // point numbers of each triangle's corners
  point_table normals_;
  std::vector<triangle_corners> corner_data_;
  std::vector<std::array<double, 3>> values_;
};

// The triangles of a scene in leaf order: the unit plane normal, the offset
// normal . corner 0 (not a number for a triangle that is never hit) and the
// two rows that map a point (x, y, z, 1) to the weights of corners 1 and 2.
// Their corner data stays in the order read.
class triangle::set {
 public:
  enum column : std::size_t {
    normal_x, normal_y, normal_z, offset,
    weight1_x, weight1_y, weight1_z, weight1_const,
    weight2_x, weight2_y, weight2_z, weight2_const,
    column_count
  };
  static constexpr bool takes_equal_roots = true;

  set() = default;
  set(triangle_list read, std::vector<std::uint32_t> order);

  std::size_t size() const { return columns_.size(); }
  double at(column q, std::uint32_t i) const { return columns_.at(q, i); }
  direction corner_normal(std::uint32_t i, int k) const;
  double corner_value(std::uint32_t i, int k) const;

  // The operations of triangle::intersect, two triangles at a time.
  bool candidates(std::uint32_t first, std::uint32_t count, const ray& r, double* t) const;
  // The corner normals and values interpolated with the weights of `p`,
  // the normal normalised; the same from either side.
  void surface(std::uint32_t i, const position& p, hit_record& hit) const;

 private:
  shape_columns<column_count> columns_;
  std::vector<std::uint32_t> source_;  // the number read of each triangle in leaf order
  std::vector<triangle_corners> corner_data_;
  std::vector<vector> normals_;
  std::vector<std::array<double, 3>> values_;
};

}  // namespace sciray
