// sphere.h - a ball given by centre and radius; symbols are drawn with it.
#pragma once

#include "geometry/primitive.h"

namespace sciray {

class sphere : public primitive {
 public:
  sphere(const position& center, double radius);

  const bounding_box* bounds() const override { return &box_; }
  bool intersect(const ray& r, hit_record& hit, render_context& context) const override;

  const direction& pole() const { return pole_; }
  const direction& equator() const { return equator_; }

 private:
  void surface(ray_state& state) const override;

  position center_;
  double radius_;
  bounding_box box_;
  direction pole_;     // axis of the latitude coordinate
  direction equator_;  // zero of the longitude coordinate
};

}  // namespace sciray
