// leaf_tester.h - the leaf test of the walk of one ray: each kind's fast
// test works out the roots of a leaf's primitives, two at a time, and the
// roots are then taken in list order against the shrinking distance.
//
// No shape's test needs the current distance until its very end: a sphere
// takes its near root if above 1e-6, else its far one if above 1e-6; a
// cylinder the first of its two roots that lies above 1e-6 and within the
// segment; a triangle its plane root if above 1e-6 and inside the triangle;
// and each then only if that root lies below the distance (a triangle: not
// beyond it). So taking the roots in list order leaves exactly what one
// reference test after another leaves, ties included.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "geometry/scene_geometry.h"

namespace sciray {

// Whether each kind takes a root equal to the distance so far.
inline constexpr std::array<bool, kind_count> takes_equal_roots = [] {
  std::array<bool, kind_count> equal{};
  for_each_kind([&](auto k) { equal[k.value] = std::tuple_element_t<k.value, shape_kinds>::set::takes_equal_roots; });
  return equal;
}();

class leaf_tester {
 public:
  leaf_tester(const scene_geometry& g, const ray& r) : sets_(&g.sets()), items_(g.leaf_order().data()), ray_(&r) {}

  primitive_ref object;  // the nearest primitive taken so far

  // Tests the primitives of `leaf` under `distance`, lowering it to each
  // root taken; true if one was.
  bool test(const hierarchy_child& leaf, double& distance) {
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

 private:
  // The roots the fast test of one kind left for some of its primitives.
  struct kind_roots {
    std::uint32_t first = 0;  // the first one's place in its kind's set
    std::array<double, leaf_size> t;
  };

  // Works out the roots of `count` primitives of `kind` from `first`; false
  // when there is none.
  bool work_out(std::uint32_t kind, std::uint32_t first, std::uint32_t count) {
    kind_roots& roots = roots_[kind];
    roots.first = first;
    if (count == 0) return false;
    return with_kind(kind, *sets_, [&](const auto& set) { return set.candidates(first, count, *ray_, roots.t.data()); });
  }

  // Takes root j of `kind` if the distance allows it.
  bool take(std::uint32_t kind, std::uint32_t j) {
    const kind_roots& roots = roots_[kind];
    const double t = roots.t[j];
    if (takes_equal_roots[kind] ? !(t <= *distance_) : !(t < *distance_)) return false;
    *distance_ = t;
    object = primitive_ref(kind, roots.first + j);
    return true;
  }

  // Part of a leaf of one kind: consecutive in that kind's set.
  bool test_one_kind(std::uint32_t kind, std::uint32_t first, std::uint32_t count) {
    if (!work_out(kind, first, count)) return false;
    bool any = false;
    for (std::uint32_t j = 0; j < count; ++j) any = take(kind, j) || any;
    return any;
  }

  // Part of a mixed leaf: each kind's primitives are consecutive in its set,
  // in list order.
  bool test_mixed(const primitive_ref* items, std::uint32_t count) {
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

  const per_kind<set_of>* sets_;
  const primitive_ref* items_;
  const ray* ray_;
  double* distance_ = nullptr;
  std::array<kind_roots, kind_count> roots_;
};

}  // namespace sciray
