// render_job.h - one render of a scene: read it from an open file, count its
// objects, build the hierarchy, the camera, the sky and the atmosphere, and
// render the band asked for into an output. The program's output is its
// picture file and standard output; the Python module's is memory.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdio>
#include <memory>

#include "driver/band.h"
#include "driver/band_output.h"
#include "support/c_file.h"

namespace sciray {

struct render_request {
  band_choice band;                         // the whole picture unless asked
  int threads = 0;                          // 0: every processor the process may run on
  const char* program = "sciray";           // begins the messages of the camera and the threads
  bool mark = true;                         // stamp the corner mark into the picture
  const std::atomic<bool>* stop = nullptr;  // when set, the render ends between rows
};

// A band's output that also hears the object count, once the scene is read
// and before anything else.
class render_output : public band_output {
 public:
  virtual void scene_read(std::size_t objects) = 0;
};

// Renders the scene read from `scene_file`, which is closed once read, as
// `request` asks. Every error goes through fatal(). An empty band (more
// bands than rows) hands over nothing after the object count.
void render_scene(c_file scene_file, const render_request& request, render_output& out);

}  // namespace sciray
