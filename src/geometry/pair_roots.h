// pair_roots.h - the fast test of one kind (fast_root, in the kind's
// *_lanes.h) on the shapes of a leaf, two at a time against one ray with
// SSE2: the leaf test of the walk of one ray (leaf_tester.h).
#pragma once

#include <cstdint>

#include "geometry/shape_columns.h"
#include "math/lane_ray.h"
#include "math/lanes_sse2.h"

namespace sciray {

// The roots of shapes first .. first + count - 1 of `set`, whose quantities
// are `columns`, into t[0 .. count); false when none is a number.
template <typename Set, std::size_t N>
[[gnu::always_inline]] inline bool pair_roots(const Set& set, const shape_columns<N>& columns, std::uint32_t first, std::uint32_t count,
                const ray& r, double* t) {
  using L = sse2_lanes;
  const auto every = lane_ray<L>::every_lane(r);
  L::m numbers = L::none();
  for (std::uint32_t i = 0; i < count; i += 2) {
    const std::uint32_t k = first + i;
    const L::v roots = fast_root<L>(set, every, [&](std::size_t q) { return L::load(columns[q] + k); });
    L::store(t + i, roots);
    numbers = L::either(numbers, L::ordered(roots));
  }
  return L::any(numbers);
}

}  // namespace sciray
