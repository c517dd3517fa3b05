// walks_ahead.cpp - rays walked together, their walks kept by pixel.
#include "shading/walks_ahead.h"

#include <bit>

#include "geometry/scene_geometry.h"

namespace sciray {

namespace {

bool same(double a, double b) { return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b); }
bool same(const vector& a, const vector& b) { return same(a.x, b.x) && same(a.y, b.y) && same(a.z, b.z); }

}  // namespace

void walks_ahead::reset(std::size_t pixels, std::size_t places) {
  places_.resize(places);
  for (place_walks& p : places_) {
    p.count = 0;
    p.slot.assign(pixels, -1);
    if (p.rays.size() < pixels) {
      p.rays.resize(pixels);
      p.limits.resize(pixels);
      p.hits.resize(pixels);
      p.tests.resize(pixels);
    }
  }
}

void walks_ahead::add(std::size_t place, std::size_t pixel, const bounded_ray& r) {
  place_walks& p = places_[place];
  p.slot[pixel] = static_cast<int>(p.count);
  p.rays[p.count] = r.r;
  p.limits[p.count] = r.limit;
  p.hits[p.count].distance = r.limit;
  p.hits[p.count].object = primitive_ref();
  p.tests[p.count] = 0;
  ++p.count;
}

void walks_ahead::walk(const scene_geometry& geometry, std::size_t place) {
  place_walks& p = places_[place];
  geometry.intersect_each(p.count, p.rays.data(), p.hits.data(), p.tests.data());
}

const hit_record* walks_ahead::hit(std::size_t place, std::size_t pixel) const {
  const place_walks& p = places_[place];
  return p.slot[pixel] < 0 ? nullptr : &p.hits[static_cast<std::size_t>(p.slot[pixel])];
}

bool walks_ahead::take(std::size_t pixel, const ray& r, double limit, hit_record& hit, std::uint32_t& tests) const {
  for (const place_walks& p : places_) {
    if (p.slot[pixel] < 0) continue;
    const auto i = static_cast<std::size_t>(p.slot[pixel]);
    if (!same(limit, p.limits[i]) || !same(r.origin, p.rays[i].origin) || !same(r.dir, p.rays[i].dir)) continue;
    hit.distance = p.hits[i].distance;
    hit.object = p.hits[i].object;
    tests += p.tests[i];
    return true;
  }
  return false;
}

}  // namespace sciray
