// tracer.h - follows rays through the world: the colour a ray brings back
// (trace), how much light reaches the end of a shadow ray (transmit), and
// the light gathered at a shaded point (gather_light). It holds how rays
// are followed (the depth limit, shadows, highlights) and changes nothing
// while tracing, so all rendering threads share one; what changes (the
// counters, the open traces, the random stream) is each thread's
// render_context.
#pragma once

#include <span>

#include "scene_file/scene_settings.h"
#include "shading/light.h"
#include "shading/ray_state.h"
#include "shading/walks_ahead.h"
#include "shading/world.h"

namespace sciray {

struct weight_range;

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
  // `state` through transparent bodies. While a scope of the context's
  // shadow_walks is open, a ray tested again shares what it found.
  colour transmit(ray_state& state) const;
  // What a transparent body at the hit of the shadow ray `state` lets
  // through: `filter` times what reaches the end of the ray that goes on
  // from the hit in `medium`, its weight that of `state` times `filter`.
  colour transmit_through(ray_state& state, const colour& filter, const material* medium) const;
  // The light of every light at `p`, the hit of `at`, with the world's ambient.
  light_contribution gather_light(const ray_state& at, const shading_point& p) const;

  // Walks ahead, into `out`, the rays that tracing the primary rays
  // `primary` (one per pixel, in order) will cast first: the primary rays
  // themselves, and from their hits the shadow ray to each light that casts
  // a lone one. A trace of pixel i takes those walks when its context's
  // `ahead` is {&out, i}.
  void walk_ahead(std::span<const ray> primary, walks_ahead& out) const;

  // A ray whose weight is below this in every channel is not traced.
  static constexpr colour cutoff{0.01, 0.01, 0.01};

 private:
  // Finds the nearest hit closer than the state's max_distance; counts one ray.
  bool find_hit(ray_state& state) const;
  // The material of the hit primitive (null: none), after the surface data
  // of the hit is filled in.
  const material* surface_of_hit(ray_state& state) const;
  // transmit, and where `same_for` is given, the weights for which the
  // answer would be the same.
  colour follow_shadow(ray_state& state, weight_range* same_for) const;
  // The nearest hit of the shadow ray `state` and its material `m` (none
  // when nothing is hit), taken from the same ray's walk in the open scope
  // of shadow_walks or walked and kept there as `number`; counts one ray
  // and the walk's tests.
  bool shared_hit(ray_state& state, const material*& m, std::size_t& number) const;
  // What `m` lets through at the hit of `state`, the shadow ray `number`,
  // taken from a chain before whose weight the cut-offs beyond treated
  // alike, or worked out and kept; narrows `same_for` to the weights the
  // answer holds for.
  colour shared_filter(ray_state& state, const material* m, std::size_t number, weight_range* same_for) const;

  const world& world_;
  int depth_max_;
  bool shadows_;
  bool highlights_;
  bool lighting_ = true;
};

}  // namespace sciray
