// material_test.cpp - surface shading: the colour terms, the inside flip and
// roughness on a local normal, reflection, refraction entering and leaving,
// total internal reflection and dispersion into three rays; and materials as
// media: haze and absorption along a travelled segment.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "environment/noise.h"
#include "support/expect_near.h"
#include "test_scene.h"

namespace sciray::testing {
namespace {

constexpr double degree = 3.14159265358979323846 / 180;
const direction down(0.0, 0.0, -1.0), normal(0.0, 0.0, 1.0);
const colour answer(0.2, 0.4, 0.8), clear(1.0, 1.0, 1.0);

// Returns a fixed colour and remembers every ray that asked for it.
struct probe_material : material {
  colour shade(ray_state& state) const override {
    visits.push_back(state);
    return answer;
  }
  mutable std::vector<ray_state> visits;
};

// A hit at `where` on a surface with normal +z, inside a probe ball that
// records the rays the shading sends out, lit straight from above.
struct shading_bench : bench {
  probe_material probe;
  const material* air = &w.atmosphere;

  shading_bench() {
    settings.depth = 5;
    add_ball(w, position(), 100.0, &probe);
    w.add_light(std::make_unique<directional_light>(down, colour(1.0, 1.0, 1.0), colour()));
  }
  // Shades with `m` the ray arriving along `d` in `medium`.
  colour shade(const material& m, const direction& d, const material* medium, const position& where = position()) {
    ray_state s = start(where - d, d);
    s.hit.distance = 1.0;
    s.hit.normal = normal;
    s.medium = medium;
    const colour c = m.shade(s);
    EXPECT_EQ(s.hit.normal, normal);  // the primitive's normal is left alone
    return c;
  }
  // Checks the last ray the shading sent out.
  void expect_sent(int kind, const vector& dir, const material* medium, const colour& weight) const {
    EXPECT_EQ(probe.visits.back().kind, kind);
    expect_near(probe.visits.back().r.dir, dir, 1e-12);
    EXPECT_EQ(probe.visits.back().medium, medium);
    EXPECT_EQ(probe.visits.back().weight, weight);
  }
};

direction at_angle(double degrees, double z_sign) {
  return direction(std::sin(degrees * degree), 0.0, z_sign * std::cos(degrees * degree));
}

TEST(material_shade, colour_terms_secondary_rays_and_dispersion) {
  shading_bench b;
  b.w.ambient = colour(0.25, 0.25, 0.25);
  material m;
  m.diffuse = colour(0.5, 0.25, 1.0);
  m.ambient = colour(1.0, 0.5, 0.0);
  m.emission = colour(0.01, 0.02, 0.03);
  // From straight above: full diffuse. From inside the normal turns away from the light.
  expect_near(b.shade(m, down, b.air), colour(0.76, 0.395, 1.03), 1e-12);
  expect_near(b.shade(m, normal, &m), colour(0.26, 0.145, 0.03), 1e-12);
  EXPECT_TRUE(b.probe.visits.empty());  // neither reflective nor refractive: no secondary ray

  // Roughness tilts the normal away from the light: the same at one point, not at the next.
  m.rough = std::make_shared<roughness>(
      std::make_unique<fractal_noise>(0.1, 0.5, 0.0, b.context.noise, b.context.random));
  const colour here = b.shade(m, down, b.air, position(0.3, 0.0, 0.0));
  EXPECT_LT(here.x, 0.76);
  EXPECT_EQ(b.shade(m, down, b.air, position(0.3, 0.0, 0.0)), here);
  EXPECT_NE(b.shade(m, down, b.air, position(0.37, 0.0, 0.0)), here);
  // The bump is centred: with no octaves the noise is 0 everywhere, and
  // taking half the amplitude off tilts the normal to (-1, -1, 3) / |..|.
  m.rough->noise->depth = 0;
  m.rough->noise->amplitude = 0.5;
  m.rough->noise->update_normaliser();
  expect_near(b.shade(m, down, b.air), colour(0.5, 0.25, 1.0) * (0.75 / std::sqrt(0.6875)) + colour(0.26, 0.145, 0.03),
              1e-12);

  // Secondary rays: the mirror's reflection, and refraction into and out of glass.
  material mirror, glass;
  mirror.reflective = colour(0.5, 0.25, 1.0);
  glass.refractive = colour(1.0, 1.0, 1.0);
  glass.index_by_channel = vector(1.5, 1.5, 1.5);
  EXPECT_EQ(b.shade(mirror, at_angle(30, -1), b.air), colour(0.1, 0.1, 0.8));
  b.expect_sent(reflected_ray, at_angle(30, 1), b.air, mirror.reflective);
  // A mirror met inside a body reflects the ray back into that body.
  b.shade(mirror, at_angle(30, -1), &glass);
  b.expect_sent(reflected_ray, at_angle(30, 1), &glass, mirror.reflective);
  // Entering at 30 degrees: Snell's law with 1 / 1.5; the ray then travels in the glass.
  b.shade(glass, at_angle(30, -1), b.air);
  b.expect_sent(refracted_ray, vector(0.5 / 1.5, 0.0, -std::sqrt(1 - 1 / 9.0)), &glass, clear);
  // Leaving at 30 degrees: sin_t = 0.75, out into the atmosphere.
  b.shade(glass, at_angle(30, 1), &glass);
  b.expect_sent(refracted_ray, vector(0.75, 0.0, std::sqrt(1 - 0.75 * 0.75)), b.air, clear);
  // Leaving at 60 degrees: sin_t = 1.3, reflected back inside, still in the glass.
  EXPECT_EQ(b.shade(glass, at_angle(60, 1), &glass), answer);
  b.expect_sent(reflected_ray, at_angle(60, -1), &glass, clear);

  // Dispersion: one ray per channel, each keeping only its own colour.
  material prism;
  prism.refractive = colour(1.0, 0.5, 0.25);
  prism.index_by_channel = vector(1.4, 1.5, 1.6);
  EXPECT_EQ(b.shade(prism, at_angle(30, -1), b.air), colour(0.2, 0.2, 0.2));
  ASSERT_EQ(b.probe.visits.size(), 8u);
  const colour weights[3] = {colour(1.0, 0.0, 0.0), colour(0.0, 0.5, 0.0), colour(0.0, 0.0, 0.25)};
  for (int channel = 0; channel < 3; ++channel) {
    EXPECT_EQ(b.probe.visits[5 + channel].weight, weights[channel]);
    EXPECT_NEAR(b.probe.visits[5 + channel].r.dir.x, 0.5 / prism.index_by_channel[channel], 1e-12);
  }
  // No spread: a single ray. An atmosphere as dense as the glass does not bend it.
  b.w.atmosphere.index_by_channel = prism.index_by_channel = vector(1.5, 1.5, 1.5);
  b.shade(prism, at_angle(30, -1), b.air);
  b.expect_sent(refracted_ray, at_angle(30, -1), &prism, prism.refractive);
  EXPECT_EQ(b.probe.visits.size(), 9u);
}

TEST(medium_formulas, haze_and_body_attenuation) {
  const auto after = [](const material& m, double distance, colour c) {
    m.apply_medium(distance, c);
    return c;
  };
  const colour some(0.3, 0.6, 0.9);
  material air;
  air.set_atmosphere(colour(0.2, 0.4, 0.8), 10.0);
  // A black object at distance L comes back as half the haze colour; far away
  // everything is haze; a segment of length 0 changes nothing.
  expect_near(after(air, 10.0, colour()), colour(0.1, 0.2, 0.4), 1e-14);
  expect_near(after(air, 1e4, colour(1.0, 0.0, 0.5)), colour(0.2, 0.4, 0.8), 1e-14);
  expect_near(after(air, 0.0, some), some, 1e-14);

  // Half of red survives 2 units; a 0 channel is unspecified, a 1 channel
  // clear; the body's emission is cleared.
  material body = air;
  body.set_attenuation(colour(0.5, 0.0, 1.0), 2.0);
  expect_near(after(body, 4.0, colour(1.0, 1.0, 1.0)), colour(0.25, 1.0, 1.0), 1e-14);
  // Length 0 or less: no medium at all.
  for (double length : {0.0, -5.0}) {
    material none;
    none.set_atmosphere(colour(1.0, 1.0, 1.0), length);
    none.set_attenuation(colour(0.5, 0.5, 0.5), length);
    EXPECT_EQ(after(none, 100.0, some), some) << length;
  }
}

}  // namespace
}  // namespace sciray::testing
