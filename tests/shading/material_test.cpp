// material_test.cpp - surface shading: the colour terms, the inside flip and
// roughness on a local normal, reflection, refraction entering and leaving,
// total internal reflection, dispersion into three rays, and the filter of
// transparent bodies on shadow rays.
#include <gtest/gtest.h>

#include <cmath>

#include "environment/noise.h"
#include "shading/light.h"
#include "test_scene.h"

namespace sciray {
namespace {

constexpr double degree = 3.14159265358979323846 / 180;

// A hit at the origin on a surface with normal +z, inside a probe ball that
// records the rays the shading sends out, lit straight from above.
struct shading_bench {
  world w;
  render_context context;
  test::probe_material probe{colour(0.2, 0.4, 0.8)};

  shading_bench() {
    w.depth_max = 5;
    w.add(test::ball(position(), 100.0, &probe));
    w.add_light(std::make_unique<directional_light>(direction(0.0, 0.0, -1.0), colour(1.0, 1.0, 1.0), colour()));
  }
  // Shades with `m` the ray arriving along `d` in `medium` at `where`.
  colour shade(const material& m, const direction& d, const material* medium, const position& where = position()) {
    ray_state s = test::hit_state(w, context, ray(where - d, d), 1.0, direction(0.0, 0.0, 1.0));
    s.medium = medium;
    const colour c = m.shade(s);
    EXPECT_EQ(s.hit.normal, direction(0.0, 0.0, 1.0));  // the primitive's normal is left alone
    return c;
  }
  const test::probe_material::visit& last() const { return probe.visits.back(); }
};

direction at_angle(double degrees, double z_sign) {
  return direction(std::sin(degrees * degree), 0.0, z_sign * std::cos(degrees * degree));
}

void expect_near(const vector& got, const vector& want) {
  for (int i = 0; i < 3; ++i) EXPECT_NEAR(got[i], want[i], 1e-12) << i;
}

TEST(material_terms, colours_inside_flip_and_roughness) {
  shading_bench b;
  b.w.ambient = colour(0.25, 0.25, 0.25);
  material m;
  m.diffuse = colour(0.5, 0.25, 1.0);
  m.ambient = colour(1.0, 0.5, 0.0);
  m.emission = colour(0.01, 0.02, 0.03);
  // From straight above: full diffuse. From inside the normal turns away from the light.
  expect_near(b.shade(m, direction(0.0, 0.0, -1.0), &b.w.atmosphere), colour(0.76, 0.395, 1.03));
  expect_near(b.shade(m, direction(0.0, 0.0, 1.0), &m), colour(0.26, 0.145, 0.03));
  EXPECT_TRUE(b.probe.visits.empty());  // neither reflective nor refractive: no secondary ray

  // Roughness tilts the normal away from the light: the same at one point, not at the next.
  material rough = m;
  rough.rough = std::make_shared<roughness>(
      std::make_unique<fractal_noise>(0.1, 0.5, 0.0, b.context.noise, b.context.random));
  const direction down(0.0, 0.0, -1.0);
  const colour here = b.shade(rough, down, &b.w.atmosphere, position(0.3, 0.0, 0.0));
  EXPECT_LT(here.x, 0.76);
  EXPECT_EQ(b.shade(rough, down, &b.w.atmosphere, position(0.3, 0.0, 0.0)), here);
  EXPECT_NE(b.shade(rough, down, &b.w.atmosphere, position(0.37, 0.0, 0.0)), here);
}

TEST(material_rays, reflection_refraction_and_total_internal_reflection) {
  shading_bench b;
  material mirror;
  mirror.reflective = colour(0.5, 0.25, 1.0);
  EXPECT_EQ(b.shade(mirror, at_angle(30, -1), &b.w.atmosphere), colour(0.1, 0.1, 0.8));
  EXPECT_EQ(b.last().kind, reflected_ray);
  expect_near(b.last().dir, at_angle(30, 1));
  EXPECT_EQ(b.last().weight, mirror.reflective);
  EXPECT_EQ(b.last().medium, &b.w.atmosphere);

  material glass;
  glass.refractive = colour(1.0, 1.0, 1.0);
  glass.index_by_channel = vector(1.5, 1.5, 1.5);
  // Entering at 30 degrees: Snell's law with 1 / 1.5; the ray then travels in the glass.
  b.shade(glass, at_angle(30, -1), &b.w.atmosphere);
  EXPECT_EQ(b.last().kind, refracted_ray);
  expect_near(b.last().dir, vector(0.5 / 1.5, 0.0, -std::sqrt(1 - 1 / 9.0)));
  EXPECT_EQ(b.last().medium, &glass);
  // Leaving at 30 degrees: sin_t = 0.75, out into the atmosphere.
  b.shade(glass, at_angle(30, 1), &glass);
  expect_near(b.last().dir, vector(0.75, 0.0, std::sqrt(1 - 0.75 * 0.75)));
  EXPECT_EQ(b.last().medium, &b.w.atmosphere);
  // Leaving at 60 degrees: sin_t = 1.3, reflected back inside, still in the glass.
  EXPECT_EQ(b.shade(glass, at_angle(60, 1), &glass), b.probe.answer);
  EXPECT_EQ(b.last().kind, reflected_ray);
  expect_near(b.last().dir, at_angle(60, -1));
  EXPECT_EQ(b.last().medium, &glass);
  // An atmosphere as dense as the glass does not bend the ray.
  b.w.atmosphere.index_by_channel = vector(1.5, 1.5, 1.5);
  b.shade(glass, at_angle(30, -1), &b.w.atmosphere);
  expect_near(b.last().dir, at_angle(30, -1));
  EXPECT_EQ(b.probe.visits.size(), 5u);
}

TEST(material_rays, dispersion_sends_one_ray_per_channel) {
  shading_bench b;
  material prism;
  prism.refractive = colour(1.0, 0.5, 0.25);
  prism.index_by_channel = vector(1.4, 1.5, 1.6);
  // Each channel keeps only its own ray's colour.
  EXPECT_EQ(b.shade(prism, at_angle(30, -1), &b.w.atmosphere), colour(0.2, 0.2, 0.2));
  ASSERT_EQ(b.probe.visits.size(), 3u);
  const colour weights[3] = {colour(1.0, 0.0, 0.0), colour(0.0, 0.5, 0.0), colour(0.0, 0.0, 0.25)};
  for (int channel = 0; channel < 3; ++channel) {
    EXPECT_EQ(b.probe.visits[channel].weight, weights[channel]);
    EXPECT_NEAR(b.probe.visits[channel].dir.x, 0.5 / prism.index_by_channel[channel], 1e-12);
  }
  // No spread: a single ray.
  prism.index_by_channel = vector(1.5, 1.5, 1.5);
  b.shade(prism, at_angle(30, -1), &b.w.atmosphere);
  EXPECT_EQ(b.probe.visits.size(), 4u);
}

TEST(material_transmittance, bodies_filter_and_absorb_shadow_rays) {
  world w;
  render_context context;
  w.shadows = true;
  material glass;
  glass.refractive = colour(0.5, 1.0, 0.5);
  glass.set_attenuation(colour(0.5, 0.5, 0.5), 1.0);
  w.add(test::ball(position(), 0.5, &glass));
  const ray_state shaded = primary_state(w, context, ray());
  const auto transmit = [&] {
    ray_state s =
        transmission_state(shaded, position(0.0, 0.0, -5.0), position(0.0, 0.0, 5.0), colour(1, 1, 1), nullptr);
    return w.transmit(s);
  };
  // Through a ball of diameter 1: the filter twice and one unit of absorption.
  expect_near(transmit(), colour(0.125, 0.5, 0.125));
  EXPECT_EQ(context.ray_count, 3u);
  // A filter below the cut-off stops the ray inside; an opaque body casts nothing further.
  glass.refractive = colour(0.005, 0.005, 0.005);
  EXPECT_EQ(transmit(), colour());
  glass.refractive = colour();
  EXPECT_EQ(transmit(), colour());
  EXPECT_EQ(context.ray_count, 5u);
}

}  // namespace
}  // namespace sciray
