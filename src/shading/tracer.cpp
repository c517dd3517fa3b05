// tracer.cpp - the nearest-hit search, trace, the shadow test transmit, and
// the light sums.
#include "shading/tracer.h"

#include "shading/render_context.h"

namespace sciray {

namespace {

// True when no channel of `weight` reaches its cut-off: the ray is not worth casting.
bool below_cutoff(const colour& weight) {
  return weight.x < tracer::cutoff.x && weight.y < tracer::cutoff.y && weight.z < tracer::cutoff.z;
}

}  // namespace

tracer::tracer(const world& w, const render_settings& settings)
    : world_(w), depth_max_(settings.depth), shadows_(settings.shadows), highlights_(settings.highlights) {}

tracer tracer::unlit() const {
  tracer t = *this;
  t.lighting_ = false;
  return t;
}

bool tracer::find_hit(ray_state& state) const {
  ++state.context->ray_count;
  state.hit.distance = state.max_distance;
  state.hit.object = primitive_ref();
  return world_.geometry().intersect(state.r, state.hit, state.context->test_count);
}

const material* tracer::surface_of_hit(ray_state& state) const {
  world_.geometry().surface(state.r, state.hit);
  return world_.geometry().material_of(state.hit.object);
}

colour tracer::trace(ray_state& state) const {
  state.hit.distance = state.max_distance;
  state.hit.object = primitive_ref();
  render_context& context = *state.context;
  if (context.depth_now >= depth_max_) return {};
  if (below_cutoff(state.weight)) return {};

  ++context.depth_now;
  if (!state.medium && state.kind == primary_ray) state.medium = &world_.atmosphere;

  colour c;
  if (find_hit(state)) {
    const material* m = surface_of_hit(state);
    c = m ? m->shade(state) : colour{};
    if (state.medium) state.medium->apply_medium(state.hit.distance, c);
  } else if (world_.sky) {
    // Escaping rays take the sky as it is, without the medium.
    c = world_.sky->colour_of(state.r.dir);
  }
  --context.depth_now;
  return c;
}

colour tracer::transmit(ray_state& state) const {
  if (!shadows_) return {1.0, 1.0, 1.0};
  if (below_cutoff(state.weight)) return {};
  colour c{1.0, 1.0, 1.0};
  if (!find_hit(state)) return c;
  const material* m = surface_of_hit(state);
  c *= m ? m->transmittance(state) : colour{};
  if (state.medium) state.medium->apply_medium(state.hit.distance, c);
  return c;
}

light_contribution tracer::gather_light(const ray_state& at, const shading_point& p) const {
  light_contribution sum;
  if (!lighting_) {
    for (const auto& l : world_.lights()) at.context->random.discard(static_cast<std::uint64_t>(l->draws_at(p.point)));
    return sum;
  }
  for (const auto& l : world_.lights()) {
    const light_contribution one = l->illuminate(p, at);
    sum.diffuse += one.diffuse;
    sum.specular += one.specular;
    sum.ambient += one.ambient;
  }
  sum.ambient += world_.ambient;
  if (!highlights_) sum.specular = colour{};
  return sum;
}

}  // namespace sciray
