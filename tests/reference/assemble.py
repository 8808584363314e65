# SPDX-License-Identifier: GPL-3.0-or-later
"""Joining the exports of an aircraft: flexing wings and a cheap shadow."""

import re

from basic import load, save, trim
from process import load_ext_parameters, insert_model_header

COMPLETE, FUSELAGE, HIGH, LOW, SHADOW = range(5)


def collapse(text):
    return re.sub(" +", " ", trim(text))


def find_line(key, store, start=1):
    key = collapse(key).upper()
    for i in range(start, store[0] + 1):
        if collapse(store[i]).upper()[:len(key)] == key:
            return i
    return 0


def append_label_suffix(store, suffix):
    """Renames each label where its first occurrence in a line is a word of its own."""
    names = [trim(line[:line.index("label")]) for line in store[1:] if "label" in line]
    for name in names:
        for i in range(1, store[0] + 1):
            line = store[i]
            at = line.find(name)
            if at < 0:
                continue
            end = at + len(name)
            before = line[at - 1] if at > 0 else " "
            after = line[end] if end < len(line) else " "
            if before in " ,;" and after in " ,;":
                store[i] = line[:end] + suffix + line[end:]
    return len(names)


def convert_calls32(store):
    for i in range(1, store[0] + 1):
        text = trim(store[i])
        if text[:14] == "VINSTANCE_CALL" and text[14:15] == " ":
            store[i] = "    VINSTANCE_CALL32 " + text[14:]
        elif text[:13] == "SHADOW_VICALL" and text[13:14] == " ":
            store[i] = "    SHADOW_VICALL32 " + text[13:]


def saved_and_loaded(store):
    """What a store is once it was written and read: one empty line more."""
    return [store[0] + 1] + store[1:] + [""]


def suffix_file(base, suffix):
    store = load(base + "_0.asm")
    append_label_suffix(store, suffix)
    save(base + "_0.asm", store)


class Frame:
    """What insert_model_header works on."""

    def __init__(self, frame, dictionary):
        self.frame, self.dictionary = frame, dictionary


def add_flexing_wings(frame, bases):
    if find_line("param_extension_dictionary label dword", load(bases[COMPLETE] + ".asm")):
        holder = Frame(frame, load_ext_parameters(bases[COMPLETE]))
        insert_model_header(holder)
        frame = holder.frame
    frame = saved_and_loaded(frame)
    suffix_file(bases[HIGH], "G2")
    suffix_file(bases[LOW], "G3")
    lod = find_line("LOD_0L    label    BGLCODE", frame)
    n = find_line("include", frame, max(lod, 1))
    v = find_line("VINSTANCE_CALL  model_outside,AIRCRAFT_PARAMS.llapbh.pbh", frame)
    joined = frame[1:v + 1] + [
        "    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL",
        "    IFMSK SKIP_GROUND, ground, -1",
        "    VINSTANCE_CALL32 model_wingsl, AIRCRAFT_PARAMS.llapbh.pbh",
        "    BGL_RETURN",
        "SKIP_GROUND label BGLCODE",
        "    VINSTANCE_CALL32 model_wingsh, AIRCRAFT_PARAMS.llapbh.pbh"]
    joined += frame[v + 1:n + 1] + [
        "model_wingsl label BGLCODE", "    include    " + bases[LOW] + "_0.asm",
        "model_wingsh label BGLCODE", "    include    " + bases[HIGH] + "_0.asm",
        "model_shadow label BGLCODE", "    include  " + bases[SHADOW] + "_0.asm"]
    joined += frame[n + 1:frame[0] + 1]
    return [len(joined) + 1] + joined + [""]


def use_shadow_model(frame, bases):
    s = find_line("model_shadow label BGLCODE", frame)
    frame[s] = "; " + frame[s]
    suffix_file(bases[SHADOW], "G4")
    return frame


def add_wing_shadow(frame):
    p = find_line("SHADOW_VPOSITION    AIRCRAFT_PARAMS.llapbh.lla", frame)
    lines = (frame[1:p + 3] + [frame[p], frame[p + 1],
                               "    SHADOW_VICALL32 model_wingsl,AIRCRAFT_PARAMS.llapbh.pbh"]
             + frame[p + 3:frame[0] + 1])
    return [len(lines) + 1] + lines + [""]


def assemble(bases, wings, shadow):
    """Writes the files, as the command does when all is well."""
    frame = load(bases[FUSELAGE if wings else COMPLETE] + ".asm")
    if wings:
        frame = add_flexing_wings(frame, bases)
    frame = use_shadow_model(frame, bases) if shadow else add_wing_shadow(frame)
    frame = saved_and_loaded(frame)
    convert_calls32(frame)
    banner = find_line('db "MakeBGL -', frame)
    frame[1] = ";morvane - \r\ninclude model.inc\r\n" + frame[1]
    if banner:
        frame[banner] = '    db  "MakeBGL - morvane ",0'
    save(bases[COMPLETE] + ".asm", frame)
