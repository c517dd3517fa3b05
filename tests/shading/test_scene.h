// test_scene.h - small scenes for the shading tests: a world with its render
// context, balls, the floor plane z = 0, and a per-channel near-comparison.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "geometry/plane.h"
#include "geometry/sphere.h"
#include "shading/render_context.h"
#include "shading/world.h"

namespace sciray::test {

// A world, its render context, and primary rays cast into it.
struct bench {
  world w;
  render_context context;
  ray_state start(const position& origin, const direction& d) { return primary_state(w, context, ray(origin, d)); }
  colour trace(const position& origin, const direction& d) {
    ray_state s = start(origin, d);
    return w.trace(s);
  }
};

// A sphere with its material.
inline std::unique_ptr<sphere> ball(const position& centre, double radius, const material* m) {
  auto b = std::make_unique<sphere>(centre, radius);
  b->set_material(m);
  return b;
}

// The unbounded plane z = 0, normal +z.
inline std::unique_ptr<plane> floor_plane(const material* m) {
  auto p = std::make_unique<plane>();
  p->set_material(m);
  return p;
}

inline void expect_near(const vector& got, const vector& want, double tolerance) {
  for (int i = 0; i < 3; ++i) EXPECT_NEAR(got[i], want[i], tolerance) << "channel " << i;
}

}  // namespace sciray::test
