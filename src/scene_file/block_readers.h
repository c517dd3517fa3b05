// block_readers.h - one reader per block of the scene file. Each is called
// with its block keyword consumed and returns after the block's "}" or at
// end of file.
#pragma once

#include "scene_file/block_input.h"

namespace sciray {

void read_render_block(reader_state& state);         // "render_002", "render_001"
void read_viewing_block(reader_state& state);        // "viewing_001"
void read_lighting_block(reader_state& state);       // "lighting_001"
void read_colormap_block(reader_state& state);       // "colormap_002", "colormap_001"
void read_contour_table_block(reader_state& state);  // "contour_table_001"
void read_geometry_block(reader_state& state);       // "gr_geometry_001"

}  // namespace sciray
