"""mesh_import - turns a mesh file with data on it into a sciray scene: reading
the mesh, surfaces and normals, contour lines, colour maps, camera framing
and the scene text."""
