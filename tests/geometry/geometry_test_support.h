// geometry_test_support.h - a material that records what a shape hands it,
// short ways to intersect and shade one shape, and a box as six numbers.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>

#include "geometry/primitive.h"
#include "shading/material.h"
#include "shading/ray_state.h"
#include "shading/render_context.h"

namespace sciray::geometry_testing {

inline constexpr colour shade_colour{0.25, 0.5, 0.75};
inline constexpr colour transmit_colour{0.125, 0.375, 0.625};

class recording_material : public material {
 public:
  colour shade(ray_state& state) const override { seen = state.hit; return shade_colour; }
  colour transmittance(ray_state& state) const override { seen = state.hit; return transmit_colour; }
  mutable hit_record seen;
};

// The hit `p` makes of `r` under the limit `limit`; a miss must leave the
// hit as it was and comes back with distance -1. Each test counts once on
// the 32-bit counter, which wraps.
inline hit_record hit_of(const primitive& p, const ray& r, double limit = 1e20) {
  render_context context;
  context.test_count = UINT32_MAX;
  hit_record hit;
  hit.distance = limit;
  const bool taken = p.intersect(r, hit, context);
  EXPECT_EQ(context.test_count, 0u);
  EXPECT_EQ(hit.object, taken ? &p : nullptr);
  EXPECT_TRUE(taken || hit.distance == limit);
  if (!taken) hit.distance = -1.0;
  return hit;
}

inline double first_hit(const primitive& p, const ray& r, double limit = 1e20) { return hit_of(p, r, limit).distance; }

// Gives `p` a recording material for one intersection and one shade (with
// `shadow`, one filter): the hit fields the material was handed. `value`
// starts at -7 so that a shape that leaves it alone shows.
inline hit_record shaded(primitive& p, const ray& r, bool shadow = false) {
  recording_material m;
  p.set_material(&m);
  render_context context;
  ray_state state;
  state.r = r;
  state.hit.value = -7;
  EXPECT_TRUE(p.intersect(r, state.hit, context));
  EXPECT_EQ(shadow ? p.shadow_filter(state) : p.shade(state), shadow ? transmit_colour : shade_colour);
  p.set_material(nullptr);
  return m.seen;
}

// A box as its low corner then its high corner.
using box_bounds = std::array<double, 6>;
inline box_bounds bounds_of(const bounding_box& b) {
  return {b.axis[0].lo, b.axis[1].lo, b.axis[2].lo, b.axis[0].hi, b.axis[1].hi, b.axis[2].hi};
}

}  // namespace sciray::geometry_testing
