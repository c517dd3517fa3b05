// group_intersect.cpp - the group walk in plain scalar code, one ray at a
// time (the reference the vector paths are held to), and two rays at a
// time with SSE2, which every x86-64 has.
#include "geometry/group_intersect.h"

#include "geometry/group_leaves.h"
#include "math/lanes_plain.h"
#include "math/lanes_sse2.h"

namespace sciray::group_intersect {

unsigned plain(const scene_geometry& g, const ray* rays, unsigned lanes, hit_record* hits, std::uint32_t* tests) {
  unsigned found = 0;
  for (unsigned left = lanes; left; left &= left - 1) {
    const int lane = std::countr_zero(left);
    if (intersect_group_with<plain_lanes>(g, rays + lane, 1, hits + lane, tests + lane)) found |= 1u << lane;
  }
  return found;
}

unsigned sse2(const scene_geometry& g, const ray* rays, unsigned lanes, hit_record* hits, std::uint32_t* tests) {
  return intersect_group_with<sse2_lanes>(g, rays, lanes, hits, tests);
}

}  // namespace sciray::group_intersect
