// test_scene.h - small scenes for the shading tests: balls, an unbounded
// floor, a material that records the rays reaching it, and a top-down
// render of a scene into an array of colours.
#pragma once

#include <memory>
#include <vector>

#include "geometry/primitive.h"
#include "geometry/sphere.h"
#include "shading/material.h"
#include "shading/ray_state.h"
#include "shading/render_context.h"
#include "shading/world.h"

namespace sciray::test {

// A sphere with its material.
std::unique_ptr<sphere> ball(const position& centre, double radius, const material* m);

// The infinite plane z = height, normal +z.
class floor_plane : public primitive {
 public:
  floor_plane(double height, const material* m) : height_(height) { set_material(m); }
  const bounding_box* bounds() const override { return nullptr; }
  bool intersect(const ray& r, hit_record& hit, render_context& context) const override;
  colour shade(ray_state& state) const override;
  colour shadow_filter(ray_state& state) const override;

 private:
  double height_;
};

// Returns a fixed colour and remembers every ray that asked for it.
class probe_material : public material {
 public:
  struct visit {
    int kind;
    direction dir;
    colour weight;
    const material* medium;
  };
  explicit probe_material(const colour& c) : answer(c) {}
  colour shade(ray_state& state) const override {
    visits.push_back({state.kind, state.r.dir, state.weight, state.medium});
    return answer;
  }
  colour answer;
  mutable std::vector<visit> visits;
};

// A state as if `r` had hit something at `distance` with surface normal `normal`.
ray_state hit_state(const world& w, render_context& context, const ray& r, double distance, const direction& normal);

// Traces one primary ray per pixel, looking straight down (-z) from
// height `eye_z` over the square [-half, half]^2; row 0 is at y = +half.
std::vector<colour> render_top_down(const world& w, render_context& context, int size, double half, double eye_z);
// The pixel of that render that sees the point (x, y).
int pixel_at(int size, double half, double x, double y);

}  // namespace sciray::test
