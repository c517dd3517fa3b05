// bounding_hierarchy_test.cpp - box widening and the box test; the
// hierarchy's split choices, its never-hit degenerate node, and the walk's
// nearest-first order, right-first tie rule and pruning.
#include "math/bounding_hierarchy.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

#include "geometry/sphere.h"
#include "geometry/triangle.h"
#include "shading/render_context.h"

namespace sciray {
namespace {

bounding_box make_box(const position& lo, const position& hi) {
  bounding_box b;
  b.widen(lo);
  b.widen(hi);
  return b;
}

// A shape that is only a box: it logs its id when tested and reports a hit
// at a fixed distance.
class probe : public primitive {
 public:
  probe(int id, const bounding_box& box, std::vector<int>& log, double at) : id(id), box_(box), log_(log), at_(at) {}
  const bounding_box* bounds() const override { return &box_; }
  bool intersect(const ray&, hit_record& hit, render_context& context) const override {
    ++context.test_count;
    log_.push_back(id);
    if (!(at_ < hit.distance)) return false;
    hit.distance = at_;
    hit.object = this;
    return true;
  }
  colour shade(ray_state&) const override { return {}; }
  colour shadow_filter(ray_state&) const override { return {}; }
  const int id;

 private:
  bounding_box box_;
  std::vector<int>& log_;
  double at_;
};

// Probes numbered from 0 in the order added, all under one hierarchy.
struct probe_scene {
  std::vector<int> log;
  std::vector<std::unique_ptr<probe>> probes;
  bounding_hierarchy h;
  render_context context;

  void add(const bounding_box& b, double at = 1000.0) {
    probes.push_back(std::make_unique<probe>(static_cast<int>(probes.size()), b, log, at));
    h.add(probes.back().get());
  }
  std::vector<int> ids(std::uint32_t first, std::uint32_t count) const {
    std::vector<int> out;
    for (std::uint32_t i = first; i < first + count; ++i) out.push_back(static_cast<const probe*>(h.objects()[i])->id);
    return out;
  }
  std::vector<int> ids(const bounding_hierarchy::node& n) const { return ids(n.first, n.count); }
  // The ids tested for one ray, in test order.
  std::vector<int> walk(const ray& r) {
    log.clear();
    hit_record hit;
    h.intersect(r, hit, context);
    return log;
  }
};

// from, from + 1, ..., to - 1, then rest.
std::vector<int> run(int from, int to, std::vector<int> rest = {}) {
  std::vector<int> v;
  for (int i = from; i < to; ++i) v.push_back(i);
  v.insert(v.end(), rest.begin(), rest.end());
  return v;
}

TEST(bounding_box, widening) {
  interval i;
  EXPECT_EQ(i.extent(), 0.0);
  i.widen(2, 3);  // an empty interval takes the other's values
  EXPECT_EQ(i.lo, 2.0);
  i.widen(-1, 0);
  i.widen(0, 5);
  EXPECT_EQ(i.extent(), 6.0);

  bounding_box b = make_box(position(1, 2, 3), position(-1, 4, 3));
  EXPECT_EQ(b.axis[0].lo, -1.0);
  EXPECT_EQ(b.axis[1].hi, 4.0);
  // An empty axis of the other box leaves this box's axis as it was.
  bounding_box partial;
  partial.axis[0].widen(-7, 0);
  b.widen(partial);
  EXPECT_EQ(b.axis[0].lo, -7.0);
  EXPECT_EQ(b.axis[1].lo, 2.0);
}

TEST(bounding_box, entry_by_slab_rule) {
  const bounding_box b = make_box(position(1, -1, -1), position(2, 1, 1));
  const direction plus_x(1, 0, 0);
  double entry = -5;
  // Origin inside, ends included: entered at once.
  EXPECT_TRUE(enter_box(b, ray(position(2, 1, -1), direction(-1, 0, 0)), 1e20, entry));
  EXPECT_EQ(entry, 0.0);
  // From outside: entered up to and including the current distance.
  EXPECT_TRUE(enter_box(b, ray(position(-3, 0, 0), plus_x), 4.0, entry));
  EXPECT_EQ(entry, 4.0);
  EXPECT_FALSE(enter_box(b, ray(position(-3, 0, 0), plus_x), 3.9, entry));
  // Pointing away; a zero direction component with the origin outside that
  // slab (ends included); passing beside the box.
  EXPECT_FALSE(enter_box(b, ray(position(-3, 0, 0), direction(-1, 0, 0)), 1e20, entry));
  EXPECT_TRUE(enter_box(b, ray(position(-3, 1, 0), plus_x), 1e20, entry));
  EXPECT_FALSE(enter_box(b, ray(position(-3, 1.0001, 0), plus_x), 1e20, entry));
  EXPECT_FALSE(enter_box(b, ray(position(-3, 0, 0), normalise(vector(1, 1, 0))), 1e20, entry));
  // The entry is the latest of the slab entries, not the last axis's.
  const direction shallow = normalise(vector(1, 0, 0.1));
  ASSERT_TRUE(enter_box(b, ray(position(-3, 0, 0), shallow), 1e20, entry));
  EXPECT_NEAR(entry, 4.0 / shallow.x, 1e-12);
  // A box with an empty interval is never entered.
  bounding_box open;
  open.axis[0].widen(-1, 1);
  open.axis[1].widen(-1, 1);
  EXPECT_FALSE(enter_box(open, ray(position(0, 0, 0), plus_x), 1e20, entry));
}

TEST(bounding_hierarchy, splits_the_longest_axis_at_the_median) {
  // Eight objects stay one leaf in list order.
  probe_scene eight;
  for (int i = 0; i < 8; ++i) eight.add(make_box(position(8 - i, 0, 0), position(9 - i, 1, 1)));
  eight.h.build(8);
  ASSERT_EQ(eight.h.nodes().size(), 1u);
  EXPECT_EQ(eight.ids(eight.h.nodes()[0]), run(0, 8));

  // Nine unit cubes: x rises with i, y falls, z is a permutation, so each
  // axis sorts differently. The floor(9 / 2) = 4 lowest centres go left.
  static const int z_of[9] = {4, 0, 8, 2, 6, 1, 7, 3, 5};
  auto left_of = [](double sx, double sz) {
    probe_scene s;
    for (int i = 0; i < 9; ++i) {
      const position lo(i * sx, 8 - i, z_of[i] * sz);
      s.add(make_box(lo, lo + vector(1, 1, 1)));
    }
    s.h.build(8);
    const auto& root = s.h.nodes()[0];
    const auto& left = s.h.nodes()[root.left];
    const auto& right = s.h.nodes()[root.right];
    EXPECT_EQ(root.count, 0u);
    EXPECT_EQ(left.level, 1);
    EXPECT_EQ(right.count, 5u);
    return s.ids(left);
  };
  EXPECT_EQ(left_of(1, 0.5), (std::vector<int>{0, 1, 2, 3}));  // x and y tie: x
  EXPECT_EQ(left_of(0.5, 1), (std::vector<int>{8, 7, 6, 5}));  // y and z tie: y
  EXPECT_EQ(left_of(1, 2), (std::vector<int>{1, 5, 3, 7}));    // z longest
}

TEST(bounding_hierarchy, equal_keys_keep_list_order) {
  // 40 boxes along x with each centre used three or four times; every split
  // is on x, so the leaves end in sorted order with ties in list order.
  probe_scene s;
  std::vector<int> key_of;
  for (int i = 0; i < 40; ++i) {
    key_of.push_back((i * 7) % 13);
    s.add(make_box(position(key_of[i] - 0.5, 0, 0), position(key_of[i] + 0.5, 1, 1)));
  }
  s.h.build(8);
  std::vector<int> expected;
  for (int key = 0; key < 13; ++key)
    for (int i = 0; i < 40; ++i)
      if (key_of[i] == key) expected.push_back(i);
  EXPECT_EQ(s.ids(0, 40), expected);
}

TEST(bounding_hierarchy, objects_on_a_line_are_never_hit) {
  // Nine point boxes on the x axis: no extent in y and z.
  probe_scene s;
  for (int i = 0; i < 9; ++i) s.add(make_box(position(i, 0, 0), position(i, 0, 0)));
  const ray along(position(-1, 0, 0), direction(1, 0, 0));
  EXPECT_EQ(s.walk(along), run(0, 9));  // unbuilt: the root is one leaf
  s.h.build(8);
  // The root keeps its objects and two empty children, and is walked as an
  // inner node: nothing is tested.
  ASSERT_EQ(s.h.nodes().size(), 3u);
  EXPECT_EQ(s.ids(s.h.nodes()[0]), run(0, 9));
  EXPECT_TRUE(s.h.nodes()[1].box.any_empty());
  EXPECT_TRUE(s.h.nodes()[2].box.any_empty());
  EXPECT_EQ(s.walk(along), std::vector<int>{});
}

TEST(bounding_hierarchy, walk_order_and_pruning) {
  // Sixteen unit cubes along x: 0-7 in the left leaf, 8-15 in the right.
  probe_scene s;
  for (int i = 0; i < 16; ++i) s.add(make_box(position(i, 0, 0), position(i + 1, 1, 1)));
  s.h.build(8);
  EXPECT_EQ(s.walk(ray(position(-5, 0.5, 0.5), direction(1, 0, 0))), run(0, 16));
  EXPECT_EQ(s.walk(ray(position(25, 0.5, 0.5), direction(-1, 0, 0))), run(8, 16, run(0, 8)));
  EXPECT_EQ(s.walk(ray(position(-5, 3, 0.5), direction(1, 0, 0))), std::vector<int>{});

  // A hit in the near leaf closer than the far leaf's entry: the pending
  // far leaf is tested again when popped, and skipped.
  probe_scene near_hit;
  for (int i = 0; i < 16; ++i) near_hit.add(make_box(position(i, 0, 0), position(i + 1, 1, 1)), 3.0);
  near_hit.h.build(8);
  EXPECT_EQ(near_hit.walk(ray(position(-5, 0.5, 0.5), direction(1, 0, 0))), run(0, 8));
  EXPECT_EQ(near_hit.context.test_count, 8u);

  // Overlapping leaves (x 0..2 and 1..3) entered at the same distance: right first.
  probe_scene tie;
  for (int i = 0; i < 16; ++i) tie.add(make_box(position(i / 8, 0, 0), position(i / 8 + 2, 1, 1)));
  tie.h.build(8);
  EXPECT_EQ(tie.walk(ray(position(1.5, 0.5, 10), direction(0, 0, -1))), run(8, 16, run(0, 8)));
}

TEST(bounding_hierarchy, coincident_triangles_tie_by_walk_order) {
  // Seven small triangles each side of two coincident ones A and B, all in
  // z = 0; the sort puts A last in the left leaf and B first in the right.
  std::vector<std::unique_ptr<triangle>> tris;
  bounding_hierarchy h;
  auto add = [&](const position& p0, const position& p1, const position& p2) {
    tris.push_back(std::make_unique<triangle>(p0, p1, p2));
    h.add(tris.back().get());
    return tris.back().get();
  };
  for (int i = 0; i < 7; ++i) add(position(-10.5 + i, -0.5, 0), position(-9.5 + i, -0.5, 0), position(-10 + i, 0.5, 0));
  triangle* a = add(position(-1, -1, 0), position(1, -1, 0), position(0, 1, 0));
  triangle* b = add(position(-1, -1, 0), position(1, -1, 0), position(0, 1, 0));
  for (int i = 0; i < 7; ++i) add(position(3.5 + i, -0.5, 0), position(4.5 + i, -0.5, 0), position(4 + i, 0.5, 0));
  a->set_corner_values(1, 1, 1);
  b->set_corner_values(2, 2, 2);

  const ray r(position(0, 0, 5), direction(0, 0, -1));
  render_context context;
  // Unbuilt, one leaf in list order: B is tested last and keeps the hit.
  hit_record hit;
  EXPECT_TRUE(h.intersect(r, hit, context));
  EXPECT_EQ(hit.object, b);
  EXPECT_EQ(context.test_count, 16u);

  // Built: both leaves are entered at distance 5, so the right one (with B)
  // goes first; the left one, popped, is still entered at exactly the hit
  // distance, and A takes the hit at that same distance.
  h.build(8);
  ASSERT_EQ(h.nodes().size(), 3u);
  hit = hit_record();
  EXPECT_TRUE(h.intersect(r, hit, context));
  EXPECT_EQ(hit.object, a);
  EXPECT_EQ(hit.value, 1.0);
  EXPECT_EQ(context.test_count, 32u);
}

TEST(bounding_hierarchy, deep_tree_finds_the_nearest_hit_with_fewer_tests) {
  std::mt19937 gen(17);
  std::uniform_real_distribution<double> coord(-10, 10), size(0.05, 0.5);
  std::vector<std::unique_ptr<primitive>> shapes;
  bounding_hierarchy h;
  for (int i = 0; i < 600; ++i) {
    const position c(coord(gen), coord(gen), coord(gen));
    if (i % 2)
      shapes.push_back(std::make_unique<sphere>(c, size(gen)));
    else
      shapes.push_back(std::make_unique<triangle>(c, c + vector(size(gen), 0, size(gen)),
                                                  c + vector(0, size(gen), size(gen))));
    h.add(shapes.back().get());
  }
  h.build(8);

  render_context walked, scanned;
  int hits = 0;
  for (int k = 0; k < 300; ++k) {
    const ray r(position(coord(gen), coord(gen), -15), normalise(vector(coord(gen) * 0.05, coord(gen) * 0.05, 1)));
    hit_record by_tree, by_scan;
    const bool found = h.intersect(r, by_tree, walked);
    bool any = false;
    for (const auto& p : shapes) any = p->intersect(r, by_scan, scanned) || any;
    ASSERT_EQ(found, any) << k;
    EXPECT_EQ(by_tree.object, by_scan.object) << k;
    EXPECT_EQ(by_tree.distance, by_scan.distance) << k;
    hits += found;
  }
  EXPECT_GT(hits, 30);
  EXPECT_LT(walked.test_count * 5, scanned.test_count);
}

}  // namespace
}  // namespace sciray
