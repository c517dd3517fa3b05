// PLACEHOLDER: replaced by the real implementation.
#include "shading/material.h"
#include "environment/noise.h"
namespace sciray {
roughness::roughness(std::unique_ptr<fractal_noise> n) : noise(std::move(n)) {}
roughness::~roughness() = default;
material::material() = default;
material::~material() = default;
colour material::shade(ray_state&) const { return {}; }
colour material::transmittance(ray_state&) const { return {}; }
vector material::index_triple() const { return index_by_channel; }
double material::shininess_at(const ray_state&) const { return shininess; }
void material::apply_medium(double, colour&) const {}
void material::set_attenuation(const colour&, double) {}
void material::set_atmosphere(const colour&, double) {}
}
