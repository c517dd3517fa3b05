// group_walk.h - the walk of a group of rays through the hierarchy
// together, one ray per lane, each ray visiting exactly the leaves it
// visits alone (bounding_hierarchy::walk), in the same order, under its own
// distance.
//
// A box's entry distance does not depend on the ray's distance so far;
// only the final "entry beyond the distance" does. So the group tests each
// node's two boxes for all its rays at once, with the pair test's
// operations lane by lane, and replays the walk of each ray from the
// results: a ray that enters both children goes to the nearer first (the
// right one on equal entries) and leaves the other for later, to be skipped
// then if its entry lies beyond the ray's distance by that time. The group
// goes first where most of its rays go first. A ray that enters only the
// other child, or goes to the other child first, waits meanwhile; its
// distance does not change while it waits, so finding that child still
// entered when the group gets there is what visiting it at once would have
// found. A ray that goes to the other child first comes back to this one
// after it, alone or with others like it: the group may visit a subtree
// twice, for different rays, but each ray visits every leaf it visits
// alone, once, in its own order.
//
// Written once for any lane type L (lanes_*.h); a file that builds it for
// other instructions includes it only after switching the compiler to them.
#pragma once

#include <bit>
#include <cstddef>
#include <limits>

#include "math/bounding_hierarchy.h"
#include "math/lane_ray.h"

namespace sciray {

// The rays of a group, each quantity one lane per ray.
template <typename L>
struct group_rays {
  // Lanes not in `lanes` take the first ray that is, so that they compute
  // nothing out of the ordinary; their results are never looked at.
  group_rays(const ray* r, unsigned lanes) {
    // A ray is nine doubles: origin, direction, reciprocal direction.
    static_assert(sizeof(ray) == 9 * sizeof(double) && offsetof(ray, dir) == 3 * sizeof(double) &&
                  offsetof(ray, inv_dir) == 6 * sizeof(double));
    const int any = std::countr_zero(lanes);
    alignas(32) int index[L::width];  // of each lane's ray, in doubles from the first
    for (int lane = 0; lane < L::width; ++lane) index[lane] = 9 * ((lanes >> lane) & 1 ? lane : any);
    const double* first = reinterpret_cast<const double*>(r);
    const auto quantity = [&](int k) { return L::gather(first + k, index); };
    ray_lanes = {quantity(0), quantity(1), quantity(2), quantity(3), quantity(4), quantity(5)};
    const typename L::v zero = L::set1(0.0);
    origin[0] = ray_lanes.ox;
    origin[1] = ray_lanes.oy;
    origin[2] = ray_lanes.oz;
    const typename L::v dir[3] = {ray_lanes.dx, ray_lanes.dy, ray_lanes.dz};
    for (int a = 0; a < 3; ++a) {
      inverse[a] = quantity(6 + a);
      flat[a] = L::eq(dir[a], zero);
      any_flat = any_flat || L::any(flat[a]);
    }
  }

  lane_ray<L> ray_lanes;  // as the shapes' tests read them
  typename L::v origin[3], inverse[3];
  typename L::m flat[3];  // the lanes whose direction component is 0
  bool any_flat = false;
};

template <typename L>
struct group_box_result {
  unsigned entered, inside;     // lane bits
  typename L::v entry, retest;  // as in box_pair_result
};

// Box `side` of `boxes` against every ray of the group: for each lane the
// operations of enter_boxes in their order (see box_pair.h). A group with
// no zero direction component passes false for `may_be_flat`.
template <typename L, bool origin_may_be_inside, bool may_be_flat>
[[gnu::always_inline]] inline group_box_result<L> enter_box(const box_pair& boxes, int side, const group_rays<L>& g,
                                                            typename L::v distance) {
  using v = typename L::v;
  typename L::m inside = origin_may_be_inside ? L::all() : L::none(), miss = L::none();
  v near = L::set1(-1e20), far = L::set1(1e20);
  const v zero = L::set1(0.0);
#pragma GCC unroll 3
  for (int a = 0; a < 3; ++a) {
    const v lo = L::set1(boxes.lo[a][side]), hi = L::set1(boxes.hi[a][side]);
    const auto within = [&]() { return L::both(L::le(lo, g.origin[a]), L::le(g.origin[a], hi)); };
    if (origin_may_be_inside) inside = L::both(inside, within());
    const v t1 = L::mul(L::sub(lo, g.origin[a]), g.inverse[a]);
    const v t2 = L::mul(L::sub(hi, g.origin[a]), g.inverse[a]);
    const v t_near = L::min(t1, t2);  // t1 < t2 ? t1 : t2
    const v t_far = L::max(t2, t1);   // t2 > t1 ? t2 : t1
    if (may_be_flat) {
      // A lane parallel to this axis only needs the origin within the slab.
      const typename L::m flat = g.flat[a];
      miss = L::either(miss, L::either(L::except(flat, within()), L::except(L::ngt(t_far, zero), flat)));
      near = L::select(flat, near, L::max(t_near, near));
      far = L::select(flat, far, L::min(t_far, far));
      continue;
    }
    miss = L::either(miss, L::ngt(t_far, zero));
    near = L::max(t_near, near);  // raised by a later entry
    far = L::min(t_far, far);     // lowered by an earlier exit
  }
  miss = L::either(miss, L::either(L::gt(near, far), L::gt(near, distance)));
  group_box_result<L> r;
  r.inside = L::bits(inside);
  r.entered = r.inside | L::bits(L::except(L::all(), miss));
  r.entry = L::select(inside, zero, near);  // from inside: entry 0
  r.retest = L::select(inside, L::set1(-std::numeric_limits<double>::infinity()), near);
  return r;
}

// Walks a group of rays. `Leaves` tests the leaves: test_group(lanes, leaf)
// tests a leaf for the rays of the bits of `lanes` together, lowers
// leaves.distance[lane] to the hits taken and returns the lanes that took
// one.
template <typename L, typename Leaves>
class group_walker {
 public:
  group_walker(const bounding_hierarchy& h, const group_rays<L>& group, unsigned lanes, Leaves& leaves)
      : h_(h), group_(group), lanes_(lanes), leaves_(leaves) {}

  // The lanes whose leaf tests took a hit.
  unsigned run() { return group_.any_flat ? run<true>() : run<false>(); }

 private:
  using v = typename L::v;

  struct pending {
    const hierarchy_child* child;
    unsigned lanes, inside;
    alignas(sizeof(v)) double retest[L::width];
  };

  v distance() const { return L::load(leaves_.distance); }

  template <bool may_be_flat>
  unsigned run() {
    const group_box_result<L> at_root = enter_box<L, true, may_be_flat>(h_.root_boxes(), 0, group_, distance());
    unsigned active = at_root.entered & lanes_;
    unsigned inside = at_root.inside & active;
    const hierarchy_child* current = &h_.root();
    const hierarchy_node* nodes = h_.nodes().data();
    while (active) {
      if (current->leaf()) {
        found_ |= leaves_.test_group(active, *current);
      } else if (step<may_be_flat>(nodes[current->first], active, inside, current)) {
        continue;
      }
      pop(active, inside, current);
    }
    return found_;
  }

  // Tests the node's children; true when the group goes on into one of
  // them (`current`, with its lanes), false when no ray entered either.
  template <bool may_be_flat>
  [[gnu::always_inline]] bool step(const hierarchy_node& node, unsigned& active, unsigned& inside,
                                   const hierarchy_child*& current) {
    const v limit = distance();
    const group_box_result<L> t0 = inside ? enter_box<L, true, may_be_flat>(node.boxes, 0, group_, limit)
                                          : enter_box<L, false, may_be_flat>(node.boxes, 0, group_, limit);
    const group_box_result<L> t1 = inside ? enter_box<L, true, may_be_flat>(node.boxes, 1, group_, limit)
                                          : enter_box<L, false, may_be_flat>(node.boxes, 1, group_, limit);
    const unsigned in0 = t0.entered & active, in1 = t1.entered & active;
    if (!(in0 | in1)) return false;
    // Each ray that enters both goes to the nearer first, the right one on
    // equal entries; the group goes first where most of them go.
    const unsigned both = in0 & in1;
    const unsigned right_first = both & L::bits(L::nlt(t0.entry, t1.entry));
    const unsigned left_first = both & ~right_first;
    const bool right = both ? std::popcount(right_first) > std::popcount(left_first) : in0 == 0;
    const group_box_result<L>& near = right ? t1 : t0;
    const group_box_result<L>& far = right ? t0 : t1;
    const unsigned in_near = right ? in1 : in0, in_far = right ? in0 : in1;
    // The rays that go the other way first wait while the group is in this
    // child, visit the other one with the group, and come back here after it.
    if (const unsigned back = right ? left_first : right_first) push(&node.child[right], back, near);
    const unsigned now = in_near & ~(right ? left_first : right_first);
    if (in_far) push(&node.child[!right], in_far, far);
    if (now) {
      current = &node.child[right];
      active = now;
      inside = near.inside & now;
      return true;
    }
    return false;
  }

  // Leaves `child` for later for `lanes`, each to be skipped then if its
  // entry lies beyond its distance by that time.
  void push(const hierarchy_child* child, unsigned lanes, const group_box_result<L>& t) {
    pending& p = stack_[top_++];
    p.child = child;
    p.lanes = lanes;
    p.inside = t.inside & lanes;
    L::store(p.retest, t.retest);
  }

  // The next child left for later that some ray still enters; none: no lanes.
  [[gnu::always_inline]] void pop(unsigned& active, unsigned& inside, const hierarchy_child*& current) {
    for (;;) {
      if (top_ == 0) {
        active = 0;
        return;
      }
      const pending& p = stack_[--top_];
      active = p.lanes & ~L::bits(L::gt(L::load(p.retest), distance()));
      if (active) {
        current = p.child;
        inside = p.inside & active;
        return;
      }
    }
  }

  const bounding_hierarchy& h_;
  const group_rays<L>& group_;
  unsigned lanes_;
  unsigned found_ = 0;
  Leaves& leaves_;
  pending stack_[2 * bounding_hierarchy::max_depth];  // at most two children left at each level
  int top_ = 0;
};

}  // namespace sciray
