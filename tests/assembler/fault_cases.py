# SPDX-License-Identifier: GPL-3.0-or-later
"""Planted faults: the runner must catch each of them."""

import re
from concurrent.futures import ThreadPoolExecutor

from cases import EXAMPLES, Failed, Work, must_assemble, must_not_assemble, require

# (what, in which file, pattern of the first line to change, what the line becomes)
FAULTS = [
    ("a light without its last operand", "m", r"(    BGL_LIGHT .*), [^,]*$", r"\1"),
    ("a light without an intensity", "m", r"(    BGL_LIGHT .*), \d+ ,", r"\1,  ,"),
    ("a light of a type that is not defined", "m", r"LIGHT_TAXI,", "LIGHT_TAXY,"),
    ("a colour without a 0 before it", "m", r"0FF([0-9A-F]{6})h", r"FF\1h"),
    ("a colour without its h", "m", r"0FF([0-9A-F]{6})h", r"0FF\1"),
    ("a colour with two h", "m", r"0FF([0-9A-F]{6})h", r"0FF\1hh"),
    ("a colour with a wrong digit", "m", r"0FF[0-9A-F]([0-9A-F]{5})h", r"0FFX\1h"),
    ("a mask without a 0 before it", "m", r"IFMSK LBL(\d+),beacnt, 02h", r"IFMSK LBL\1,beacnt, CCh"),
    ("a mask that is too wide", "m", r"IFMSK LBL(\d+),beacnt, 02h", r"IFMSK LBL\1,beacnt, 01FFFFh"),
    ("no flash variable", "m", r"IFMSK LBL(\d+),beacnt,", r"IFMSK LBL\1,,"),
    ("a flash variable that is not defined", "m", r",beacnt,", ",beacon,"),
    ("a test of the day without its last operand", "m", r"tod, 1,1", "tod, 1"),
    ("a jump to a label that is nowhere", "m", r"BGL_JUMP_32 LBL(\d+)a", r"BGL_JUMP_32 LBL\1x"),
    ("a jump without a label", "m", r"BGL_JUMP_32 LBL\d+a", "BGL_JUMP_32"),
    ("a label that was removed", "m", r"^LBL\d+a label BGLCODE", ""),
    ("a label twice", "m", r"^(LBL\d+a label BGLCODE)", r"\1\n\1"),
    ("a closing label twice", "m", r"^(SKIP_FX  label BGLCODE)", r"\1\n\1"),
    ("a triangle that still draws", "m", r"^;     DRAW_TRI (.*)", r"    DRAW_TRI \1"),
    ("a block that still begins", "m", r"^;     DRAW_TRI_BEGIN (.*)", r"    DRAW_TRI_BEGIN \1"),
    ("a block that still ends", "m", r"^;     DRAW_TRI_END", "    DRAW_TRI_END"),
    ("a triangle of two corners", "m", r"^    DRAW_TRI +\d+, +\d+,", "    DRAW_TRI 1,"),
    ("a vertex of seven numbers", "m", r"(VERTEX_DEF .*),[^,]*;", r"\1 ;"),
    ("a vertex with a decimal comma", "m", r"VERTEX_DEF (-?\d+)\.(\d+),", r"VERTEX_DEF \1,\2,"),
    ("a texture without its class", "m", r"TEXTURE_DEF TEXTURE_BUILDING, ", "TEXTURE_DEF "),
    ("a windsock without its flag", "m", r"(KZM_WINDSOCK .*h),\d", r"\1"),
    ("an identifier of three words", "m", r"(KZM_LIBRARY_CALL [^,]*,[^,]*,[^,]*),.*", r"\1"),
    ("an identifier without h", "m", r"(KZM_LIBRARY_CALL 0\w+)h,", r"\1,"),
    ("a name with a quote in it", "m", r'KZM_FX1 "fx_smoke_w"', 'KZM_FX1 "fx_"smoke_w"'),
    ("a misspelt macro", "m", r"KZM_LIBRARY_CALL", "KZM_LIBARY_CALL"),
    ("a frame that jumps nowhere", "f", r"SCALE_AGL airport_skip", "SCALE_AGL airport_skp"),
    ("a frame without our macros", "f", r".*MORVANE.INC", ""),
]
FILES = {"m": "airport_0.asm", "f": "airport.asm"}


def plant(text, pattern, becomes):
    changed, count = re.subn(pattern, becomes, text, count=1, flags=re.MULTILINE)
    require(count == 1, f"nothing to change by {pattern}")
    return changed


def check(processed, fault):
    what, file, pattern, becomes = fault
    with Work(processed) as work:
        path = work / FILES[file]
        path.write_text(plant(path.read_text(), pattern, becomes))
        try:
            must_not_assemble(work / "airport.asm", "")
        except Failed as failure:
            raise Failed(f"{what}: {failure}") from None


def run(program):
    with Work(EXAMPLES / "airport") as work, ThreadPoolExecutor(4) as pool:
        program.process(work, "airport", "airport.toml")
        must_assemble(work / "airport.asm")
        return len(list(pool.map(lambda fault: check(work, fault), FAULTS)))
