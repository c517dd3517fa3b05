# extension.cmake - the extension module sciray._sciray (the renderer's own
# library, the scene records and the picture files, for Python), built with
# nanobind over the core library named by SCIRAY_EXTENSION_CORE. Python is
# the one Python_EXECUTABLE names; nanobind comes from SCIRAY_NANOBIND_PYTHON,
# a Python that has it installed (by default that same one).
find_package(Python 3.10 REQUIRED COMPONENTS Interpreter Development.Module)
set(SCIRAY_NANOBIND_PYTHON "${Python_EXECUTABLE}" CACHE FILEPATH "A Python with nanobind installed")
execute_process(COMMAND "${SCIRAY_NANOBIND_PYTHON}" -m nanobind --cmake_dir
                OUTPUT_STRIP_TRAILING_WHITESPACE OUTPUT_VARIABLE nanobind_ROOT ERROR_QUIET)
find_package(nanobind CONFIG)
if(NOT nanobind_FOUND)
  message(FATAL_ERROR "nanobind not found with ${SCIRAY_NANOBIND_PYTHON}: scripts/build.sh fetches it "
                      "into build/tools; or name a Python that has it with -DSCIRAY_NANOBIND_PYTHON=..., or "
                      "leave sciray-import out with -DSCIRAY_SYSTEM_IMPORTER=OFF")
endif()

file(GLOB SCIRAY_EXTENSION_SOURCES CONFIGURE_DEPENDS python/extension/*.cpp)
nanobind_add_module(_sciray NOMINSIZE ${SCIRAY_EXTENSION_SOURCES})
target_link_libraries(_sciray PRIVATE ${SCIRAY_EXTENSION_CORE})
