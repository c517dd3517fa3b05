// group_leaves.h - the leaf test of a group walk: each primitive of a leaf
// against all the group's rays that entered it at once (one ray per lane,
// the kind's fast test from *_lanes.h), its root taken lane by lane
// against each ray's own distance, in list order: what the leaf test of
// one ray (leaf_tester.h) takes, ray by ray. Written once for any lane type L; the
// files that build it include it only after switching the compiler to
// their instructions (group_intersect.h).
#pragma once

#include "geometry/cylinder_lanes.h"
#include "geometry/sphere_lanes.h"
#include "geometry/triangle_lanes.h"
#include "math/group_walk.h"

namespace sciray {

template <typename L>
class group_leaves {
 public:
  group_leaves(const scene_geometry& g, const group_rays<L>& group, unsigned lanes, hit_record* hits,
               std::uint32_t* tests)
      : g_(g), group_(group), hits_(hits), tests_(tests) {
    for (int lane = 0; lane < L::width; ++lane) distance[lane] = (lanes >> lane) & 1 ? hits[lane].distance : 0.0;
  }

  // Each lane's distance so far, read by the walk.
  alignas(64) double distance[L::width];

  // Tests `leaf` for the rays of `lanes`; the lanes that took a root.
  unsigned test_group(unsigned lanes, const hierarchy_child& leaf) {
    for (unsigned left = lanes; left; left &= left - 1) tests_[std::countr_zero(left)] += leaf.count;
    const typename L::m active = L::from_bits(lanes);
    typename L::v limit = L::load(distance);
    unsigned taken = 0;
    const auto offer = [&](std::uint32_t kind, std::uint32_t index, typename L::v root) {
      const typename L::m take = L::both(active, takes_equal_roots[kind] ? L::le(root, limit) : L::lt(root, limit));
      if (!L::any(take)) return;
      limit = L::select(take, root, limit);
      const unsigned bits = L::bits(take);
      for (unsigned left = bits; left; left &= left - 1) hits_[std::countr_zero(left)].object = primitive_ref(kind, index);
      taken |= bits;
    };
    if (leaf.tag != scene_geometry::mixed_leaf) {
      with_kind(leaf.tag, g_.sets(), [&](const auto& set) {
        for (std::uint32_t i = leaf.first; i < leaf.first + leaf.count; ++i) offer(leaf.tag, i, root(set, i));
      });
    } else {
      const primitive_ref* items = g_.leaf_order().data() + leaf.first;
      for (std::uint32_t i = 0; i < leaf.count; ++i) {
        const std::uint32_t kind = items[i].kind(), index = items[i].index();
        with_kind(kind, g_.sets(), [&](const auto& set) { offer(kind, index, root(set, index)); });
      }
    }
    L::store(distance, limit);
    return taken;
  }

 private:
  // The root of primitive i of `set` in each lane.
  template <typename Set>
  typename L::v root(const Set& set, std::uint32_t i) const {
    return fast_root<L>(set, group_.ray_lanes, [&](auto q) { return L::set1(set.at(q, i)); });
  }

  const scene_geometry& g_;
  const group_rays<L>& group_;
  hit_record* hits_;
  std::uint32_t* tests_;
};

// scene_geometry::intersect_group for lanes L.
template <typename L>
unsigned intersect_group_with(const scene_geometry& g, const ray* rays, unsigned lanes, hit_record* hits,
                              std::uint32_t* tests) {
  const group_rays<L> group(rays, lanes);
  group_leaves<L> leaves(g, group, lanes, hits, tests);
  const unsigned found = group_walker<L, group_leaves<L>>(g.hierarchy(), group, lanes, leaves).run();
  for (unsigned left = lanes; left; left &= left - 1) {
    const int lane = std::countr_zero(left);
    hits[lane].distance = leaves.distance[lane];
  }
  return found;
}

}  // namespace sciray
