// bounding_hierarchy.cpp - median-split build of the box tree and its
// nearest-first walk.
#include "math/bounding_hierarchy.h"

#include <algorithm>

#include "geometry/primitive.h"

namespace sciray {

namespace {

// Room of the walk's pending stack. The walk never holds more nodes than the
// depth of the node it stands on, and build() keeps every level below this.
constexpr int max_depth = 100;

// Intersects a leaf's objects in list order; true if any was hit.
bool test_objects(const primitive* const* objects, std::size_t count, const ray& r, hit_record& hit,
                  render_context& context) {
  bool found = false;
  for (std::size_t i = 0; i < count; ++i)
    if (objects[i]->intersect(r, hit, context)) found = true;
  return found;
}

}  // namespace

void bounding_hierarchy::add(const primitive* p) {
  pending_.push_back(p);
  if (const bounding_box* b = p->bounds()) root_box_.widen(*b);
}

void bounding_hierarchy::build(int leaf_size) {
  nodes_.clear();
  objects_.insert(objects_.end(), pending_.begin(), pending_.end());
  pending_.clear();
  node root;
  root.box = root_box_;
  root.count = static_cast<std::uint32_t>(objects_.size());
  nodes_.push_back(root);
  split(0, leaf_size);
}

void bounding_hierarchy::split(int index, int leaf_size) {
  const int level = nodes_[index].level;
  const std::uint32_t first = nodes_[index].first, count = nodes_[index].count;
  // Halving keeps real trees far shallower; the level bound guards the stack.
  if (static_cast<long long>(count) <= leaf_size || level + 1 >= max_depth) return;

  const int left = static_cast<int>(nodes_.size());
  nodes_[index].left = left;
  nodes_[index].right = left + 1;
  nodes_.resize(nodes_.size() + 2);

  // Objects on a line or a point cannot be split: the node keeps them and its
  // two empty children, so the walk treats it as inner and never tests them.
  const bounding_box& box = nodes_[index].box;
  const double ex = box.axis[0].extent(), ey = box.axis[1].extent(), ez = box.axis[2].extent();
  if ((ex == 0.0) + (ey == 0.0) + (ez == 0.0) >= 2) return;

  const int a = (ex >= ey && ex >= ez) ? 0 : (ey >= ez ? 1 : 2);
  const auto begin = objects_.begin() + first;
  std::stable_sort(begin, begin + count, [a](const primitive* p, const primitive* q) {
    return p->bounds()->centre(a) < q->bounds()->centre(a);
  });

  const std::uint32_t half = count / 2;
  nodes_[index].count = 0;
  node& l = nodes_[left];
  node& r = nodes_[left + 1];
  l.first = first;
  l.count = half;
  r.first = first + half;
  r.count = count - half;
  l.level = r.level = level + 1;
  for (std::uint32_t i = 0; i < count; ++i)
    (i < half ? l : r).box.widen(*objects_[first + i]->bounds());

  split(left, leaf_size);
  split(left + 1, leaf_size);
}

bool bounding_hierarchy::intersect(const ray& r, hit_record& hit, render_context& context) const {
  double entry;
  // Not built yet: the root is one leaf holding every object.
  if (nodes_.empty()) {
    if (!enter_box(root_box_, r, hit.distance, entry)) return false;
    return test_objects(pending_.data(), pending_.size(), r, hit, context);
  }

  const node* pending[max_depth];
  int top = 0;
  bool found = false;
  const node* current = &nodes_[0];
  bool entered = enter_box(current->box, r, hit.distance, entry);
  for (;;) {
    if (entered) {
      if (current->left < 0) {
        if (test_objects(objects_.data() + current->first, current->count, r, hit, context)) found = true;
      } else {
        // Nearest child first; on equal entry the right child goes first.
        const node* left = &nodes_[current->left];
        const node* right = &nodes_[current->right];
        double left_entry, right_entry;
        const bool in_left = enter_box(left->box, r, hit.distance, left_entry);
        const bool in_right = enter_box(right->box, r, hit.distance, right_entry);
        if (in_left && in_right) {
          const bool left_first = left_entry < right_entry;
          pending[top++] = left_first ? right : left;
          current = left_first ? left : right;
          continue;
        }
        if (in_left || in_right) {
          current = in_left ? left : right;
          continue;
        }
      }
    }
    if (top == 0) return found;
    current = pending[--top];
    // The nearest hit may have moved closer since this node was pushed.
    entered = enter_box(current->box, r, hit.distance, entry);
  }
}

}  // namespace sciray
