# python.cmake - what a wheel of the Python package holds, built by
# scikit-build-core: the extension module sciray._sciray over the same
# sciray_core as the programs, and sciray and sciray-png in the
# environment's scripts directory (the package's Python files come from
# python/sciray).
find_package(Python 3.10 REQUIRED COMPONENTS Interpreter Development.Module)
execute_process(COMMAND "${Python_EXECUTABLE}" -m nanobind --cmake_dir
                OUTPUT_STRIP_TRAILING_WHITESPACE OUTPUT_VARIABLE nanobind_ROOT)
find_package(nanobind CONFIG REQUIRED)

file(GLOB SCIRAY_EXTENSION_SOURCES CONFIGURE_DEPENDS python/extension/*.cpp)
nanobind_add_module(_sciray NOMINSIZE ${SCIRAY_EXTENSION_SOURCES})
target_link_libraries(_sciray PRIVATE sciray_core)

install(TARGETS _sciray LIBRARY DESTINATION sciray)
install(TARGETS sciray sciray-png RUNTIME DESTINATION ${SKBUILD_SCRIPTS_DIR})
