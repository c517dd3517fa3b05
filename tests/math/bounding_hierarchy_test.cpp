// bounding_hierarchy_test.cpp - box widening and the box test; the
// hierarchy's split choices, its never-hit degenerate node, and the walk's
// nearest-first order, right-first tie rule and pruning.
#include "math/bounding_hierarchy.h"

#include <gtest/gtest.h>

#include <deque>
#include <random>
#include <utility>
#include <vector>

#include "geometry/geometry_test_support.h"
#include "geometry/sphere.h"
#include "geometry/triangle.h"

namespace sciray {
namespace {

using namespace geometry_testing;

// Balls numbered from 0 in the order added, all under one hierarchy; ball i
// has its centre at centre(i).
struct ball_scene {
  std::vector<sphere> balls;
  bounding_hierarchy h;

  ball_scene(int n, const auto& centre, double radius = 0.5) {
    balls.reserve(n);
    for (int i = 0; i < n; ++i) h.add(&balls.emplace_back(centre(i), radius));
  }
  int number(const primitive* p) const { return p ? static_cast<const sphere*>(p) - balls.data() : -1; }
  // The numbers of objects()[first, first + count), in that order.
  std::vector<int> numbers(std::uint32_t first, std::uint32_t count) const {
    std::vector<int> out;
    for (std::uint32_t i = first; i < first + count; ++i) out.push_back(number(h.objects()[i]));
    return out;
  }
  // The tests one ray costs, and the number of the ball that keeps its hit (-1: none).
  std::pair<std::uint32_t, int> trace(const ray& r) const {
    render_context context;
    hit_record hit;
    const bool found = h.intersect(r, hit, context);
    EXPECT_EQ(found, hit.object != nullptr);
    return {context.test_count, number(hit.object)};
  }
};

TEST(bounding_box, widening_and_entry_by_slab_rule) {
  EXPECT_EQ(interval().extent(), 0.0);
  // An empty interval takes the other's values; after that each end only grows.
  bounding_box b;
  b.widen(position(1, 2, 3));
  b.widen(position(-1, 4, 3));
  EXPECT_EQ(bounds_of(b), (box_bounds{-1, 2, 3, 1, 4, 3}));
  // An empty axis of the other box leaves this box's axis as it was.
  b.widen(bounding_box{{{0, -7, 0}, {}, {}}});
  EXPECT_EQ(bounds_of(b), (box_bounds{-7, 2, 3, 1, 4, 3}));

  // The entry distance into `box` (by default x 1..2, y and z -1..1), or
  // -1 when it is not entered under `limit`.
  const direction plus_x(1, 0, 0);
  const auto entry = [](const ray& r, double limit = 1e20,
                        const bounding_box& box = {{{0, 1, 2}, {0, -1, 1}, {0, -1, 1}}}) {
    double at = -5;  // must be written when the box is entered
    return enter_box(box, r, limit, at) ? at : -1.0;
  };
  // From inside, ends included, the box is entered at once, even pointing out.
  EXPECT_EQ(entry(ray(position(2, 1, -1), plus_x)), 0.0);
  // Entered up to and including the limit; pointing away, not at all.
  EXPECT_EQ(entry(ray(position(-3, 0, 0), plus_x), 4.0), 4.0);
  EXPECT_EQ(entry(ray(position(-3, 0, 0), plus_x), 3.9), -1.0);
  EXPECT_EQ(entry(ray(position(-3, 0, 0), direction(-1, 0, 0))), -1.0);
  // A zero direction component with the origin on that slab's end, and
  // just outside it; passing beside the box.
  EXPECT_EQ(entry(ray(position(-3, 1, 0), plus_x)), 4.0);
  EXPECT_EQ(entry(ray(position(-3, 1.0001, 0), plus_x)), -1.0);
  EXPECT_EQ(entry(ray(position(-3, 0, 0), normalise(vector(1, 1, 0)))), -1.0);
  // The entry is the latest of the slab entries, not the last axis's.
  const direction shallow = normalise(vector(1, 0, 0.1));
  EXPECT_NEAR(entry(ray(position(-3, 0, 0), shallow)), 4.0 / shallow.x, 1e-12);
  // A box with an empty interval is never entered.
  EXPECT_EQ(entry(ray(position(0, 0, 0), plus_x), 1e20, bounding_box{{{0, -1, 1}, {0, -1, 1}, {}}}), -1.0);
}

TEST(bounding_hierarchy, build_splits_the_longest_axis_at_the_median_and_never_a_line) {
  // Eight objects stay one leaf in list order.
  ball_scene eight(8, [](int i) { return position(8.5 - i, 0.5, 0.5); });
  eight.h.build(8);
  EXPECT_EQ(eight.numbers(0, 8), (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7}));

  // Nine unit cubes: x rises with i, y falls, z is a permutation, so each
  // axis sorts differently. The floor(9 / 2) = 4 lowest centres go left.
  static const int z_of[9] = {4, 0, 8, 2, 6, 1, 7, 3, 5};
  auto left_of = [](double sx, double sz) {
    ball_scene s(9, [&](int i) { return position(i * sx + 0.5, 8.5 - i, z_of[i] * sz + 0.5); });
    s.h.build(8);
    const auto& root = s.h.nodes()[0];
    const auto& left = s.h.nodes()[root.left];
    EXPECT_EQ(root.count, 0u);
    EXPECT_EQ(left.level, 1);
    EXPECT_EQ(s.h.nodes()[root.right].count, 5u);
    return s.numbers(left.first, left.count);
  };
  EXPECT_EQ(left_of(1, 0.5), (std::vector<int>{0, 1, 2, 3}));  // x and y tie: x
  EXPECT_EQ(left_of(0.5, 1), (std::vector<int>{8, 7, 6, 5}));  // y and z tie: y
  EXPECT_EQ(left_of(1, 2), (std::vector<int>{1, 5, 3, 7}));    // z longest

  // 40 balls along x with each centre used three or four times; every split
  // is on x, so the leaves end in sorted order with ties in list order.
  const auto key = [](int i) { return (i * 7) % 13; };
  ball_scene keyed(40, [&](int i) { return position(key(i), 0.5, 0.5); });
  keyed.h.build(8);
  std::vector<int> expected;
  for (int k = 0; k < 13; ++k)
    for (int i = 0; i < 40; ++i)
      if (key(i) == k) expected.push_back(i);
  EXPECT_EQ(keyed.numbers(0, 40), expected);

  // Nine points on the x axis, no extent in y and z: the root keeps its
  // objects and two empty children, and is walked as an inner node, so a
  // ray along the line tests nothing.
  ball_scene line(9, [](int i) { return position(i, 0, 0); }, 0);
  line.h.build(8);
  ASSERT_EQ(line.h.nodes().size(), 3u);
  EXPECT_EQ(line.numbers(0, line.h.nodes()[0].count), (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_EQ(line.trace(ray(position(-1, 0, 0), direction(1, 0, 0))).first, 0u);
}

TEST(bounding_hierarchy, walk_goes_nearest_first_and_prunes) {
  // Sixteen unit balls along x: 0-7 in the left leaf, 8-15 in the right.
  // The leaf nearer the ray's origin goes first; once it holds a hit, the
  // pending far leaf is tested again when popped, and skipped.
  ball_scene s(16, [](int i) { return position(i + 0.5, 0.5, 0.5); });
  EXPECT_EQ(s.trace(ray(position(-5, 0.5, 0.5), direction(1, 0, 0))), std::make_pair(16u, 0));  // unbuilt
  s.h.build(8);
  EXPECT_EQ(s.trace(ray(position(-5, 0.5, 0.5), direction(1, 0, 0))), std::make_pair(8u, 0));
  EXPECT_EQ(s.trace(ray(position(25, 0.5, 0.5), direction(-1, 0, 0))), std::make_pair(8u, 15));
  // Through every box but no ball: both leaves; beside all boxes: none.
  EXPECT_EQ(s.trace(ray(position(-5, 0.95, 0.95), direction(1, 0, 0))), std::make_pair(16u, -1));
  EXPECT_EQ(s.trace(ray(position(-5, 3, 0.5), direction(1, 0, 0))), std::make_pair(0u, -1));

  // Sixteen small triangles in z = 0 along x, each carrying its number as
  // value; the middle two, A (7) and B (8), coincide at x = 0, and the sort
  // puts A last in the left leaf and B first in the right.
  std::deque<triangle> tris;
  bounding_hierarchy h;
  for (int i = 0; i < 16; ++i) {
    const double x = i < 7 ? i - 10 : (i > 8 ? i - 5 : 0);
    h.add(&tris.emplace_back(position(x - 0.5, -0.5, 0), position(x + 0.5, -0.5, 0), position(x, 0.5, 0)));
    tris.back().set_corner_values(i, i, i);
  }
  h.build(8);
  // Both leaves are entered at distance 5, so the right one (with B) goes
  // first; the left one, popped, is still entered at exactly the hit
  // distance, and A, tested last, takes the hit at that same distance.
  render_context context;
  hit_record hit;
  EXPECT_TRUE(h.intersect(ray(position(0, 0, 5), direction(0, 0, -1)), hit, context));
  EXPECT_EQ(hit.value, 7.0);
  EXPECT_EQ(context.test_count, 16u);
}

TEST(bounding_hierarchy, deep_tree_finds_the_nearest_hit_with_fewer_tests) {
  std::mt19937 gen(17);
  std::uniform_real_distribution<double> coord(-10, 10);
  ball_scene s(600, [&](int) { return position(coord(gen), coord(gen), coord(gen)); }, 0.3);
  s.h.build(8);
  std::uint32_t walked = 0;
  for (int k = 0; k < 300; ++k) {
    const ray r(position(coord(gen), coord(gen), -15), normalise(vector(coord(gen) * 0.05, coord(gen) * 0.05, 1)));
    render_context context;
    hit_record nearest;
    for (const sphere& b : s.balls) b.intersect(r, nearest, context);
    const auto [tests, number] = s.trace(r);
    EXPECT_EQ(number, s.number(nearest.object)) << k;
    walked += tests;
  }
  EXPECT_LT(walked * 5, 600u * 300u);  // under a fifth of the tests of a plain scan
}

}  // namespace
}  // namespace sciray
