# python.cmake - what a wheel of the Python package holds, built by
# scikit-build-core: the extension module sciray._sciray over the same
# sciray_core as the programs, and sciray and sciray-png in the
# environment's scripts directory (the package's Python files come from
# python/sciray).
set(SCIRAY_EXTENSION_CORE sciray_core)
include(cmake/extension.cmake)

install(TARGETS _sciray LIBRARY DESTINATION sciray)
install(TARGETS sciray sciray-png RUNTIME DESTINATION ${SKBUILD_SCRIPTS_DIR})
