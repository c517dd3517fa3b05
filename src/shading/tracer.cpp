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
  render_context& context = *state.context;
  ++context.ray_count;
  state.hit.distance = state.max_distance;
  state.hit.object = primitive_ref();
  if (context.ahead.take(state.r, state.max_distance, state.hit, context.test_count)) return state.hit.object.valid();
  return world_.geometry().intersect(state.r, state.hit, context.test_count);
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

colour tracer::transmit(ray_state& state) const { return follow_shadow(state, nullptr); }

colour tracer::transmit_through(ray_state& state, const colour& filter, const material* medium) const {
  const position from = state.hit_point();
  const colour weight = state.weight * filter;
  ray_state next;
  if (state.target_at_infinity) {
    // The light's direction, normalised again like every new ray's.
    next = spawned_state(state, transmission_ray, from, normalise(state.r.dir), weight, medium);
    next.target_at_infinity = true;
  } else {
    next = transmission_state(state, from, state.target, weight, medium);
  }
  weight_range* const narrowing = state.context->walks.narrowing;
  if (!narrowing) return filter * follow_shadow(next, nullptr);
  weight_range beyond;
  const colour rest = follow_shadow(next, &beyond);
  narrowing->narrow(before_filter(beyond, state.weight, filter));
  return filter * rest;
}

colour tracer::follow_shadow(ray_state& state, weight_range* same_for) const {
  if (!shadows_) return {1.0, 1.0, 1.0};
  const bool cut = below_cutoff(state.weight);
  if (same_for) *same_for = cut_off_alike(state.weight, cutoff);
  if (cut) return {};
  colour c{1.0, 1.0, 1.0};
  const bool sharing = state.context->walks.open();
  bool found;
  const material* m = nullptr;
  std::size_t number = 0;
  if (sharing) {
    found = shared_hit(state, m, number);
  } else {
    ++state.context->shadow_walk_count;
    found = find_hit(state);
    if (found) m = surface_of_hit(state);
  }
  if (!found) return c;
  c *= sharing ? shared_filter(state, m, number, same_for) : m ? m->transmittance(state) : colour{};
  if (state.medium) state.medium->apply_medium(state.hit.distance, c);
  return c;
}

void tracer::walk_ahead(std::span<const ray> primary, walks_ahead& out) const {
  const std::size_t lights = shadows_ && lighting_ ? world_.lights().size() : 0;
  out.reset(primary.size(), 1 + lights);
  if (depth_max_ <= 0) return;  // such a trace casts no ray
  for (std::size_t i = 0; i < primary.size(); ++i) out.add(0, i, {primary[i], ray_state{}.max_distance});
  out.walk(world_.geometry(), 0);
  for (std::size_t l = 0; l < lights; ++l) {
    for (std::size_t i = 0; i < primary.size(); ++i) {
      const hit_record& seen = *out.hit(0, i);
      if (!seen.object.valid()) continue;
      // The shading point is the hit point, as surface_at takes it.
      if (const auto shadow = world_.lights()[l]->lone_shadow_ray(primary[i].at(seen.distance))) out.add(1 + l, i, *shadow);
    }
    out.walk(world_.geometry(), 1 + l);
  }
}

bool tracer::shared_hit(ray_state& state, const material*& m, std::size_t& number) const {
  render_context& context = *state.context;
  bool fresh;
  number = context.walks.find(state, fresh);
  if (!fresh) {
    const shadow_walks::crossing& c = context.walks[number];
    ++context.ray_count;
    context.test_count += c.tests;
    state.hit = c.hit;
    m = c.mat;
    return c.found;
  }
  ++context.shadow_walk_count;
  const std::uint32_t tests = context.test_count;
  const bool found = find_hit(state);
  m = found ? surface_of_hit(state) : nullptr;
  if (number != shadow_walks::none) {
    shadow_walks::crossing& c = context.walks[number];
    c.found = found;
    c.hit = state.hit;
    c.mat = m;
    c.tests = context.test_count - tests;
  }
  return found;
}

colour tracer::shared_filter(ray_state& state, const material* m, std::size_t number, weight_range* same_for) const {
  render_context& context = *state.context;
  shadow_walks& walks = context.walks;
  if (const shadow_walks::filter* known = walks.filter_for(number, state.weight)) {
    context.ray_count += known->rays;
    context.test_count += known->tests;
    if (same_for) same_for->narrow(known->weights);
    return known->value;
  }
  // Worked out here: the chains beyond narrow the range it holds for.
  weight_range beyond;
  weight_range* const outer = walks.narrowing;
  walks.narrowing = &beyond;
  const std::uint32_t rays = context.ray_count, tests = context.test_count;
  const colour value = m ? m->transmittance(state) : colour{};
  walks.narrowing = outer;
  walks.keep(number, {beyond, value, context.ray_count - rays, context.test_count - tests});
  if (same_for) same_for->narrow(beyond);
  return value;
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
