# SPDX-License-Identifier: GPL-3.0-or-later
"""Makes a folder tree like a flight simulator's: thousands of folders, most files of other kinds or
without library objects."""

import random
import struct
from pathlib import Path

INDEX_ENTRY = struct.Struct("<i4I")
RECORD = struct.Struct("<4IB6i")


def header(kind, library=0, objects=0):
    data = bytearray(128)
    struct.pack_into("<h", data, 0, kind)
    struct.pack_into("<i", data, 58, objects)
    struct.pack_into("<i", data, 62, library)
    return bytes(data)


def library(rng, count):
    """A library file of so many objects, each with some drawing code behind its record."""
    records, index = b"", b""
    index_size = (count + 1) * INDEX_ENTRY.size
    for _ in range(count):
        guid = [rng.getrandbits(32) for _ in range(4)]
        name = f"Object_{rng.randrange(10000)}".encode()
        code = bytes(rng.randrange(100, 2000))
        index += INDEX_ENTRY.pack(index_size + len(records), *guid)
        records += RECORD.pack(*guid, 100, RECORD.size + len(name), len(code), 40, 65536, 0, 2)
        records += name + code
    return header(1, library=128) + index + bytes(INDEX_ENTRY.size) + records


def make_tree(root, folders=20000, files=100000, bgl_files=50000, libraries=5000):
    """Gives the number of objects put into the libraries."""
    rng = random.Random(1)
    paths = [Path(root)]
    children = [0]
    open_folders = [0]
    while len(paths) < folders:
        parent = rng.choice(open_folders)
        if children[parent] == 150:
            open_folders.remove(parent)
            continue
        children[parent] += 1
        path = paths[parent] / f"folder{children[parent]:03d}"
        path.mkdir()
        paths.append(path)
        children.append(0)
        open_folders.append(len(paths) - 1)
    objects = 0
    plain = header(1, objects=128) + bytes(900)
    invalid = header(2) + bytes(900)
    for i in range(files):
        folder = paths[i % folders]
        if i < libraries:
            count = rng.randrange(1, 40)
            objects += count
            (folder / f"lib{i:05d}.bgl").write_bytes(library(rng, count))
        elif i < bgl_files:
            (folder / f"scene{i:05d}.BGL").write_bytes(invalid if i % 50 == 0 else plain)
        else:
            (folder / f"texture{i:05d}.bmp").write_bytes(plain)
    return objects
