# reference_text.py - the parts of docs/scene-format.md that the tests read:
# its fenced code blocks, its sections and the keyword tables in them.
import os
import re

SOURCE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
REFERENCE = os.path.join(SOURCE, 'docs', 'scene-format.md')


def read_reference():
    with open(REFERENCE) as f:
        return f.read()


def fenced_blocks(text):
    """(info string, body, line number of the opening fence) of every fenced block."""
    blocks, opening, body = [], None, []
    for number, line in enumerate(text.splitlines(), 1):
        if line.startswith('```'):
            if opening is None:
                opening = (line[3:].strip(), number)
                body = []
            else:
                blocks.append((opening[0], '\n'.join(body) + '\n', opening[1]))
                opening = None
        elif opening is not None:
            body.append(line)
    assert opening is None, f'{REFERENCE}:{opening[1]}: code block never closed'
    return blocks


def sections(text):
    """The text under each second-level heading, by heading."""
    parts = re.split(r'^## (.*)$', text, flags=re.M)
    return dict(zip(parts[1::2], parts[2::2]))


def tables(text):
    """Each table as a list of rows, each a list of cells; the header row
    first, the |---| row left out."""
    found, rows = [], []
    for line in text.splitlines() + ['']:
        if line.startswith('|'):
            rows.append([cell.strip() for cell in line.strip().strip('|').split('|')])
        elif rows:
            found.append(rows[:1] + rows[2:])
            rows = []
    return found


def table_keywords(text, first_headers):
    """The `quoted` words in the first column of the tables whose first
    header cell is one of first_headers."""
    return {word for table in tables(text) if table[0][0] in first_headers
            for row in table[1:] for word in re.findall(r'`([^`]+)`', row[0])}
