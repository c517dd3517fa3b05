// pixel_source.h - the colour seen at a point of the picture window: the
// camera's primary ray through it, traced as a fresh primary ray. Every way
// of sampling the picture (pixel centres, blocks, adaptive anti-aliasing)
// asks it for its samples.
#pragma once

#include "driver/camera.h"
#include "shading/ray_state.h"
#include "shading/tracer.h"

namespace sciray {

struct render_context;

struct pixel_source {
  const camera& cam;
  const tracer& tracing;
  render_context& context;

  colour operator()(double sx, double sy) const { return trace(cam.primary_ray(sx, sy)); }
  // The colour the primary ray `r` brings back.
  colour trace(const ray& r) const {
    ray_state state = primary_state(tracing, context, r);
    return tracing.trace(state);
  }
};

}  // namespace sciray
