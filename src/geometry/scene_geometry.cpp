// scene_geometry.cpp - the walk of one ray or of a group of rays, the
// surface data of a hit and the material of a primitive.
#include "geometry/scene_geometry.h"

#include <algorithm>

#include "geometry/group_intersect.h"
#include "geometry/leaf_tester.h"

namespace sciray {

std::size_t scene_geometry::size() const {
  std::size_t n = 0;
  for_each_kind([&](auto k) { n += std::get<k.value>(sets_).size(); });
  return n;
}

bool scene_geometry::intersect(const ray& r, hit_record& hit, std::uint32_t& test_count) const {
  if (active_simd_path() == simd_path::plain) return intersect_group(simd_path::plain, &r, 1, &hit, &test_count) != 0;
  leaf_tester tester(*this, r);
  tester.object = hit.object;
  const bool found = hierarchy_.walk(r, hit.distance, [&](const hierarchy_child& leaf) {
    test_count += leaf.count;
    return tester.test(leaf, hit.distance);
  });
  hit.object = tester.object;
  return found;
}

unsigned scene_geometry::intersect_group(simd_path path, const ray* rays, unsigned lanes, hit_record* hits,
                                         std::uint32_t* tests) const {
  switch (path) {
    case simd_path::plain: return group_intersect::plain(*this, rays, lanes, hits, tests);
    case simd_path::sse2: return group_intersect::sse2(*this, rays, lanes, hits, tests);
    case simd_path::avx2: return group_intersect::avx2(*this, rays, lanes, hits, tests);
    case simd_path::avx512: return group_intersect::avx512(*this, rays, lanes, hits, tests);
  }
  return 0;
}

int scene_geometry::group_width(simd_path path) {
  switch (path) {
    case simd_path::plain: return 1;
    case simd_path::sse2: return 2;
    case simd_path::avx2: return 4;
    case simd_path::avx512: return 8;
  }
  return 1;
}

void scene_geometry::intersect_each(std::size_t count, const ray* rays, hit_record* hits, std::uint32_t* tests) const {
  const simd_path path = active_simd_path();
  const auto width = static_cast<std::size_t>(group_width(path));
  for (std::size_t first = 0; first < count; first += width) {
    const std::size_t n = std::min(width, count - first);
    intersect_group(path, rays + first, (1u << n) - 1, hits + first, tests + first);
  }
}

void scene_geometry::surface(const ray& r, hit_record& hit) const {
  const position p = r.at(hit.distance);
  with_kind(hit.object.kind(), sets_, [&](const auto& set) { set.surface(hit.object.index(), p, hit); });
}

const material* scene_geometry::material_of(primitive_ref p) const {
  return material_list_[materials_[p.kind()][p.index()]];
}

}  // namespace sciray
