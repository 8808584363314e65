# SPDX-License-Identifier: GPL-3.0-or-later
"""large_set.py FOLDER SHAPE: writes the large source set of bench/compare."""

import sys
from pathlib import Path

LINES = 1_000_000
MARKED, PLAIN, TRIANGLES = 300, 40, 100
REWRITTEN = 100
MARKS = ["0.000000,0.000000,1.000000", "0.000000,1.000000,0.000000", "0.000000,1.000000,1.000000",
         "1.000000,0.000000,0.000000", "1.000000,0.000000,1.000000", "1.000000,1.000000,0.000000",
         "1.000000,1.000000,1.000000"]
SHAPES = {"spread": "marked materials drawn all over the file",
          "end": "marked materials drawn at the very end",
          "unmarked": "no material marked",
          "short": "LF ends, no leading blanks, half of the lines empty"}
KINDS = [('kind = "Lights"', 'LightVariable = "beacnt"', "DayFlag = true"), ('kind = "Windsock"',),
         ('kind = "Effects"', 'lstEffectType = "fx_a"'), ('kind = "Library"',),
         ('kind = "Library New"',)]


def material_lines(shape):
    for n in range(MARKED + PLAIN):
        mark = MARKS[n % 7] if n < MARKED and shape != "unmarked" else "0.500000,0.000000,0.000000"
        color = f"0.{n % 10}88235,0.588235,0.588235"
        yield (f"    MATERIAL_DEF {color},1.000000,  {color},  {mark},"
               f"  0.000000,0.000000,0.000000,  0.000000 ; {n}")


def vertex_lines(count):
    for n in range(count):
        height = 6.5 if n % 3 == 1 else 0.25
        yield (f"    VERTEX_DEF {n % 977 - 488}.{n % 1000000:06d},{height:.6f},{n % 1013}.250000,"
               f" 0.000000,1.000000,0.000000, 0.000000,1.000000 ; {n}")


def block_lines(material, first, triangles):
    texture = f" ; <255,255,255,255> POLY_{material:02d}.BMP;POLY_{material:02d}_LM.BMP;;"
    yield f"    MATERIAL {material},0{texture if material % 2 else ''}"
    yield f"    DRAW_TRI_BEGIN {first}, {3 * triangles}"
    for n in range(triangles):
        yield f"    DRAW_TRI {3 * n:4d},{3 * n + 1:4d},{3 * n + 2:4d} ; poly={n} part={material}"
    yield "    DRAW_TRI_END"


def draw_lines(shape, lines):
    """Blocks of all marked materials, filled up with plain ones to that many lines."""
    marked = [list(block_lines(n, 3 * TRIANGLES * n, TRIANGLES)) for n in range(MARKED)]
    free = lines - sum(len(block) for block in marked)
    plain = [list(block_lines(MARKED + n % PLAIN, 0, TRIANGLES)) for n in range(free // 103)]
    filling = ["    BGL_RETURN"] * (free % 103)
    if shape == "end":
        blocks = plain + marked
    else:
        step = max(len(plain) // MARKED, 1)
        blocks = []
        for n, block in enumerate(marked):
            blocks += plain[n * step:(n + 1) * step] + [block]
        blocks += plain[MARKED * step:]
    return [line for block in blocks for line in block] + filling


def model_lines(shape):
    head = ["BGL_BEGIN 0800h ; version = 8.00", "large_MASTER label BGLCODE",
            "    MATERIAL_LIST_BEGIN", *material_lines(shape), "    MATERIAL_LIST_END",
            "    TEXTURE_LIST_BEGIN", "    TEXTURE_LIST_END", "    VERTEX_LIST_BEGIN"]
    tail = ["large_END label BGLCODE", "BGL_END"]
    total = LINES if shape != "short" else LINES // 2
    vertices = list(vertex_lines(total // 2))
    rest = total - len(head) - len(vertices) - 1 - len(tail)
    lines = head + vertices + ["    VERTEX_LIST_END"] + draw_lines(shape, rest) + tail
    if shape == "short":
        empty = lines.index("    VERTEX_LIST_END") + 1
        lines[empty:empty] = [""] * (LINES - len(lines))
        lines = [line.strip(" ") for line in lines]
    return lines


def recipe_text():
    parts = []
    for n in range(REWRITTEN):
        parts += ["[[assign]]", f"material = {3 * n + 1}", *KINDS[n % len(KINDS)], ""]
    return "\n".join(parts)


def write(folder, shape):
    end = "\n" if shape == "short" else "\r\n"
    lines = model_lines(shape)
    assert len(lines) == LINES
    (folder / "large_0.asm").write_bytes((end.join(lines) + end).encode("ascii"))
    frame = ["    SCALE_AGL a,0,0A0h,65536,051EDB8h,0CAAAh,0FCD9FF8Bh,07DD6h,0,0",
             "    INSTANCE_CALL b,0,0,02000h", "    END"]
    (folder / "large.asm").write_bytes((end.join(frame) + end).encode("ascii"))
    (folder / "large.toml").write_text(recipe_text())


if __name__ == "__main__":
    write(Path(sys.argv[1]), sys.argv[2])
