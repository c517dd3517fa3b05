// PLACEHOLDER: replaced by the real implementation.
#include "shading/world.h"
namespace sciray {
world::world() = default;
world::~world() = default;
void world::add(std::unique_ptr<primitive> p) { hierarchy_.add(p.get()); primitives_.push_back(std::move(p)); }
void world::add_light(std::unique_ptr<light> l) { lights_.push_back(std::move(l)); }
material_table& world::new_material_table(int size) { tables_.push_back(std::make_unique<material_table>(size)); return *tables_.back(); }
contour_material& world::new_contour_material(bool c) { contours_.push_back(std::make_unique<contour_material>(c)); return *contours_.back(); }
void world::retire(std::shared_ptr<roughness> r) { retired_.push_back(std::move(r)); }
colour world::trace(ray_state&) const { return {}; }
colour world::transmit(ray_state&) const { return {1, 1, 1}; }
void world::gather_light(ray_state&, const shading_point&) const {}
bool world::find_hit(ray_state&) const { return false; }
}
