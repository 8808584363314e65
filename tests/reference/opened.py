# SPDX-License-Identifier: GPL-3.0-or-later
"""Opening a source set: materials, their blocks, the placement."""

from basic import (PI, RuntimeFailure, field, floor, get_field, hex_value, load, split_fields, trim,
                   val)

NAMES = ["", "FF0000", "00FF00", "FFFF00", "0000FF", "FF00FF", "00FFFF", "FFFFFF"]
WORDS = {"FF0000": "Blue", "00FF00": "Green", "FFFF00": "Cyan", "0000FF": "Red",
         "FF00FF": "Magenta", "00FFFF": "Yellow", "FFFFFF": "White"}


def plain(value):
    return f"{value:.15g}"


def match_highlight(line):
    fields = split_fields(line)
    f8, f9, f10 = (val(field(fields, n)) for n in (8, 9, 10))
    for k in range(1, 8):
        b = k % 2
        g = (k // 2) % 2
        r = (k // 2) // 2
        if (f8, f9, f10) == (r, g, b):
            return k
    return 0


def find_material_list(model):
    table, i = [], 1
    while i < model[0] and trim(model[i]) != "MATERIAL_LIST_BEGIN":
        i += 1
    i += 1
    while i < model[0] and trim(model[i]) != "MATERIAL_LIST_END":
        table.append((trim(model[i]), i))
        i += 1
    return table


def find_vertex_list(model):
    i = 1
    while i < model[0] and trim(model[i]) != "VERTEX_LIST_BEGIN":
        i += 1
    return i + 1


def find_material_block(model, material):
    key, fields, i = f"MATERIAL {material}", [""], 1
    while i < model[0]:
        text = trim(model[i])
        if len(text) > 5:
            fields = split_fields(text)
        if trim(field(fields, 0) + " " + field(fields, 1)) == key:
            break
        i += 1
    selecting = i
    while i < model[0] and trim(model[i])[:9] != "DRAW_TRI ":
        i += 1
    while i < model[0] and trim(model[i])[:12] != "DRAW_TRI_END":
        i += 1
    return selecting, i


def own_color(line):
    fields = split_fields(line)
    return "".join(("00" + f"{floor(val(field(fields, n)) * 255):X}")[-2:] for n in (1, 2, 3))


def further_places(model, material, selecting):
    key = f"MATERIAL {material}"
    return sum(1 for i in range(selecting + 1, model[0])
               if len(trim(model[i])) > 5
               and trim(" ".join((split_fields(trim(model[i])) + [""])[:2])) == key)


def count_triangles(model, selecting):
    i = selecting + 2
    while i <= model[0] and trim(model[i])[:9] == "DRAW_TRI ":
        i += 1
    return i - selecting - 2


def build_translation_list(model, table):
    """Rows of [number, list line, selecting line, block end, highlight, colour, mark]."""
    trans = [None]
    for i, (text, index) in enumerate(table):
        k = match_highlight(text)
        if k:
            selecting, end = find_material_block(model, i)
            trans.append([i, index, selecting, end, NAMES[k], own_color(text), ""])
    if len(trans) > 301:
        raise RuntimeFailure(9)
    return trans


class Placement:
    a = b = degrees = rotation = 0.0
    line = ""

    def read(self, frame, log):
        for i in range(1, frame[0] + 1):
            fields = split_fields(frame[i])
            if fields[0][:9] != "SCALE_AGL":
                continue
            five, seven, eight = (hex_value(field(fields, n)[:-1]) for n in (5, 7, 8))
            self.a = seven + eight / 65536
            self.b = five + eight / 65536
            self.degrees = self.b / 12734620 * 360 / PI
            self.line = frame[i]
            following = frame[i + 1] if i + 1 < len(frame) else ""
            if split_fields(following)[0][:13] == "INSTANCE_CALL":
                self.rotation = hex_value(get_field(following, 4))
                log.append(f"Rotation is {plain(self.rotation * 360 / 65536)} degrees")
            else:
                self.rotation = 0
        return self


class OpenSet:
    def __init__(self, base):
        self.base, self.log, self.boxes = base, [], []
        self.model = load(base + "_0.asm")
        self.frame = load(base + ".asm")
        self.log.append(f"ASM file:{self.model[0]} lines of code")
        self.log.append(f"AZM file:{self.frame[0]} lines of code")
        self.materials = find_material_list(self.model)
        self.log.append(f"Materials found : {len(self.materials)} ")
        self.vertex_list = find_vertex_list(self.model)
        self.trans = build_translation_list(self.model, self.materials)
        self.log.append(f"Materials for translation : {len(self.trans) - 1}")
        first = self.trans[1][2] if len(self.trans) > 1 else 0
        self.usable = trim(self.model[first + 1])[:3] == "DRA"
        if not self.usable:
            self.boxes.append("[critical] This file cannot be used. (Already processed ?)")
            return
        self.log.append("")
        self.log += ["  " + row[5] for row in self.trans[1:]]
        self.log.append("Material colors : ")
        self.placement = Placement().read(self.frame, self.log)
        for row in range(1, len(self.trans)):
            self.note_places(row)
        self.buffer = [0]
        self.records, self.rows = [], []  # records: [insertion line, tag]
        self.dictionary, self.frame_changed = [], False

    def note_places(self, row):
        places = further_places(self.model, self.trans[row][0], self.trans[row][2])
        if places == 1:
            self.log.append(f"Note: material {row} is drawn in 1 more place, which stays as it is.")
        elif places:
            self.log.append(f"Note: material {row} is drawn in {places} more places,"
                            " which stay as they are.")
