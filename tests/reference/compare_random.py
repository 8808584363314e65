#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""compare_random.py PROGRAM [COUNT]: random sets and recipes through both, the program's files and
log against the reference's. Exit status 1 with the first that differs, whose folder is kept.

Half of the sets are as exporters write them. The others have blocks that hold more than triangles,
their BGL_END inside a block, or no frame file; these are processed with --force, after it was seen
that they are refused without. What was saved is processed once more, as a set that was rewritten.
"""

import random
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

import scenes
from kinds import LIGHT_TYPES, MASKS

REFERENCE = Path(__file__).parent / "process.py"
KINDS = ["Lights", "Effects", "Windsock", "Library", "Library New"]
BODY = ["    dict_0_a equ 8", "    dd 2,8,16, 01h, 02h, 03h, 04h"]


def number(rng):
    return f"{rng.uniform(-3000, 3000):.{rng.randint(1, 6)}f}"


def block(rng, n):
    color = ",".join(f"{rng.random():.6f}" for _ in range(3))
    corners = [scenes.vertex(number(rng), number(rng), number(rng)) for _ in range(rng.randint(3, 9))]
    triangles = [tuple(rng.sample(range(len(corners)), 3)) for _ in range(rng.randint(1, 5))]
    return scenes.material(color, rng.choice(list(scenes.HIGHLIGHTS))), corners, triangles


def frame(rng):
    word = lambda: f"0{rng.getrandbits(rng.choice([8, 16, 23])):X}h"  # noqa: E731
    lines = scenes.frame(f"{rng.randint(0, 9)},100,{rng.choice([65536, 131072, 0.5, 32768.25])},"
                         f"{word()},{word()},0{rng.getrandbits(32):X}h,{word()},0,0",
                         f"0,0,{rng.choice(['0', '04000h', '0C123h', '01h'])}")
    return lines + rng.choice([["dd  0"], scenes.dictionary_frame(BODY, 24)])


def assignment(rng, row):
    kind = rng.choice(KINDS)
    keys = {"material": row, "kind": kind}
    if kind == "Lights":
        keys |= {"LightType": rng.choice(list(LIGHT_TYPES)), "LightInt": number(rng),
                 "DayFlag": rng.random() < 0.4, "AircraftFlag": rng.random() < 0.4}
        keys |= {"LightVariable": rng.choice(list(MASKS))} if rng.random() < 0.8 else {}
    elif kind == "Effects":
        keys |= {"lstEffectType": "fx_x", "fx_OTG": rng.random() < 0.5,
                 "fx_Terrain_alt": number(rng)}
    elif kind == "Windsock":
        keys |= {"ws_mastColor": f"{rng.getrandbits(24):06X}", "ws_lit": rng.random() < 0.5}
    else:
        keys |= {"libScale": rng.choice(["0.5", "1", "3", "0.07", "12.25", number(rng)]),
                 "lib_OTG": rng.random() < 0.5, "lib_Terrain_alt": number(rng)}
    return keys


def toml(value):
    return {True: "true", False: "false"}[value] if isinstance(value, bool) else (
        str(value) if isinstance(value, int) else f'"{value}"')


def find_blocks(model):
    """Index of the opening line and of the end of each block."""
    starts = [i for i, line in enumerate(model) if line.startswith("DRAW_TRI_BEGIN")]
    return [(i, model.index("DRAW_TRI_END", i)) for i in starts]


def add_odd_lines(rng, model):
    """What no exporter writes, but authors and other tools do."""
    for start, end in reversed(find_blocks(model)):
        opening = model[start]
        what = rng.choice(["", "inside", "before", "spare", "spare inside", "end", "no end"])
        if what == "inside":
            model.insert(rng.randint(start + 1, end), rng.choice(["; by hand", "", opening]))
        elif what == "before":
            model.insert(start, rng.choice(["; by hand", ""]))
        elif what == "spare":  # a second block under the same MATERIAL line
            model[end + 1:end + 1] = [opening, model[start + 1], "DRAW_TRI_END"]
        elif what == "spare inside":
            model[end:end] = [opening, model[start + 1]]
        elif what == "end":
            model.insert(end, "BGL_END")
        elif what == "no end":
            model[end] = "BGL_END"
    if rng.random() < 0.3:
        del model[max(i for i, line in enumerate(model) if line == "BGL_END")]


def is_fit(model, n):
    """Whether material n has a block of triangles alone, right after its MATERIAL line."""
    block = model[model.index(f"MATERIAL {n},0") + 1:]
    triangles = 0
    while block[1 + triangles].startswith("DRAW_TRI "):
        triangles += 1
    return (block[0].startswith("DRAW_TRI_BEGIN") and triangles > 0
            and block[1 + triangles] == "DRAW_TRI_END")


def write_set(rng, folder, odd):
    """Whether process takes the set without --force."""
    count = rng.randint(1, 8)
    model = scenes.model([block(rng, n) for n in range(count)])
    if odd:
        add_odd_lines(rng, model)
    rows = rng.sample(range(1, count + 1), rng.randint(1, count))
    recipe = ["[[assign]]\n" + "".join(f"{key} = {toml(value)}\n" for key, value in keys.items())
              for keys in (assignment(rng, row) for row in rows)]
    for name, text in [("set_0.asm", "\n".join(model)), ("set.asm", "\n".join(frame(rng)).replace("BASE", "set")),
                       ("recipe.toml", "\n".join(recipe))]:
        (folder / name).write_text(text + "\n")
    frame_is_there = not odd or rng.random() < 0.95
    if not frame_is_there:
        (folder / "set.asm").unlink()
    return frame_is_there and all(is_fit(model, row - 1) for row in rows)


def run(command, base, folder, options):
    done = subprocess.run([*command, base, "recipe.toml", *options], cwd=folder,
                          capture_output=True, check=False)
    lines = [line for line in done.stdout.splitlines() if not line.startswith(b"Note: ")]
    return done.returncode == 0, lines, done.stderr


def saved_files(folder, base):
    names = [folder / f"{base}{end}" for end in ("_0.asm", ".asm")]
    return [name.read_bytes() if name.exists() else None for name in names]


def compare(program, folder, base, output):
    """Both process a set and save it under another base; whether they did, or None."""
    ours = run([program, "process", "--force"], base, folder, ["--output", "ours" + output])
    theirs = run([sys.executable, "-B", REFERENCE], base, folder, ["theirs" + output])
    if (ours[0] != theirs[0] or (ours[0] and ours[1] != theirs[1])
            or saved_files(folder, "ours" + output) != saved_files(folder, "theirs" + output)):
        return None
    return ours[0]


def is_refused(program, folder):
    """Without --force, and nothing is written."""
    names = sorted(folder.iterdir())
    done = run([program, "process"], "set", folder, ["--output", "refused"])
    return not done[0] and sorted(folder.iterdir()) == names


def compare_set(program, seed, folder):
    """How many times something was saved; None when the two differ."""
    is_whole = write_set(random.Random(seed), folder, odd=seed % 2 == 1)
    if not is_whole and not is_refused(program, folder):
        return None
    first = compare(program, folder, "set", "")
    if not first:
        return None if first is None else 0
    if not (folder / "ours.asm").exists():  # the frame stays when its dictionary does
        shutil.copy(folder / "set.asm", folder / "ours.asm")
    again = compare(program, folder, "ours", "_again")
    return None if again is None else 1 + again


def main(program, count="500"):
    program = str(Path(program).resolve())
    saved = 0
    for seed in range(int(count)):
        folder = Path(tempfile.mkdtemp())
        times = compare_set(program, seed, folder)
        if times is None:
            sys.exit(f"seed {seed} differs: {folder}")
        saved += times
        shutil.rmtree(folder)
    print(f"{count} sets alike, saved {saved} times")


if __name__ == "__main__":
    main(*sys.argv[1:])
