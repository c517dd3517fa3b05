// scene_reader.h - reads a scene file into the world and the settings.
#pragma once

#include <cstdio>

#include "scene_file/scene_settings.h"

namespace sciray {

class world;
struct render_context;

// Reads blocks until the end of `file`. Every error is fatal: one line on
// standard error, exit status 1.
void read_scene_file(std::FILE* file, world& w, scene_settings& settings, render_context& context);

}  // namespace sciray
