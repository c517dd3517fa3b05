// viewing_block.cpp - the viewing block: eye, target, up directions, view
// extents and projection. Clipping distances and the transformation matrix
// belong to the format but are read and thrown away.
#include "scene_file/block_readers.h"

namespace sciray {

namespace {

// A view extent is always above 0; anything else (not a number too) is 0.001.
double view_extent(double v) { return v > 0.0 ? v : 0.001; }

}  // namespace

void read_viewing_block(reader_state& state) {
  block_input in(state, "viewing_001");
  view_settings& v = state.settings.view;
  in.expect_open("viewing block");
  for (std::string_view key; in.next_keyword(key);) {
    if (key == "up_vector_1") v.up_vector_1 = normalise(in.read_triple("primary up-vector"));
    else if (key == "up_vector_2") v.up_vector_2 = normalise(in.read_triple("secondary up-vector"));
    else if (key == "lookat") v.lookat = in.read_triple("lookat point");
    else if (key == "viewpoint") v.viewpoint = in.read_triple("viewpoint");
    else if (key == "roll_angle") v.roll_angle = in.read_real("roll angle");
    else if (key == "extents") {
      const double width = in.read_real("view width");
      const double height = in.read_real("view height");
      v.view_width = view_extent(width);
      v.view_height = view_extent(height);
    } else if (key == "front_dist") in.read_real("front distance");
    else if (key == "back_dist") in.read_real("back distance");
    else if (key == "projection") v.perspective = in.read_word({"orthographic", "perspective"}, "projection") == 1;
    else if (key == "transformations") {
      for (int i = 0; i < 16; ++i) in.read_single("transformations");
    } else in.unknown(key, "viewing block");
  }
}

}  // namespace sciray
