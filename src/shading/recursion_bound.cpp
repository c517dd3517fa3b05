// recursion_bound.cpp - the nesting bound of a scene's traces.
#include "shading/recursion_bound.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "shading/tracer.h"

namespace sciray {

namespace {

constexpr std::uint64_t unbounded = std::numeric_limits<std::uint64_t>::max();

// Generations of rays whose weight can still reach `cutoff` when each
// generation multiplies it by at most `factor` in size: the first one, of
// weight 1, and every k with factor^k >= cutoff.
std::uint64_t generations(double factor, double cutoff) {
  if (!(factor < 1.0)) return unbounded;  // also not a number
  if (factor == 0.0) return 1;
  const double k = std::floor(std::log(cutoff) / std::log(factor));
  return k < 1e15 ? 2 + static_cast<std::uint64_t>(k) : unbounded;
}

}  // namespace

recursion_depth recursion_bound(const tracer& t) {
  const world& w = t.scene();
  double any = 0.0, refractive = 0.0;
  w.for_each_material([&](const material& m) {
    for (int c = 0; c < 3; ++c) {
      const double r = std::fabs(m.reflective[c]), t = std::fabs(m.refractive[c]);
      // A factor that is not a number keeps every ray alive.
      const double larger = std::isnan(r) || std::isnan(t) ? std::numeric_limits<double>::infinity() : std::max(r, t);
      any = std::max(any, larger);
      refractive = std::isnan(t) ? std::numeric_limits<double>::infinity() : std::max(refractive, t);
    }
  });
  const double cutoff = std::min({tracer::cutoff.x, tracer::cutoff.y, tracer::cutoff.z});
  const auto depth_limit = static_cast<std::uint64_t>(std::max(t.depth_limit(), 1));
  // A shadow ray goes on at every surface it crosses: twice per sphere or
  // cylinder, once per triangle.
  const std::uint64_t surfaces = 2 * static_cast<std::uint64_t>(w.object_count()) + 1;
  return {std::min(depth_limit, generations(any, cutoff)), std::min(surfaces, generations(refractive, cutoff))};
}

}  // namespace sciray
