// primitive.cpp - forwarding a hit to the primitive's material.
#include "geometry/primitive.h"

#include "shading/material.h"

namespace sciray {

colour primitive::material_shade(ray_state& state) const {
  return material_ ? material_->shade(state) : colour{};
}

colour primitive::material_transmittance(ray_state& state) const {
  return material_ ? material_->transmittance(state) : colour{};
}

}  // namespace sciray
