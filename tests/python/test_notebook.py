"""test_notebook.py - the quickstart notebook runs from start to end in a
Jupyter kernel and makes exactly the pictures committed beside it."""
import os
import shutil

import pytest

from conftest import SOURCE

NOTEBOOKS = os.path.join(SOURCE, "docs", "notebooks")


def test_quickstart_runs_and_makes_its_pictures(tmp_path):
    nbformat = pytest.importorskip("nbformat")
    nbclient = pytest.importorskip("nbclient")
    shutil.copy(os.path.join(NOTEBOOKS, "quickstart.ipynb"), tmp_path)
    notebook = nbformat.read(str(tmp_path / "quickstart.ipynb"), as_version=4)
    nbclient.NotebookClient(notebook, timeout=600, kernel_name="python3",
                            resources={"metadata": {"path": str(tmp_path)}}).execute()
    shown = [o for cell in notebook.cells if cell.cell_type == "code" for o in cell.get("outputs", [])
             if "image/png" in o.get("data", {})]
    assert len(shown) == 3  # each picture shows itself
    committed = sorted(n for n in os.listdir(NOTEBOOKS) if n.endswith(".png"))
    assert committed == sorted(n for n in os.listdir(tmp_path) if n.endswith(".png"))
    for name in committed:
        with open(os.path.join(NOTEBOOKS, name), "rb") as kept:
            assert (tmp_path / name).read_bytes() == kept.read(), name
