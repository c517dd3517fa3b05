#!/usr/bin/python3
# contour_pictures_test.py - the contour style pictures in docs/scene-format/
# are what scripts/contour-pictures.sh makes with the built programs now, so
# the reference never shows a picture the renderer no longer draws.
import os
import subprocess
import tempfile
import unittest

from PIL import Image

from reference_text import SOURCE

BUILD = os.environ['SCIRAY_BUILD_DIR']
SHOWN = os.path.join(SOURCE, 'docs', 'scene-format')


def pixels(path):
    with Image.open(path) as picture:
        return picture.mode, picture.size, picture.tobytes()


class contour_pictures(unittest.TestCase):
    def test_pictures_shown_are_those_rendered(self):
        with tempfile.TemporaryDirectory() as out:
            env = dict(os.environ, SCIRAY=os.path.join(BUILD, 'sciray'),
                       SCIRAY_PNG=os.path.join(BUILD, 'sciray-png'))
            r = subprocess.run(['bash', os.path.join(SOURCE, 'scripts', 'contour-pictures.sh'), out], env=env,
                               capture_output=True, text=True, timeout=300)
            self.assertEqual(r.returncode, 0, r.stderr)
            made = sorted(os.listdir(out))
            self.assertEqual(made, sorted(os.listdir(SHOWN)))
            for name in made:
                with self.subTest(picture=name):
                    self.assertTrue(pixels(os.path.join(SHOWN, name)) == pixels(os.path.join(out, name)),
                                    f'docs/scene-format/{name} is out of date: run scripts/contour-pictures.sh')


if __name__ == '__main__':
    unittest.main()
