// PLACEHOLDER: replaced by the real implementation.
#include "environment/sky.h"
namespace sciray {
colour sky_gradient::colour_of(const direction&) const { return {}; }
void cloud_blend::add_layer(std::unique_ptr<colour_source> s, double f) { layers_.push_back({std::move(s), f}); }
colour cloud_blend::colour_of(const direction&) const { return {}; }
void cloud_blend::set_weights(const direction&, double*) const {}
std::unique_ptr<colour_source> make_sky(const sky_settings&, const direction&, noise_registry&, rand_stream&) { return nullptr; }
}
