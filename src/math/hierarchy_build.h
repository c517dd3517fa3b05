// hierarchy_build.h - the median-split build of the bounding hierarchy: a
// node of more than leaf_size objects is split on its box's longest axis
// (x before y before z on ties) by a stable sort of its objects by their
// box centres, the first half going left.
#pragma once

#include <cstdint>
#include <vector>

#include "math/bounding_hierarchy.h"

namespace sciray {

// A box as one lane of a pair; an empty box is NaN, which the test rejects.
void store_lane(box_pair& pair, int lane, const bounding_box& box);

struct built_tree {
  hierarchy_child root;
  std::vector<hierarchy_node> nodes;   // depth first, each node before its children
  std::vector<std::uint32_t> order;    // the objects, leaf by leaf
};

built_tree build_tree(std::uint32_t count, const box_source& source, const bounding_box& root_box,
                      std::uint32_t leaf_size);

}  // namespace sciray
