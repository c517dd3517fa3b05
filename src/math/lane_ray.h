// lane_ray.h - a ray in lanes as the shapes' fast tests read it (origin
// and unit direction, one ray per lane or one ray in every lane), and the
// dot product they share. Written once for any lane type L (lanes_*.h); a
// file that builds code for other instructions includes it only after
// switching the compiler to them.
#pragma once

#include "math/ray.h"

namespace sciray {

template <typename L>
struct lane_ray {
  using v = typename L::v;
  v ox, oy, oz, dx, dy, dz;

  // The same ray in every lane.
  static lane_ray every_lane(const ray& r) {
    return {L::set1(r.origin.x), L::set1(r.origin.y), L::set1(r.origin.z),
            L::set1(r.dir.x),    L::set1(r.dir.y),    L::set1(r.dir.z)};
  }
};

// a.x * b.x + a.y * b.y + a.z * b.z, summed left to right.
template <typename L>
[[gnu::always_inline]] inline typename L::v dot3(typename L::v ax, typename L::v ay, typename L::v az,
                                                 typename L::v bx, typename L::v by, typename L::v bz) {
  return L::add(L::add(L::mul(ax, bx), L::mul(ay, by)), L::mul(az, bz));
}

}  // namespace sciray
