// geometry_builder.cpp - the primitives as read, and their layout in leaf
// order once the hierarchy is built.
#include "geometry/geometry_builder.h"

#include <new>

namespace sciray {

namespace {

// `from` reordered so that entry i is from[order[i]]; `from` is freed.
template <typename T>
std::vector<T> reordered(std::vector<T>& from, const std::vector<std::uint32_t>& order) {
  std::vector<T> to;
  to.reserve(order.size());
  for (const std::uint32_t i : order) to.push_back(from[i]);
  std::vector<T>().swap(from);
  return to;
}

}  // namespace

primitive_ref geometry_builder::next_ref(shape_kind kind, std::size_t count) const {
  // A scene this large could not be held anyway.
  if (count >= primitive_ref::index_limit) throw std::bad_alloc();
  return primitive_ref(kind, static_cast<std::uint32_t>(count));
}

void geometry_builder::added(primitive_ref p, const bounding_box& box, const material* m) {
  added_.push_back(p);
  root_box_.widen(box);
  const auto [at, fresh] = material_index_.try_emplace(m, static_cast<std::uint32_t>(material_list_.size()));
  if (fresh) material_list_.push_back(m);
  materials_[static_cast<std::size_t>(p.kind())].push_back(at->second);
}

void geometry_builder::add_sphere(const position& center, double radius, const material* m) {
  const primitive_ref p = next_ref(shape_kind::sphere, spheres_.size());
  spheres_.emplace_back(center, radius);
  added(p, spheres_.back().bounds(), m);
}

void geometry_builder::add_cylinder(const position& start, const position& end, double radius, const material* m,
                                    double value_start, double value_end) {
  const primitive_ref p = next_ref(shape_kind::cylinder, cylinders_.size());
  cylinder& c = cylinders_.emplace_back(start, end, radius);
  c.surface.value_start = value_start;
  c.surface.value_end = value_end;
  added(p, c.bounds(), m);
}

void geometry_builder::add_triangle(const position& p0, const position& p1, const position& p2,
                                    const direction* normals, const double* values, const material* m) {
  const primitive_ref p = next_ref(shape_kind::triangle, triangles_.size());
  triangles_.push_back({points_.add(p0), points_.add(p1), points_.add(p2)});
  triangle_corners corners;
  if (normals != nullptr)
    for (int k = 0; k < 3; ++k) corners.normal[k] = normals_.add(normals[k]);
  if (values != nullptr) {
    corners.values = static_cast<std::uint32_t>(corner_values_.size());
    corner_values_.push_back({values[0], values[1], values[2]});
  }
  triangle_corners_.push_back(corners);
  added(p, triangle_box(p.index()), m);
}

bounding_box geometry_builder::triangle_box(std::uint32_t t) const {
  const auto& corner = triangles_[t];
  const std::vector<vector>& at = points_.points();
  return bounding_box::corners(at[corner[0]], at[corner[1]], at[corner[2]]);
}

void geometry_builder::boxes(const std::uint32_t* objects, std::size_t count, solid_box* out) const {
  for (std::size_t i = 0; i < count; ++i) {
    const primitive_ref p = added_[objects[i]];
    switch (p.kind()) {
      case shape_kind::sphere:
        out[i] = spheres_[p.index()].bounds().solid();
        break;
      case shape_kind::cylinder:
        out[i] = cylinders_[p.index()].bounds().solid();
        break;
      case shape_kind::triangle:
        out[i] = triangle_box(p.index()).solid();
        break;
    }
  }
}

void geometry_builder::build(int leaf_size, scene_geometry& g) {
  points_.close();
  normals_.close();
  material_index_.clear();
  g.hierarchy_.build(static_cast<std::uint32_t>(added_.size()), *this, root_box_, leaf_size);

  // Each kind's primitives in the order the leaves list them.
  std::array<std::vector<std::uint32_t>, 3> by_kind;
  std::vector<std::uint32_t> order = g.hierarchy_.take_order();
  g.items_.resize(order.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    const primitive_ref p = added_[order[i]];
    std::vector<std::uint32_t>& list = by_kind[static_cast<std::size_t>(p.kind())];
    g.items_[i] = primitive_ref(p.kind(), static_cast<std::uint32_t>(list.size()));
    list.push_back(p.index());
  }
  std::vector<primitive_ref>().swap(added_);
  std::vector<std::uint32_t>().swap(order);
  g.hierarchy_.retag_leaves([&g](hierarchy_child& leaf) {
    leaf.tag = scene_geometry::mixed_leaf;
    if (leaf.count == 0) return;
    const primitive_ref head = g.items_[leaf.first];
    for (std::uint32_t i = leaf.first; i < leaf.first + leaf.count; ++i)
      if (g.items_[i].kind() != head.kind()) return;
    leaf.tag = static_cast<std::uint32_t>(head.kind());
    leaf.first = head.index();
  });
  lay_out(std::move(by_kind), g);
  root_box_ = bounding_box{};
}

void geometry_builder::lay_out(std::array<std::vector<std::uint32_t>, 3> by_kind, scene_geometry& g) {
  const auto& spheres = by_kind[static_cast<std::size_t>(shape_kind::sphere)];
  const auto& cylinders = by_kind[static_cast<std::size_t>(shape_kind::cylinder)];
  const auto& triangles = by_kind[static_cast<std::size_t>(shape_kind::triangle)];
  for (const std::uint32_t i : spheres) {
    const sphere& s = spheres_[i];
    g.spheres_.add({s.center.x, s.center.y, s.center.z, s.radius_squared});
    g.sphere_radius_.push_back(s.radius);
  }
  std::vector<sphere>().swap(spheres_);
  for (const std::uint32_t i : cylinders) {
    const cylinder_shape& c = cylinders_[i].shape;
    g.cylinders_.add({c.start.x, c.start.y, c.start.z, c.axis.x, c.axis.y, c.axis.z, c.length, c.radius_squared});
    g.cylinder_surfaces_.push_back(cylinders_[i].surface);
  }
  std::vector<cylinder>().swap(cylinders_);
  // Triangles are made here, in leaf order; their corner data and material
  // stay in the order read.
  g.triangles_.reserve(triangles.size());
  const std::vector<vector>& at = points_.points();
  for (const std::uint32_t i : triangles) {
    const auto& corner = triangles_[i];
    const triangle_shape t = triangle(at[corner[0]], at[corner[1]], at[corner[2]]).shape;
    g.triangles_.add({t.normal.x, t.normal.y, t.normal.z, t.offset, t.weight1[0], t.weight1[1], t.weight1[2],
                      t.weight1[3], t.weight2[0], t.weight2[1], t.weight2[2], t.weight2[3]});
  }
  points_ = point_table();
  std::vector<std::array<std::uint32_t, 3>>().swap(triangles_);
  g.triangle_source_ = std::move(by_kind[static_cast<std::size_t>(shape_kind::triangle)]);
  g.spheres_.pad();
  g.cylinders_.pad();
  g.triangles_.pad();
  g.triangle_corners_ = std::move(triangle_corners_);
  g.corner_normals_ = std::move(normals_.points());
  normals_ = point_table();
  g.corner_values_ = std::move(corner_values_);
  for (std::size_t k = 0; k < 2; ++k) g.materials_[k] = reordered(materials_[k], by_kind[k]);
  g.materials_[2] = std::move(materials_[2]);
  g.material_list_ = std::move(material_list_);
}

}  // namespace sciray
