// test_scene.h - small scenes for the shading tests: a world with its render
// context, balls, a floor in the plane z = 0, and a per-channel
// near-comparison.
#pragma once

#include <gtest/gtest.h>

#include "shading/render_context.h"
#include "shading/world.h"

namespace sciray::test {

// A world, its render context, and primary rays cast into it. The
// hierarchy is built over what was added when the first ray is cast after
// adding (so a bench adds everything before it traces anything).
struct bench {
  world w;
  render_context context;
  void ready() {
    if (w.builder().size() > 0) w.build_hierarchy(8);
  }
  ray_state start(const position& origin, const direction& d) {
    ready();
    return primary_state(w, context, ray(origin, d));
  }
  colour trace(const position& origin, const direction& d) {
    ray_state s = start(origin, d);
    return w.trace(s);
  }
};

inline void add_ball(world& w, const position& centre, double radius, const material* m) {
  w.builder().add(sphere{centre, radius}, m);
}

// The floor z = 0, normal +z, as two triangles reaching 1000 units out.
inline void add_floor(world& w, const material* m) {
  const double r = 1000.0;
  w.builder().add(triangle{{position(-r, -r, 0), position(r, -r, 0), position(r, r, 0)}}, m);
  w.builder().add(triangle{{position(-r, -r, 0), position(r, r, 0), position(-r, r, 0)}}, m);
}

inline void expect_near(const vector& got, const vector& want, double tolerance) {
  for (int i = 0; i < 3; ++i) EXPECT_NEAR(got[i], want[i], tolerance) << "channel " << i;
}

}  // namespace sciray::test
