// module.cpp - sciray._sciray, the compiled part of the Python package: the
// renderer itself (the program's own library), the scene text made from
// arrays, and picture files.
#include <nanobind/nanobind.h>

#include "render_call.h"
#include "scene_file/scene_settings.h"
#include "scene_records.h"
#include "scene_source.h"

namespace sciray::python {
void bind_picture_files(nb::module_& m);
}  // namespace sciray::python

NB_MODULE(_sciray, m) {
  using namespace sciray::python;
  install_fatal_handler();
  // Fatal errors become sciray.SceneError with the program's line.
  // The class is held for the life of the process.
  PyObject* scene_error = nb::object(nb::module_::import_("sciray._errors").attr("SceneError")).release().ptr();
  nb::register_exception_translator(
      [](const std::exception_ptr& failure, void* type) {
        try {
          std::rethrow_exception(failure);
        } catch (const scene_failure& e) {
          PyErr_SetString(static_cast<PyObject*>(type), e.what());
        }
      },
      scene_error);
  bind_render_call(m);
  bind_scene_records(m);
  bind_scene_source(m);
  bind_picture_files(m);
  // The picture sizes the renderer takes, for the checks of callers that write scenes.
  m.attr("LEAST_PICTURE_SIDE") = sciray::least_picture_side;
  m.attr("GREATEST_PICTURE_SIDE") = sciray::greatest_picture_side;
}
