// scene_geometry.h - every primitive of the scene, ready for tracing: each
// kind in its set, in the order of the hierarchy's leaves, so that the walk
// tests a leaf's primitives without a virtual call and reads memory in
// order, with what shading reads apart from what the tests read.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "geometry/hit_record.h"
#include "geometry/shape_kinds.h"
#include "math/bounding_hierarchy.h"
#include "math/ray.h"
#include "math/simd_path.h"

namespace sciray {

class material;

class scene_geometry {
 public:
  // The tag of a leaf whose primitives are not all of one kind; a leaf of
  // one kind is tagged with the kind's number and starts at its first
  // primitive in that kind's set.
  static constexpr std::uint32_t mixed_leaf = kind_count;

  std::size_t size() const;

  // Tests every primitive of every leaf the ray enters, nearest box first,
  // adding one to `test_count` per test; the hit's distance and object end
  // as those of the nearest hit. True if any primitive was hit.
  bool intersect(const ray& r, hit_record& hit, std::uint32_t& test_count) const;
  // What intersect does for rays[i], hits[i] and tests[i], for each of
  // `count` rays, walking them in groups on the active vector path.
  void intersect_each(std::size_t count, const ray* rays, hit_record* hits, std::uint32_t* tests) const;
  // The same for the rays of the bits of `lanes` (a group of at most
  // group_width(path)), walked together on `path`; returns the bits of
  // those that hit.
  unsigned intersect_group(simd_path path, const ray* rays, unsigned lanes, hit_record* hits,
                           std::uint32_t* tests) const;
  // The most rays a group walk on `path` takes at once.
  static int group_width(simd_path path);
  static constexpr int group_limit = 8;
  // The normal (and data value) of the hit found by intersect.
  void surface(const ray& r, hit_record& hit) const;
  const material* material_of(primitive_ref p) const;

  const bounding_hierarchy& hierarchy() const { return hierarchy_; }
  // The primitives leaf by leaf, as the walk tests them.
  const std::vector<primitive_ref>& leaf_order() const { return items_; }
  // The set of kind S (sphere, cylinder, triangle).
  template <typename S>
  const typename S::set& shapes() const {
    return std::get<kind_of<S>>(sets_);
  }
  // The sets of all kinds.
  const per_kind<set_of>& sets() const { return sets_; }

 private:
  friend class geometry_builder;

  bounding_hierarchy hierarchy_;
  std::vector<primitive_ref> items_;
  per_kind<set_of> sets_;
  std::array<std::vector<std::uint32_t>, kind_count> materials_;  // per kind in leaf order, into material_list_
  std::vector<const material*> material_list_;
};

}  // namespace sciray
