// primitive.cpp - shading a hit: the shape's geometry step, then the material.
#include "geometry/primitive.h"

#include "shading/material.h"

namespace sciray {

colour primitive::shade(ray_state& state) const {
  surface(state);
  return material_ ? material_->shade(state) : colour{};
}

colour primitive::shadow_filter(ray_state& state) const {
  surface(state);
  return material_ ? material_->transmittance(state) : colour{};
}

}  // namespace sciray
