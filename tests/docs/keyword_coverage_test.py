#!/usr/bin/python3
# keyword_coverage_test.py - the keywords and words the scene readers accept,
# taken from their sources, against docs/scene-format.md: each is documented
# in its block's section, and every keyword the reference's tables list is
# one that block's reader accepts.
import glob
import os
import re
import unittest

from reference_text import SOURCE, read_reference, sections, table_keywords

READERS = os.path.join(SOURCE, 'src', 'scene_file')
# A reader names its block once, for its messages: block_input in(state, "render_002").
BLOCK = re.compile(r'block_input in\(state, "(\w+)"\)')
# A keyword is compared with the token read: key == "width", name == "color".
COMPARED = re.compile(r'\b(?:key|name) == "(\w+)"')
# Words of a closed list: read_word({"orthographic", "perspective"}, ...).
WORD_LIST = re.compile(r'read_word\(\{([^}]*)\}')
# Record keywords in the geometry reader's table of forms: {"gr_lines", true, ...}.
RECORD_FORM = re.compile(r'\{"(\w+)", (?:true|false),')


def accepted(source):
    """The keywords and words that one reader source accepts."""
    words = set(COMPARED.findall(source)) | set(RECORD_FORM.findall(source))
    for word_list in WORD_LIST.findall(source):
        words |= set(re.findall(r'"(\w+)"', word_list))
    return words


def readers():
    """(file name, kind, block keyword or None, accepted words) per reader
    source: kind "top" for the reader of the blocks, "block" for a block's
    reader, "shared" for what every block reads (the truth words)."""
    found = []
    for path in sorted(glob.glob(os.path.join(READERS, '*.cpp'))):
        with open(path) as f:
            source = f.read()
        block = BLOCK.search(source)
        words = accepted(source)
        if block:
            found.append((os.path.basename(path), 'block', block[1], words))
        elif words:
            kind = 'top' if 'read_scene_file' in source else 'shared'
            found.append((os.path.basename(path), kind, None, words))
    return found


def section_of(block, text):
    """The reference's section for a block: the one whose heading names it."""
    matching = [body for heading, body in sections(text).items() if f'`{block}`' in heading]
    assert len(matching) == 1, f'the reference has {len(matching)} sections for {block}'
    return matching[0]


class keyword_coverage(unittest.TestCase):
    def test_readers_and_reference_agree(self):
        text = read_reference()
        found = readers()
        blocks = {block for _, kind, block, _ in found if kind == 'block'}
        self.assertIn('gr_geometry_001', blocks)  # the readers were found where they are looked for
        top_level = set().union(*(words for _, kind, _, words in found if kind == 'top'))
        self.assertTrue(blocks <= top_level, f'blocks whose readers are not called: {blocks - top_level}')
        for name, kind, block, words in found:
            with self.subTest(reader=name):
                if kind == 'top':
                    listed = table_keywords(text, {'Block keyword'})
                    self.assertEqual(words - listed, set(), 'accepted but not in the table of blocks')
                    self.assertEqual(listed - words, set(), 'in the table of blocks but not accepted')
                    continue
                section = text if kind == 'shared' else section_of(block, text)
                documented = set(re.findall(r'`(\w+)`', section))
                self.assertEqual(words - documented, set(), f'accepted but not documented under {block or "any block"}')
                if kind == 'block':
                    listed = table_keywords(section, {'Keyword', 'Record'})
                    self.assertEqual(listed - words, set(), f'documented under {block} but not accepted')

if __name__ == '__main__':
    unittest.main()
