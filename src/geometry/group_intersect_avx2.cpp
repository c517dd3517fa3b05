// group_intersect_avx2.cpp - the group walk four rays at a time with AVX2,
// for processors that have it (math/simd_path.h). Everything it uses is
// included before the compiler is switched to AVX2, so that only the walk
// and its tests below are built for it.
#include <immintrin.h>

#include "geometry/group_intersect.h"
#include "math/target_region.h"

SCIRAY_TARGET_BEGIN("avx2,popcnt")

#include "geometry/group_leaves.h"
#include "math/lanes_avx2.h"

namespace sciray::group_intersect {

unsigned avx2(const scene_geometry& g, const ray* rays, unsigned lanes, hit_record* hits, std::uint32_t* tests) {
  return intersect_group_with<avx2_lanes>(g, rays, lanes, hits, tests);
}

}  // namespace sciray::group_intersect

SCIRAY_TARGET_END
