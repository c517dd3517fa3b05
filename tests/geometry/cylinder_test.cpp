// cylinder_test.cpp - the open tube: frame and bounds, roots and their
// admissibility, segment ends, tangents, the inside wall, surface data.
#include "geometry/cylinder.h"

#include <gtest/gtest.h>

#include <cmath>

#include "geometry_test_support.h"

namespace sciray {
namespace {

using geometry_testing::first_hit;
using geometry_testing::shaded;

const direction plus_x(1, 0, 0), plus_y(0, 1, 0), plus_z(0, 0, 1);

TEST(cylinder, frame_and_bounds) {
  const cylinder up(position(0, 0, 0), position(0, 0, 2), 0.5);
  EXPECT_EQ(up.axis(), vector(0, 0, 1));
  EXPECT_EQ(up.length(), 2.0);
  EXPECT_EQ(up.reference(), vector(1, 0, 0));
  // Downwards (0, 0, 1) x axis is zero and normalises to (1, 0, 0) too.
  EXPECT_EQ(cylinder(position(0, 0, 2), position(0, 0, 0), 0.5).reference(), vector(1, 0, 0));
  EXPECT_EQ(cylinder(position(0, 0, 0), position(3, 0, 0), 0.5).reference(), vector(0, 1, 0));

  // The union of the cubes of half-side `radius` around the two ends.
  const cylinder slanted(position(1, 2, 3), position(-1, 4, 3), 0.5);
  const bounding_box& b = *slanted.bounds();
  EXPECT_EQ(b.axis[0].lo, -1.5);
  EXPECT_EQ(b.axis[0].hi, 1.5);
  EXPECT_EQ(b.axis[1].lo, 1.5);
  EXPECT_EQ(b.axis[1].hi, 4.5);
  EXPECT_EQ(b.axis[2].hi, 3.5);
}

TEST(cylinder, roots_and_admissibility) {
  const cylinder c(position(0, 0, 0), position(0, 0, 2), 1);
  const ray side(position(-5, 0, 1), plus_x);  // roots 4 and 6
  EXPECT_EQ(first_hit(c, side), 4.0);
  EXPECT_EQ(first_hit(c, side, 4.0), -1.0);  // strictly below the current distance

  // 2^-20 (below 1e-6) outside the wall: the far root; 2^-19: the near one.
  const double small = std::ldexp(1.0, -20), larger = std::ldexp(1.0, -19);
  EXPECT_EQ(first_hit(c, ray(position(-1 - small, 0, 1), plus_x)), 2 + small);
  EXPECT_EQ(first_hit(c, ray(position(-1 - larger, 0, 1), plus_x)), larger);
  EXPECT_EQ(first_hit(c, ray(position(0, 0, 1), plus_x)), 1.0);   // from inside
  EXPECT_EQ(first_hit(c, ray(position(-5, 1, 1), plus_x)), 5.0);  // tangent: disc exactly 0

  // Hits exactly at either end count; just beyond, neither root does.
  EXPECT_EQ(first_hit(c, ray(position(-5, 0, 0), plus_x)), 4.0);
  EXPECT_EQ(first_hit(c, ray(position(-5, 0, 2), plus_x)), 4.0);
  EXPECT_EQ(first_hit(c, ray(position(-5, 0, -0.001), plus_x)), -1.0);
  EXPECT_EQ(first_hit(c, ray(position(-5, 0, 2.001), plus_x)), -1.0);
  // Into the open end: the near root (x = -1, z = -0.5) lies before the
  // start, so the inside wall at x = 1, z = 1.5 is hit.
  EXPECT_NEAR(first_hit(c, ray(position(-3, 0, -2.5), normalise(vector(1, 0, 1)))), 4 * std::sqrt(2.0), 1e-12);

  // Parallel to the axis, even along the wall; degenerate tubes: never hit.
  EXPECT_EQ(first_hit(c, ray(position(1, 0, -5), plus_z)), -1.0);
  EXPECT_EQ(first_hit(c, ray(position(0.5, 0, 1), plus_z)), -1.0);
  EXPECT_EQ(first_hit(cylinder(position(0, 0, 1), position(0, 0, 1), 1), side), -1.0);
  EXPECT_EQ(first_hit(cylinder(position(0, 0, 0), position(0, 0, 2), 0), ray(position(-5, 0, 0), plus_x)), -1.0);
}

TEST(cylinder, surface_data) {
  geometry_testing::recording_material m;
  const double pi = std::acos(-1.0);
  cylinder c(position(0, 0, 0), position(0, 0, 2), 1);
  c.set_material(&m);
  c.value_start = 10;
  c.value_end = 30;

  const hit_record at_start = shaded(c, ray(position(-5, 0, 0), plus_x));
  EXPECT_EQ(at_start.value, 10.0);
  EXPECT_EQ(m.seen.value, 10.0);
  EXPECT_EQ(shaded(c, ray(position(-5, 0, 2), plus_x)).value, 30.0);

  // Halfway on the -y side: the angle runs from (1, 0, 0) towards
  // axis x reference = (0, 1, 0), so -y is a quarter turn back.
  const hit_record middle = shaded(c, ray(position(0, -5, 1), plus_y));
  EXPECT_EQ(middle.value, 20.0);
  EXPECT_EQ(middle.normal, vector(0, -1, 0));
  EXPECT_EQ(middle.surface_coords, vector(-pi / 2, 1, 0));

  // The inside wall and a ray from inside: the normal still points outwards.
  EXPECT_EQ(shaded(c, ray(position(-3, 0, -2.5), normalise(vector(1, 0, 1)))).normal, vector(1, 0, 0));
  EXPECT_EQ(shaded(c, ray(position(0, 0, 1), direction(-1, 0, 0))).normal, vector(-1, 0, 0));
  EXPECT_EQ(shaded(c, ray(position(-5, 1, 1), plus_x)).normal, vector(0, 1, 0));  // tangent point

  // Pointing down, the angle still starts at (1, 0, 0) but runs towards
  // (0, 0, -1) x (1, 0, 0) = (0, -1, 0); v is measured from the start end.
  cylinder down(position(0, 0, 2), position(0, 0, 0), 3);
  down.set_material(&m);
  const hit_record flipped = shaded(down, ray(position(0, -5, 0.5), plus_y));
  EXPECT_DOUBLE_EQ(flipped.surface_coords.x, 3 * pi / 2);
  EXPECT_EQ(flipped.surface_coords.y, 1.5);

  ray_state state;
  state.r = ray(position(-5, 0, 1), plus_x);
  state.hit.distance = 4;
  EXPECT_EQ(c.shadow_filter(state), geometry_testing::transmit_colour);
  EXPECT_EQ(state.hit.value, 20.0);
}

}  // namespace
}  // namespace sciray
