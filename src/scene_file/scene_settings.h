// scene_settings.h - the picture, tracing and viewing options a scene file
// sets, with the defaults that hold for every keyword the file leaves out.
#pragma once

#include "math/vector.h"

namespace sciray {

// A picture's sides: a smaller one is raised to the least; a larger one is
// refused, as the picture file's 16-bit size fields cannot hold it.
constexpr int least_picture_side = 4;
constexpr int greatest_picture_side = 65535;

struct render_settings {
  int width = 640;
  int height = 480;
  int cloud_depth = 6;
  int depth = 4;
  int pixel_size = 1;
  int antialias_depth = 3;
  colour zenith{0.0, 0.0, 0.0};
  colour horizon{0.0, 0.0, 0.0};
  colour ground{0.0, 0.0, 0.0};
  colour cloud_inner{1.0, 1.0, 1.0};
  colour cloud_outer{1.0, 0.8, 0.8};
  colour atmosphere{0.0, 0.0, 0.0};
  bool highlights = true;
  bool shadows = true;
  bool antialias = false;
  double cloud_inner_frac = 0.0;
  double cloud_outer_frac = 0.0;
  double cloud_scale = 0.5;
  vector cloud_offset{0.0, 0.0, 0.0};
  double cloud_sharpness = 0.85;
  double atmosphere_len = 2.0;
  double atmosphere_ior = 1.0;
  double antialias_tol = 0.05;
};

struct view_settings {
  direction up_vector_1{0.0, 1.0, 0.0};
  direction up_vector_2{0.0, 0.0, 1.0};
  position lookat{0.0, 0.0, 0.0};
  position viewpoint{0.0, 0.0, 5.6};
  double roll_angle = 0.0;
  double view_width = 2.8;
  double view_height = 2.8;
  bool perspective = true;
};

struct scene_settings {
  render_settings render;
  view_settings view;
  // Radii of the solids that lines and symbols become; a render block
  // changes them for the geometry that follows it.
  double line_radius = 0.01;
  double symbol_radius = 0.03;
};

}  // namespace sciray
