// bounding_hierarchy.h - the binary tree of boxes over the bounded
// primitives, stored flat, and its nearest-first walk.
#pragma once

#include <cstdint>
#include <vector>

#include "math/bounding_box.h"
#include "math/ray.h"

namespace sciray {

class primitive;
struct hit_record;
struct render_context;

class bounding_hierarchy {
 public:
  struct node {
    bounding_box box;
    int left = -1, right = -1;  // child node indices; both -1 in a leaf
    int level = 0;
    std::uint32_t first = 0, count = 0;  // the node's objects in objects()
  };

  // Appends a bounded primitive to the root and widens the root box by its bounds.
  void add(const primitive* p);
  std::size_t size() const { return pending_.size() + objects_.size(); }
  const bounding_box& root_box() const { return root_box_; }

  // Splits the root until no leaf holds more than `leaf_size` objects.
  // Call once, after the last add().
  void build(int leaf_size);

  // Tests every primitive of every leaf the ray enters, nearest box first;
  // `hit` ends holding the nearest hit. True if any primitive was hit.
  bool intersect(const ray& r, hit_record& hit, render_context& context) const;

  const std::vector<node>& nodes() const { return nodes_; }
  const std::vector<const primitive*>& objects() const { return objects_; }

 private:
  void split(int index, int leaf_size);

  bounding_box root_box_;
  std::vector<const primitive*> pending_;  // the root's list until build()
  std::vector<node> nodes_;                // nodes_[0] is the root once built
  std::vector<const primitive*> objects_;  // leaf lists, each contiguous
};

}  // namespace sciray
