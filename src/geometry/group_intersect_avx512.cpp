// group_intersect_avx512.cpp - the group walk eight rays at a time with
// AVX-512, for processors that have it (math/simd_path.h). Everything it
// uses is included before the compiler is switched to AVX-512, so that only
// the walk and its tests below are built for it.
#include <immintrin.h>

#include "geometry/group_intersect.h"
#include "math/target_region.h"

SCIRAY_TARGET_BEGIN("avx512f,popcnt")

#include "geometry/group_leaves.h"
#include "math/lanes_avx512.h"

namespace sciray::group_intersect {

unsigned avx512(const scene_geometry& g, const ray* rays, unsigned lanes, hit_record* hits, std::uint32_t* tests) {
  return intersect_group_with<avx512_lanes>(g, rays, lanes, hits, tests);
}

}  // namespace sciray::group_intersect

SCIRAY_TARGET_END
