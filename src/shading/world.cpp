// world.cpp - ownership of everything a ray can meet.
#include "shading/world.h"

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

}  // namespace sciray
