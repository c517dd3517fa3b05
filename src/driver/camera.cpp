// camera.cpp - the viewing frame and the two projections.
#include "driver/camera.h"

#include <cmath>
#include <string>

#include "support/fatal_error.h"

namespace sciray {

namespace {

[[noreturn]] void fail(const char* program, const char* message) { fatal(std::string(program) + message); }

constexpr double degrees_to_radians = 0.017453292519943295;

// Rotates `u` about the unit axis `a` by `theta` (right-hand rule).
vector rotate(const vector& u, const direction& a, double theta) {
  const double c = std::cos(theta), s = std::sin(theta);
  return u * c + cross(a, u) * s + a * dot(a, u) * (1.0 - c);
}

}  // namespace

camera_basis make_camera_basis(const view_settings& view, const char* program) {
  camera_basis b;
  b.eye = view.viewpoint;
  const vector v = view.lookat - view.viewpoint;
  b.screen_dist = length(v);
  if (b.screen_dist == 0.0) fail(program, ": lookat and viewpoint are the same");
  b.view_dir = normalise(v);

  b.up_accepted = view.up_vector_1;
  if (length(cross(b.view_dir, b.up_accepted)) == 0.0) {
    b.up_accepted = view.up_vector_2;
    if (length(cross(b.view_dir, b.up_accepted)) == 0.0) fail(program, ": up_vector_1 and up_vector_2 are ambiguous");
  }
  vector up = b.up_accepted;
  if (view.roll_angle != 0.0) up = normalise(rotate(up, b.view_dir, -view.roll_angle * degrees_to_radians));

  b.right_dir = normalise(cross(b.view_dir, up));
  b.true_up = normalise(cross(b.right_dir, b.view_dir));
  return b;
}

ray orthographic_camera::primary_ray(double sx, double sy) const {
  return ray(basis_.eye + sx * basis_.right_dir + sy * basis_.true_up, basis_.view_dir);
}

ray perspective_camera::primary_ray(double sx, double sy) const {
  const position screen_point =
      basis_.eye + basis_.screen_dist * basis_.view_dir + sx * basis_.right_dir + sy * basis_.true_up;
  return ray(basis_.eye, normalise(screen_point - basis_.eye));
}

std::unique_ptr<camera> make_camera(const camera_basis& basis, bool perspective) {
  if (perspective) return std::make_unique<perspective_camera>(basis);
  return std::make_unique<orthographic_camera>(basis);
}

}  // namespace sciray
