// bounding_hierarchy.cpp - an empty hierarchy, and a built one taken over
// from the median-split build.
#include "math/bounding_hierarchy.h"

#include "math/hierarchy_build.h"

namespace sciray {

// Nothing built: an empty root, never entered.
bounding_hierarchy::bounding_hierarchy() {
  store_lane(root_box_, 0, bounding_box{});
  store_lane(root_box_, 1, bounding_box{});
}

void bounding_hierarchy::build(std::uint32_t n, const box_source& source, const bounding_box& root_box,
                               int leaf_size) {
  built_tree tree = build_tree(n, source, root_box, static_cast<std::uint32_t>(leaf_size < 0 ? 0 : leaf_size));
  store_lane(root_box_, 0, root_box);
  store_lane(root_box_, 1, root_box);
  root_ = tree.root;
  nodes_ = std::move(tree.nodes);
  order_ = std::move(tree.order);
}

}  // namespace sciray
