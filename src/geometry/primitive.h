// primitive.h - what every renderable shape must do.
//
// intersect() is the innermost call of the program: it counts the test,
// accepts only roots above 1e-6 and below the current hit distance, and
// writes the distance and the object. shade() and shadow_filter() run once
// for the nearest hit: they fill the normal, value and surface coordinates
// and forward to the material.
#pragma once

#include "geometry/hit_record.h"
#include "math/bounding_box.h"
#include "math/ray.h"
#include "math/vector.h"

namespace sciray {

class material;
struct ray_state;
struct render_context;

class primitive {
 public:
  virtual ~primitive() = default;

  // The box computed at construction, or null for a shape without bounds.
  virtual const bounding_box* bounds() const = 0;

  const material* get_material() const { return material_; }
  void set_material(const material* m) { material_ = m; }

  virtual bool intersect(const ray& r, hit_record& hit, render_context& context) const = 0;
  // The material's shade, respectively transmission, at the hit in `state`
  // after surface() has filled it in; black when no material is set.
  virtual colour shade(ray_state& state) const;
  virtual colour shadow_filter(ray_state& state) const;

 protected:
  // The shape's geometry step: normal, value and surface coordinates of the
  // hit recorded in `state`.
  virtual void surface(ray_state& state) const = 0;

  const material* material_ = nullptr;  // not owned
};

// The first root admissible for every shape.
inline constexpr double self_hit_tolerance = 1e-6;

}  // namespace sciray
