// render_call.h - sciray's render job run from Python: the scene from a
// file or from a scene source, the picture kept in memory, the GIL released
// while it runs, and Ctrl-C honoured between rows.
#pragma once

#include <nanobind/nanobind.h>

#include <stdexcept>
#include <string>

namespace sciray::python {

namespace nb = nanobind;

// A fatal error of a render, carrying the line the program would print.
struct scene_failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Makes every fatal error of the renderer throw scene_failure.
void install_fatal_handler();

void bind_render_call(nb::module_& m);

}  // namespace sciray::python
