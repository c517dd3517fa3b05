// tracer.h - follows rays through the world: the colour a ray brings back
// (trace), how much light reaches the end of a shadow ray (transmit), and
// the light gathered at a shaded point (gather_light). It holds how rays
// are followed (the depth limit, shadows, highlights) and changes nothing
// while tracing, so all rendering threads share one; what changes (the
// counters, the open traces, the random stream) is each thread's
// render_context.
#pragma once

#include "scene_file/scene_settings.h"
#include "shading/light.h"
#include "shading/ray_state.h"
#include "shading/world.h"

namespace sciray {

class tracer {
 public:
  // The depth limit, shadows and highlights are those of `settings`.
  tracer(const world& w, const render_settings& settings);

  // This tracer without lighting: it asks no light for its light, but
  // draws on the random stream what the lights would have drawn, so that
  // a ray leaves the stream as a lit trace of it would (the band
  // renderer's counting pass). Its colours mean nothing.
  tracer unlit() const;

  const world& scene() const { return world_; }
  int depth_limit() const { return depth_max_; }

  // The colour `state` brings back: the nearest hit shaded by its material
  // and passed through the ray's medium, or the sky.
  colour trace(ray_state& state) const;
  // The fraction of each channel that reaches the end of the shadow ray
  // `state` through transparent bodies.
  colour transmit(ray_state& state) const;
  // The light of every light at `p`, the hit of `at`, with the world's ambient.
  light_contribution gather_light(const ray_state& at, const shading_point& p) const;

  // A ray whose weight is below this in every channel is not traced.
  static constexpr colour cutoff{0.01, 0.01, 0.01};

 private:
  // Finds the nearest hit closer than the state's max_distance; counts one ray.
  bool find_hit(ray_state& state) const;
  // The material of the hit primitive (null: none), after the surface data
  // of the hit is filled in.
  const material* surface_of_hit(ray_state& state) const;

  const world& world_;
  int depth_max_;
  bool shadows_;
  bool highlights_;
  bool lighting_ = true;
};

}  // namespace sciray
