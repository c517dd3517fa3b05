# band_files.py - the scenes of a run, where each band's file and log live,
# and whether a band file is whole. A scene's band files sit in
# OUT/bands/NAME.DIGEST/ (DIGEST: a hash of the scene's contents) and are
# named IofN.rgb, so a rerun reuses only bands of the same scene text and
# the same split, and an edited scene never mixes with old bands.
import hashlib
import os
import struct
from dataclasses import dataclass


class farm_error(Exception):
    """A problem that ends the run with a one-line message."""


@dataclass(frozen=True)
class scene:
    path: str    # absolute path of the scene file
    name: str    # file name without ".ren": names the PNG
    digest: str  # the first 12 hex digits of the SHA-256 of the scene text


def read_scenes(paths):
    scenes, by_name = [], {}
    for path in paths:
        try:
            with open(path, 'rb') as f:
                digest = hashlib.sha256(f.read()).hexdigest()[:12]
        except OSError as e:
            raise farm_error(f'{path}: {e.strerror}')
        base = os.path.basename(path)
        name = base[:-len('.ren')] if base.endswith('.ren') and base != '.ren' else base
        if name in by_name:
            raise farm_error(f'{by_name[name]} and {path} would both make {name}.png')
        by_name[name] = path
        scenes.append(scene(os.path.abspath(path), name, digest))
    return scenes


@dataclass(frozen=True)
class band_task:
    scene: scene
    index: int  # 1 is the bottom band
    count: int
    out_dir: str

    @property
    def label(self):
        return f'{self.scene.name} band {self.index}/{self.count}'

    @property
    def band_dir(self):
        return os.path.join(self.out_dir, 'bands', f'{self.scene.name}.{self.scene.digest}')

    @property
    def band_file(self):
        return os.path.join(self.band_dir, f'{self.index}of{self.count}.rgb')

    @property
    def log_file(self):
        return os.path.join(self.band_dir, f'{self.index}of{self.count}.log')


def band_tasks(scenes, count, out_dir):
    return [band_task(s, i, count, out_dir) for s in scenes for i in range(1, count + 1)]


# The picture file layout: a 512-byte header, then for run-length-encoded
# pictures a table of row starts and one of row lengths, 4 bytes each.
HEADER_BYTES = 512
MAGIC = 474
RLE_ONE_BYTE = 0x0101


def is_whole(path):
    """True for a band file with rows (a complete run-length-encoded RGB
    picture whose every row lies inside the file) or an empty one (a band
    that holds no row of the picture)."""
    try:
        with open(path, 'rb') as f:
            size = os.fstat(f.fileno()).st_size
            if size == 0:
                return True
            header = f.read(HEADER_BYTES)
            if len(header) < HEADER_BYTES:
                return False
            order = '<' if struct.unpack_from('<H', header)[0] == MAGIC else '>'
            magic, kind, dim, width, height, channels = struct.unpack_from(order + '6H', header)
            if magic != MAGIC or kind != RLE_ONE_BYTE or dim != 3 or channels != 3 or width == 0 or height == 0:
                return False
            rows = height * channels
            table = f.read(8 * rows)
            if len(table) < 8 * rows:
                return False
    except OSError:
        return False
    starts = struct.unpack_from(f'{order}{rows}I', table)
    lengths = struct.unpack_from(f'{order}{rows}I', table, 4 * rows)
    first = HEADER_BYTES + 8 * rows
    return all(start >= first and 0 < length and start + length <= size for start, length in zip(starts, lengths))


def clear(task):
    """Removes what an earlier run left of a band, before it is rendered again."""
    for path in (task.band_file, task.band_file + '.tmp', task.log_file):
        try:
            os.remove(path)
        except FileNotFoundError:
            pass
