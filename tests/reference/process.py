#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""process.py BASE RECIPE [OUTPUT]: a whole recipe applied to a source set and saved.

Prints the log; message boxes go to standard error. Exit status 1 when a box refused the work. What
is not about the rewrite itself (errors in recipes, options) is left to the program.
"""

import os
import sys
import tomllib

from basic import RuntimeFailure, field, load, save, split_fields, trim, val
from kinds import MASKS, Flat, rewrite
from opened import WORDS, OpenSet

LIGHT_STATES = ("    dict_g_lightStates equ ", "057F0E99Dh, 04E9C0523h, 0BB12B6BCh, 0063FE72Fh")
DEFAULTS = {
    "Lights": {"LightType": "LIGHT_STROBE", "LightInt": "100", "LightAttnL": "0.4",
               "LightAttS": "0.04", "FlashMask": "CCCC", "LightVariable": "", "DayFlag": False,
               "AircraftFlag": False},
    "Effects": {"lstEffectType": "", "fx_params": "MOY=01,12;DOM=01,31;HOD=00,23;MOH=00,59;",
                "fx_OTG": False, "fx_Terrain_alt": "0"},
    "Windsock": {"ws_mastColor": "10F0F0", "ws_lit": False},
    "Library": {"libGUID": "05ADE0809h,042E14DCFh,073AEB9A1h,089EC6060h", "libScale": "0.5",
                "lib_OTG": False, "lib_Terrain_alt": "0"},
}
DEFAULTS["Library New"] = DEFAULTS["Library"]


def load_ext_parameters(base):
    lines, kept = load(base + ".asm")[1:-1], []
    i = 0
    while i < len(lines) and split_fields(lines[i])[0] != "param_extension_dictionary":
        i += 1
    i += 2  # the label line itself and the size line
    while i < len(lines) and trim(lines[i])[:30] != "param_extension_dictionary_end":
        if trim(lines[i])[:1] not in ("", ";") and len(kept) < 300:
            kept.append(lines[i])
        i += 1
    return [kept[j:j + 2] for j in range(0, len(kept) - 1, 2)]


def dictionary_end(rows):
    fields = split_fields(trim(rows[-1][1]))
    return int(val(field(fields, 2)) + val(field(fields, 3)))


def light_states_row(offset):
    return [LIGHT_STATES[0] + str(offset), f"    dd 2,{offset},4, " + LIGHT_STATES[1]]


def insert_model_header(opened):
    block = ["dd  param_extension_dictionary - visual_model_header",
             "    dd   " + str(dictionary_end(opened.dictionary)),
             "    db  'F','S','8','0'", "    dd  2048", "visual_model_header_end  label dword", "  ",
             "    db  'D','I','C','T'", "param_extension_dictionary     label dword",
             "    dd (param_extension_dictionary_end) - (param_extension_dictionary) - 4"]
    block += [line for row in opened.dictionary for line in row]
    block.append("param_extension_dictionary_end     label dword")
    lines = opened.frame[1:]
    for i, line in enumerate(lines):
        if trim(line)[:5] == "dd  0":
            lines[i:i + 1] = block
            break
    opened.frame = [len(lines)] + lines


def update_model_header(opened):
    lines = opened.frame[1:]
    for i, line in enumerate(lines):
        if trim(line)[:19] == "db  'F','S','8','0'":
            lines[i - 1] = "    dd   " + str(dictionary_end(opened.dictionary))
            break
    begin = next(i for i, line in enumerate(lines)
                 if trim(line)[:26] == "param_extension_dictionary")
    end = next(i for i, line in enumerate(lines)
               if trim(line)[:30] == "param_extension_dictionary_end")
    body = ["    dd (param_extension_dictionary_end) - (param_extension_dictionary) - 4"]
    body += [line for row in opened.dictionary for line in row]
    lines[begin + 1:end] = body
    opened.frame = [len(lines)] + lines


def keep_light_states(opened):
    if not opened.dictionary:
        opened.dictionary = load_ext_parameters(opened.base)
    opened.frame_changed = True
    if opened.dictionary:
        if not any(trim(row[0])[:18] == "dict_g_lightStates" for row in opened.dictionary):
            opened.dictionary.append(light_states_row(dictionary_end(opened.dictionary)))
            update_model_header(opened)
    else:
        opened.dictionary = [light_states_row(152)]
        insert_model_header(opened)


def find_bgl_end(model):
    for i in range(1, model[0] + 1):
        if trim(model[i])[:7] == "BGL_END":
            return i
    return 0


def file_record(opened, insertion, old_base):
    tag = len(opened.records) + 1
    lines = (opened.buffer + [""] * opened.buffer[0])[old_base + 1:opened.buffer[0] + 1]
    opened.rows += [(tag, line) for line in lines]
    if len(opened.rows) > 50000 or tag > 100:
        raise RuntimeFailure(9)
    place = len(opened.records)
    while place > 0 and opened.records[place - 1][0] > insertion:
        place -= 1
    opened.records.insert(place, (insertion, tag))


def process(opened, idx, kind, parameters):
    old_base = opened.buffer[0]
    lines = rewrite(opened, idx, kind, parameters)
    # Looked for after the rewrite, which comments one out that follows the last triangle.
    if kind in ("Library", "Effects") and find_bgl_end(opened.model) == 0:
        raise SystemExit("[critical] Cannot find proper BGL END code. File cannot be processed.")
    if kind in ("Library", "Effects"):
        file_record(opened, find_bgl_end(opened.model) + 1, old_base)
    else:
        file_record(opened, opened.trans[idx][2] + 1, old_base)
        if kind == "Lights" and parameters["AircraftFlag"]:
            keep_light_states(opened)
    opened.log.append(f"Lines of new code : {lines}")
    opened.trans[idx][6] = kind


def merged(opened):
    out, prev = [], 1
    for insertion, tag in opened.records:
        out += opened.model[prev:insertion]
        code = [line for row_tag, line in opened.rows if row_tag == tag]
        if not code:
            raise RuntimeFailure(9)
        out += code
        prev = insertion
    return out + opened.model[prev:opened.model[0] + 1]


def matching(opened, assign):
    for idx in range(1, len(opened.trans)):
        row = opened.trans[idx]
        if (row[6] == "" and assign.get("material", idx) == idx
                and assign.get("color", row[5]).upper() == row[5]
                and assign.get("highlight", WORDS[row[4]]) == WORDS[row[4]]):
            yield idx


def parameters_of(assign):
    given = {key: value for key, value in assign.items()
             if key not in ("highlight", "color", "material", "kind")}
    if given.get("LightVariable") and "FlashMask" not in given:
        given["FlashMask"] = MASKS[given["LightVariable"]]
    return DEFAULTS[assign["kind"]] | given


def apply(opened, recipe):
    """Gives the processed rows as (row, kind, lines)."""
    done = []
    for assign in recipe["assign"]:
        for idx in list(matching(opened, assign)):
            process(opened, idx, assign["kind"], parameters_of(assign))
            done.append((idx, assign["kind"], int(opened.log[-1].split(": ")[1])))
    left = sum(1 for row in opened.trans[1:] if row[6] == "")
    opened.log.append(f"Materials left as they are : {left}")
    return done


def main(base, recipe_path, output=None):
    opened = OpenSet(base)
    if not opened.usable:
        raise SystemExit(opened.boxes[0])
    with open(recipe_path, "rb") as file:
        recipe = tomllib.load(file)
    output = output or base
    try:
        apply(opened, recipe)
        save(output + "_0.asm", [0] + merged(opened))
        if opened.frame_changed:
            save(output + ".asm", opened.frame)
    except Flat:
        raise SystemExit("[exclamation] The triangle used has zero height. It cannot be used for"
                         " Windsock object.") from None
    except RuntimeFailure as failure:
        raise SystemExit(f"[message] {failure}") from None
    print("\n".join(opened.log + ["Done. "]))
    print(f"[information] Finished. Use 'bglc /bgl {os.path.basename(output)}.asm' to compile.",
          file=sys.stderr)


if __name__ == "__main__":
    main(*sys.argv[1:])
