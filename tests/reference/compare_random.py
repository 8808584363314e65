#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""compare_random.py PROGRAM [COUNT]: random sets and recipes through both, the program's files and
log against the reference's. Exit status 1 with the first that differs, whose folder is kept."""

import random
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


def write_set(rng, folder):
    count = rng.randint(1, 8)
    model = scenes.model([block(rng, n) for n in range(count)])
    rows = rng.sample(range(1, count + 1), rng.randint(1, count))
    recipe = ["[[assign]]\n" + "".join(f"{key} = {toml(value)}\n" for key, value in keys.items())
              for keys in (assignment(rng, row) for row in rows)]
    for name, text in [("set_0.asm", "\n".join(model)), ("set.asm", "\n".join(frame(rng)).replace("BASE", "set")),
                       ("recipe.toml", "\n".join(recipe))]:
        (folder / name).write_text(text + "\n")


def run(command, folder, output):
    done = subprocess.run([*command, "set", "recipe.toml", *output], cwd=folder,
                          capture_output=True, check=False)
    lines = [line for line in done.stdout.splitlines() if not line.startswith(b"Note: ")]
    return done.returncode == 0, lines


def main(program, count="500"):
    program = str(Path(program).resolve())
    saved = 0
    for seed in range(int(count)):
        folder = Path(tempfile.mkdtemp())
        write_set(random.Random(seed), folder)
        ours = run([program, "process"], folder, ["--output", "ours"])
        theirs = run([sys.executable, REFERENCE], folder, ["theirs"])
        files = [[(folder / f"{name}{end}").read_bytes() if (folder / f"{name}{end}").exists()
                  else None for end in ("_0.asm", ".asm")] for name in ("ours", "theirs")]
        if ours[0] != theirs[0] or (ours[0] and ours[1] != theirs[1]) or files[0] != files[1]:
            sys.exit(f"seed {seed} differs: {folder}")
        saved += ours[0]
        for path in folder.iterdir():
            path.unlink()
        folder.rmdir()
    print(f"{count} sets alike, {saved} of them saved")


if __name__ == "__main__":
    main(*sys.argv[1:])
