// PLACEHOLDER: replaced by the real implementation.
#include "scene_file/scene_reader.h"
namespace sciray {
void read_scene_file(std::FILE*, world&, scene_settings&, render_context&) {}
}
