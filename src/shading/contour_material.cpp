// PLACEHOLDER: replaced by the real implementation.
#include "shading/contour_material.h"
namespace sciray {
colour blend_material::shade(ray_state&) const { return {}; }
colour blend_material::transmittance(ray_state&) const { return {}; }
double blend_material::shininess_at(const ray_state&) const { return 0; }
vector blend_material::index_triple() const { return {}; }
void blend_material::apply_medium(double, colour&) const {}
blend_weights contour_material::weights(double) const { return {}; }
}
