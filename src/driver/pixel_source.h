// pixel_source.h - the colour seen at a point of the picture window: a
// fresh primary ray from the camera, traced through the world.
#pragma once

#include "driver/camera.h"
#include "shading/ray_state.h"

namespace sciray {

class world;
struct render_context;

struct pixel_source {
  const camera& cam;
  const world& scene;
  render_context& context;

  colour operator()(double sx, double sy) const {
    ray_state state = primary_state(scene, context, ray());
    return cam.sample(sx, sy, state);
  }
};

}  // namespace sciray
