"""mesh_import - turns a mesh with data on it into a sciray Scene: reading
the mesh, the field and its colours, surfaces and their normals, contour
lines, the camera, and the scene with its colour key. sciray.from_mesh is
its library call and sciray-import its command line, which also renders
figures and writes series of scenes."""
