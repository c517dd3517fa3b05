// bounding_hierarchy_test.cpp - box widening and the pair box test (against
// the scalar slab rule it must match bit for bit); the hierarchy's split
// choices, its never-hit degenerate node, and the walk's nearest-first
// order, right-first tie rule and pruning.
#include "math/bounding_hierarchy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include "geometry/geometry_test_support.h"

namespace sciray::testing {
namespace {

// The slab rule, one box at a time, as plainly as it can be written.
bool enter_box(const bounding_box& box, const ray& r, double distance, double& entry) {
  if (box.any_empty()) return false;
  const auto within = [&r](const interval& slab, int a) { return slab.lo <= r.origin[a] && r.origin[a] <= slab.hi; };
  if (within(box.axis[0], 0) && within(box.axis[1], 1) && within(box.axis[2], 2)) {
    entry = 0.0;
    return true;
  }
  double near_all = -1e20, far_all = 1e20;
  for (int a = 0; a < 3; ++a) {
    const interval& slab = box.axis[a];
    if (r.dir[a] == 0.0) {
      if (!within(slab, a)) return false;
      continue;
    }
    const double t1 = (slab.lo - r.origin[a]) * r.inv_dir[a];
    const double t2 = (slab.hi - r.origin[a]) * r.inv_dir[a];
    const double t_near = t1 < t2 ? t1 : t2;
    const double t_far = t1 < t2 ? t2 : t1;
    if (!(t_far > 0.0)) return false;
    if (t_near > near_all) near_all = t_near;
    if (t_far < far_all) far_all = t_far;
  }
  if (near_all > far_all || near_all > distance) return false;
  entry = near_all;
  return true;
}

// The pair test on `box` in lane 1 (lane 0 empty): the entry distance, or -1
// when the box is not entered under `limit`.
double entry(const ray& r, double limit = 1e20, const bounding_box& box = {{{0, 1, 2}, {0, -1, 1}, {0, -1, 1}}}) {
  box_pair pair;
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (int a = 0; a < 3; ++a) {
    pair.lo[a][0] = pair.hi[a][0] = nan;
    pair.lo[a][1] = box.any_empty() ? nan : box.axis[a].lo;
    pair.hi[a][1] = box.any_empty() ? nan : box.axis[a].hi;
  }
  const box_pair_result t = enter_boxes<true>(pair, box_ray(r), limit);
  EXPECT_EQ(t.entered & 1, 0);
  double scalar = -5;
  EXPECT_EQ(t.entered == 2, enter_box(box, r, limit, scalar));
  if (t.entered != 2) return -1.0;
  EXPECT_EQ(t.entry[1], scalar);
  return t.entry[1];
}

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

  const direction plus_x(1, 0, 0);
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

  // Random boxes and rays, some with a zero, infinite or missing coordinate:
  // the pair test agrees with the scalar rule, entry distances bit for bit.
  std::mt19937 gen(7);
  std::uniform_real_distribution<double> coord(-4, 4);
  const double odd[] = {0.0, -0.0, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()};
  const auto some = [&]() { return gen() % 12 == 0 ? odd[gen() % 4] : coord(gen); };
  for (int i = 0; i < 20000; ++i) {
    bounding_box box;
    box.widen(position(some(), some(), some()));
    box.widen(position(some(), some(), some()));
    const vector d(gen() % 4 ? coord(gen) : 0.0, gen() % 4 ? coord(gen) : 0.0, coord(gen));
    entry(ray(position(some(), some(), some()), normalise(d)), gen() % 2 ? 1e20 : coord(gen) + 4, box);
  }
}

// Balls added in order, numbered from 0, each with a material of its own
// that tells its number; ball i has its centre at centre(i).
struct ball_scene {
  std::vector<material> numbered;
  scene_geometry geometry;

  ball_scene(int n, const auto& centre, double radius = 0.5) : numbered(static_cast<std::size_t>(n)) {
    geometry_builder builder;
    for (int i = 0; i < n; ++i) builder.add(sphere{centre(i), radius}, &numbered[static_cast<std::size_t>(i)]);
    builder.build(geometry);
  }
  const bounding_hierarchy& h() const { return geometry.hierarchy(); }
  int number(primitive_ref p) const {
    return p.valid() ? static_cast<int>(geometry.material_of(p) - numbered.data()) : -1;
  }
  // The numbers of the balls of a leaf, in its order.
  std::vector<int> numbers(const hierarchy_child& leaf) const {
    std::vector<int> out;
    for (std::uint32_t i = leaf.first; i < leaf.first + leaf.count; ++i) out.push_back(number(geometry.leaf_order()[i]));
    return out;
  }
  // The tests one ray costs, and the number of the ball that keeps its hit (-1: none).
  std::pair<std::uint32_t, int> trace(const ray& r) const {
    std::uint32_t tests = 0;
    hit_record hit;
    geometry.intersect(r, hit, tests);
    return {tests, number(hit.object)};
  }
};

TEST(bounding_hierarchy, build_splits_the_longest_axis_at_the_median_and_never_a_line) {
  // Eight objects stay one leaf in list order.
  ball_scene eight(8, [](int i) { return position(8.5 - i, 0.5, 0.5); });
  ASSERT_TRUE(eight.h().root().leaf());
  EXPECT_EQ(eight.numbers(eight.h().root()), (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7}));

  // Nine unit cubes: x rises with i, y falls, z is a permutation, so each
  // axis sorts differently. The floor(9 / 2) = 4 lowest centres go left.
  static const int z_of[9] = {4, 0, 8, 2, 6, 1, 7, 3, 5};
  auto left_of = [](double sx, double sz) {
    ball_scene s(9, [&](int i) { return position(i * sx + 0.5, 8.5 - i, z_of[i] * sz + 0.5); });
    EXPECT_FALSE(s.h().root().leaf());
    const hierarchy_node& root = s.h().nodes()[s.h().root().first];
    EXPECT_EQ(root.child[1].count, 5u);
    return s.numbers(root.child[0]);
  };
  EXPECT_EQ(left_of(1, 0.5), (std::vector<int>{0, 1, 2, 3}));  // x and y tie: x
  EXPECT_EQ(left_of(0.5, 1), (std::vector<int>{8, 7, 6, 5}));  // y and z tie: y
  EXPECT_EQ(left_of(1, 2), (std::vector<int>{1, 5, 3, 7}));    // z longest

  // 40 balls along x with each centre used three or four times; every split
  // is on x, so the leaves end in sorted order with ties in list order. The
  // same for 4000 balls, sorted in one piece by the radix sort, negative
  // keys among them.
  for (const int n : {40, 4000}) {
    const auto key = [](int i) { return (i * 7) % 13 + 0.001 * (i % 3 == 0) - (i % 5 == 0 ? 20 : 0); };
    ball_scene keyed(n, [&](int i) { return position(key(i), 0.5, 0.5); });
    std::vector<std::pair<double, int>> expected;
    for (int i = 0; i < n; ++i) expected.emplace_back(key(i), i);
    std::stable_sort(expected.begin(), expected.end(), [](auto& a, auto& b) { return a.first < b.first; });
    std::vector<int> got;
    for (const primitive_ref p : keyed.geometry.leaf_order()) got.push_back(keyed.number(p));
    for (int i = 0; i < n; ++i) ASSERT_EQ(got[i], expected[i].second) << n << " at " << i;
  }

  // Nine points on the x axis, no extent in y and z: the root keeps its
  // objects and two empty children, and is walked as an inner node, so a
  // ray along the line tests nothing.
  ball_scene line(9, [](int i) { return position(i, 0, 0); }, 0);
  ASSERT_EQ(line.h().nodes().size(), 1u);
  EXPECT_EQ(line.h().nodes()[0].child[0].count + line.h().nodes()[0].child[1].count, 0u);
  EXPECT_EQ(line.trace(ray(position(-1, 0, 0), direction(1, 0, 0))).first, 0u);
}

TEST(bounding_hierarchy, walk_goes_nearest_first_and_prunes) {
  // Sixteen unit balls along x: 0-7 in the left leaf, 8-15 in the right.
  // The leaf nearer the ray's origin goes first; once it holds a hit, the
  // pending far leaf is tested again when popped, and skipped.
  ball_scene s(16, [](int i) { return position(i + 0.5, 0.5, 0.5); });
  EXPECT_EQ(s.trace(ray(position(-5, 0.5, 0.5), direction(1, 0, 0))), std::make_pair(8u, 0));
  EXPECT_EQ(s.trace(ray(position(25, 0.5, 0.5), direction(-1, 0, 0))), std::make_pair(8u, 15));
  // Through every box but no ball: both leaves; beside all boxes: none.
  EXPECT_EQ(s.trace(ray(position(-5, 0.95, 0.95), direction(1, 0, 0))), std::make_pair(16u, -1));
  EXPECT_EQ(s.trace(ray(position(-5, 3, 0.5), direction(1, 0, 0))), std::make_pair(0u, -1));

  // Sixteen small triangles in z = 0 along x, each carrying its number as
  // value; the middle two, A (7) and B (8), coincide at x = 0, and the sort
  // puts A last in the left leaf and B first in the right.
  shape_scene tris(8);
  for (int i = 0; i < 16; ++i) {
    const double x = i < 7 ? i - 10 : (i > 8 ? i - 5 : 0);
    tris.piece(position(x - 0.5, -0.5, 0), position(x + 0.5, -0.5, 0), position(x, 0.5, 0), {},
               std::array{double(i), double(i), double(i)});
  }
  // Both leaves are entered at distance 5, so the right one (with B) goes
  // first; the left one, popped, is still entered at exactly the hit
  // distance, and A, tested last, takes the hit at that same distance.
  EXPECT_EQ(tris.hit(ray(position(0, 0, 5), direction(0, 0, -1))).value, 7.0);
  EXPECT_EQ(tris.tests(), 16u);
}

TEST(bounding_hierarchy, deep_tree_finds_the_nearest_hit_with_fewer_tests) {
  std::mt19937 gen(17);
  std::uniform_real_distribution<double> coord(-10, 10);
  std::vector<position> centres;
  ball_scene s(600, [&](int) { return centres.emplace_back(coord(gen), coord(gen), coord(gen)); }, 0.3);
  std::uint32_t walked = 0;
  for (int k = 0; k < 300; ++k) {
    const ray r(position(coord(gen), coord(gen), -15), normalise(vector(coord(gen) * 0.05, coord(gen) * 0.05, 1)));
    double nearest = 1e20;
    int number = -1;
    for (int i = 0; i < 600; ++i)
      if (sphere{centres[i], 0.3}.intersect(r, nearest)) number = i;
    const auto [tests, found] = s.trace(r);
    EXPECT_EQ(found, number) << k;
    walked += tests;
  }
  EXPECT_LT(walked * 5, 600u * 300u);  // under a fifth of the tests of a plain scan
}

}  // namespace
}  // namespace sciray::testing
