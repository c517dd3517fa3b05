// triangle_test.cpp - the triangle: facing and bounds, the inclusive bounds
// of its root and weights, interpolated values and normals, shared edges,
// degenerate corners.
#include "geometry/triangle.h"

#include <gtest/gtest.h>

#include "geometry_test_support.h"

namespace sciray::testing {
namespace {

const direction down(0, 0, -1), up(0, 0, 1);

// A right triangle in the plane z = 3 with edges (2, 0, 0) and (0, 4, 0):
// the weights of corners 1 and 2 are (x - 1) / 2 and (y - 2) / 4, exactly.
const std::array flat = {position(1, 2, 3), position(3, 2, 3), position(1, 6, 3)};

// Straight down onto (x, y) of the plane z = 3, from 5 above it.
ray down_at(double x, double y) { return ray(position(x, y, 8), down); }

double first_hit(const position& p0, const position& p1, const position& p2, const ray& r, double limit = 1e20) {
  return shape_scene().piece(p0, p1, p2).first_hit(r, limit);
}

TEST(triangle, roots_weights_and_bounds) {
  shape_scene t;
  t.piece(flat[0], flat[1], flat[2], {}, std::array{3.0, 6.0, 12.0});
  EXPECT_EQ(bounds_of(triangle{flat}.bounds()), (box_bounds{1, 2, 3, 3, 6, 3}));  // no margin
  // Where a ray down at (x, y) lands: distance 5 with the value (b0 * 3 +
  // b1 * 6) + b2 * 12 of its weights, or -1 for a miss, which must leave the
  // rest of the hit untouched. Edges and corners belong to the triangle.
  struct probe { double x, y, distance, value; };
  const probe probes[] = {
      {2, 3, 5, 6.75}, {1, 2, 5, 3},      {3, 2, 5, 6},   // interior (weights 0.25, 0.5, 0.25), corners 0 and 1
      {1, 6, 5, 12},   {2, 2, 5, 4.5},    {2, 4, 5, 9},   // corner 2, middle of edge 0-1, of edge 1-2
      {0.999, 3, -1, -7}, {1.5, 1.999, -1, -7},           // b1 < 0, b2 < 0
      {2.001, 4, -1, -7}, {3.001, 2, -1, -7},             // b0 < 0, b1 > 1
  };
  for (const probe& p : probes) {
    const hit_record hit = t.hit(down_at(p.x, p.y));
    EXPECT_EQ(hit.distance, p.distance) << p.x << "," << p.y;
    EXPECT_EQ(hit.value, p.value) << p.x << "," << p.y;
  }
  // Without corner normals a hit takes the face normal, which
  // counter-clockwise corners face; clockwise ones face the other way.
  EXPECT_EQ(t.hit(down_at(2, 3)).normal, vector(0, 0, 1));
  EXPECT_EQ(shape_scene().piece(flat[0], flat[2], flat[1]).hit(down_at(2, 3)).normal, vector(0, 0, -1));

  // The distance bound is inclusive: of two triangles sharing edge 1-2, the
  // one tested last takes a hit there, with its own value.
  shape_scene pair;
  pair.piece(position(3, 2, 3), position(3, 6, 3), position(1, 6, 3), {}, std::array{2.0, 2.0, 2.0})
      .piece(flat[0], flat[1], flat[2], {}, std::array{1.0, 1.0, 1.0});
  EXPECT_EQ(pair.hit(down_at(2, 4)).value, 1.0);
  EXPECT_EQ(t.first_hit(down_at(2, 3), 4.5), -1.0);
  EXPECT_EQ(t.first_hit(down_at(2, 3), 5.0), 5.0);
  // In the plane z = 0 a root of exactly 1e-6 is rejected, 2e-6 accepted.
  const position base[3] = {position(0, 0, 0), position(1, 0, 0), position(0, 1, 0)};
  EXPECT_EQ(first_hit(base[0], base[1], base[2], ray(position(0.25, 0.25, -1e-6), up)), -1.0);
  EXPECT_EQ(first_hit(base[0], base[1], base[2], ray(position(0.25, 0.25, -2e-6), up)), 2e-6);
  // Parallel to the plane, even inside it.
  EXPECT_EQ(t.first_hit(ray(position(0, 3, 3), direction(1, 0, 0))), -1.0);

  // Collinear or coincident corners: never hit, even by a slanting ray
  // through them; the box still encloses them.
  const direction slant = normalise(vector(1, 1, -1));
  EXPECT_EQ(first_hit(position(0, 0, 0), position(1, 1, 0), position(2, 2, 0), ray(position(-4, -4, 5), slant)), -1.0);
  EXPECT_EQ(first_hit(position(1, 1, 1), position(1, 1, 1), position(1, 1, 1), ray(position(-4, -4, 6), slant)), -1.0);
  EXPECT_EQ(bounds_of(triangle{{position(0, 0, 0), position(1, 1, 0), position(2, 2, 0)}}.bounds()),
            (box_bounds{0, 0, 0, 2, 2, 0}));
}

TEST(triangle, interpolated_normals) {
  const std::array n = {normalise(vector(1, 0, 1)), normalise(vector(0, 1, 1)), normalise(vector(-1, -1, 2))};
  shape_scene t;
  t.piece(flat[0], flat[1], flat[2], n);
  // At each corner its own normal (renormalised).
  const double corner_x[] = {1, 3, 1}, corner_y[] = {2, 2, 6};
  for (int k = 0; k < 3; ++k) EXPECT_EQ(t.hit(down_at(corner_x[k], corner_y[k])).normal, normalise(n[k])) << k;
  // At the centroid the mean of the three; from behind the same normal.
  const hit_record front = t.hit(down_at(5.0 / 3, 10.0 / 3));
  const direction mean = normalise(n[0] + n[1] + n[2]);
  for (int a = 0; a < 3; ++a) EXPECT_NEAR(front.normal[a], mean[a], 1e-12) << a;
  EXPECT_EQ(t.hit(ray(position(5.0 / 3, 10.0 / 3, -2), up)).normal, front.normal);
}

}  // namespace
}  // namespace sciray::testing
