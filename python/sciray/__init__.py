"""sciray: exact ray-traced pictures for scientific visualisation.

The renderer of the ``sciray`` program, in this process: render a scene
file or a Scene grown from numpy arrays, and get the very picture the
program writes, as an array that shows itself in Jupyter.

>>> import numpy as np, sciray
>>> scene = sciray.Scene()
>>> scene.light((5, -5, 8))
>>> scene.add_spheres(np.random.default_rng(0).normal(size=(200, 3)), scene.material(color=(0.9, 0.5, 0.1)),
...                   radius=0.08)
>>> picture = sciray.render(scene)                            # doctest: +SKIP
>>> picture.save("balls.png")                                 # doctest: +SKIP
"""
from ._errors import SceneError
from .colour_key import ColourKey
from .figures import figure
from .meshes import from_mesh
from .molecules import from_molecule, molecule_frames
from .picture import Picture
from .rendering import render
from .scene import Scene

__all__ = ["ColourKey", "Picture", "Scene", "SceneError", "figure", "from_mesh", "from_molecule",
           "molecule_frames", "render"]
