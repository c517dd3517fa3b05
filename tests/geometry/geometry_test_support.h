// geometry_test_support.h - a material that records what a shape hands it,
// and short ways to intersect and shade one shape.
#pragma once

#include <gtest/gtest.h>

#include "geometry/primitive.h"
#include "shading/material.h"
#include "shading/ray_state.h"
#include "shading/render_context.h"

namespace sciray::geometry_testing {

inline constexpr colour shade_colour{0.25, 0.5, 0.75};
inline constexpr colour transmit_colour{0.125, 0.375, 0.625};

class recording_material : public material {
 public:
  colour shade(ray_state& state) const override {
    seen = state.hit;
    return shade_colour;
  }
  colour transmittance(ray_state& state) const override {
    seen = state.hit;
    return transmit_colour;
  }
  mutable hit_record seen;
};

// The distance at which `p` takes `r` under the limit `limit`, or -1 when it
// does not; a miss must leave the hit as it was.
inline double first_hit(const primitive& p, const ray& r, double limit = 1e20) {
  render_context context;
  hit_record hit;
  hit.distance = limit;
  const bool taken = p.intersect(r, hit, context);
  EXPECT_EQ(context.test_count, 1u);
  EXPECT_EQ(hit.object, taken ? &p : nullptr);
  if (!taken) {
    EXPECT_EQ(hit.distance, limit);
  }
  return taken ? hit.distance : -1.0;
}

// Intersects and shades: the hit fields the material was handed.
inline hit_record shaded(const primitive& p, const ray& r) {
  render_context context;
  ray_state state;
  state.r = r;
  EXPECT_TRUE(p.intersect(r, state.hit, context));
  EXPECT_EQ(p.shade(state), shade_colour);
  return state.hit;
}

}  // namespace sciray::geometry_testing
