// walks_ahead.h - walks through the hierarchy made before their rays are
// traced: the primary rays of a run of neighbouring pixels, and the shadow
// rays from their hits to each light, walk together (one ray per vector
// lane), which costs far less than one ray after another. A walk depends
// on nothing but its ray and its distance limit, so when the tracer later
// casts a ray that is bit for bit one walked ahead for the pixel being
// traced, it takes that walk's hit and test count instead of walking
// again; any other ray walks as usual.
#pragma once

#include <cstdint>
#include <vector>

#include "geometry/hit_record.h"
#include "math/ray.h"

namespace sciray {

class scene_geometry;

class walks_ahead {
 public:
  // Forgets every walk; the next ones are for `pixels` pixels, each with
  // `places` places (its primary ray, then one shadow ray per light).
  void reset(std::size_t pixels, std::size_t places);
  // Adds `r`, to be walked for place `place` of pixel `pixel` by the next
  // walk() of that place.
  void add(std::size_t place, std::size_t pixel, const bounded_ray& r);
  // Walks the rays added to `place` through `geometry`, together in groups.
  void walk(const scene_geometry& geometry, std::size_t place);

  // The hit of the walk at `place` for `pixel`; null when none was made.
  const hit_record* hit(std::size_t place, std::size_t pixel) const;
  // If a walk of `pixel` was made for `r` under `limit` (bit for bit),
  // sets `hit` to its hit, adds its tests to `tests` and returns true.
  bool take(std::size_t pixel, const ray& r, double limit, hit_record& hit, std::uint32_t& tests) const;

 private:
  // The walks of one place, room for one a pixel made once.
  struct place_walks {
    std::size_t count = 0;
    std::vector<int> slot;  // by pixel: the number of its walk, or -1
    std::vector<ray> rays;
    std::vector<double> limits;
    std::vector<hit_record> hits;
    std::vector<std::uint32_t> tests;
  };
  std::vector<place_walks> places_;
};

// The walks made ahead for the pixel being traced.
struct pixel_walks {
  const walks_ahead* walks = nullptr;
  std::size_t pixel = 0;

  bool take(const ray& r, double limit, hit_record& hit, std::uint32_t& tests) const {
    return walks && walks->take(pixel, r, limit, hit, tests);
  }
};

}  // namespace sciray
