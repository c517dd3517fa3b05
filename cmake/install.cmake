# install.cmake - installing the programs, the manual pages, and the
# documentation with the examples (share/doc/sciray); and the Debian package.
install(TARGETS sciray sciray-png RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(PROGRAMS ${CMAKE_BINARY_DIR}/sciray-farm DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${SCIRAY_MAN_PAGES} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES README.md docs/scene-format.md docs/gallery.md docs/python.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs/scene-format docs/gallery DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR})

# The Debian package (cpack -G DEB): the libraries the programs and the
# importer's module link are found by dpkg-shlibdeps; the farm needs
# python3, the importer the very Python version its module was built for,
# and numpy, meshio and matplotlib (recommended, so that render nodes may do
# without); the farm's engines and movies use GNU parallel with rsync,
# Slurm's client and ffmpeg when asked.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "sciray developers")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "batch ray tracer for scientific-visualisation pictures
sciray reads a text scene file - lines, polygons, contour-coloured surfaces
and symbols, with lights, materials and a camera - traces it with shadows,
reflection, refraction, haze and clouds, and writes an SGI RGB picture.
sciray-png turns pictures and their bands into PNG; sciray-farm renders many
scenes in bands on this machine, on ssh hosts with GNU parallel, or on a
Slurm cluster; sciray-import writes a scene from a mesh file with data on
it, and a figure of its picture beside a colour bar.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "python3")
if(TARGET _sciray)
  math(EXPR next_minor "${Python_VERSION_MINOR} + 1")
  set(CPACK_DEBIAN_PACKAGE_DEPENDS "python3 (>= ${Python_VERSION_MAJOR}.${Python_VERSION_MINOR}), \
python3 (<< ${Python_VERSION_MAJOR}.${next_minor})")
endif()
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "python3-meshio, python3-numpy, python3-matplotlib")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "parallel, rsync, slurm-client, ffmpeg")
include(CPack)
