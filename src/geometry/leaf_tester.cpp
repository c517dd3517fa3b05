// leaf_tester.cpp - the leaf test of one ray: roots first, then taken in
// list order.
#include "geometry/leaf_tester.h"

#include <algorithm>

namespace sciray {

bool leaf_tester::test(const hierarchy_child& leaf, double& distance) {
  distance_ = &distance;
  bool any = false;
  for (std::uint32_t done = 0; done < leaf.count; done += leaf_size) {
    const std::uint32_t count = std::min(leaf_size, leaf.count - done);
    if (leaf.tag != scene_geometry::mixed_leaf) {
      any = test_one_kind(leaf.tag, leaf.first + done, count) || any;
    } else {
      any = test_mixed(items_ + leaf.first + done, count) || any;
    }
  }
  return any;
}

// Works out the roots of `count` primitives of `kind` from `first`; false
// when there is none.
bool leaf_tester::work_out(std::uint32_t kind, std::uint32_t first, std::uint32_t count) {
  kind_roots& roots = roots_[kind];
  roots.first = first;
  if (count == 0) return false;
  return with_kind(kind, *sets_, [&](const auto& set) { return set.candidates(first, count, *ray_, roots.t.data()); });
}

// Takes root j of `kind` if the distance allows it.
bool leaf_tester::take(std::uint32_t kind, std::uint32_t j) {
  const kind_roots& roots = roots_[kind];
  const double t = roots.t[j];
  if (takes_equal_roots[kind] ? !(t <= *distance_) : !(t < *distance_)) return false;
  *distance_ = t;
  object = primitive_ref(kind, roots.first + j);
  return true;
}

// Part of a leaf of one kind: consecutive in that kind's set.
bool leaf_tester::test_one_kind(std::uint32_t kind, std::uint32_t first, std::uint32_t count) {
  if (!work_out(kind, first, count)) return false;
  bool any = false;
  for (std::uint32_t j = 0; j < count; ++j) any = take(kind, j) || any;
  return any;
}

// Part of a mixed leaf: each kind's primitives are consecutive in its set,
// in list order.
bool leaf_tester::test_mixed(const primitive_ref* items, std::uint32_t count) {
  std::array<std::uint32_t, kind_count> first{}, number{};
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::uint32_t k = items[i].kind();
    if (number[k]++ == 0) first[k] = items[i].index();
  }
  bool some = false;
  for (std::uint32_t k = 0; k < kind_count; ++k) some = work_out(k, first[k], number[k]) || some;
  if (!some) return false;
  std::array<std::uint32_t, kind_count> next{};
  bool any = false;
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::uint32_t k = items[i].kind();
    any = take(k, next[k]++) || any;
  }
  return any;
}

}  // namespace sciray
