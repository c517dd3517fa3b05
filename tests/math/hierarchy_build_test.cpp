// hierarchy_build_test.cpp - the fast build against the median split
// written as plainly as it can be: each node sorted with std::stable_sort,
// its box widened object by object in its own order. The trees must have
// the same shape, the same node boxes and the same leaves in the same order,
// on scenes with distinct centres, with ties on every axis, with zeros of
// both signs, with centres that are not numbers, and at every leaf size.
#include "math/bounding_hierarchy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace sciray {
namespace {

class listed_boxes : public box_source {
 public:
  explicit listed_boxes(std::vector<solid_box> boxes) : boxes_(std::move(boxes)) {}
  void boxes(const std::uint32_t* objects, std::size_t count, solid_box* out) const override {
    for (std::size_t i = 0; i < count; ++i) out[i] = boxes_[objects[i]];
  }
  const std::vector<solid_box>& all() const { return boxes_; }
  bounding_box root() const {
    bounding_box b;
    for (const solid_box& s : boxes_) b.widen(s);
    return b;
  }

 private:
  std::vector<solid_box> boxes_;
};

// A tree as a flat list of numbers, depth first: a leaf is -1, its size
// and its objects; an inner node -2, its two boxes (empty ones as NaN) and
// its children.
using tree_trace = std::vector<double>;

void trace_box(const bounding_box& b, tree_trace& out) {
  for (int a = 0; a < 3; ++a) {
    out.push_back(b.any_empty() ? NAN : b.axis[a].lo);
    out.push_back(b.any_empty() ? NAN : b.axis[a].hi);
  }
}

void reference(const std::vector<solid_box>& boxes, std::vector<std::uint32_t> objects, const bounding_box& box,
               int leaf_size, int level, tree_trace& out) {
  const auto count = static_cast<int>(objects.size());
  if (count <= leaf_size || level + 1 >= bounding_hierarchy::max_depth) {
    out.insert(out.end(), {-1.0, static_cast<double>(count)});
    out.insert(out.end(), objects.begin(), objects.end());
    return;
  }
  out.push_back(-2);
  const double ex = box.axis[0].extent(), ey = box.axis[1].extent(), ez = box.axis[2].extent();
  if ((ex == 0.0) + (ey == 0.0) + (ez == 0.0) >= 2) {
    trace_box({}, out);
    trace_box({}, out);
    out.insert(out.end(), {-1.0, 0.0, -1.0, 0.0});
    return;
  }
  const int axis = (ex >= ey && ex >= ez) ? 0 : (ey >= ez ? 1 : 2);
  std::stable_sort(objects.begin(), objects.end(),
                   [&](std::uint32_t a, std::uint32_t b) { return boxes[a].centre(axis) < boxes[b].centre(axis); });
  const std::vector<std::uint32_t> left(objects.begin(), objects.begin() + count / 2);
  const std::vector<std::uint32_t> right(objects.begin() + count / 2, objects.end());
  bounding_box lbox, rbox;
  for (const std::uint32_t o : left) lbox.widen(boxes[o]);
  for (const std::uint32_t o : right) rbox.widen(boxes[o]);
  trace_box(lbox, out);
  trace_box(rbox, out);
  reference(boxes, left, lbox, leaf_size, level + 1, out);
  reference(boxes, right, rbox, leaf_size, level + 1, out);
}

void trace_built(const bounding_hierarchy& h, const hierarchy_child& c, tree_trace& out) {
  if (c.leaf()) {
    out.insert(out.end(), {-1.0, static_cast<double>(c.count)});
    out.insert(out.end(), h.order().begin() + c.first, h.order().begin() + c.first + c.count);
    return;
  }
  out.push_back(-2);
  const hierarchy_node& n = h.nodes()[c.first];
  for (int lane = 0; lane < 2; ++lane)
    for (int a = 0; a < 3; ++a) {
      out.push_back(n.boxes.lo[a][lane]);
      out.push_back(n.boxes.hi[a][lane]);
    }
  trace_built(h, n.child[0], out);
  trace_built(h, n.child[1], out);
}

// Zero bounds compare equal whatever their sign: the walk only compares
// the distances made from them, and -0 and +0 compare equal.
void expect_same_tree(const listed_boxes& source, int leaf_size, const char* what) {
  const std::size_t n = source.all().size();
  bounding_hierarchy h;
  h.build(static_cast<std::uint32_t>(n), source, source.root(), leaf_size);
  tree_trace built, expected;
  trace_built(h, h.root(), built);
  std::vector<std::uint32_t> all(n);
  for (std::uint32_t i = 0; i < n; ++i) all[i] = i;
  reference(source.all(), all, source.root(), leaf_size, 0, expected);
  ASSERT_EQ(built.size(), expected.size()) << what << ", leaf size " << leaf_size;
  for (std::size_t i = 0; i < built.size(); ++i)
    ASSERT_TRUE(built[i] == expected[i] || (std::isnan(built[i]) && std::isnan(expected[i])))
        << what << ", leaf size " << leaf_size << ": entry " << i << " is " << built[i] << ", not " << expected[i];
}

solid_box cube(double x, double y, double z, double half) {
  return {{x - half, y - half, z - half}, {x + half, y + half, z + half}};
}

TEST(hierarchy_build, matches_the_plain_median_split) {
  std::mt19937 gen(11);
  std::uniform_real_distribution<double> coord(-50, 50), size(0.01, 2);
  const auto grid = [&](int cells) { return static_cast<double>(static_cast<int>(gen() % cells)) - cells / 2; };

  std::vector<solid_box> scattered, gridded, signed_zeros, odd;
  for (int i = 0; i < 3000; ++i) scattered.push_back(cube(coord(gen), coord(gen), coord(gen) * 0.3, size(gen)));
  // Few distinct centres on every axis, boxes of a few sizes around them:
  // long runs of equal keys, broken by the other axes and then by number.
  for (int i = 0; i < 3000; ++i) gridded.push_back(cube(grid(9), grid(7), grid(5), 0.25 * (1 + gen() % 3)));
  // Zero-sized boxes at +0 and -0 mixed, flat in z.
  for (int i = 0; i < 600; ++i) {
    const double zero = gen() % 2 ? 0.0 : -0.0;
    const double x = gen() % 3 ? grid(5) : zero, y = gen() % 3 ? grid(4) : zero;
    signed_zeros.push_back({{x, y, zero}, {x, y, gen() % 2 ? 0.0 : -0.0}});
  }
  // Some bounds not numbers or infinite among ordinary boxes.
  const double inf = std::numeric_limits<double>::infinity(), nan = std::numeric_limits<double>::quiet_NaN();
  for (int i = 0; i < 1500; ++i) {
    solid_box b = cube(grid(11), coord(gen), coord(gen), 1);
    if (i % 97 == 5) b.hi[0] = nan;
    if (i % 89 == 7) b.lo[1] = -inf;
    odd.push_back(b);
  }

  for (const int leaf_size : {8, 1}) {
    expect_same_tree(listed_boxes(scattered), leaf_size, "scattered");
    expect_same_tree(listed_boxes(gridded), leaf_size, "gridded");
    expect_same_tree(listed_boxes(signed_zeros), leaf_size, "signed zeros");
    expect_same_tree(listed_boxes(odd), leaf_size, "not numbers");
  }
  // Leaf size 0: a single object is split into none and itself until the
  // depth limit makes it a leaf.
  expect_same_tree(listed_boxes({gridded.begin(), gridded.begin() + 40}), 0, "depth limit");
  // Objects on one line: a node that is never split, its children empty.
  std::vector<solid_box> line;
  for (int i = 0; i < 30; ++i) line.push_back(cube(grid(3), 0, 0, 0));
  line.push_back(cube(0, 1, 0, 0.5));
  expect_same_tree(listed_boxes(line), 8, "line");
}

}  // namespace
}  // namespace sciray
