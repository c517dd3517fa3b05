// group_intersect.h - scene_geometry::intersect_group on each path: the
// group walk (math/group_walk.h) with the group leaf test
// (group_leaves.h), built once per set of instructions. The AVX2 and
// AVX-512 files switch the compiler to those instructions only after this
// file, which brings in everything else they use, so that nothing but the
// group walk and its tests is compiled for them.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "geometry/leaf_tester.h"
#include "geometry/scene_geometry.h"

namespace sciray::group_intersect {

unsigned plain(const scene_geometry& g, const ray* rays, unsigned lanes, hit_record* hits, std::uint32_t* tests);
unsigned sse2(const scene_geometry& g, const ray* rays, unsigned lanes, hit_record* hits, std::uint32_t* tests);
unsigned avx2(const scene_geometry& g, const ray* rays, unsigned lanes, hit_record* hits, std::uint32_t* tests);
unsigned avx512(const scene_geometry& g, const ray* rays, unsigned lanes, hit_record* hits, std::uint32_t* tests);

}  // namespace sciray::group_intersect
