// world.cpp - the scene root: ownership of everything a ray can meet, the
// nearest-hit search, trace, the shadow test transmit, and the light sums.
#include "shading/world.h"

#include "shading/render_context.h"

namespace sciray {

world::world() = default;
world::~world() = default;

void world::add_light(std::unique_ptr<light> l) { lights_.push_back(std::move(l)); }

material_table& world::new_material_table(int size) {
  tables_.push_back(std::make_unique<material_table>(size));
  return *tables_.back();
}

contour_material& world::new_contour_material(bool continuous) {
  contours_.push_back(std::make_unique<contour_material>(continuous));
  return *contours_.back();
}

bool world::draws_random() const {
  for (const auto& l : lights_)
    if (l->draws_random()) return true;
  return false;
}

void world::retire(std::shared_ptr<roughness> r) { retired_.push_back(std::move(r)); }

namespace {

// True when no channel of `weight` reaches its cut-off: the ray is not worth casting.
bool below_cutoff(const colour& weight, const colour& cutoff) {
  return weight.x < cutoff.x && weight.y < cutoff.y && weight.z < cutoff.z;
}

}  // namespace

bool world::find_hit(ray_state& state) const {
  ++state.context->ray_count;
  state.hit.distance = state.max_distance;
  state.hit.object = primitive_ref();
  return geometry_.intersect(state.r, state.hit, state.context->test_count);
}

const material* world::surface_of_hit(ray_state& state) const {
  geometry_.surface(state.r, state.hit);
  return geometry_.material_of(state.hit.object);
}

colour world::trace(ray_state& state) const {
  state.hit.distance = state.max_distance;
  state.hit.object = primitive_ref();
  render_context& context = *state.context;
  if (context.depth_now >= depth_max) return {};
  if (below_cutoff(state.weight, cutoff)) return {};

  ++context.depth_now;
  if (!state.medium && state.kind == primary_ray) state.medium = &atmosphere;

  colour c;
  if (find_hit(state)) {
    const material* m = surface_of_hit(state);
    c = m ? m->shade(state) : colour{};
    if (state.medium) state.medium->apply_medium(state.hit.distance, c);
  } else if (sky) {
    // Escaping rays take the sky as it is, without the medium.
    c = sky->colour_of(state.r.dir);
  }
  --context.depth_now;
  return c;
}

colour world::transmit(ray_state& state) const {
  if (!shadows) return {1.0, 1.0, 1.0};
  if (below_cutoff(state.weight, cutoff)) return {};
  colour c{1.0, 1.0, 1.0};
  if (!find_hit(state)) return c;
  const material* m = surface_of_hit(state);
  c *= m ? m->transmittance(state) : colour{};
  if (state.medium) state.medium->apply_medium(state.hit.distance, c);
  return c;
}

void world::gather_light(ray_state& state, const shading_point& p) const {
  colour diffuse, specular, ambient_total;
  for (const auto& l : lights_) {
    l->illuminate(state, p);
    diffuse += state.diffuse_sum;
    specular += state.specular_sum;
    ambient_total += state.ambient_sum;
  }
  ambient_total += ambient;
  state.diffuse_sum = diffuse;
  state.specular_sum = highlights ? specular : colour{};
  state.ambient_sum = ambient_total;
}

}  // namespace sciray
