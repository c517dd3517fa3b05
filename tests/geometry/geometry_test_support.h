// geometry_test_support.h - small scenes of primitives for the geometry
// tests: added in order, built into a hierarchy (by default a single leaf,
// so that they are tested in the order added), intersected and given their
// surface data; and a box as six numbers.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <optional>

#include "geometry/geometry_builder.h"
#include "geometry/scene_geometry.h"
#include "shading/material.h"

namespace sciray::testing {

class shape_scene {
 public:
  explicit shape_scene(std::uint32_t leaf_limit = 1 << 30) : leaf_limit_(leaf_limit) {}

  template <typename S>
  shape_scene& add(const S& shape) {
    builder_.add(shape, &plain_);
    return *this;
  }
  shape_scene& ball(const position& c, double r) { return add(sphere{c, r}); }
  shape_scene& tube(const position& a, const position& b, double r, double v0 = 0, double v1 = 0) {
    return add(cylinder{a, b, r, v0, v1});
  }
  shape_scene& piece(const position& p0, const position& p1, const position& p2,
                     std::optional<std::array<direction, 3>> normals = {},
                     std::optional<std::array<double, 3>> values = {}) {
    return add(triangle{{p0, p1, p2}, normals, values});
  }

  const scene_geometry& geometry() {
    if (!built_) builder_.build(geometry_, leaf_limit_);
    built_ = true;
    return geometry_;
  }

  // The hit `r` makes under `limit`, with its surface data; `value` starts
  // at -7 so that a shape that leaves it alone shows. A miss must leave the
  // hit as it was and comes back with distance -1.
  hit_record hit(const ray& r, double limit = 1e20) {
    const scene_geometry& g = geometry();
    hit_record h;
    h.distance = limit;
    h.value = -7;
    const bool found = g.intersect(r, h, tests_);
    EXPECT_EQ(found, h.object.valid());
    if (!found) {
      EXPECT_EQ(h.distance, limit);
      h.distance = -1.0;
      return h;
    }
    g.surface(r, h);
    return h;
  }
  double first_hit(const ray& r, double limit = 1e20) { return hit(r, limit).distance; }
  // Intersection tests so far, one per primitive of every leaf entered.
  std::uint32_t tests() const { return tests_; }

 private:
  std::uint32_t leaf_limit_;
  material plain_;
  geometry_builder builder_;
  scene_geometry geometry_;
  bool built_ = false;
  std::uint32_t tests_ = 0;
};

// A box as its low corner then its high corner.
using box_bounds = std::array<double, 6>;
inline box_bounds bounds_of(const bounding_box& b) {
  return {b.axis[0].lo, b.axis[1].lo, b.axis[2].lo, b.axis[0].hi, b.axis[1].hi, b.axis[2].hi};
}

}  // namespace sciray::testing
