// tracer_test.cpp - the tracer: weight cut-off and depth limit (counted in
// rays), escaping rays and the sky, and small rendered scenes checked for
// physical plausibility and repeatability.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "environment/noise.h"
#include "support/expect_near.h"
#include "test_scene.h"

namespace sciray::testing {
namespace {

const direction up(0.0, 0.0, 1.0), down(0.0, 0.0, -1.0);

TEST(shading_trace, cut_offs_depth_limit_and_the_sky) {
  material mirror;
  mirror.reflective = colour(0.5, 0.5, 0.5);
  mirror.emission = colour(0.1, 0.2, 0.4);
  bench b;
  add_ball(b.w, position(), 1.0, &mirror);
  ray_state strong = b.start(position(0.0, 0.0, 5.0), down), faint = strong;
  strong.weight = colour(0.009, 0.009, 0.5);  // one channel above its cut-off is enough to cast the ray
  faint.weight = colour(0.009, 0.009, 0.009);
  const tracer& plain = *strong.tracer;
  EXPECT_EQ(plain.trace(strong), mirror.emission);  // the reflection is beyond the depth limit of 1
  EXPECT_EQ(plain.trace(faint), colour());
  EXPECT_EQ(plain.transmit(faint), colour(1.0, 1.0, 1.0));  // no shadows: nothing to test
  b.settings.shadows = true;
  EXPECT_EQ(b.tracing().transmit(faint), colour());
  EXPECT_EQ(b.context.ray_count, 1u);
  EXPECT_EQ(b.context.depth_now, 0);

  // Inside a mirror ball every ray hits again: the depth limit alone ends it,
  // and each bounce adds half of what the next one shows.
  for (int depth = 1; depth <= 5; ++depth) {
    bench inside;
    inside.settings.depth = depth;
    add_ball(inside.w, position(), 10.0, &mirror);
    EXPECT_NEAR(inside.trace(position(), up).z, 0.4 * (2 - 1 / double(1 << (depth - 1))), 1e-15) << depth;
    EXPECT_EQ(inside.context.ray_count, static_cast<std::uint32_t>(depth));
  }

  // Escaping rays take the sky, black when there is none. The sky is not
  // hazed; the mirror floor shows it, hazed on the way to the floor only:
  // (emission + half the zenith) halfway to the red haze over distance 1, the
  // haze length.
  bench open;
  open.settings.depth = 2;
  open.w.atmosphere.set_atmosphere(colour(1.0, 0.0, 0.0), 1.0);
  const position eye(0.0, 0.0, 1.0);
  EXPECT_EQ(open.trace(eye, up), colour());
  open.w.sky = std::make_unique<sky_gradient>(up, colour(0.0, 0.0, 1.0), colour(1.0, 1.0, 1.0), colour(0.0, 0.5, 0.0));
  EXPECT_EQ(open.trace(eye, up), colour(0.0, 0.0, 1.0));
  add_floor(open.w, &mirror);
  ray_state s = open.start(eye, down);
  expect_near(s.tracer->trace(s), colour(0.55, 0.1, 0.45), 1e-15);
  EXPECT_EQ(s.medium, &open.w.atmosphere);  // the medium of primary rays
}

// A floor and a ball above it, lit from the side and above; seen from above.
struct ball_on_floor : bench {
  material floor_material, ball_material;

  explicit ball_on_floor(bool shadows) {
    settings.depth = 6;
    settings.shadows = shadows;
    w.ambient = colour(0.05, 0.05, 0.05);
    floor_material.diffuse = ball_material.diffuse = colour(0.8, 0.8, 0.8);
    floor_material.ambient = ball_material.ambient = colour(1.0, 1.0, 1.0);
    add_floor(w, &floor_material);
    add_ball(w, position(0.0, 0.0, 1.0), 1.0, &ball_material);
    w.add_light(std::make_unique<point_light>(position(4.0, 0.0, 4.0), colour(1.0, 1.0, 1.0), colour()));
  }
  colour seen_at(double x, double y) { return trace(position(x, y, 10.0), down); }
};

TEST(shading_render, plausible_light_shadow_and_glass) {
  ball_on_floor open(false), shaded(true);
  // The side of the ball towards the light is brighter than the side away from
  // it (all grey: the red channel stands for all three).
  EXPECT_GT(open.seen_at(0.5, 0.0).x, 2 * open.seen_at(-0.5, 0.0).x);
  // Shadows darken the floor behind the ball (seen from the light) down to the
  // ambient light, and leave the floor beside it alone.
  EXPECT_EQ(shaded.seen_at(-2.5, 0.0), colour(0.05, 0.05, 0.05));
  EXPECT_GT(open.seen_at(-2.5, 0.0).x, 0.5 / 3);
  EXPECT_EQ(shaded.seen_at(0.0, 2.5), open.seen_at(0.0, 2.5));

  // A red glass ball tints the floor seen through it and the light it lets through.
  ball_on_floor glass(true);
  glass.ball_material = material();
  glass.ball_material.refractive = colour(1.0, 0.3, 0.3);
  glass.ball_material.index_by_channel = vector(1.3, 1.3, 1.3);
  const colour centre = glass.seen_at(0.1, 0.1), shadow = glass.seen_at(-2.5, 0.0);
  EXPECT_GT(centre.x, 2 * centre.y);
  EXPECT_GT(shadow.x, 2 * shadow.y);
  EXPECT_GT(shadow.x + shadow.y + shadow.z, 0.15);  // more than the ambient light alone
}

// A 24 x 24 render of a scene that draws on the random stream (area light)
// and the noise (roughness).
std::vector<colour> rough_render() {
  ball_on_floor scene(true);
  auto area = std::make_unique<point_light>(position(0.0, -3.0, 6.0), colour(0.5, 0.5, 0.5), colour());
  area->set_attenuation(vector(1.0, 0.0, 0.0), 1.0);
  scene.w.add_light(std::move(area));
  scene.ball_material.rough = std::make_shared<roughness>(
      std::make_unique<fractal_noise>(0.2, 0.6, 0.0, scene.context.noise, scene.context.random));
  scene.ball_material.reflective = colour(0.3, 0.3, 0.3);
  std::vector<colour> pixels;
  for (int i = 0; i < 24 * 24; ++i) pixels.push_back(scene.seen_at(i % 24 / 4.0 - 2.875, i / 24 / 4.0 - 2.875));
  return pixels;
}

TEST(shading_render, renders_are_bit_identical) {
  const std::vector<colour> first = rough_render(), second = rough_render();
  EXPECT_EQ(std::memcmp(first.data(), second.data(), first.size() * sizeof(colour)), 0);
}

TEST(shading_trace, an_unlit_tracer_draws_what_lighting_draws_and_lights_nothing) {
  // An area light and an area spotlight whose cone covers part of the
  // floor, over a mirror ball: rays that hit the floor inside and outside
  // the cone, and the ball, whose reflection lights a second point.
  ball_on_floor scene(true);
  scene.ball_material.reflective = colour(0.5, 0.5, 0.5);
  auto area = std::make_unique<point_light>(position(0.0, -3.0, 6.0), colour(0.5, 0.5, 0.5), colour());
  area->set_attenuation(vector(1.0, 0.0, 0.0), 1.0);
  auto spot = std::make_unique<spot_light>(position(2.0, 2.0, 5.0), colour(0.5, 0.5, 0.5), colour(), down, 20.0, 10.0);
  spot->set_attenuation(vector(1.0, 0.0, 0.0), 0.5);
  scene.w.add_light(std::move(area));
  scene.w.add_light(std::move(spot));
  const tracer& lit = scene.tracing();
  const tracer unlit = lit.unlit();
  render_context dark;
  int lit_points = 0;
  for (int i = 0; i < 64; ++i) {
    const ray r(position(i % 8 - 3.5, i / 8 - 3.5, 10.0), down);
    ray_state seen = primary_state(lit, scene.context, r), unseen = primary_state(unlit, dark, r);
    const colour c = lit.trace(seen);
    EXPECT_EQ(unlit.trace(unseen), colour()) << i;
    EXPECT_EQ(dark.random.drawn(), scene.context.random.drawn()) << i;
    lit_points += c.x > 0.0;
  }
  EXPECT_GT(lit_points, 32);
  EXPECT_GT(dark.random.drawn(), 0u);
  EXPECT_LT(dark.ray_count * 19, scene.context.ray_count);  // no shadow rays without lighting
}

}  // namespace
}  // namespace sciray::testing
