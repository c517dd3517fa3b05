// walks_ahead_test.cpp - walks made ahead: one is taken only for the ray it
// was made for, bit for bit and limit included, and only for its pixel; the
// tracer walks ahead the primary rays and exactly the shadow ray that each
// point, spot and directional light then casts (none for an area light),
// and a trace that takes them colours and counts as if it had walked.
#include "shading/walks_ahead.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

#include "test_scene.h"

namespace sciray::testing {
namespace {

TEST(walks_ahead, a_walk_is_taken_only_for_its_own_ray_and_pixel) {
  bench b;
  const material m;
  add_ball(b.w, position(), 1.0, &m);
  add_ball(b.w, position(0.5, 0, 0), 1.0, &m);
  const scene_geometry& g = b.tracing().scene().geometry();
  const ray r(position(0, 0, 5), direction(0, 0, -1));
  walks_ahead ahead;
  ahead.reset(2, 1);
  ahead.add(0, 0, {r, 1e20});
  ahead.walk(g, 0);
  EXPECT_EQ(ahead.hit(0, 1), nullptr);

  hit_record hit;
  std::uint32_t tests = 5;
  ASSERT_TRUE(ahead.take(0, r, 1e20, hit, tests));
  EXPECT_EQ(hit.distance, 4.0);
  EXPECT_TRUE(hit.object.valid());
  EXPECT_EQ(tests, 5u + 2u);  // one leaf of two balls

  // One bit off anywhere, or another pixel: walked again.
  ray off = r;
  off.origin.y = std::nextafter(0.0, 1.0);
  ray turned = r;
  turned.dir.x = -0.0;
  EXPECT_FALSE(ahead.take(0, off, 1e20, hit, tests));
  EXPECT_FALSE(ahead.take(0, turned, 1e20, hit, tests));
  EXPECT_FALSE(ahead.take(0, r, std::nextafter(1e20, 0.0), hit, tests));
  EXPECT_FALSE(ahead.take(1, r, 1e20, hit, tests));
  EXPECT_FALSE(pixel_walks{}.take(r, 1e20, hit, tests));
  EXPECT_EQ(tests, 7u);
}

// A floor in the plane z = 0 lit by `l` with shadows, seen from above, and
// an opaque ball: when `shaded`, one that shadows the part of the floor in
// view from the lights (all up and to the right of it) without standing in
// the view; else one far below the floor.
struct lit_floor : bench {
  lit_floor(std::unique_ptr<light> l, bool shaded) {
    settings.shadows = true;
    floor.diffuse = colour(0.8, 0.6, 0.4);
    add_floor(w, &floor);
    add_ball(w, shaded ? position(3, 0, 3) : position(3, 0, -30), 1.5, &floor);
    w.add_light(std::move(l));
  }
  material floor;
};

std::vector<std::unique_ptr<light>> each_light() {
  const colour c(1, 1, 1), ambient(0.1, 0.1, 0.1);
  const position lamp(6, 0, 6);
  std::vector<std::unique_ptr<light>> lights;
  lights.push_back(std::make_unique<directional_light>(normalise(vector(-1, 0, -1)), c, ambient));
  lights.push_back(std::make_unique<point_light>(lamp, c, ambient));
  lights.push_back(std::make_unique<spot_light>(lamp, c, ambient, normalise(vector(-1, 0, -1)), 40.0, 20.0));
  auto area = std::make_unique<point_light>(lamp, c, ambient);
  area->set_attenuation(vector(1, 0, 0), 0.5);
  lights.push_back(std::move(area));
  return lights;
}

TEST(walks_ahead, the_shadow_rays_walked_ahead_are_the_ones_the_lights_cast) {
  // The walks are made in the shaded scene and taken in the open one, whose
  // primitives are numbered alike: a trace in the open scene comes out
  // shadowed exactly when it took the walk made for its shadow ray, and then
  // it equals the shaded trace.
  std::vector<ray> view;
  for (int i = 0; i < 12; ++i) view.emplace_back(position(-1 + i * 0.18, 0.02 * i, 5), normalise(vector(0.01 * i, 0, -1)));
  for (std::size_t k = 0; k < 4; ++k) {
    const bool area = k == 3;
    SCOPED_TRACE(area ? "area light" : "light " + std::to_string(k));
    lit_floor shaded(std::move(each_light()[k]), true), open(std::move(each_light()[k]), false);
    walks_ahead ahead;
    const tracer& shading = shaded.tracing();
    const tracer& opening = open.tracing();
    shading.walk_ahead(view, ahead);
    for (std::size_t i = 0; i < view.size(); ++i) {
      ASSERT_NE(ahead.hit(0, i), nullptr);
      EXPECT_EQ(ahead.hit(1, i) == nullptr, area);
      ray_state s = primary_state(shading, shaded.context, view[i]);
      const colour want = shading.trace(s);
      const rand_stream before = open.context.random;  // the area light draws on it
      ray_state o = primary_state(opening, open.context, view[i]);
      const colour unshaded = opening.trace(o);
      open.context.random = before;
      open.context.ahead = {&ahead, i};
      ray_state a = primary_state(opening, open.context, view[i]);
      const colour got = opening.trace(a);
      open.context.ahead = {};
      if (area) {
        EXPECT_EQ(got, unshaded) << i;
      } else {
        EXPECT_NE(got, unshaded) << i;
        EXPECT_EQ(got, want) << i;
      }
    }
    if (!area) {
      // The open scene counted its own walks once and the shaded ones once.
      EXPECT_EQ(open.context.ray_count, 2 * shaded.context.ray_count);
    }
  }
}

TEST(walks_ahead, a_trace_that_takes_them_counts_as_one_that_walked) {
  lit_floor scene(std::move(each_light()[0]), true);
  material ball;
  add_ball(scene.w, position(0, 0, 0.5), 0.4, &ball);
  std::vector<ray> view;
  for (int i = 0; i < 40; ++i) view.emplace_back(position(-1 + i * 0.05, 0, 5), normalise(vector(0.001 * i, 0.002, -1)));
  const tracer& t = scene.tracing();
  std::vector<colour> walked;
  for (const ray& r : view) {
    ray_state s = primary_state(t, scene.context, r);
    walked.push_back(t.trace(s));
  }
  const std::uint32_t rays = scene.context.ray_count, tests = scene.context.test_count;
  walks_ahead ahead;
  t.walk_ahead(view, ahead);
  for (std::size_t i = 0; i < view.size(); ++i) {
    scene.context.ahead = {&ahead, i};
    ray_state s = primary_state(t, scene.context, view[i]);
    EXPECT_EQ(t.trace(s), walked[i]) << i;
  }
  EXPECT_EQ(scene.context.ray_count, 2 * rays);
  EXPECT_EQ(scene.context.test_count, 2 * tests);
}

}  // namespace
}  // namespace sciray::testing
