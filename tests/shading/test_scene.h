// test_scene.h - small scenes for the shading tests: a world with the
// settings to trace it with and a render context, balls, a floor in the
// plane z = 0.
#pragma once

#include <gtest/gtest.h>

#include <deque>

#include "shading/render_context.h"
#include "shading/tracer.h"

namespace sciray::testing {

// A world, its tracing settings and render context, and primary rays cast
// into it. The settings start plain (depth 1, no shadows, no highlights);
// a test turns on what it looks at. Each ray is traced with the settings
// as they stand when it is started, over a hierarchy built over everything
// added by then.
struct bench {
  bench() {
    settings.depth = 1;
    settings.shadows = false;
    settings.highlights = false;
  }
  // A tracer with the settings as they stand; it lives as long as the bench.
  const tracer& tracing() {
    if (w.builder().size() > 0) w.build_hierarchy();
    return tracers_.emplace_back(w, settings);
  }
  ray_state start(const position& origin, const direction& d) { return primary_state(tracing(), context, ray(origin, d)); }
  colour trace(const position& origin, const direction& d) {
    ray_state s = start(origin, d);
    return s.tracer->trace(s);
  }

  world w;
  render_settings settings;
  render_context context;

 private:
  std::deque<tracer> tracers_;
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

}  // namespace sciray::testing
