// group_intersect_avx2.cpp - the group walk four rays at a time with AVX2,
// for processors that have it (math/simd_path.h). Everything it uses is
// included before the compiler is switched to AVX2, so that only the walk
// and its tests below are built for it.
#include <immintrin.h>

#include "geometry/group_intersect.h"

// GCC switches with its target pragma; clang (the fuzzing build) gives the
// same target to every function declared up to the pop.
#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2,popcnt"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2,popcnt")
#endif

#include "geometry/group_leaves.h"
#include "math/lanes_avx2.h"

namespace sciray::group_intersect {

unsigned avx2(const scene_geometry& g, const ray* rays, unsigned lanes, hit_record* hits, std::uint32_t* tests) {
  return intersect_group_with<avx2_lanes>(g, rays, lanes, hits, tests);
}

}  // namespace sciray::group_intersect

#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif
