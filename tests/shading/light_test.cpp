// light_test.cpp - each light kind's contribution on configurations worked
// out by hand, shadows through opaque and coloured bodies, and the area
// light's samples and use of the random stream.
#include <gtest/gtest.h>

#include <cmath>

#include "shading/light.h"
#include "test_scene.h"

namespace sciray {
namespace {

constexpr double degree = 3.14159265358979323846 / 180;
const colour light_colour(1.0, 0.5, 0.25), light_ambient(0.1, 0.2, 0.3);
const direction up(0.0, 0.0, 1.0), down(0.0, 0.0, -1.0);

// A point shaded on a surface facing `normal`, with mirror direction `mirror`.
struct lit_point {
  world w;
  render_context context;
  ray_state state = primary_state(w, context, ray());
  shading_point p;

  lit_point(const position& where, const direction& normal, const vector& mirror, double shininess)
      : p{where, normal, mirror, shininess} {}
  ray_state light_up(const light& l) {
    l.illuminate(state, p);
    return state;
  }
};

void expect_near(const colour& got, const colour& want, double tolerance = 1e-14) {
  for (int i = 0; i < 3; ++i) EXPECT_NEAR(got[i], want[i], tolerance) << i;
}

TEST(light_point, terms_attenuation_and_shadows) {
  point_light lamp(position(0.0, 0.0, 4.0), light_colour, light_ambient);
  lamp.set_attenuation(vector(1.0, 0.5, 0.25), 0.0);  // f = 1 / (1 + 0.5*4 + 0.25*16) = 1/7
  const ray_state& facing = lit_point(position(), up, up, 10.0).light_up(lamp);
  expect_near(facing.diffuse_sum, light_colour / 7);
  expect_near(facing.specular_sum, light_colour / 7);
  EXPECT_EQ(facing.ambient_sum, light_ambient);

  // Facing away: only the light's ambient.
  const ray_state& away = lit_point(position(), down, down, 10.0).light_up(lamp);
  EXPECT_EQ(away.diffuse_sum + away.specular_sum, colour());
  EXPECT_EQ(away.ambient_sum, light_ambient);

  // Mirror direction 60 degrees off the light: 0.5^shininess; shininess 0: none.
  const vector tilted(std::sin(60 * degree), 0.0, std::cos(60 * degree));
  expect_near(lit_point(position(), up, tilted, 10.0).light_up(lamp).specular_sum,
              std::pow(0.5, 10) * light_colour / 7);
  EXPECT_EQ(lit_point(position(), up, tilted, 0.0).light_up(lamp).specular_sum, colour());

  // Constant attenuation: no fall-off with distance.
  const point_light far_lamp(position(0.0, 0.0, 80.0), light_colour, light_ambient);
  EXPECT_EQ(lit_point(position(), up, up, 0.0).light_up(far_lamp).diffuse_sum, light_colour);

  // An opaque body blocks; red glass lets only red through (shadow ray, inside, out);
  // a body beyond the light does nothing.
  material opaque, red_glass;
  red_glass.refractive = colour(1.0, 0.0, 0.0);
  const auto behind = [&](const material& m, double z) {
    lit_point lp(position(), up, up, 0.0);
    lp.w.shadows = true;
    lp.w.add(test::ball(position(0.0, 0.0, z), 0.5, &m));
    const colour d = lp.light_up(far_lamp).diffuse_sum;
    return std::make_pair(d, lp.context.ray_count);
  };
  EXPECT_EQ(behind(opaque, 2.0), std::make_pair(colour(), 1u));
  EXPECT_EQ(behind(red_glass, 2.0), std::make_pair(colour(1.0, 0.0, 0.0), 3u));
  EXPECT_EQ(behind(opaque, 90.0).first, light_colour);
}

TEST(light_spot, linear_fall_off_between_the_cones) {
  const position top(0.0, 0.0, 10.0);
  const point_light bare(top, light_colour, light_ambient);
  const spot_light spot(top, light_colour, light_ambient, down, 30.0, 20.0);
  const auto at = [&](const light& l, double angle) {
    return lit_point(position(10 * std::tan(angle * degree), 0.0, 0.0), up, up, 0.0).light_up(l);
  };
  EXPECT_EQ(at(spot, 10).diffuse_sum, at(bare, 10).diffuse_sum);
  // Half way between 20 and 30 degrees: half of every contribution, ambient included.
  expect_near(at(spot, 25).diffuse_sum, 0.5 * at(bare, 25).diffuse_sum, 1e-12);
  expect_near(at(spot, 25).ambient_sum, 0.5 * light_ambient, 1e-12);
  expect_near(at(spot, 30).ambient_sum, colour(), 1e-12);
  EXPECT_EQ(at(spot, 35).diffuse_sum + at(spot, 35).ambient_sum, colour());
}

TEST(light_area, samples_and_random_draws) {
  const position centre(0.0, 0.0, 5.0);
  point_light lamp(centre, light_colour, light_ambient);
  lamp.set_attenuation(vector(1.0, 0.0, 0.0), 0.5);
  lit_point lp(position(), up, up, 0.0);
  rand_stream reference;
  double jitter[36];
  for (double& j : jitter) j = (2.0 * reference.next() / 2147483647.0 - 1) * 0.125;
  lp.light_up(lamp);
  EXPECT_EQ(lp.context.random.next(), reference.next());  // 36 draws per point

  // Seen from below the disc frame is U = (0, -1, 0), V = (1, 0, 0), and the
  // apparent radius 0.5 cos(asin(0.5 / 5)); rings outer, staggered, inner.
  const double apparent = 0.5 * std::sqrt(0.99);
  const double radius[3] = {apparent, std::sqrt(3.0) / 2 * apparent, 0.5 * apparent};
  const auto& s = lp.context.light_samples;
  for (int m = 0; m < 18; ++m) {
    const double a = (2 * (m % 6) + (m / 6 == 1)) * 30 * degree;
    EXPECT_NEAR(s[m].x, radius[m / 6] * (std::sin(a) + jitter[2 * m + 1]), 1e-12) << m;
    EXPECT_NEAR(s[m].y, -radius[m / 6] * (std::cos(a) + jitter[2 * m]), 1e-12) << m;
  }
  EXPECT_EQ(s[18], centre);
  EXPECT_NEAR(lp.state.diffuse_sum.x, 1.0, 0.02);  // close to the point light's

  // Every area light draws its own 36 values; a spotlight draws none outside its cone.
  lit_point two(position(), up, up, 0.0);
  two.w.add_light(std::make_unique<point_light>(lamp));
  two.w.add_light(std::make_unique<point_light>(lamp));
  spot_light spot(centre, light_colour, light_ambient, down, 30.0, 20.0);
  spot.set_attenuation(vector(1.0, 0.0, 0.0), 0.5);
  two.w.add_light(std::make_unique<spot_light>(spot));
  two.p.point = position(10.0, 0.0, 0.0);
  two.w.gather_light(two.state, two.p);
  rand_stream skipped;
  for (int i = 0; i < 72; ++i) skipped.next();
  EXPECT_EQ(two.context.random.next(), skipped.next());
}

TEST(light_directional, unattenuated_light_from_one_direction) {
  const directional_light sun(down, light_colour, light_ambient);
  const ray_state& flat = lit_point(position(), up, up, 5.0).light_up(sun);
  EXPECT_EQ(flat.diffuse_sum, light_colour);
  EXPECT_EQ(flat.specular_sum, light_colour);
  EXPECT_EQ(flat.ambient_sum, light_ambient);
  const direction tilted(std::sin(60 * degree), 0.0, std::cos(60 * degree));
  expect_near(lit_point(position(), tilted, vector(), 5.0).light_up(sun).diffuse_sum, 0.5 * light_colour);

  // The shadow ray has no end: a far body blocks, green glass filters.
  material green_glass;
  green_glass.refractive = colour(0.0, 1.0, 0.0);
  lit_point filtered(position(), up, up, 0.0);
  filtered.w.shadows = true;
  filtered.w.add(test::ball(position(0.0, 0.0, 1000.0), 1.0, &green_glass));
  EXPECT_EQ(filtered.light_up(sun).diffuse_sum, colour(0.0, 0.5, 0.0));
  EXPECT_EQ(filtered.context.ray_count, 3u);
}

TEST(light_gather, sums_with_world_ambient_and_highlights_switch) {
  lit_point lp(position(), up, up, 1.0);
  lp.w.ambient = colour(0.01, 0.02, 0.03);
  lp.w.add_light(std::make_unique<directional_light>(down, light_colour, light_ambient));
  lp.w.add_light(std::make_unique<point_light>(position(0.0, 0.0, 3.0), colour(0.5, 0.5, 0.5), light_ambient));
  lp.w.gather_light(lp.state, lp.p);
  EXPECT_EQ(lp.state.diffuse_sum, light_colour + colour(0.5, 0.5, 0.5));
  EXPECT_EQ(lp.state.specular_sum, colour());  // highlights off
  EXPECT_EQ(lp.state.ambient_sum, light_ambient + light_ambient + lp.w.ambient);
  lp.w.highlights = true;
  lp.w.gather_light(lp.state, lp.p);
  EXPECT_EQ(lp.state.specular_sum, light_colour + colour(0.5, 0.5, 0.5));
}

}  // namespace
}  // namespace sciray
