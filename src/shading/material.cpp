// material.cpp - surface shading of one colour-map entry: the light sums
// weighted by the material's colours, emission, and the reflected and
// refracted rays (one per channel when the indices disperse light); and the
// filter a transparent body puts on light passing through it.
#include "shading/material.h"

#include <cmath>

#include "environment/noise.h"
#include "shading/light.h"
#include "shading/tracer.h"

namespace sciray {

roughness::roughness(std::unique_ptr<fractal_noise> n) : noise(std::move(n)) {}
roughness::~roughness() = default;

material::material() = default;
material::~material() = default;

vector material::index_triple() const { return index_by_channel; }

namespace {

// The hit of a ray as shading sees it.
struct surface_hit {
  position point;
  direction normal;  // the shading normal: the primitive's, tilted by roughness, facing the ray
  direction mirror;  // the ray reflected about it
  bool inside;       // the ray is leaving the body
};

surface_hit surface_at(const material& m, const ray_state& state) {
  const direction& d = state.r.dir;
  surface_hit s;
  s.point = state.hit_point();
  // The primitive's normal stays as written; the shading normal is local.
  direction normal = state.hit.normal;
  s.inside = dot(d, normal) > 0.0;
  if (m.rough) {
    const fractal_noise& noise = *m.rough->noise;
    const double half = noise.amplitude / 2;
    normal = normalise(normal + (noise.vector_value(s.point) - vector(half, half, half)));
  }
  if (s.inside) normal = normalise(-normal);
  s.normal = normal;
  s.mirror = direction::as_given(d - 2 * dot(d, normal) * normal);
  return s;
}

// The relative refractive index of each channel across the surface;
// leaving a body means entering the atmosphere.
vector relative_indices(const material& m, const ray_state& state, bool inside) {
  vector eta;
  if (inside) {
    const vector outside = state.tracer->scene().atmosphere.index_triple();
    for (int c = 0; c < 3; ++c) eta[c] = outside[c] / m.index_by_channel[c];
  } else {
    const vector outside = state.medium ? state.medium->index_triple() : vector(1.0, 1.0, 1.0);
    for (int c = 0; c < 3; ++c) eta[c] = m.index_by_channel[c] / outside[c];
  }
  return eta;
}

// What every refracted ray of one hit shares.
struct refraction {
  position point;
  direction normal;              // shading normal, facing the incoming ray
  direction tangent;             // along the surface, in the plane of incidence
  double sin_i;
  direction mirror;              // where total internal reflection sends the ray
  const material* medium_after;  // the medium beyond the surface
};

// Traces the ray refracted with relative index `eta`; a ray that cannot
// leave (total internal reflection) is reflected instead and stays in the
// incoming ray's medium.
colour trace_refracted(const ray_state& state, const refraction& geo, double eta, const colour& weight) {
  const double sin_t = geo.sin_i / eta;
  ray_state next;
  if (std::fabs(sin_t) >= 1.0) {
    next = spawned_state(state, reflected_ray, geo.point, geo.mirror, weight, state.medium);
  } else {
    const double cos_t = std::sqrt(1 - sin_t * sin_t);
    const direction dir = direction::as_given(sin_t * geo.tangent - cos_t * geo.normal);
    next = spawned_state(state, refracted_ray, geo.point, dir, weight, geo.medium_after);
  }
  return state.tracer->trace(next);
}

// Adds to `c` what the refracted rays bring back: one ray, or one per
// channel when the indices disperse light.
void add_refracted(const material& m, const ray_state& state, const surface_hit& s, colour& c) {
  const vector eta = relative_indices(m, state, s.inside);
  const vector across = cross(state.r.dir, s.normal);
  const refraction geo{s.point, s.normal, normalise(cross(s.normal, across)), length(across), s.mirror,
                       s.inside ? &state.tracer->scene().atmosphere : &m};
  if (eta.x == eta.y && eta.y == eta.z) {
    c += m.refractive * trace_refracted(state, geo, eta.x, state.weight * m.refractive);
    return;
  }
  // Dispersion: each channel follows its own path.
  for (int channel = 0; channel < 3; ++channel) {
    colour mask;
    mask[channel] = 1.0;
    c += m.refractive * trace_refracted(state, geo, eta[channel], state.weight * m.refractive * mask) * mask;
  }
}

}  // namespace

colour material::shade(ray_state& state) const {
  const tracer& t = *state.tracer;
  const surface_hit s = surface_at(*this, state);
  const light_contribution light = t.gather_light(state, shading_point{s.point, s.normal, s.mirror, shininess});
  colour c = diffuse * light.diffuse;
  c += specular * light.specular;
  c += ambient * light.ambient;
  c += emission;

  if (!is_black(reflective)) {
    ray_state reflected = spawned_state(state, reflected_ray, s.point, s.mirror, state.weight * reflective, state.medium);
    c += reflective * t.trace(reflected);
  }
  if (!is_black(refractive)) add_refracted(*this, state, s, c);
  return c;
}

colour material::transmittance(ray_state& state) const {
  if (is_black(refractive)) return {};  // opaque
  const tracer& t = *state.tracer;
  // Light passes straight through, coloured by the body it crosses.
  const material* medium = dot(state.r.dir, state.hit.normal) > 0.0 ? &t.scene().atmosphere : this;
  return t.transmit_through(state, refractive, medium);
}

}  // namespace sciray
