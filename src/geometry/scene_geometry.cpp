// scene_geometry.cpp - the leaf test, the surface data of a hit and the
// material of a primitive.
#include "geometry/scene_geometry.h"

#include <algorithm>
#include <array>

namespace sciray {

namespace {

constexpr std::uint32_t no_triangle = ~std::uint32_t{0};
// Leaves hold at most this many primitives (larger ones are tested in pieces).
constexpr std::uint32_t piece = 8;

// A triangle taken by the walk: its shading data is worked out once, for the
// last one taken, after the walk (a later hit on a sphere or cylinder
// overwrites the normal when it is shaded, as it would have).
struct taken_triangle {
  std::uint32_t index = no_triangle;
  double b1 = 0.0, b2 = 0.0;
};

// The candidates of some primitives of one kind, in list order.
struct kind_candidates {
  std::uint32_t first = 0, count = 0;  // in the kind's arrays
  std::array<double, piece> t, b1, b2;
};

}  // namespace

bool scene_geometry::intersect(const ray& r, hit_record& hit, std::uint32_t& test_count) const {
  taken_triangle taken;
  std::array<kind_candidates, 3> by_kind;
  // Works out the candidates of `count` primitives of `kind` from `first`.
  const auto work_out = [&](shape_kind kind, std::uint32_t first, std::uint32_t count) {
    kind_candidates& c = by_kind[static_cast<std::size_t>(kind)];
    c.first = first;
    c.count = count;
    if (count == 0) return false;
    switch (kind) {
      case shape_kind::sphere:
        return sphere_candidates(spheres_, first, count, r, c.t.data());
      case shape_kind::cylinder:
        return cylinder_candidates(cylinders_, first, count, r, c.t.data());
      case shape_kind::triangle:
        return triangle_candidates(triangles_, first, count, r, c.t.data(), c.b1.data(), c.b2.data());
    }
    return false;
  };
  // Takes candidate j of `kind` if the distance allows: below it for spheres
  // and cylinders (the first of equal roots wins), not beyond it for
  // triangles (the last wins).
  const auto take = [&](shape_kind kind, std::uint32_t j) {
    const kind_candidates& c = by_kind[static_cast<std::size_t>(kind)];
    const double t = c.t[j];
    if (kind == shape_kind::triangle ? (t != t || t > hit.distance) : !(t < hit.distance)) return false;
    hit.distance = t;
    hit.object = primitive_ref(kind, c.first + j);
    if (kind == shape_kind::triangle) taken = {c.first + j, c.b1[j], c.b2[j]};
    return true;
  };
  const auto test_leaf = [&](const hierarchy_child& leaf) {
    test_count += leaf.count;
    bool any = false;
    for (std::uint32_t done = 0; done < leaf.count; done += piece) {
      const std::uint32_t count = std::min(piece, leaf.count - done);
      if (leaf.tag != mixed_leaf) {
        // All of one kind, consecutive in that kind's arrays.
        const auto kind = static_cast<shape_kind>(leaf.tag);
        if (!work_out(kind, leaf.first + done, count)) continue;
        for (std::uint32_t j = 0; j < count; ++j) any = take(kind, j) || any;
        continue;
      }
      // Mixed: each kind's primitives are consecutive in its arrays, in list order.
      const primitive_ref* items = items_.data() + leaf.first + done;
      std::array<std::uint32_t, 3> first{}, number{};
      for (std::uint32_t i = 0; i < count; ++i) {
        const auto k = static_cast<std::size_t>(items[i].kind());
        if (number[k]++ == 0) first[k] = items[i].index();
      }
      bool some = false;
      for (std::size_t k = 0; k < 3; ++k) some = work_out(static_cast<shape_kind>(k), first[k], number[k]) || some;
      if (!some) continue;
      std::array<std::uint32_t, 3> next{};
      for (std::uint32_t i = 0; i < count; ++i) {
        const shape_kind kind = items[i].kind();
        any = take(kind, next[static_cast<std::size_t>(kind)]++) || any;
      }
    }
    return any;
  };
  const bool found = hierarchy_.walk(r, hit.distance, test_leaf);
  if (taken.index != no_triangle) {
    const direction normals[3] = {corner_normal(taken.index, 0), corner_normal(taken.index, 1),
                                  corner_normal(taken.index, 2)};
    const double values[3] = {corner_value(taken.index, 0), corner_value(taken.index, 1),
                              corner_value(taken.index, 2)};
    fill_triangle_hit(normals, values, taken.b1, taken.b2, hit);
  }
  return found;
}

void scene_geometry::surface(const ray& r, hit_record& hit) const {
  const position p = r.origin + hit.distance * r.dir;
  const std::uint32_t k = hit.object.index();
  switch (hit.object.kind()) {
    case shape_kind::sphere:
      sphere_at(k).surface(p, hit);
      break;
    case shape_kind::cylinder:
      cylinder_surfaces_[k].fill(cylinder_at(k), p, hit);
      break;
    case shape_kind::triangle:
      break;
  }
}

const material* scene_geometry::material_of(primitive_ref p) const {
  const std::uint32_t i = p.kind() == shape_kind::triangle ? triangle_source_[p.index()] : p.index();
  return material_list_[materials_[static_cast<std::size_t>(p.kind())][i]];
}

sphere scene_geometry::sphere_at(std::uint32_t i) const {
  return sphere(position(spheres_.at(sx, i), spheres_.at(sy, i), spheres_.at(sz, i)), sphere_radius_[i]);
}

cylinder_shape scene_geometry::cylinder_at(std::uint32_t i) const {
  const auto q = [&](cylinder_column c) { return cylinders_.at(c, i); };
  return {position(q(cx), q(cy), q(cz)), direction(q(c_axis_x), q(c_axis_y), q(c_axis_z)), q(c_length),
          q(c_radius_squared)};
}

triangle_shape scene_geometry::triangle_at(std::uint32_t i) const {
  const auto q = [&](triangle_column c) { return triangles_.at(c, i); };
  return {direction(q(n_x), q(n_y), q(n_z)), q(t_offset), {q(w1_x), q(w1_y), q(w1_z), q(w1_1)},
          {q(w2_x), q(w2_y), q(w2_z), q(w2_1)}};
}

direction scene_geometry::corner_normal(std::uint32_t i, int k) const {
  const std::uint32_t n = triangle_corners_[triangle_source_[i]].normal[k];
  return n == triangle_corners::face ? triangle_at(i).normal : direction::as_given(corner_normals_[n]);
}

double scene_geometry::corner_value(std::uint32_t i, int k) const {
  const std::uint32_t v = triangle_corners_[triangle_source_[i]].values;
  return v == triangle_corners::zeros ? 0.0 : corner_values_[v][static_cast<std::size_t>(k)];
}

}  // namespace sciray
