// bounding_hierarchy.cpp - the median-split build: a node of more than
// leaf_size objects is split on its box's longest axis (x before y before
// z on ties) by sorting its objects by their box centres, the first half
// going left. Objects whose box has no extent in two axes cannot be split;
// their node keeps them with two empty children and is never entered below.
#include "math/bounding_hierarchy.h"

#include <limits>
#include <numeric>

#include "math/stable_key_sort.h"

namespace sciray {

namespace {

// A box as one lane of a pair; an empty box is NaN, which the test rejects.
void store_lane(box_pair& pair, int lane, const bounding_box& box) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (int a = 0; a < 3; ++a) {
    pair.lo[a][lane] = box.any_empty() ? nan : box.axis[a].lo;
    pair.hi[a][lane] = box.any_empty() ? nan : box.axis[a].hi;
  }
}

}  // namespace

// Nothing built: an empty root, never entered.
bounding_hierarchy::bounding_hierarchy() {
  store_lane(root_box_, 0, bounding_box{});
  store_lane(root_box_, 1, bounding_box{});
}

struct bounding_hierarchy::build_state {
  std::uint32_t leaf_size;
  std::vector<solid_box> boxes;            // the objects' boxes, by object
  std::vector<keyed_item> keyed, scratch;  // sort space, made once for the whole build
};

void bounding_hierarchy::build(std::uint32_t n, const box_source& source, const bounding_box& root_box,
                               int leaf_size) {
  order_.resize(n);
  std::iota(order_.begin(), order_.end(), 0u);
  nodes_.clear();
  store_lane(root_box_, 0, root_box);
  store_lane(root_box_, 1, root_box);
  build_state b{static_cast<std::uint32_t>(leaf_size < 0 ? 0 : leaf_size), {}, {}, {}};
  b.boxes.resize(n);
  for (std::uint32_t done = 0; done < n; done += 4096)
    source.boxes(order_.data() + done, n - done < 4096 ? n - done : 4096, b.boxes.data() + done);
  b.keyed.resize(n);
  root_ = split(b, 0, n, &root_box, nullptr, 0);
  nodes_.shrink_to_fit();
}


// Each node reads its objects' boxes once: their union is its box (kept in
// its parent's node as lane `lane`), and their centres sort its objects if
// it is split. The boxes are fetched from the source once, six bounds each,
// because the source's own records lie scattered through memory.
hierarchy_child bounding_hierarchy::split(build_state& b, std::uint32_t first, std::uint32_t count,
                                          const bounding_box* root_box, const node_lane* parent, int level) {
  std::uint32_t* objects = order_.data() + first;
  const solid_box* boxes = b.boxes.data();
  bounding_box surveyed;
  for (std::uint32_t i = 0; i < count; ++i) surveyed.widen(boxes[objects[i]]);
  const bounding_box& box = root_box ? *root_box : surveyed;
  if (parent) store_lane(nodes_[parent->node].boxes, parent->lane, box);
  if (count <= b.leaf_size || level + 1 >= max_depth) return {first, count, 0};

  const auto index = static_cast<std::uint32_t>(nodes_.size());
  nodes_.emplace_back();
  const double ex = box.axis[0].extent(), ey = box.axis[1].extent(), ez = box.axis[2].extent();
  if ((ex == 0.0) + (ey == 0.0) + (ez == 0.0) >= 2) {
    store_lane(nodes_[index].boxes, 0, bounding_box{});
    store_lane(nodes_[index].boxes, 1, bounding_box{});
    nodes_[index].child[0] = nodes_[index].child[1] = {first, 0, 0};
    return {index, hierarchy_child::inner_mark, 0};
  }

  const int axis = (ex >= ey && ex >= ez) ? 0 : (ey >= ez ? 1 : 2);
  const std::span<keyed_item> keyed(b.keyed.data(), count);
  for (std::uint32_t i = 0; i < count; ++i) keyed[i] = {boxes[objects[i]].centre(axis), objects[i]};
  stable_sort_by_key(keyed, b.scratch);
  for (std::uint32_t i = 0; i < count; ++i) objects[i] = keyed[i].item;

  const std::uint32_t half = count / 2;
  const node_lane left{index, 0}, right{index, 1};
  const hierarchy_child l = split(b, first, half, nullptr, &left, level + 1);
  const hierarchy_child r = split(b, first + half, count - half, nullptr, &right, level + 1);
  nodes_[index].child[0] = l;
  nodes_[index].child[1] = r;
  return {index, hierarchy_child::inner_mark, 0};
}

}  // namespace sciray
