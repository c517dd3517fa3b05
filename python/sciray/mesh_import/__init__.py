"""mesh_import - turns a mesh with data on it into a sciray scene: reading
the mesh, surfaces and normals, contour lines, colour maps, camera framing
and the scene text. sciray-import is its command line and sciray.from_mesh
its library call; it needs numpy and meshio but not the rest of sciray, so
that it also runs as a single file with the system's Python (the Debian
package's sciray-import)."""
