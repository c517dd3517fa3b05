// scene_reader.cpp - the top level of the scene file: a flat sequence of
// blocks, each handed to its own reader by its keyword.
#include "scene_file/scene_reader.h"

#include <string>
#include <string_view>

#include "scene_file/block_readers.h"

namespace sciray {

void read_scene_file(std::FILE* file, world& w, scene_settings& settings, render_context& context) {
  reader_state state(file, w, settings, context);
  for (;;) {
    const std::string_view key = state.tokens.next();
    if (key.empty()) return;
    // The older "render" and "colormap" versions share the newer reader.
    if (key == "render_002" || key == "render_001") read_render_block(state);
    else if (key == "viewing_001") read_viewing_block(state);
    else if (key == "lighting_001") read_lighting_block(state);
    else if (key == "colormap_002" || key == "colormap_001") read_colormap_block(state);
    else if (key == "contour_table_001") read_contour_table_block(state);
    else if (key == "gr_geometry_001") read_geometry_block(state);
    else fatal("Error: Unknown keyword '" + std::string(key) + "' within input file");
  }
}

}  // namespace sciray
