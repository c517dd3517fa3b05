// light_test.cpp - each light kind's contribution on configurations worked
// out by hand, shadows through opaque, filtering and absorbing bodies, and the
// area light's samples and use of the random stream.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "support/expect_near.h"
#include "test_scene.h"

namespace sciray::testing {
namespace {

constexpr double degree = 3.14159265358979323846 / 180;
const colour light_colour(1.0, 0.5, 0.25), light_ambient(0.1, 0.2, 0.3);
const direction up(0.0, 0.0, 1.0), down(0.0, 0.0, -1.0);
const direction tilted(std::sin(60 * degree), 0.0, std::cos(60 * degree));  // 60 degrees off up

// A point shaded on a surface facing `normal`, with mirror direction `mirror`.
struct lit_point : bench {
  shading_point p;

  lit_point(const direction& normal, const vector& mirror, double shininess, const position& where = position())
      : p{where, normal, mirror, shininess} {}
  // What `l` adds at the point, for a ray that hit it.
  light_contribution light_up(const light& l) { return l.illuminate(p, start(position(), direction())); }
};

// What `l` adds to the diffuse light of an upward-facing point under a ball
// of `m` at height `z`, with shadows on, and the rays that cost.
std::pair<colour, std::uint32_t> under_ball(const light& l, const material& m, double z) {
  lit_point lp(up, up, 0.0);
  lp.settings.shadows = true;
  add_ball(lp.w, position(0.0, 0.0, z), 0.5, &m);
  return {lp.light_up(l).diffuse, lp.context.ray_count};
}

TEST(light_point, terms_attenuation_shadows_and_spot_fall_off) {
  point_light lamp(position(0.0, 0.0, 4.0), light_colour, light_ambient);
  lamp.set_attenuation(vector(1.0, 0.5, 0.25), 0.0);  // f = 1 / (1 + 0.5*4 + 0.25*16) = 1/7
  expect_near(lit_point(up, up, 0.0).light_up(lamp).diffuse, light_colour / 7, 1e-14);
  // Mirror direction 60 degrees off the light: 0.5^shininess; shininess 0: none.
  expect_near(lit_point(up, tilted, 10.0).light_up(lamp).specular, std::pow(0.5, 10) * light_colour / 7, 1e-14);
  EXPECT_EQ(lit_point(up, tilted, 0.0).light_up(lamp).specular, colour());
  // Facing away: only the light's ambient, which does not fade with distance.
  const light_contribution away = lit_point(down, down, 10.0).light_up(lamp);
  EXPECT_EQ(away.diffuse + away.specular, colour());
  EXPECT_EQ(away.ambient, light_ambient);

  // Shadows from a lamp at height 80 (constant attenuation: no fall-off): an
  // opaque body blocks; glass filters twice (in and out) and absorbs over its
  // diameter, at the cost of three rays; a filter below the cut-off stops the
  // shadow ray inside; a body beyond the light does nothing.
  const point_light far_lamp(position(0.0, 0.0, 80.0), light_colour, light_ambient);
  material opaque, glass;
  glass.refractive = colour(0.5, 1.0, 0.5);
  glass.set_attenuation(colour(0.5, 0.5, 0.5), 1.0);
  EXPECT_EQ(under_ball(far_lamp, opaque, 2.0), std::make_pair(colour(), 1u));
  const auto filtered = under_ball(far_lamp, glass, 2.0);
  expect_near(filtered.first, light_colour * colour(0.125, 0.5, 0.125), 1e-12);
  EXPECT_EQ(filtered.second, 3u);
  glass.refractive = colour(0.005, 0.005, 0.005);
  EXPECT_EQ(under_ball(far_lamp, glass, 2.0), std::make_pair(colour(), 1u));
  EXPECT_EQ(under_ball(far_lamp, opaque, 90.0).first, light_colour);

  // A spotlight: linear fall-off between the cones.
  const position top(0.0, 0.0, 10.0);
  const point_light bare(top, light_colour, light_ambient);
  const spot_light spot(top, light_colour, light_ambient, down, 30.0, 20.0);
  const auto at = [&](const light& l, double angle) {
    return lit_point(up, up, 0.0, position(10 * std::tan(angle * degree), 0.0, 0.0)).light_up(l);
  };
  EXPECT_EQ(at(spot, 10).diffuse, at(bare, 10).diffuse);
  // Half way between 20 and 30 degrees: half of every contribution, ambient included.
  expect_near(at(spot, 25).diffuse, 0.5 * at(bare, 25).diffuse, 1e-12);
  expect_near(at(spot, 25).ambient, 0.5 * light_ambient, 1e-12);
  expect_near(at(spot, 30).ambient, colour(), 1e-12);
  EXPECT_EQ(at(spot, 35).diffuse + at(spot, 35).ambient, colour());
}

TEST(light_area, samples_and_random_draws) {
  const position centre(0.0, 0.0, 5.0);
  point_light lamp(centre, light_colour, light_ambient);
  lamp.set_attenuation(vector(1.0, 0.0, 0.0), 0.5);
  lit_point lp(up, up, 0.0);
  rand_stream reference;
  double jitter[36];
  for (double& j : jitter) j = (2.0 * reference.next() / rand_max - 1) * 0.125;
  const light_contribution lit = lp.light_up(lamp);

  // Seen from below the disc frame is U = (0, -1, 0), V = (1, 0, 0), and the
  // apparent radius 0.5 cos(asin(0.5 / 5)); rings outer, staggered, inner.
  const double apparent = 0.5 * std::sqrt(0.99), radius[3] = {apparent, std::sqrt(3.0) / 2 * apparent, 0.5 * apparent};
  const auto& s = lp.context.light_samples;
  for (int m = 0; m < 18; ++m) {
    const double a = (2 * (m % 6) + (m / 6 == 1)) * 30 * degree;
    EXPECT_NEAR(s[m].x, radius[m / 6] * (std::sin(a) + jitter[2 * m + 1]), 1e-12) << m;
    EXPECT_NEAR(s[m].y, -radius[m / 6] * (std::cos(a) + jitter[2 * m]), 1e-12) << m;
  }
  EXPECT_EQ(s[18], centre);
  EXPECT_NEAR(lit.diffuse.x, 1.0, 0.02);  // close to the point light's

  // 36 draws per shaded point for each area light, here two points; a
  // spotlight draws none outside its cone. Each light says so beforehand.
  spot_light spot(centre, light_colour, light_ambient, down, 30.0, 20.0);
  spot.set_attenuation(vector(1.0, 0.0, 0.0), 0.5);
  lp.p.point = position(10.0, 0.0, 0.0);
  lp.light_up(lamp);
  lp.light_up(spot);
  EXPECT_EQ(lp.context.random.drawn(), 72u);
  for (int i = 0; i < 36; ++i) reference.next();
  EXPECT_EQ(lp.context.random.next(), reference.next());
  EXPECT_EQ(std::make_pair(lamp.draws_at(lp.p.point), spot.draws_at(lp.p.point)), std::make_pair(36, 0));
  EXPECT_EQ(spot.draws_at(position()), 36);
  EXPECT_EQ(point_light(centre, light_colour, light_ambient).draws_at(position()), 0);
}

// Clear glass that remembers the direction of every shadow ray through it.
struct recording_glass : material {
  recording_glass() { refractive = colour(1.0, 1.0, 1.0); }
  colour transmittance(ray_state& state) const override {
    visits.push_back(state.r.dir);
    return material::transmittance(state);
  }
  mutable std::vector<vector> visits;
};

TEST(light_directional, gathered_with_world_ambient_highlights_and_shadows) {
  // An unattenuated directional light and a point light of constant attenuation.
  lit_point lp(up, up, 1.0);
  lp.w.ambient = colour(0.01, 0.02, 0.03);
  lp.w.add_light(std::make_unique<directional_light>(down, light_colour, light_ambient));
  lp.w.add_light(std::make_unique<point_light>(position(0.0, 0.0, 3.0), colour(0.5, 0.5, 0.5), light_ambient));
  const auto gathered = [&lp] {
    const ray_state at = lp.start(position(), direction());
    return at.tracer->gather_light(at, lp.p);
  };
  const light_contribution plain = gathered();
  EXPECT_EQ(plain.diffuse, light_colour + colour(0.5, 0.5, 0.5));
  EXPECT_EQ(plain.specular, colour());  // highlights off
  EXPECT_EQ(plain.ambient, light_ambient + light_ambient + lp.w.ambient);
  lp.settings.highlights = true;
  EXPECT_EQ(gathered().specular, light_colour + colour(0.5, 0.5, 0.5));
  const directional_light sun(down, light_colour, light_ambient);
  expect_near(lit_point(tilted, vector(), 5.0).light_up(sun).diffuse, 0.5 * light_colour, 1e-14);

  // The shadow ray has no end: a far body blocks, green glass filters.
  material green_glass;
  green_glass.refractive = colour(0.0, 1.0, 0.0);
  EXPECT_EQ(under_ball(sun, green_glass, 1000.0), std::make_pair(colour(0.0, 0.5, 0.0), 3u));

  // The shadow ray continued through glass is a new ray, its direction
  // normalised again; for this light that changes the last bit.
  const vector location(5.0, 6.0, 3.0);
  const direction towards = normalise(location);
  ASSERT_NE(normalise(towards), towards);
  recording_glass glass;
  lit_point slanted(up, up, 0.0);
  slanted.settings.shadows = true;
  add_ball(slanted.w, position(3 * towards), 0.5, &glass);
  slanted.light_up(directional_light(direction::as_given(-towards), light_colour, light_ambient));
  ASSERT_EQ(glass.visits.size(), 2u);
  EXPECT_EQ(glass.visits[0], towards);
  EXPECT_EQ(glass.visits[1], normalise(towards));
}

}  // namespace
}  // namespace sciray::testing
