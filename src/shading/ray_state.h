// ray_state.h - the record each traced ray carries: what kind of ray it is,
// where it goes, how much it still counts, the medium it travels in, and
// its hit.
#pragma once

#include "geometry/hit_record.h"
#include "math/ray.h"
#include "math/vector.h"

namespace sciray {

class tracer;
class material;
struct render_context;

enum ray_kind : int { primary_ray = 0, reflected_ray = 1, refracted_ray = 2, transmission_ray = 3 };

struct ray_state {
  int kind = primary_ray;
  const class tracer* tracer = nullptr;  // follows this ray and the rays spawned at its hit
  render_context* context = nullptr;     // of the thread that traces it

  ray r;
  double max_distance = unlimited;
  colour weight{1.0, 1.0, 1.0};
  const material* medium = nullptr;  // the medium the ray travels in, or none

  hit_record hit;

  // Transmission rays: the light sample they head for; a directional light's
  // rays have no end point and keep their direction instead.
  position target;
  bool target_at_infinity = false;

  position hit_point() const { return r.at(hit.distance); }
};

// A primary ray as the sampler starts it: weight (1, 1, 1), no medium.
inline ray_state primary_state(const tracer& t, render_context& context, const ray& r) {
  ray_state s;
  s.tracer = &t;
  s.context = &context;
  s.r = r;
  return s;
}

// The ray `r` spawned at the hit of `parent`: same tracer and context, no limit.
inline ray_state spawned_state(const ray_state& parent, int kind, const ray& r, const colour& weight,
                               const material* medium) {
  ray_state s;
  s.kind = kind;
  s.tracer = parent.tracer;
  s.context = parent.context;
  s.r = r;
  s.weight = weight;
  s.medium = medium;
  return s;
}

inline ray_state spawned_state(const ray_state& parent, int kind, const position& origin, const direction& dir,
                               const colour& weight, const material* medium) {
  return spawned_state(parent, kind, ray(origin, dir), weight, medium);
}

// A transmission ray from `origin` heading for `target`; it ends there.
// (point_light::lone_shadow_ray makes the same ray with ray_between.)
inline ray_state transmission_state(const ray_state& parent, const position& origin, const position& target,
                                    const colour& weight, const material* medium) {
  const vector to_target = target - origin;
  ray_state s = spawned_state(parent, transmission_ray, origin, normalise(to_target), weight, medium);
  s.max_distance = length(to_target);
  s.target = target;
  return s;
}

}  // namespace sciray
