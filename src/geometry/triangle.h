// triangle.h - a smooth-shaded polygon piece with a normal and a data value
// at each corner, interpolated with the barycentric weights of the hit.
#pragma once

#include "geometry/plane.h"
#include "math/matrix4.h"

namespace sciray {

class triangle : public plane {
 public:
  triangle(const position& p0, const position& p1, const position& p2);

  const bounding_box* bounds() const override { return &box_; }
  bool intersect(const ray& r, hit_record& hit, render_context& context) const override;

  void set_corner_normals(const direction& n0, const direction& n1, const direction& n2);
  void set_corner_values(double v0, double v1, double v2);

  bool valid() const { return valid_ != 0; }
  const direction& face_normal() const { return normal_; }
  const direction& corner_normal(int k) const { return corner_normal_[k]; }
  double corner_value(int k) const { return corner_value_[k]; }

 private:
  void surface(ray_state& state) const override;
  matrix4 to_local_{};  // rows 0 and 1 map a point to the weights of corners 1 and 2
  int valid_ = 0;
  direction corner_normal_[3];
  double corner_value_[3] = {0.0, 0.0, 0.0};
  bounding_box box_;
};

}  // namespace sciray
