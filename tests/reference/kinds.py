# SPDX-License-Identifier: GPL-3.0-or-later
"""The five kinds of object: the code of one material's triangles."""

import math

from basic import (PI, RuntimeFailure, divide, field, floor, formatted, get_field, hex_text, number,
                   split_fields, trim, val)

LIGHT_TYPES = {"LIGHT_NAV": 1, "LIGHT_BEACON": 2, "LIGHT_LANDING": 4, "LIGHT_TAXI": 8,
               "LIGHT_STROBE": 16, "LIGHT_RECOGNITION": 64, "LIGHT_WING": 128, "LIGHT_LOGO": 256,
               "LIGHT_NONE": 0, "*LIGHT_PANEL*": 0}
MASKS = {"six_second_beacon": "0800", "second_flash": "-1", "becon2": "0100", "becon3": "CCCC",
         "becon4": "CCCC", "becon5": "CCCC", "beacnt": "2"}


class Flat(Exception):
    pass


def cart_to_polar(a, b):
    r = math.sqrt(b * b + a * a)
    if b == 0:
        return r, PI / 2 if a >= 0 else 3 * PI / 2
    t = math.atan(a / b)
    if b < 0:
        return r, t + PI
    return r, t if a >= 0 else t + 2 * PI


def put(buffer, index, text):
    while len(buffer) <= index:
        buffer.append("")
    buffer[index] = text


def lights_set_up(buffer, label, p):
    n = buffer[0]
    if p["DayFlag"]:
        put(buffer, n + 1, "    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL")
        put(buffer, n + 2, "    IFIN1 " + label + "b, tod, 1,1")
        put(buffer, n + 3, "    BGL_JUMP_32 " + label + "a")
    elif p["AircraftFlag"]:
        put(buffer, n + 1, ";   No globals needed !!!! ")
        put(buffer, n + 2, "    IFMSK " + label + "a, dict_g_lightStates , "
            + str(LIGHT_TYPES[p["LightType"]]))
        put(buffer, n + 3, ";")
    else:
        put(buffer, n + 2, ";")
        put(buffer, n + 3, ";")
    put(buffer, n + 4, label + "b label BGLCODE")
    put(buffer, n + 5, "    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL")
    mask = "," + p["LightVariable"] + ", 0" + p["FlashMask"] + "h"
    if p["AircraftFlag"]:
        put(buffer, n + 6, "    IFMSK " + label + "a" + mask)
        put(buffer, n + 7, ";")
    else:
        put(buffer, n + 6, "    IFMSK " + label + mask)
        put(buffer, n + 7, "    BGL_JUMP_32 " + label + "a")
    put(buffer, n + 8, label + " label BGLCODE")
    buffer[0] = n + 8


def light(p, color, f):
    return ("    BGL_LIGHT " + p["LightType"] + ", " + f[1] + ", " + f[2] + ", " + f[3] + ", "
            + p["LightInt"] + " ," + p["LightAttnL"] + ", " + p["LightAttS"] + ", " + "0FF" + color
            + "h, " + f[4] + ", " + f[5] + ", " + f[6])


def geographic(f, placement, on_ground, terrain):
    """The six last operands of a placement line."""
    x, y, z = number(f[1]), number(f[2]), number(f[3])
    if placement.rotation != 0:
        r, a = cart_to_polar(x, z)
        a = a + placement.rotation * 2 * PI / 65536
        x, z = r * math.sin(a), r * math.cos(a)
    u = divide(65536, number(get_field(placement.line, 4)))
    c = math.cos(placement.degrees * PI / 180) * 12734620 * PI
    w = placement.a + x * u * divide(2**32, c)
    d = z * 1000 * u
    t = placement.b + d
    g = 0 if on_ground else (val(terrain) - 4) * 0.3048 * 1000
    a = g + y * u
    return ", ".join(["0" + hex_text(placement.b + d / 1000) + "h", fraction(t),
                      "0" + hex_text(w) + "h", fraction(w), str(floor(a / 1000)), fraction(a)])


def fraction(value):
    return str(floor(((value - floor(value / 1000) * 1000) / 1000) * 65536))


def placing(keyword_agl, label, placement, scale, operands):
    return (("    SCALE_AGL   " if keyword_agl else "    SCALE   ") + label + ", "
            + get_field(placement.line, 2) + ", " + get_field(placement.line, 3) + ", " + scale
            + ", " + operands)


def swapped(color):
    return color[-2:] + color[2:4] + color[:2]


def windsock(p, color, points):
    """Gives the code line; points are three (x, y, z)."""
    points = [tuple(number(part) for part in point) for point in points]
    lowest, j = 99999.999, 0
    for i in (1, 2, 3):
        if points[i - 1][1] < lowest:
            lowest, j = points[i - 1][1], i
    if j == 0:
        raise RuntimeFailure(9)
    points[0], points[j - 1] = points[j - 1], points[0]
    h = points[1][1] - points[0][1]
    if val(formatted(h, 1, 6)) < 0.1:  # as it is written, or 0.3 - 0.2 were too low
        raise Flat
    d = math.sqrt((points[1][0] - points[2][0])**2 + (points[1][2] - points[2][2])**2)
    return ("    KZM_WINDSOCK " + "".join(formatted(v, 1, 6) + ", " for v in (*points[0], h, d))
            + "0FF" + swapped(p["ws_mastColor"]) + "h, 0FF" + color + "h,"
            + ("1" if p["ws_lit"] else "0"))


def rewrite(opened, idx, kind, p):
    """Comments the block out, fills the buffer, gives the counter k."""
    model, buffer, placement = opened.model, opened.buffer, opened.placement
    row = opened.trans[idx]
    color, label = row[5], "LBL" + str(idx)
    line = row[2] + 1
    base = val(get_field(model[line], 1)) + opened.vertex_list
    model[line] = "; " + model[line]
    line += 1
    cur, k = trim(model[line]), 0

    def vertex(text):
        at = round(base + val(text))
        if not 1 <= at <= model[0]:
            raise RuntimeFailure(9)
        return (split_fields(trim(model[at])) + [""] * 6)[:7]

    if kind == "Lights" and cur[:9] == "DRAW_TRI ":
        lights_set_up(buffer, label, p)
    m = buffer[0]
    while cur[:9] == "DRAW_TRI ":
        fields = split_fields(model[line])
        f = vertex(field(fields, 1))
        if kind == "Windsock":
            sock = windsock(p, color, [vertex(field(fields, i))[1:4] for i in (1, 2, 3)])
        model[line] = "; " + model[line]
        k, line = k + 1, line + 1
        if kind == "Lights":
            put(buffer, m + k, light(p, color, f))
        elif kind == "Windsock":
            put(buffer, m + k, sock)
        elif kind == "Effects":
            skip = "SKIP_FX" + str(line)
            operands = geographic(f, placement, p["fx_OTG"], p["fx_Terrain_alt"])
            put(buffer, m + k, placing(p["fx_OTG"], skip, placement,
                                       get_field(placement.line, 4), operands))
            put(buffer, m + k + 1, '    KZM_FX1 "' + p["lstEffectType"] + '" , "'
                + p["fx_params"] + '"')
            put(buffer, m + k + 2, skip + "  label BGLCODE")
            k += 2
        elif kind == "Library":
            skip = "SKIP_LIB" + str(line)
            operands = geographic(f, placement, p["lib_OTG"], p["lib_Terrain_alt"])
            w = str(floor(divide(65536, val(p["libScale"]))))
            put(buffer, m + k, placing(p["lib_OTG"], skip, placement, w, operands))
            put(buffer, m + k + 1, "    KZM_LIBRARY_CALL " + p["libGUID"])
            put(buffer, m + k + 2, skip + "  label BGLCODE")
            k += 2
        else:
            s = formatted(val(p["libScale"]), 1, 1)
            put(buffer, m + k, "    BGL_TRANSFORM_MAT " + f[1] + ", " + f[2] + ", " + f[3] + ", "
                + s + ", 0.0, 0.0, " + "0.0, " + s + ", 0.0, " + "0.0, 0.0, " + s)
            put(buffer, m + k + 1, "    KZM_LIBRARY_CALL " + p["libGUID"])
            put(buffer, m + k + 2, "    BGL_TRANSFORM_END")
            k += 2
        cur = trim(model[line])
    model[line] = "; " + model[line]
    if kind == "Lights":
        k += 1
        put(buffer, m + k, label + "a label BGLCODE")
        buffer[0] = m + k
    elif kind in ("Effects", "Library"):
        put(buffer, m + k + 1, ("SKIP_FX" if kind == "Effects" else "SKIP_LIB") + "  label BGLCODE")
        buffer[0] = m + k + 1
    else:
        buffer[0] = m + k
    return k
