// contour_table_block.cpp - the contour table: (colour-map index, value)
// pairs that become the entries of two new contour tables, the blending one
// (mode 1) and the steps one (mode 0), which replace the tables in force.
#include <string>

#include "scene_file/block_readers.h"
#include "shading/world.h"

namespace sciray {

void read_contour_table_block(reader_state& state) {
  block_input in(state, "contour_table_001");
  const int count = in.read_int("number of bands");
  if (count < 2) in.fail("Invalid number of bands " + std::to_string(count));
  state.blending = &state.scene.new_contour_material(true);
  state.steps = &state.scene.new_contour_material(false);
  in.expect_open("colormap");
  for (int i = 0; i < count; ++i) {
    const int index = in.read_int("colormap index");
    if (index < 0 || index >= state.colormap_size()) in.fail("Invalid colormap index " + std::to_string(index));
    const double value = in.read_real("value");
    // The tables point at the colour-map entry itself, so later changes of it are seen.
    const material* entry = &state.colormap->entry(index);
    state.blending->add(entry, value);
    state.steps->add(entry, value);
  }
  // The pairs have no keyword, so a surplus pair shows up here.
  const std::string_view last = in.next_token();
  if (!last.empty() && last != "}") in.unknown(last, "contour-table block");
}

}  // namespace sciray
