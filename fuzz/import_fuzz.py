"""import_fuzz.py - fuzz target (atheris): the mesh importer on arbitrary
bytes. The first line of an input names the mesh file's format by its
extension and gives sciray-import's options; the rest is the mesh file:

    vtk --style lines --contour-lines 3
    # vtk DataFile Version 4.2
    ...

A first line that names no format makes the whole input a legacy VTK file.
Each case parses the options, reads the file as the program does (meshio,
and VTK for legacy VTK files meshio refuses, in a child process that a
reader's crash or endless loop cannot take down; an input is small, so its
reader gets 2 s), converts it, and reads the scene back with the renderer,
on an empty band. What must hold: the importer ends with a scene or with its
one error (conversion_error, which the program prints as one line), never
another exception, a crash or a hang; and every scene it writes is one the
renderer reads without an error.

    python fuzz/import_fuzz.py CORPUS... [libFuzzer options]   # fuzz/run.sh does this
"""
import contextlib
import os
import tempfile

import python_target

# Coverage guides the fuzzer through the importer (the readers run in child
# processes, whose coverage the fuzzer does not see).
with python_target.imports(__name__ == "__main__"):
    import sciray
    from sciray import meshes
    from sciray.mesh_import import conversion, mesh_reading, options, reader_process, scene_building  # noqa: F401
    from sciray.mesh_import.failure import conversion_error
with contextlib.suppress(ImportError):
    import pyvista  # noqa: F401 (loaded once here, not by each reader's child process)

READ_SECONDS = 2.0  # a reader's time for a small input (the program gives any file 10 s)

# Extensions of the single-file formats meshio reads.
FORMATS = ("vtk", "vtu", "ply", "obj", "stl", "msh", "off", "mesh", "meshb", "inp", "avs", "su2", "dat", "tec",
           "bdf", "nas", "fem", "f3grid", "ugrid", "wkt", "xdmf", "vol", "mdpa", "post")
EMPTY_BAND = (1, 2147483647)  # no picture has a row in it


def split(data: bytes) -> tuple[str, list[str], bytes]:
    """(extension, options, file contents) of an input."""
    first, _, rest = data.partition(b"\n")
    words = first.decode("utf-8", "replace").split()
    if words and words[0] in FORMATS:
        return words[0], words[1:], rest
    return "vtk", [], data


def test_one_input(data: bytes) -> None:
    # A folder of its own for each case: libFuzzer ends the process without
    # Python's exit handlers, so a folder kept for the run would stay behind.
    with tempfile.TemporaryDirectory(prefix="sciray-import-fuzz-") as folder:
        _convert(data, folder)


def _convert(data: bytes, folder: str) -> None:
    extension, arguments, contents = split(data)
    path = os.path.join(folder, "mesh." + extension)
    with open(path, "wb") as f:
        f.write(contents)
    try:
        chosen = options.parse([path, "out.ren", *arguments])
    except conversion_error:
        return
    except SystemExit:  # --help: printed, and the program would end there
        return
    try:
        scene, _, _ = meshes.converted(mesh_reading.read_mesh(path), path, chosen)
    except conversion_error:
        return
    # The text is what the program writes: the renderer must read it back.
    sciray.render(sciray.Scene.from_text(scene.text()), threads=1, band=EMPTY_BAND)


if __name__ == "__main__":
    reader_process.SECONDS = READ_SECONDS
    python_target.fuzz(test_one_input)
