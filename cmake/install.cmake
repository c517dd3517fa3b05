# install.cmake - installing the programs, the manual pages, and the
# documentation with the examples (share/doc/sciray); and the Debian package.
install(TARGETS sciray sciray-png RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(PROGRAMS ${CMAKE_BINARY_DIR}/sciray-farm ${CMAKE_BINARY_DIR}/sciray-import DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${SCIRAY_MAN_PAGES} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES README.md docs/scene-format.md docs/gallery.md docs/python.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs/scene-format docs/gallery DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR})

# The Debian package (cpack -G DEB): the libraries the programs link are
# found by dpkg-shlibdeps; the farm and the importer need python3; the
# importer needs numpy and meshio (recommended, so that render nodes may do
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
it.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "python3")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "python3-meshio, python3-numpy")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "parallel, rsync, slurm-client, ffmpeg")
include(CPack)
