# importer.cmake - sciray-import for the system's Python (/usr/bin/python3):
# the package python/sciray with its extension module built for that Python,
# staged in the build tree (build/python) and installed where Debian keeps
# Python modules (lib/python3/dist-packages), and a small program in bin that
# runs the importer from the package beside it. The module is built over a
# position-independent build of the core; the programs keep their own.
set(Python_EXECUTABLE /usr/bin/python3)
add_library(sciray_core_pic STATIC ${SCIRAY_SOURCES})
set_target_properties(sciray_core_pic PROPERTIES POSITION_INDEPENDENT_CODE ON)
target_include_directories(sciray_core_pic PUBLIC src)
target_link_libraries(sciray_core_pic PUBLIC PNG::PNG)
set(SCIRAY_EXTENSION_CORE sciray_core_pic)
include(cmake/extension.cmake)

set(SCIRAY_PYTHON_DIR lib/python3/dist-packages)
set(stage ${CMAKE_BINARY_DIR}/python)
set_target_properties(_sciray PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${stage}/sciray)

# The package's Python files, copied into the stage as they change; files
# no longer in the source tree leave the stage too.
file(GLOB_RECURSE sources RELATIVE ${CMAKE_SOURCE_DIR}/python CONFIGURE_DEPENDS python/sciray/*.py)
file(GLOB_RECURSE staged_before RELATIVE ${stage} ${stage}/sciray/*.py)
foreach(old ${staged_before})
  if(NOT old IN_LIST sources)
    file(REMOVE ${stage}/${old})
  endif()
endforeach()
set(staged)
foreach(source ${sources})
  get_filename_component(folder ${stage}/${source} DIRECTORY)
  add_custom_command(OUTPUT ${stage}/${source}
                     COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
                     COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_SOURCE_DIR}/python/${source} ${stage}/${source}
                     DEPENDS ${CMAKE_SOURCE_DIR}/python/${source})
  list(APPEND staged ${stage}/${source})
endforeach()
add_custom_target(sciray_package ALL DEPENDS ${staged} _sciray)

# The program, in the build tree (finding the stage) and as installed
# (finding the package under the prefix).
set(program_permissions FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
    WORLD_READ WORLD_EXECUTE)
set(SCIRAY_PACKAGE_PARENT python)
configure_file(cmake/sciray-import.in ${CMAKE_BINARY_DIR}/sciray-import @ONLY ${program_permissions})
set(SCIRAY_PACKAGE_PARENT ../${SCIRAY_PYTHON_DIR})
configure_file(cmake/sciray-import.in ${CMAKE_BINARY_DIR}/installed/sciray-import @ONLY ${program_permissions})

install(DIRECTORY python/sciray DESTINATION ${SCIRAY_PYTHON_DIR}
        FILES_MATCHING PATTERN "*.py" PATTERN "__pycache__" EXCLUDE)
install(TARGETS _sciray LIBRARY DESTINATION ${SCIRAY_PYTHON_DIR}/sciray)
install(PROGRAMS ${CMAKE_BINARY_DIR}/installed/sciray-import DESTINATION ${CMAKE_INSTALL_BINDIR})
