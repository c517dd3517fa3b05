// triangle_test.cpp - the triangle: frame and bounds, the inclusive bounds
// of its root and weights, degenerate corners, interpolated normals and
// values, shared edges; and the plane it derives from.
#include "geometry/triangle.h"

#include <gtest/gtest.h>

#include "geometry_test_support.h"

namespace sciray {
namespace {

using geometry_testing::first_hit;

const direction down(0, 0, -1), up(0, 0, 1);

// A right triangle in the plane z = 3 with edges (2, 0, 0) and (0, 4, 0):
// the weights of corners 1 and 2 are (x - 1) / 2 and (y - 2) / 4, exactly.
triangle flat() { return triangle(position(1, 2, 3), position(3, 2, 3), position(1, 6, 3)); }

// Straight down onto (x, y) of the plane z = 3, from 5 above it.
ray down_at(double x, double y) { return ray(position(x, y, 8), down); }

TEST(triangle, frame_bounds_and_degenerate_corners) {
  const triangle t = flat();
  EXPECT_TRUE(t.valid());
  EXPECT_EQ(t.face_normal(), vector(0, 0, 1));
  EXPECT_EQ(t.corner_normal(2), vector(0, 0, 1));
  // Clockwise corners face the other way.
  EXPECT_EQ(triangle(position(1, 2, 3), position(1, 6, 3), position(3, 2, 3)).face_normal(), vector(0, 0, -1));
  const bounding_box& b = *t.bounds();
  EXPECT_EQ(b.axis[0].lo, 1.0);
  EXPECT_EQ(b.axis[1].hi, 6.0);
  EXPECT_EQ(b.axis[2].extent(), 0.0);  // no margin

  // Collinear or coincident corners: never hit, the box still encloses them.
  const triangle collinear(position(0, 0, 0), position(1, 1, 0), position(2, 2, 0));
  EXPECT_FALSE(collinear.valid());
  EXPECT_EQ(first_hit(collinear, ray(position(1, 1, 5), down)), -1.0);
  EXPECT_EQ(collinear.bounds()->axis[0].hi, 2.0);
  const triangle point(position(1, 1, 1), position(1, 1, 1), position(1, 1, 1));
  EXPECT_FALSE(point.valid());
  EXPECT_EQ(first_hit(point, ray(position(1, 1, 5), down)), -1.0);
}

TEST(triangle, edges_corners_and_distance_bounds_are_inclusive) {
  const triangle t = flat();
  struct probe {
    double x, y;
    bool hits;
    double b1, b2;
  };
  const probe probes[] = {
      {2, 3, true, 0.5, 0.25}, {1, 2, true, 0, 0},  {3, 2, true, 1, 0},     // interior, corners 0 and 1
      {1, 6, true, 0, 1},      {2, 2, true, 0.5, 0}, {2, 4, true, 0.5, 0.5},  // corner 2, edge 0-1, edge 1-2
      {0.999, 3, false, 0, 0}, {1.5, 1.999, false, 0, 0},                     // b1 < 0, b2 < 0
      {2.001, 4, false, 0, 0}, {3.001, 2, false, 0, 0},                       // b0 < 0, b1 > 1
  };
  for (const probe& p : probes) {
    render_context context;
    hit_record hit;
    ASSERT_EQ(t.intersect(down_at(p.x, p.y), hit, context), p.hits) << p.x << "," << p.y;
    if (p.hits) {
      EXPECT_EQ(hit.surface_coords, vector(p.b1, p.b2, 0)) << p.x << "," << p.y;
    }
  }

  EXPECT_EQ(first_hit(t, down_at(2, 3), 5.0), 5.0);  // exactly the current distance
  EXPECT_EQ(first_hit(t, down_at(2, 3), 4.5), -1.0);
  // In the plane z = 0 a root of exactly 1e-6 is rejected, 2e-6 accepted.
  const triangle base(position(0, 0, 0), position(1, 0, 0), position(0, 1, 0));
  EXPECT_EQ(first_hit(base, ray(position(0.25, 0.25, -1e-6), up)), -1.0);
  EXPECT_EQ(first_hit(base, ray(position(0.25, 0.25, -2e-6), up)), 2e-6);
  // Parallel to the plane, even inside it.
  EXPECT_EQ(first_hit(t, ray(position(0, 3, 3), direction(1, 0, 0))), -1.0);
}

TEST(triangle, interpolated_normals_and_values) {
  triangle t = flat();
  const direction n[] = {normalise(vector(1, 0, 1)), normalise(vector(0, 1, 1)), normalise(vector(-1, -1, 2))};
  t.set_corner_normals(n[0], n[1], n[2]);
  t.set_corner_values(3, 6, 12);
  render_context context;

  // At each corner its own normal (renormalised) and value.
  const double corner_x[] = {1, 3, 1}, corner_y[] = {2, 2, 6}, value[] = {3, 6, 12};
  for (int k = 0; k < 3; ++k) {
    hit_record hit;
    ASSERT_TRUE(t.intersect(down_at(corner_x[k], corner_y[k]), hit, context));
    EXPECT_EQ(hit.normal, normalise(n[k])) << k;
    EXPECT_EQ(hit.value, value[k]) << k;
  }

  // At the centroid the mean of the three; from behind the same normal.
  hit_record front, behind;
  ASSERT_TRUE(t.intersect(down_at(5.0 / 3, 10.0 / 3), front, context));
  ASSERT_TRUE(t.intersect(ray(position(5.0 / 3, 10.0 / 3, -2), up), behind, context));
  EXPECT_NEAR(front.value, 7.0, 1e-12);
  const direction mean = normalise(n[0] + n[1] + n[2]);
  EXPECT_NEAR(front.normal.x, mean.x, 1e-12);
  EXPECT_NEAR(front.normal.z, mean.z, 1e-12);
  EXPECT_EQ(behind.normal, front.normal);
}

TEST(triangle, shared_edge_goes_to_the_last_tested) {
  geometry_testing::recording_material m;
  triangle lower(position(0, 0, 0), position(1, 0, 0), position(0, 1, 0));
  triangle upper(position(1, 0, 0), position(1, 1, 0), position(0, 1, 0));
  lower.set_corner_values(1, 1, 1);
  upper.set_corner_values(2, 2, 2);
  lower.set_material(&m);
  render_context context;
  ray_state state;
  state.r = ray(position(0.5, 0.5, 4), down);
  EXPECT_TRUE(upper.intersect(state.r, state.hit, context));
  EXPECT_TRUE(lower.intersect(state.r, state.hit, context));
  EXPECT_EQ(state.hit.object, &lower);
  EXPECT_EQ(state.hit.value, 1.0);

  // shade and shadow_filter only forward what intersect wrote.
  state.hit.surface_coords = vector(9, 9, 9);
  EXPECT_EQ(lower.shade(state), geometry_testing::shade_colour);
  EXPECT_EQ(lower.shadow_filter(state), geometry_testing::transmit_colour);
  EXPECT_EQ(m.seen.surface_coords, vector(9, 9, 9));
  EXPECT_EQ(upper.shade(state), colour(0, 0, 0));  // no material

  EXPECT_TRUE(upper.intersect(state.r, state.hit, context));
  EXPECT_EQ(state.hit.object, &upper);
  EXPECT_EQ(state.hit.value, 2.0);
}

TEST(triangle, plane_base) {
  geometry_testing::recording_material m;
  plane p;  // through the origin, normal (0, 0, 1), both axes (1, 0, 0)
  p.set_material(&m);
  EXPECT_EQ(p.bounds(), nullptr);
  const ray r(position(2, 3, -4), up);
  EXPECT_EQ(first_hit(p, r, 4.0), 4.0);  // inclusive bound
  ray_state state;
  state.r = r;
  state.hit.distance = 4;
  EXPECT_EQ(p.shadow_filter(state), geometry_testing::transmit_colour);
  EXPECT_EQ(m.seen.normal, vector(0, 0, 1));
  EXPECT_EQ(m.seen.surface_coords, vector(2, 2, 0));
}

}  // namespace
}  // namespace sciray
