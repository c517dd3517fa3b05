// camera.h - turns a point of the picture window into a primary ray.
#pragma once

#include <memory>

#include "math/ray.h"
#include "scene_file/scene_settings.h"

namespace sciray {

// The viewing frame worked out from the viewing settings.
struct camera_basis {
  position eye;
  direction view_dir;
  direction up_accepted;  // the up vector that was usable, before any roll
  direction right_dir;
  direction true_up;
  double screen_dist = 0.0;  // viewpoint to look-at point
};

// Fails the run (prefixed with `program`) when the look-at point is the
// viewpoint or both up vectors are parallel to the line of sight.
camera_basis make_camera_basis(const view_settings& view, const char* program);

class camera {
 public:
  explicit camera(const camera_basis& b) : basis_(b) {}
  virtual ~camera() = default;
  // The ray through the screen point (sx, sy).
  virtual ray primary_ray(double sx, double sy) const = 0;

 protected:
  camera_basis basis_;
};

// Parallel rays from a window on the plane through the viewpoint.
class orthographic_camera : public camera {
 public:
  using camera::camera;
  ray primary_ray(double sx, double sy) const override;
};

// Rays from the viewpoint through a window on the plane through the look-at point.
class perspective_camera : public camera {
 public:
  using camera::camera;
  ray primary_ray(double sx, double sy) const override;
};

std::unique_ptr<camera> make_camera(const camera_basis& basis, bool perspective);

}  // namespace sciray
