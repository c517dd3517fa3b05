// presorted_split.h - the hierarchy's median splits without a sort per
// node. The objects are sorted by centre once per axis, ties by number;
// every node keeps its objects in those three orders, and a split hands
// each child its part of each list, still in order. The list of the split
// axis gives the median at once: the node's own order differs from it only
// within a run of equal centres, and only a run across the median needs to
// be put in that order.
//
// The boxes travel with the first list, so that the children's boxes are
// made by reading them in order.
//
// Needs centres that are all numbers (see sort_chain).
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "math/bounding_hierarchy.h"
#include "math/sort_chain.h"

namespace sciray {

class presorted_split {
 public:
  // Sorts the objects by the centres of `boxes` (by object, none of them
  // not a number), which `source` gives too; `order` receives the objects
  // leaf by leaf.
  presorted_split(std::vector<solid_box> boxes, const box_source& source, std::vector<std::uint32_t>& order);

  // Lists the objects of the node at [first, first + count) into `order` in
  // `chain` order: a leaf, or a node that is never split.
  void order_leaf(std::uint32_t first, std::uint32_t count, const sort_chain& chain);

  // Splits the node at [first, first + count), whose objects are in `chain`
  // order, at its median on `axis`, the smaller half first; the children's
  // boxes into `child`.
  void divide(std::uint32_t first, std::uint32_t count, int axis, const sort_chain& chain, bounding_box child[2]);

 private:
  // An object and the place of its centre among all distinct centres on
  // the list's axis: equal ranks are equal centres.
  struct ranked {
    std::uint32_t rank;
    std::uint32_t object;
  };
  // An object with its box, to be put in a chain's order.
  struct entry {
    const solid_box* box;
    std::uint32_t object;
  };

  bool mark_median_run(const ranked* list, std::uint32_t count, const sort_chain& chain);
  void partition(std::uint32_t first, std::uint32_t count, int axis);

  const box_source& source_;
  std::vector<std::uint32_t>& order_;
  std::array<std::vector<ranked>, 3> lists_;  // per axis: each node's objects at its places, by (centre, number)
  std::vector<solid_box> boxes_;              // the boxes of lists_[0], place for place
  std::vector<std::uint8_t> left_;            // by object: whether the split under way sends it left
  std::vector<ranked> spare_;                 // the right part of a list while it is partitioned
  std::vector<solid_box> spare_boxes_;
  std::vector<std::uint32_t> run_;  // a run of equal centres across a median, by number
  std::vector<solid_box> run_boxes_;
  std::vector<entry> entries_;
};

}  // namespace sciray
