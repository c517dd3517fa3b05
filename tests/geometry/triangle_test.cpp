// triangle_test.cpp - the triangle: facing and bounds, the inclusive bounds
// of its root and weights, interpolated values and normals, shared edges,
// degenerate corners; and the plane it derives from.
#include "geometry/triangle.h"

#include <gtest/gtest.h>

#include "geometry_test_support.h"

namespace sciray {
namespace {

using namespace geometry_testing;

const direction down(0, 0, -1), up(0, 0, 1);

// A right triangle in the plane z = 3 with edges (2, 0, 0) and (0, 4, 0):
// the weights of corners 1 and 2 are (x - 1) / 2 and (y - 2) / 4, exactly.
triangle flat() { return triangle(position(1, 2, 3), position(3, 2, 3), position(1, 6, 3)); }

// Straight down onto (x, y) of the plane z = 3, from 5 above it.
ray down_at(double x, double y) { return ray(position(x, y, 8), down); }

TEST(triangle, roots_weights_and_bounds) {
  triangle t = flat();
  t.set_corner_values(3, 6, 12);
  EXPECT_EQ(bounds_of(*t.bounds()), (box_bounds{1, 2, 3, 3, 6, 3}));  // no margin
  // Where a ray down at (x, y) lands: distance 5 with weights b1, b2 and the
  // value (b0 * 3 + b1 * 6) + b2 * 12, or -1 for a miss, which must leave the
  // rest of the hit untouched. Edges and corners belong to the triangle.
  struct probe { double x, y, distance, b1, b2, value; };
  const probe probes[] = {
      {2, 3, 5, 0.5, 0.25, 6.75}, {1, 2, 5, 0, 0, 3},     {3, 2, 5, 1, 0, 6},      // interior, corners 0 and 1
      {1, 6, 5, 0, 1, 12},        {2, 2, 5, 0.5, 0, 4.5}, {2, 4, 5, 0.5, 0.5, 9},  // corner 2, edge 0-1, edge 1-2
      {0.999, 3, -1, 0, 0, 0},    {1.5, 1.999, -1, 0, 0, 0},                       // b1 < 0, b2 < 0
      {2.001, 4, -1, 0, 0, 0},    {3.001, 2, -1, 0, 0, 0},                         // b0 < 0, b1 > 1
  };
  for (const probe& p : probes) {
    const hit_record hit = hit_of(t, down_at(p.x, p.y));
    EXPECT_EQ(hit.distance, p.distance) << p.x << "," << p.y;
    EXPECT_EQ(hit.surface_coords, vector(p.b1, p.b2, 0)) << p.x << "," << p.y;
    EXPECT_EQ(hit.value, p.value) << p.x << "," << p.y;
  }
  // Without corner normals a hit takes the face normal, which
  // counter-clockwise corners face; clockwise ones face the other way.
  EXPECT_EQ(hit_of(t, down_at(2, 3)).normal, vector(0, 0, 1));
  const triangle clockwise(position(1, 2, 3), position(1, 6, 3), position(3, 2, 3));
  EXPECT_EQ(hit_of(clockwise, down_at(2, 3)).normal, vector(0, 0, -1));

  // The distance bound is inclusive: of two triangles sharing edge 1-2, the
  // one tested last takes a hit there.
  const triangle neighbour(position(3, 2, 3), position(3, 6, 3), position(1, 6, 3));
  EXPECT_EQ(first_hit(t, down_at(2, 4), first_hit(neighbour, down_at(2, 4))), 5.0);
  EXPECT_EQ(first_hit(t, down_at(2, 3), 4.5), -1.0);
  // In the plane z = 0 a root of exactly 1e-6 is rejected, 2e-6 accepted.
  const triangle base(position(0, 0, 0), position(1, 0, 0), position(0, 1, 0));
  EXPECT_EQ(first_hit(base, ray(position(0.25, 0.25, -1e-6), up)), -1.0);
  EXPECT_EQ(first_hit(base, ray(position(0.25, 0.25, -2e-6), up)), 2e-6);
  // Parallel to the plane, even inside it.
  EXPECT_EQ(first_hit(t, ray(position(0, 3, 3), direction(1, 0, 0))), -1.0);

  // Collinear or coincident corners: never hit, even by a slanting ray
  // through them; the box still encloses them.
  const triangle collinear(position(0, 0, 0), position(1, 1, 0), position(2, 2, 0));
  const triangle point(position(1, 1, 1), position(1, 1, 1), position(1, 1, 1));
  const direction slant = normalise(vector(1, 1, -1));
  EXPECT_EQ(first_hit(collinear, ray(position(-4, -4, 5), slant)), -1.0);
  EXPECT_EQ(first_hit(point, ray(position(-4, -4, 6), slant)), -1.0);
  EXPECT_EQ(bounds_of(*collinear.bounds()), (box_bounds{0, 0, 0, 2, 2, 0}));
}

TEST(triangle, interpolated_normals_reach_the_material) {
  triangle t = flat();
  const direction n[] = {normalise(vector(1, 0, 1)), normalise(vector(0, 1, 1)), normalise(vector(-1, -1, 2))};
  t.set_corner_normals(n[0], n[1], n[2]);
  // At each corner its own normal (renormalised), also through the shadow filter.
  const double corner_x[] = {1, 3, 1}, corner_y[] = {2, 2, 6};
  for (int k = 0; k < 3; ++k)
    EXPECT_EQ(shaded(t, down_at(corner_x[k], corner_y[k]), k == 2).normal, normalise(n[k])) << k;
  // At the centroid the mean of the three; from behind the same normal.
  const hit_record front = hit_of(t, down_at(5.0 / 3, 10.0 / 3));
  const direction mean = normalise(n[0] + n[1] + n[2]);
  for (int a = 0; a < 3; ++a) EXPECT_NEAR(front.normal[a], mean[a], 1e-12) << a;
  EXPECT_EQ(hit_of(t, ray(position(5.0 / 3, 10.0 / 3, -2), up)).normal, front.normal);
}

TEST(triangle, plane_base) {
  plane p;  // through the origin, normal (0, 0, 1), both axes (1, 0, 0)
  EXPECT_EQ(p.bounds(), nullptr);
  const ray r(position(2, 3, -4), up);
  EXPECT_EQ(first_hit(p, r, 4.0), 4.0);  // inclusive bound
  const hit_record filtered = shaded(p, r, true);
  EXPECT_EQ(filtered.normal, vector(0, 0, 1));
  EXPECT_EQ(filtered.surface_coords, vector(2, 2, 0));
  // Without a material both operations give black.
  ray_state state;
  EXPECT_EQ(p.shade(state), colour(0, 0, 0));
  EXPECT_EQ(p.shadow_filter(state), colour(0, 0, 0));
}

}  // namespace
}  // namespace sciray
