// bounding_hierarchy.h - the binary tree of boxes over the bounded objects,
// built once by median splits and stored flat for the walk: each inner node
// holds its two children's boxes side by side, so that the walk tests both
// with one pair test, and the objects lie in leaf order.
#pragma once

#include <cstdint>
#include <vector>

#include "math/bounding_box.h"
#include "math/box_pair.h"
#include "math/ray.h"

namespace sciray {

struct hierarchy_child {
  static constexpr std::uint32_t inner_mark = ~std::uint32_t{0};
  std::uint32_t first = 0;  // a leaf: its first object in order(); an inner node: its index in nodes()
  std::uint32_t count = 0;  // a leaf: its number of objects; inner_mark for an inner node
  std::uint32_t tag = 0;    // a leaf: free for the owner of the objects (see retag_leaves)
  bool leaf() const { return count != inner_mark; }
};

// Two cache lines: the children's boxes, then the children.
struct alignas(64) hierarchy_node {
  box_pair boxes;  // lane 0 the left child's box, lane 1 the right child's
  hierarchy_child child[2];
};

// Where the build gets the boxes of the objects, when it starts: the
// objects need not keep a box each before then.
class box_source {
 public:
  virtual ~box_source() = default;
  // The boxes of `count` objects, by their numbers, into `out`.
  virtual void boxes(const std::uint32_t* objects, std::size_t count, solid_box* out) const = 0;
};

class bounding_hierarchy {
 public:
  bounding_hierarchy();

  // The deepest the walk can go: build() splits no node at this level, and
  // halving keeps any real tree far shallower.
  static constexpr int max_depth = 100;

  // Splits `count` objects, whose boxes `source` gives and whose union
  // (widened in the order the objects are numbered) is `root_box`, until no
  // leaf holds more than `leaf_size`.
  void build(std::uint32_t count, const box_source& source, const bounding_box& root_box, int leaf_size);

  // The objects (indices into the boxes given to build), leaf by leaf.
  const std::vector<std::uint32_t>& order() const { return order_; }
  std::vector<std::uint32_t> take_order() { return std::move(order_); }
  const std::vector<hierarchy_node>& nodes() const { return nodes_; }
  const hierarchy_child& root() const { return root_; }
  // The root's box in both lanes.
  const box_pair& root_boxes() const { return root_box_; }

  // Lets `retag(leaf)` rewrite the `first` and `tag` of every leaf, for an
  // owner that lays its objects out in its own way once the tree is built.
  template <typename Retag>
  void retag_leaves(Retag&& retag) {
    if (root_.leaf()) retag(root_);
    for (hierarchy_node& n : nodes_)
      for (hierarchy_child& c : n.child)
        if (c.leaf()) retag(c);
  }

  // Walks the tree for one ray, nearest box first, calling
  // test_leaf(leaf) for every leaf whose box the ray enters; the leaf
  // test lowers `distance` as it finds hits, and boxes beyond it are skipped.
  // True if any leaf test returned true.
  template <typename LeafTest>
  bool walk(const ray& r, const double& distance, LeafTest&& test_leaf) const;

 private:
  template <bool may_be_flat, typename LeafTest>
  bool walk_from(const box_ray& along, const double& distance, LeafTest& test_leaf) const;

  box_pair root_box_{};  // the root's box in both lanes
  hierarchy_child root_;
  std::vector<hierarchy_node> nodes_;
  std::vector<std::uint32_t> order_;
};

template <typename LeafTest>
bool bounding_hierarchy::walk(const ray& r, const double& distance, LeafTest&& test_leaf) const {
  const box_ray along(r);
  // Rays parallel to an axis are rare: the others take a walk without that case.
  return along.any_flat ? walk_from<true>(along, distance, test_leaf) : walk_from<false>(along, distance, test_leaf);
}

template <bool may_be_flat, typename LeafTest>
bool bounding_hierarchy::walk_from(const box_ray& along, const double& distance, LeafTest& test_leaf) const {
  const box_pair_result at_root = enter_boxes<true, may_be_flat>(root_box_, along, distance);
  if (!(at_root.entered & 1)) return false;

  // Children still to visit, each with the test that tells whether the ray
  // still enters its box once the distance has shrunk, and whether the
  // origin lies in it (a box without the origin holds no box with it).
  struct pending {
    const hierarchy_child* child;
    double retest;
    bool holds_origin;
  };
  pending stack[max_depth];
  int top = 0;
  bool found = false;
  const hierarchy_child* current = &root_;
  bool holds_origin = at_root.inside & 1;
  for (;;) {
    if (current->leaf()) {
      if (test_leaf(*current)) found = true;
    } else {
      const hierarchy_node& node = nodes_[current->first];
      const box_pair_result t = holds_origin ? enter_boxes<true, may_be_flat>(node.boxes, along, distance)
                                             : enter_boxes<false, may_be_flat>(node.boxes, along, distance);
      if (t.entered == 3) {
        // Nearest first; on equal entry distances the right child first.
        const int near = t.entry[0] < t.entry[1] ? 0 : 1;
        stack[top++] = {&node.child[1 - near], t.retest[1 - near], ((t.inside >> (1 - near)) & 1) != 0};
        current = &node.child[near];
        holds_origin = (t.inside >> near) & 1;
        continue;
      }
      if (t.entered != 0) {
        const int only = t.entered == 1 ? 0 : 1;
        current = &node.child[only];
        holds_origin = (t.inside >> only) & 1;
        continue;
      }
    }
    do {
      if (top == 0) return found;
      --top;
    } while (stack[top].retest > distance);
    current = stack[top].child;
    holds_origin = stack[top].holds_origin;
  }
}

}  // namespace sciray
