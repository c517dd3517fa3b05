// plane.h - an infinite plane; only ever the base of the triangle.
#pragma once

#include "geometry/primitive.h"

namespace sciray {

class plane : public primitive {
 public:
  plane();

  const bounding_box* bounds() const override { return nullptr; }
  bool intersect(const ray& r, hit_record& hit, render_context& context) const override;

 protected:
  void surface(ray_state& state) const override;
  // The ray-plane step: true with the root in `t` when the ray meets the
  // plane (not parallel to it) at a distance above 1e-6.
  bool plane_root(const ray& r, double& t) const;

  direction normal_;  // unit plane normal
  position point_;    // a point of the plane
  double offset_;     // normal . point
  direction u_axis_, v_axis_;
};

}  // namespace sciray
