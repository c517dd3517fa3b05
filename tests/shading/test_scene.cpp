// test_scene.cpp - the test scene parts and the top-down test render.
#include "test_scene.h"

#include <cmath>

namespace sciray::test {

std::unique_ptr<sphere> ball(const position& centre, double radius, const material* m) {
  auto b = std::make_unique<sphere>(centre, radius);
  b->set_material(m);
  return b;
}

bool floor_plane::intersect(const ray& r, hit_record& hit, render_context& context) const {
  ++context.test_count;
  if (r.dir.z == 0.0) return false;
  const double t = (height_ - r.origin.z) / r.dir.z;
  if (!(t > self_hit_tolerance) || !(t <= hit.distance)) return false;
  hit.distance = t;
  hit.object = this;
  return true;
}

colour floor_plane::shade(ray_state& state) const {
  state.hit.normal = direction(0.0, 0.0, 1.0);
  return material_->shade(state);
}

colour floor_plane::shadow_filter(ray_state& state) const {
  state.hit.normal = direction(0.0, 0.0, 1.0);
  return material_->transmittance(state);
}

ray_state hit_state(const world& w, render_context& context, const ray& r, double distance, const direction& normal) {
  ray_state s = primary_state(w, context, r);
  s.hit.distance = distance;
  s.hit.normal = normal;
  return s;
}

std::vector<colour> render_top_down(const world& w, render_context& context, int size, double half, double eye_z) {
  std::vector<colour> pixels;
  pixels.reserve(static_cast<std::size_t>(size) * size);
  const double step = 2 * half / size;
  for (int row = 0; row < size; ++row)
    for (int col = 0; col < size; ++col) {
      const position eye{-half + (col + 0.5) * step, half - (row + 0.5) * step, eye_z};
      ray_state s = primary_state(w, context, ray(eye, direction(0.0, 0.0, -1.0)));
      pixels.push_back(w.trace(s));
    }
  return pixels;
}

int pixel_at(int size, double half, double x, double y) {
  const double step = 2 * half / size;
  const int col = static_cast<int>((x + half) / step);
  const int row = static_cast<int>((half - y) / step);
  return row * size + col;
}

}  // namespace sciray::test
