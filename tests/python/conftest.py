"""What the package's tests share: the source tree, the programs installed
beside the package (sciray, sciray-png), running them, and the scenes the
package must render exactly as the program does."""
import os
import subprocess
import sysconfig

import numpy as np
import pytest

SOURCE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
SCRIPTS = sysconfig.get_path("scripts")
EXAMPLES = sorted(os.path.join(SOURCE, "examples", n) for n in os.listdir(os.path.join(SOURCE, "examples"))
                  if n.endswith(".ren"))


def picture_at(haystack, needle):
    """(row, column) where the needle picture lies, pixel for pixel, in the
    haystack picture (both (height, width, 3) arrays), or None."""
    rows, columns = needle.shape[:2]
    for y in range(haystack.shape[0] - rows + 1):
        for x in np.flatnonzero((haystack[y] == needle[0, 0]).all(axis=1)):
            if x + columns <= haystack.shape[1] and np.array_equal(haystack[y:y + rows, x:x + columns], needle):
                return y, int(x)
    return None


def run_sciray(*args, **settings):
    """The environment's sciray run by its name, as a user runs it (so its
    messages begin "sciray: ")."""
    env = dict(os.environ, PATH=SCRIPTS + os.pathsep + os.environ.get("PATH", ""))
    return subprocess.run(["sciray", *map(str, args)], capture_output=True, timeout=600, env=env, **settings)


def program_output(scene, folder, *args):
    """What the program writes for the scene: (picture bytes, standard output)."""
    picture = os.path.join(folder, "program.rgb")
    result = run_sciray(scene, picture, *args)
    assert result.returncode == 0, result.stderr
    with open(picture, "rb") as f:
        return f.read(), result.stdout.decode()


@pytest.fixture(scope="session")
def bench_scenes(tmp_path_factory):
    """The medium benchmark scenes (balls, sticks, mesh) at 640 x 480."""
    folder = tmp_path_factory.mktemp("bench")
    subprocess.run(["bash", os.path.join(SOURCE, "bench", "make-scenes.sh"), str(folder), "640", "480", "medium"],
                   check=True, capture_output=True)
    return {family: str(folder / ("%s_medium.ren" % family)) for family in ("balls", "sticks", "mesh")}
