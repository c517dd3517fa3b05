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

#include <array>
#include <cstdint>

#include "geometry/scene_geometry.h"

namespace sciray {

class leaf_tester {
 public:
  leaf_tester(const scene_geometry& g, const ray& r) : sets_(&g.sets()), items_(g.leaf_order().data()), ray_(&r) {}

  primitive_ref object;  // the nearest primitive taken so far

  // Tests the primitives of `leaf` under `distance`, lowering it to each
  // root taken; true if one was.
  bool test(const hierarchy_child& leaf, double& distance);

 private:
  // The roots the fast test of one kind left for some of its primitives.
  struct kind_roots {
    std::uint32_t first = 0;  // the first one's place in its kind's set
    std::array<double, leaf_size> t;
  };

  bool work_out(std::uint32_t kind, std::uint32_t first, std::uint32_t count);
  bool take(std::uint32_t kind, std::uint32_t j);
  bool test_one_kind(std::uint32_t kind, std::uint32_t first, std::uint32_t count);
  bool test_mixed(const primitive_ref* items, std::uint32_t count);

  const per_kind<set_of>* sets_;
  const primitive_ref* items_;
  const ray* ray_;
  double* distance_ = nullptr;
  std::array<kind_roots, kind_count> roots_;
};

// Whether each kind takes a root equal to the distance so far.
inline constexpr std::array<bool, kind_count> takes_equal_roots = [] {
  std::array<bool, kind_count> equal{};
  for_each_kind([&](auto k) { equal[k.value] = std::tuple_element_t<k.value, shape_kinds>::set::takes_equal_roots; });
  return equal;
}();

}  // namespace sciray
