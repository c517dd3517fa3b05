// sphere_test.cpp - sphere roots and their admissibility, tangents, rays
// from inside, bounds and the normal.
#include "geometry/sphere.h"

#include <gtest/gtest.h>

#include <cmath>

#include "geometry_test_support.h"

namespace sciray::testing {
namespace {

const direction plus_z(0, 0, 1);

double first_hit(const sphere& s, const ray& r, double limit = 1e20) {
  return shape_scene().ball(s.center, s.radius).first_hit(r, limit);
}

TEST(sphere, roots_and_admissibility) {
  const sphere s{position(0, 0, 0), 1};
  const ray from_below(position(0, 0, -5), plus_z);  // roots 4 and 6
  EXPECT_EQ(first_hit(s, from_below), 4.0);
  EXPECT_EQ(first_hit(s, from_below, 4.0), -1.0);  // strictly below the current distance
  // Starting 2^-20 (below 1e-6) outside, the near root is rejected and the
  // far one taken; at 2^-19 (above) the near one. Dyadic values keep the
  // roots exact.
  const double small = std::ldexp(1.0, -20), larger = std::ldexp(1.0, -19);
  EXPECT_EQ(first_hit(s, ray(position(0, 0, -1 - small), plus_z)), 2 + small);
  EXPECT_EQ(first_hit(s, ray(position(0, 0, -1 - larger), plus_z)), larger);
  // A tangent ray (discriminant exactly 0) and a sphere of radius 0 miss.
  EXPECT_EQ(first_hit(s, ray(position(1, 0, -5), plus_z)), -1.0);
  EXPECT_EQ(first_hit(sphere{position(0, 0, 0), 0}, from_below), -1.0);
}

TEST(sphere, bounds_and_normal) {
  EXPECT_EQ(bounds_of(sphere{position(1, -2, 3), 0.5}.bounds()), (box_bounds{0.5, -2.5, 2.5, 1.5, -1.5, 3.5}));
  shape_scene ball;
  ball.ball(position(0, 0, 0), 2);
  // From inside: the exit, with the normal outwards (along the ray).
  const hit_record inside = ball.hit(ray(position(0, 0, 0), direction(0, 1, 0)));
  EXPECT_EQ(inside.distance, 2.0);
  EXPECT_EQ(inside.normal, vector(0, 1, 0));
  EXPECT_EQ(ball.hit(ray(position(0.6, 0.8, 5), direction(0, 0, -1))).normal,
            normalise(vector(0.6, 0.8, std::sqrt(4 - 1.0))));

  // The surface data leaves `value` alone.
  const hit_record below = ball.hit(ray(position(0, 0, -5), plus_z));
  EXPECT_EQ(below.normal, vector(0, 0, -1));
  EXPECT_EQ(below.value, -7.0);
}

}  // namespace
}  // namespace sciray::testing
