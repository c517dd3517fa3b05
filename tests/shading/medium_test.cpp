// medium_test.cpp - absorption and haze along a travelled segment, alone and
// applied by the tracer to what a primary ray brings back.
#include <gtest/gtest.h>

#include <cmath>

#include "test_scene.h"

namespace sciray {
namespace {

void expect_near(const colour& got, const colour& want) {
  for (int i = 0; i < 3; ++i) EXPECT_NEAR(got[i], want[i], 1e-14) << i;
}

TEST(medium_formulas, haze_and_body_attenuation) {
  material air;
  air.set_atmosphere(colour(0.2, 0.4, 0.8), 10.0);
  colour c;  // a black object at distance L comes back as half the haze colour
  air.apply_medium(10.0, c);
  expect_near(c, colour(0.1, 0.2, 0.4));
  c = colour(1.0, 0.0, 0.5);  // far away everything is haze
  air.apply_medium(1e4, c);
  expect_near(c, colour(0.2, 0.4, 0.8));
  c = colour(0.3, 0.6, 0.9);  // a segment of length 0 changes nothing
  air.apply_medium(0.0, c);
  expect_near(c, colour(0.3, 0.6, 0.9));

  // Half of red survives 2 units; a 0 channel is unspecified, a 1 channel clear;
  // the body's emission is cleared.
  material body = air;
  body.set_attenuation(colour(0.5, 0.0, 1.0), 2.0);
  c = colour(1.0, 1.0, 1.0);
  body.apply_medium(4.0, c);
  expect_near(c, colour(0.25, 1.0, 1.0));

  // Length 0 or less: no medium at all.
  for (double length : {0.0, -5.0}) {
    material none;
    none.set_atmosphere(colour(1.0, 1.0, 1.0), length);
    none.set_attenuation(colour(0.5, 0.5, 0.5), length);
    c = colour(0.3, 0.6, 0.9);
    none.apply_medium(100.0, c);
    EXPECT_EQ(c, colour(0.3, 0.6, 0.9)) << length;
  }
}

TEST(medium_formulas, atmosphere_fades_what_primary_rays_hit) {
  world w;
  render_context context;
  w.atmosphere.set_atmosphere(colour(1.0, 1.0, 1.0), 10.0);
  material black;
  w.add(test::ball(position(), 1.0, &black));
  // The ball's surface is 10 units from the eye: black turns half white.
  ray_state s = primary_state(w, context, ray(position(11.0, 0.0, 0.0), direction(-1.0, 0.0, 0.0)));
  expect_near(w.trace(s), colour(0.5, 0.5, 0.5));
  EXPECT_EQ(s.medium, &w.atmosphere);
}

}  // namespace
}  // namespace sciray
