// cylinder_test.cpp - the open tube: roots and their admissibility, segment
// ends, tangents, the inside wall, degenerate tubes; bounds and surface data.
#include "geometry/cylinder.h"

#include <gtest/gtest.h>

#include <cmath>

#include "geometry_test_support.h"

namespace sciray::testing {
namespace {

const direction plus_x(1, 0, 0), plus_y(0, 1, 0);

// The tube from (0, 0, 0) to (0, 0, 2) of radius 1, values 10 and 30 at its ends.
shape_scene standing() {
  shape_scene s;
  s.tube(position(0, 0, 0), position(0, 0, 2), 1, 10, 30);
  return s;
}

double first_hit(const position& a, const position& b, double radius, const ray& r) {
  return shape_scene().tube(a, b, radius).first_hit(r);
}

TEST(cylinder, roots_and_admissibility) {
  shape_scene c = standing();
  const ray side(position(-5, 0, 1), plus_x);  // roots 4 and 6
  EXPECT_EQ(c.first_hit(side), 4.0);
  EXPECT_EQ(c.first_hit(side, 4.0), -1.0);  // strictly below the current distance

  // 2^-20 (below 1e-6) outside the wall: the far root; 2^-19: the near one.
  const double small = std::ldexp(1.0, -20), larger = std::ldexp(1.0, -19);
  EXPECT_EQ(c.first_hit(ray(position(-1 - small, 0, 1), plus_x)), 2 + small);
  EXPECT_EQ(c.first_hit(ray(position(-1 - larger, 0, 1), plus_x)), larger);
  EXPECT_EQ(c.first_hit(ray(position(0, 0, 1), plus_x)), 1.0);   // from inside
  EXPECT_EQ(c.first_hit(ray(position(-5, 1, 1), plus_x)), 5.0);  // tangent: disc exactly 0

  // Hits exactly at either end count; just beyond, neither root does.
  for (const double z : {0.0, 2.0}) EXPECT_EQ(c.first_hit(ray(position(-5, 0, z), plus_x)), 4.0) << z;
  for (const double z : {-0.001, 2.001}) EXPECT_EQ(c.first_hit(ray(position(-5, 0, z), plus_x)), -1.0) << z;
  // Into the open end: the near root (x = -1, z = -0.5) lies before the
  // start, so the inside wall at x = 1, z = 1.5 is hit.
  EXPECT_NEAR(c.first_hit(ray(position(-3, 0, -2.5), normalise(vector(1, 0, 1)))), 4 * std::sqrt(2.0), 1e-12);

  // Parallel to the axis along the wall; degenerate tubes: never hit.
  EXPECT_EQ(c.first_hit(ray(position(1, 0, -5), direction(0, 0, 1))), -1.0);
  EXPECT_EQ(first_hit(position(0, 0, 1), position(0, 0, 1), 1, ray(position(0, -5, 1), plus_y)), -1.0);
  EXPECT_EQ(first_hit(position(0, 0, 0), position(0, 0, 2), 0, ray(position(-5, 0, 0), plus_x)), -1.0);
  // A radius whose square is 0 is still a radius: the ray through the axis
  // meets the tube there.
  EXPECT_EQ(first_hit(position(0, 0, 0), position(0, 0, 2), 1e-200, ray(position(-5, 0, 1), plus_x)), 5.0);
}

TEST(cylinder, bounds_and_surface_data) {
  // The union of the cubes of half-side `radius` around the two ends.
  EXPECT_EQ(bounds_of(cylinder{position(1, 2, 3), position(-1, 4, 3), 0.5}.bounds()),
            (box_bounds{-1.5, 1.5, 2.5, 1.5, 4.5, 3.5}));
  shape_scene tube = standing();
  EXPECT_EQ(tube.hit(ray(position(-5, 0, 2), plus_x)).value, 30.0);
  // Halfway on the -y side, the mean value, and the normal along -y.
  const hit_record middle = tube.hit(ray(position(0, -5, 1), plus_y));
  EXPECT_EQ(middle.value, 20.0);
  EXPECT_EQ(middle.normal, vector(0, -1, 0));
  // On the inside wall the normal still points outwards.
  EXPECT_EQ(tube.hit(ray(position(-3, 0, -2.5), normalise(vector(1, 0, 1)))).normal, vector(1, 0, 0));

  // Values run from the start end: pointing down, a quarter of the way
  // from the start is three quarters of the way up.
  shape_scene down;
  down.tube(position(0, 0, 2), position(0, 0, 0), 3, 0, 8);
  EXPECT_EQ(down.hit(ray(position(0, -5, 1.5), plus_y)).value, 2.0);
}

}  // namespace
}  // namespace sciray::testing
