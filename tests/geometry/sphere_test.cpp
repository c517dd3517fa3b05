// sphere_test.cpp - sphere roots and their admissibility, tangents, rays
// from inside, surface coordinates and the forwarding to the material.
#include "geometry/sphere.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

#include "geometry_test_support.h"

namespace sciray {
namespace {

using geometry_testing::first_hit;
using geometry_testing::shaded;

const direction plus_z(0, 0, 1), minus_z(0, 0, -1);

TEST(sphere, roots_and_admissibility) {
  const sphere s(position(0, 0, 0), 1);
  const ray from_below(position(0, 0, -5), plus_z);  // roots 4 and 6
  EXPECT_EQ(first_hit(s, from_below), 4.0);
  EXPECT_EQ(first_hit(s, from_below, 4.0), -1.0);  // strictly below the current distance
  EXPECT_EQ(first_hit(s, from_below, std::nextafter(4.0, 5.0)), 4.0);

  // Starting 2^-20 (below 1e-6) outside, the near root is rejected and the
  // far one taken; at 2^-19 (above) the near one. Dyadic values keep the
  // roots exact.
  const double small = std::ldexp(1.0, -20), larger = std::ldexp(1.0, -19);
  EXPECT_EQ(first_hit(s, ray(position(0, 0, -1 - small), plus_z)), 2 + small);
  EXPECT_EQ(first_hit(s, ray(position(0, 0, -1 - larger), plus_z)), larger);
  // On the surface: the far side when pointing in, nothing when pointing out.
  EXPECT_EQ(first_hit(s, ray(position(0, 0, -1), plus_z)), 2.0);
  EXPECT_EQ(first_hit(s, ray(position(0, 0, -1), minus_z)), -1.0);

  // A tangent ray (discriminant exactly 0) and a sphere of radius 0 miss.
  EXPECT_EQ(first_hit(s, ray(position(1, 0, -5), plus_z)), -1.0);
  EXPECT_EQ(first_hit(sphere(position(0, 0, 0), 0), from_below), -1.0);

  // The test counter wraps.
  render_context context;
  context.test_count = UINT32_MAX;
  hit_record hit;
  s.intersect(from_below, hit, context);
  EXPECT_EQ(context.test_count, 0u);
}

TEST(sphere, bounds_and_surface_data) {
  const sphere ball(position(1, -2, 3), 0.5);
  const bounding_box& b = *ball.bounds();
  EXPECT_EQ(b.axis[0].lo, 0.5);
  EXPECT_EQ(b.axis[1].lo, -2.5);
  EXPECT_EQ(b.axis[2].hi, 3.5);

  geometry_testing::recording_material m;
  const double pi = std::acos(-1.0);
  sphere s(position(0, 0, 0), 2);
  s.set_material(&m);

  // From inside: the exit, with the normal outwards (along the ray).
  const hit_record inside = shaded(s, ray(position(0, 0, 0), direction(0, 1, 0)));
  EXPECT_EQ(inside.distance, 2.0);
  EXPECT_EQ(inside.normal, vector(0, 1, 0));
  EXPECT_EQ(m.seen.normal, vector(0, 1, 0));
  // Longitude grows from +x towards +y, as an arc length.
  EXPECT_DOUBLE_EQ(inside.surface_coords.x, pi);
  EXPECT_EQ(inside.surface_coords.y, 0.0);

  const hit_record pole = shaded(s, ray(position(0, 0, 5), minus_z));
  EXPECT_EQ(pole.normal, vector(0, 0, 1));
  EXPECT_DOUBLE_EQ(pole.surface_coords.y, pi);  // latitude pi/2 at radius 2
  EXPECT_EQ(shaded(s, ray(position(5, 0, 0), direction(-1, 0, 0))).surface_coords, vector(0, 0, 0));
  EXPECT_DOUBLE_EQ(std::fabs(shaded(s, ray(position(-5, 0, 0), direction(1, 0, 0))).surface_coords.x), 2 * pi);

  // The shadow filter runs the same geometry, leaves `value` alone, and
  // returns the transmission; without a material both operations give black.
  ray_state state;
  state.r = ray(position(0, 0, -5), plus_z);
  state.hit.distance = 3;
  state.hit.value = 7;
  EXPECT_EQ(s.shadow_filter(state), geometry_testing::transmit_colour);
  EXPECT_EQ(state.hit.normal, vector(0, 0, -1));
  EXPECT_EQ(state.hit.value, 7.0);
  s.set_material(nullptr);
  EXPECT_EQ(s.shade(state), colour(0, 0, 0));
  EXPECT_EQ(s.shadow_filter(state), colour(0, 0, 0));
}

}  // namespace
}  // namespace sciray
