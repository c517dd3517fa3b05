// world_test.cpp - the tracer: weight cut-off and depth limit (counted in
// rays), escaping rays and the sky, and small rendered scenes checked for
// physical plausibility and repeatability.
#include <gtest/gtest.h>

#include <cstring>

#include "environment/noise.h"
#include "test_scene.h"

namespace sciray {
namespace {

TEST(shading_trace, weight_cut_off_and_depth_limit) {
  world w;
  render_context context;
  w.depth_max = 3;
  material grey;
  grey.emission = colour(0.5, 0.5, 0.5);
  w.add(test::ball(position(), 1.0, &grey));
  const ray towards(position(0.0, 0.0, 5.0), direction(0.0, 0.0, -1.0));

  // One channel at its cut-off is enough to cast the ray.
  ray_state strong = primary_state(w, context, towards);
  strong.weight = colour(0.009, 0.009, 0.5);
  EXPECT_EQ(w.trace(strong), colour(0.5, 0.5, 0.5));
  ray_state faint = primary_state(w, context, towards);
  faint.weight = colour(0.009, 0.009, 0.009);
  EXPECT_EQ(w.trace(faint), colour());
  EXPECT_EQ(w.transmit(faint), colour(1.0, 1.0, 1.0));  // no shadows: nothing to test
  w.shadows = true;
  EXPECT_EQ(w.transmit(faint), colour());
  EXPECT_EQ(context.ray_count, 1u);
  EXPECT_EQ(context.depth_now, 0);

  // Inside a mirror ball every ray hits again: the depth limit alone ends it,
  // and each bounce adds half of what the next one shows.
  material mirror;
  mirror.reflective = colour(0.5, 0.5, 0.5);
  mirror.emission = colour(0.1, 0.2, 0.4);
  for (int depth = 1; depth <= 5; ++depth) {
    world inside;
    render_context counts;
    inside.depth_max = depth;
    inside.add(test::ball(position(), 10.0, &mirror));
    ray_state s = primary_state(inside, counts, ray(position(), direction(0.0, 0.0, 1.0)));
    const colour c = inside.trace(s);
    EXPECT_EQ(counts.ray_count, static_cast<std::uint32_t>(depth));
    EXPECT_NEAR(c.z, 0.4 * (2 - 1 / double(1 << (depth - 1))), 1e-15) << depth;
  }
}

TEST(shading_trace, escaping_rays_take_the_sky) {
  world w;
  render_context context;
  w.depth_max = 2;
  w.atmosphere.set_atmosphere(colour(1.0, 0.0, 0.0), 1.0);
  ray_state nothing = primary_state(w, context, ray(position(), direction(0.0, 0.0, 1.0)));
  EXPECT_EQ(w.trace(nothing), colour());  // no sky: black

  // The sky is not hazed; a mirror floor shows it, hazed on the way to the floor only.
  w.sky = std::make_unique<sky_gradient>(direction(0.0, 0.0, 1.0), colour(0.0, 0.0, 1.0), colour(1.0, 1.0, 1.0),
                                         colour(0.0, 0.5, 0.0));
  ray_state up = primary_state(w, context, ray(position(), direction(0.0, 0.0, 1.0)));
  EXPECT_EQ(w.trace(up), colour(0.0, 0.0, 1.0));
  material mirror;
  mirror.reflective = colour(0.5, 0.5, 0.5);
  w.add(std::make_unique<test::floor_plane>(-1.0, &mirror));
  ray_state down = primary_state(w, context, ray(position(), direction(0.0, 0.0, -1.0)));
  const colour c = w.trace(down);
  EXPECT_NEAR(c.x, 0.5, 1e-15);  // half the haze over the floor's distance 1
  EXPECT_NEAR(c.z, 0.25, 1e-15);
}

// A floor and a ball above it, lit from the side and above; seen from above.
struct ball_on_floor {
  world w;
  render_context context;
  material floor_material, ball_material;

  explicit ball_on_floor(bool shadows) {
    w.depth_max = 6;
    w.shadows = shadows;
    w.ambient = colour(0.05, 0.05, 0.05);
    floor_material.diffuse = ball_material.diffuse = colour(0.8, 0.8, 0.8);
    floor_material.ambient = ball_material.ambient = colour(1.0, 1.0, 1.0);
    w.add(std::make_unique<test::floor_plane>(0.0, &floor_material));
    w.add(test::ball(position(0.0, 0.0, 1.0), 1.0, &ball_material));
    w.add_light(std::make_unique<point_light>(position(4.0, 0.0, 4.0), colour(1.0, 1.0, 1.0), colour()));
  }
  std::vector<colour> render() {
    w.build_hierarchy(8);
    return test::render_top_down(w, context, size, half, 10.0);
  }
  static int at(double x, double y) { return test::pixel_at(size, half, x, y); }
  static constexpr int size = 24;
  static constexpr double half = 3.0;
};

double brightness(const colour& c) { return c.x + c.y + c.z; }

TEST(shading_render, plausible_light_shadow_and_glass) {
  ball_on_floor open(false), shaded(true);
  const std::vector<colour> lit = open.render(), with_shadows = shaded.render();
  // The side of the ball towards the light is brighter than the side away from it.
  EXPECT_GT(brightness(lit[ball_on_floor::at(0.5, 0.0)]), 2 * brightness(lit[ball_on_floor::at(-0.5, 0.0)]));
  // Shadows darken the floor behind the ball (seen from the light) down to the
  // ambient light, and leave the floor beside it alone.
  const int behind = ball_on_floor::at(-2.5, 0.0), beside = ball_on_floor::at(0.0, 2.5);
  EXPECT_EQ(with_shadows[behind], colour(0.05, 0.05, 0.05));
  EXPECT_GT(brightness(lit[behind]), 0.5);
  EXPECT_EQ(with_shadows[beside], lit[beside]);

  // A red glass ball tints the floor seen through it and the light it lets through.
  ball_on_floor glass(true);
  glass.ball_material = material();
  glass.ball_material.refractive = colour(1.0, 0.3, 0.3);
  glass.ball_material.index_by_channel = vector(1.3, 1.3, 1.3);
  const std::vector<colour> through = glass.render();
  const colour centre = through[ball_on_floor::at(0.1, 0.1)], shadow = through[behind];
  EXPECT_GT(centre.x, 2 * centre.y);
  EXPECT_EQ(centre.y, centre.z);
  EXPECT_GT(shadow.x, 2 * shadow.y);
  EXPECT_GT(brightness(shadow), brightness(with_shadows[behind]));
}

// A scene that draws on the random stream (area light) and the noise (roughness).
std::vector<colour> rough_render() {
  ball_on_floor scene(true);
  auto area = std::make_unique<point_light>(position(0.0, -3.0, 6.0), colour(0.5, 0.5, 0.5), colour());
  area->set_attenuation(vector(1.0, 0.0, 0.0), 1.0);
  scene.w.add_light(std::move(area));
  scene.ball_material.rough = std::make_shared<roughness>(
      std::make_unique<fractal_noise>(0.2, 0.6, 0.0, scene.context.noise, scene.context.random));
  scene.ball_material.reflective = colour(0.3, 0.3, 0.3);
  return scene.render();
}

TEST(shading_render, renders_are_bit_identical) {
  const std::vector<colour> first = rough_render(), second = rough_render();
  ASSERT_EQ(first.size(), second.size());
  EXPECT_EQ(std::memcmp(first.data(), second.data(), first.size() * sizeof(colour)), 0);
}

}  // namespace
}  // namespace sciray
