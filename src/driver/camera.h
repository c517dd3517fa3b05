// camera.h - turns a point of the picture window into a primary ray and
// returns the colour the world traces along it.
#pragma once

#include <memory>

#include "math/vector.h"
#include "scene_file/scene_settings.h"

namespace sciray {

struct ray_state;

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
  // Sets up the ray through screen point (sx, sy) in `state` and traces it.
  virtual colour sample(double sx, double sy, ray_state& state) const = 0;

 protected:
  camera_basis basis_;
};

// Parallel rays from a window on the plane through the viewpoint.
class orthographic_camera : public camera {
 public:
  using camera::camera;
  colour sample(double sx, double sy, ray_state& state) const override;
};

// Rays from the viewpoint through a window on the plane through the look-at point.
class perspective_camera : public camera {
 public:
  using camera::camera;
  colour sample(double sx, double sy, ray_state& state) const override;
};

std::unique_ptr<camera> make_camera(const camera_basis& basis, bool perspective);

}  // namespace sciray
