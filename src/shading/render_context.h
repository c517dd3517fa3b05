// render_context.h - all state that changes while a picture is rendered:
// the statistics counters, the count of open traces, the random stream,
// the noise lattice registry, the light sample buffer and what shadow rays
// share beneath a mixing contour blend. One context per rendering thread;
// nothing of this lives in globals.
#pragma once

#include <array>
#include <cstdint>

#include "environment/noise.h"
#include "math/rand_stream.h"
#include "math/vector.h"
#include "shading/walks_ahead.h"
#include "shading/shadow_walks.h"

namespace sciray {

struct render_context {
  // 32-bit statistics counters that wrap around like two's complement ints.
  std::uint32_t ray_count = 0;   // rays cast into the scene
  std::uint32_t test_count = 0;  // ray-primitive intersection tests
  std::uint64_t shadow_walk_count = 0;  // shadow rays walked through the scene (a shared walk once)

  int depth_now = 0;  // trace calls currently open

  rand_stream random;      // the single stream every random choice draws from
  noise_registry noise;    // the shared noise lattice, made on first use

  std::array<position, 19> light_samples{};  // area-light sample positions of the current point

  pixel_walks ahead;  // the walks made ahead for the sample being traced
  shadow_walks walks;  // what shadow rays share where a contour blend mixes
};

}  // namespace sciray
