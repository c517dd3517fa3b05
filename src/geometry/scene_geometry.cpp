// scene_geometry.cpp - the leaf test, the surface data of a hit and the
// material of a primitive.
#include "geometry/scene_geometry.h"

namespace sciray {

namespace {

constexpr std::uint32_t no_triangle = ~std::uint32_t{0};

// A triangle taken by the walk: its shading data is worked out once, for the
// last one taken, after the walk (a later hit on a sphere or cylinder
// overwrites the normal and coordinates when it is shaded, as it would have).
struct taken_triangle {
  std::uint32_t index = no_triangle;
  double b1 = 0.0, b2 = 0.0;
};

}  // namespace

bool scene_geometry::intersect(const ray& r, hit_record& hit, std::uint32_t& test_count) const {
  taken_triangle taken;
  // Tests one primitive against the distance the ones before it left: equal
  // roots go to the first sphere or cylinder and to the last triangle.
  const auto test = [&](shape_kind kind, std::uint32_t k) {
    switch (kind) {
      case shape_kind::sphere:
        if (!spheres_.at(k).intersect(r, hit.distance)) return false;
        break;
      case shape_kind::cylinder:
        if (!cylinders_[k].intersect(r, hit.distance)) return false;
        break;
      case shape_kind::triangle: {
        double t, b1, b2;
        if (!triangles_[k].intersect(r, hit.distance, t, b1, b2)) return false;
        hit.distance = t;
        taken = {k, b1, b2};
        break;
      }
    }
    hit.object = primitive_ref(kind, k);
    return true;
  };
  // A leaf of one kind holds consecutive primitives of that kind; a mixed
  // one lists its primitives in order.
  const auto test_leaf = [&](const hierarchy_child& leaf) {
    test_count += leaf.count;
    bool any = false;
    if (leaf.tag == mixed_leaf) {
      for (std::uint32_t i = leaf.first; i < leaf.first + leaf.count; ++i)
        any = test(items_[i].kind(), items_[i].index()) || any;
    } else {
      // One loop per kind, so that each is a tight loop of one test.
      const std::uint32_t end = leaf.first + leaf.count;
      switch (static_cast<shape_kind>(leaf.tag)) {
        case shape_kind::sphere: {
          const int taken = take_spheres(spheres_, leaf.first, leaf.count, r, hit.distance);
          if (taken < 0) break;
          hit.object = primitive_ref(shape_kind::sphere, leaf.first + static_cast<std::uint32_t>(taken));
          any = true;
          break;
        }
        case shape_kind::cylinder:
          for (std::uint32_t k = leaf.first; k < end; ++k) any = test(shape_kind::cylinder, k) || any;
          break;
        case shape_kind::triangle:
          for (std::uint32_t k = leaf.first; k < end; ++k) any = test(shape_kind::triangle, k) || any;
          break;
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
      spheres_.at(k).surface(p, hit);
      break;
    case shape_kind::cylinder:
      cylinder_surfaces_[k].fill(cylinders_[k], p, hit);
      break;
    case shape_kind::triangle:
      break;
  }
}

const material* scene_geometry::material_of(primitive_ref p) const {
  return material_list_[materials_[static_cast<std::size_t>(p.kind())][p.index()]];
}

direction scene_geometry::corner_normal(std::uint32_t i, int k) const {
  const std::uint32_t n = triangle_corners_[i].normal[k];
  return n == triangle_corners::face ? triangles_[i].normal : corner_normals_[n];
}

double scene_geometry::corner_value(std::uint32_t i, int k) const {
  const std::uint32_t v = triangle_corners_[i].values;
  return v == triangle_corners::zeros ? 0.0 : corner_values_[v][static_cast<std::size_t>(k)];
}

}  // namespace sciray
