// hierarchy_build.cpp - the shape of the build, node by node, and the two
// ways a node's objects are split: by partitioning presorted lists, or,
// when some box centre is not a number (which leaves `<` without an order
// that anything but the sort itself could reproduce), by sorting each
// node's objects as the build goes.
#include "math/hierarchy_build.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <numeric>
#include <span>

#include "math/presorted_split.h"
#include "math/sort_chain.h"
#include "math/stable_key_sort.h"

namespace sciray {

void store_lane(box_pair& pair, int lane, const bounding_box& box) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (int a = 0; a < 3; ++a) {
    pair.lo[a][lane] = box.any_empty() ? nan : box.axis[a].lo;
    pair.hi[a][lane] = box.any_empty() ? nan : box.axis[a].hi;
  }
}

namespace {

// Each node sorted in place in `order` with the stable sort itself; the
// objects are then already in their leaves' order.
class sorting_split {
 public:
  sorting_split(std::vector<solid_box> boxes, std::vector<std::uint32_t>& order)
      : boxes_(std::move(boxes)), order_(order), keyed_(boxes_.size()) {}

  void order_leaf(std::uint32_t, std::uint32_t, const sort_chain&) {}

  void divide(std::uint32_t first, std::uint32_t count, int axis, const sort_chain&, bounding_box child[2]) {
    std::uint32_t* objects = order_.data() + first;
    const std::span<keyed_item> keyed(keyed_.data(), count);
    for (std::uint32_t i = 0; i < count; ++i) keyed[i] = {boxes_[objects[i]].centre(axis), objects[i]};
    stable_sort_by_key(keyed, scratch_);
    child[0] = child[1] = bounding_box{};
    for (std::uint32_t i = 0; i < count; ++i) {
      objects[i] = keyed[i].item;
      child[i < count / 2 ? 0 : 1].widen(boxes_[objects[i]]);
    }
  }

 private:
  std::vector<solid_box> boxes_;
  std::vector<std::uint32_t>& order_;
  std::vector<keyed_item> keyed_, scratch_;
};

template <typename Split>
class median_build {
 public:
  median_build(Split& split, std::uint32_t leaf_size, built_tree& tree)
      : split_(split), leaf_size_(leaf_size), tree_(tree) {}

  // The node at [first, first + count) of the order, its objects in
  // `chain` order and its box `box`.
  hierarchy_child node(std::uint32_t first, std::uint32_t count, const bounding_box& box, const sort_chain& chain,
                       int level) {
    if (count <= leaf_size_ || level + 1 >= bounding_hierarchy::max_depth) {
      split_.order_leaf(first, count, chain);
      return {first, count, 0};
    }
    const auto index = static_cast<std::uint32_t>(tree_.nodes.size());
    tree_.nodes.emplace_back();
    const double ex = box.axis[0].extent(), ey = box.axis[1].extent(), ez = box.axis[2].extent();
    bounding_box child[2];
    if ((ex == 0.0) + (ey == 0.0) + (ez == 0.0) >= 2) {
      // Objects without extent in two axes: kept here, with two empty
      // children, so that the walk never reaches them.
      split_.order_leaf(first, count, chain);
      store_lane(tree_.nodes[index].boxes, 0, child[0]);
      store_lane(tree_.nodes[index].boxes, 1, child[1]);
      tree_.nodes[index].child[0] = tree_.nodes[index].child[1] = {first, 0, 0};
      return {index, hierarchy_child::inner_mark, 0};
    }
    const int axis = (ex >= ey && ex >= ez) ? 0 : (ey >= ez ? 1 : 2);
    split_.divide(first, count, axis, chain, child);
    store_lane(tree_.nodes[index].boxes, 0, child[0]);
    store_lane(tree_.nodes[index].boxes, 1, child[1]);
    const std::uint32_t half = count / 2;
    const sort_chain sorted = chain.then(axis);
    const hierarchy_child left = node(first, half, child[0], sorted, level + 1);
    const hierarchy_child right = node(first + half, count - half, child[1], sorted, level + 1);
    tree_.nodes[index].child[0] = left;
    tree_.nodes[index].child[1] = right;
    return {index, hierarchy_child::inner_mark, 0};
  }

 private:
  Split& split_;
  std::uint32_t leaf_size_;
  built_tree& tree_;
};

// The inner nodes a build of `count` objects makes at most: how a node is
// split in two depends on its count alone, and a node that is not split
// makes fewer. Level by level, nodes come in at most a few sizes.
std::size_t most_inner_nodes(std::uint32_t count, std::uint32_t leaf_size) {
  std::map<std::uint32_t, std::size_t> level{{count, 1}};
  std::size_t inner = 0;
  for (int depth = 0; depth + 1 < bounding_hierarchy::max_depth && !level.empty(); ++depth) {
    std::map<std::uint32_t, std::size_t> next;
    for (const auto& [size, nodes] : level) {
      if (size <= leaf_size) continue;
      inner += nodes;
      next[size / 2] += nodes;
      next[size - size / 2] += nodes;
    }
    level = std::move(next);
  }
  return inner;
}

template <typename Split>
void build_with(Split& split, std::uint32_t count, const bounding_box& root_box, std::uint32_t leaf_size,
                built_tree& tree) {
  tree.root = median_build<Split>(split, leaf_size, tree).node(0, count, root_box, sort_chain{}, 0);
}

}  // namespace

built_tree build_tree(std::uint32_t count, const box_source& source, const bounding_box& root_box,
                      std::uint32_t leaf_size) {
  built_tree tree;
  tree.order.resize(count);
  std::iota(tree.order.begin(), tree.order.end(), 0u);
  // The boxes are fetched once, six bounds each, because the source's own
  // records lie scattered through memory.
  std::vector<solid_box> boxes(count);
  for (std::uint32_t done = 0; done < count; done += 4096)
    source.boxes(tree.order.data() + done, std::min(4096u, count - done), boxes.data() + done);
  const bool numbers = std::none_of(boxes.begin(), boxes.end(), [](const solid_box& b) {
    return std::isnan(b.centre(0)) || std::isnan(b.centre(1)) || std::isnan(b.centre(2));
  });
  if (numbers) {
    presorted_split presorted(std::move(boxes), source, tree.order);
    // Made at its full size at once, so that the nodes are never copied.
    tree.nodes.reserve(most_inner_nodes(count, leaf_size));
    build_with(presorted, count, root_box, leaf_size, tree);
  } else {
    sorting_split sorting(std::move(boxes), tree.order);
    build_with(sorting, count, root_box, leaf_size, tree);
  }
  tree.nodes.shrink_to_fit();
  return tree;
}

}  // namespace sciray
