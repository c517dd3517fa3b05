#!/usr/bin/python3
# reference_examples_test.py - every example of docs/scene-format.md, run
# through sciray as it stands, does what its comment lines say: the number
# of objects, the picture's size, or the one message it stops with.
import os
import re
import struct
import subprocess
import tempfile
import unittest

from reference_text import REFERENCE, fenced_blocks, read_reference

SCIRAY = os.path.join(os.environ['SCIRAY_BUILD_DIR'], 'sciray')
ANNOTATION = re.compile(r'^# (objects|picture|stops with): (.*)$', re.M)
# A comment that looks meant as an annotation but is not one.
NEAR_MISS = re.compile(r'^#\s*(objects?|pictures?|stops?)\b', re.M | re.I)
SGI_MAGIC = 474


def expectations(scene):
    """The annotations of an example, by name."""
    found = dict(ANNOTATION.findall(scene))
    assert len(NEAR_MISS.findall(scene)) == len(ANNOTATION.findall(scene)), f'malformed annotation in:\n{scene}'
    return found


def indented_code(text):
    """Line numbers of indented code blocks (a line indented by four spaces
    or a tab after an empty line, outside fenced blocks)."""
    found, fenced, previous = [], False, ''
    for number, line in enumerate(text.splitlines(), 1):
        if line.startswith('```'):
            fenced = not fenced
        elif not fenced and not previous.strip() and line.startswith(('    ', '\t')):
            found.append(number)
        previous = line
    return found


def picture_size(path):
    """"W x H" of a picture file, written in either byte order."""
    with open(path, 'rb') as f:
        header = f.read(10)
    order = '<' if struct.unpack_from('<H', header)[0] == SGI_MAGIC else '>'
    magic, _, _, width, height = struct.unpack(order + '5H', header)
    assert magic == SGI_MAGIC, f'{path} is not a picture'
    return f'{width} x {height}'


class reference_examples(unittest.TestCase):
    def run_example(self, scene, work):
        scene_file = os.path.join(work, 'example.ren')
        picture = os.path.join(work, 'example.rgb')
        with open(scene_file, 'w') as f:
            f.write(scene)
        # Named "sciray", as the messages in the reference show it.
        r = subprocess.run(['sciray', scene_file, picture], executable=SCIRAY, capture_output=True, text=True,
                           timeout=120)
        return r, picture

    def test_every_example_does_what_the_reference_says(self):
        blocks = fenced_blocks(read_reference())
        for info, _, line in blocks:
            self.assertIn(info, ('ren', 'text'), f'{REFERENCE}:{line}: a code block is either an example (ren) '
                                                 'or a syntax outline (text)')
        self.assertEqual(indented_code(read_reference()), [], 'indented code escapes the test: fence it')
        examples = [(body, line) for info, body, line in blocks if info == 'ren']
        self.assertGreater(len(examples), 0)
        for scene, line in examples:
            with self.subTest(line=line), tempfile.TemporaryDirectory() as work:
                expected = expectations(scene)
                r, picture = self.run_example(scene, work)
                where = f'{REFERENCE}:{line}'
                if 'stops with' in expected:
                    self.assertEqual((r.returncode, r.stderr), (1, expected['stops with'] + '\n'), where)
                    self.assertFalse(os.path.exists(picture), f'{where}: a picture was written')
                    continue
                self.assertEqual((r.returncode, r.stderr), (0, ''), where)
                self.assertTrue(os.path.exists(picture), f'{where}: no picture')
                if 'objects' in expected:
                    self.assertEqual(r.stdout.splitlines()[0], f'Number of objects : {expected["objects"]}', where)
                if 'picture' in expected:
                    self.assertEqual(picture_size(picture), expected['picture'], where)


if __name__ == '__main__':
    unittest.main()
