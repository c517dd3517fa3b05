#!/usr/bin/python3
"""sciray-import - writes a sciray scene from a mesh file with data on it.

Runs with the system's Python, whose packages (numpy, meshio) the set-up
installs. Its modules live in mesh_import/ beside the real location of this
file, which may be reached through a link."""
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.realpath(__file__)))

from mesh_import.command import main  # noqa: E402 (the path above comes first)

if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
