#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes the source sets of the examples: two airports, two aircraft, and three library designs.

The sets have the shapes of real exports. Run it in this folder after a change of the scenes; the
files that it writes are committed, so nobody needs it to build or to use the program.
"""

import math
from pathlib import Path

from export_shapes import (BLUE, CYAN, GREEN, MAGENTA, RED, WHITE, YELLOW, Model, hex_word, spread,
                           write)
from regional_airport import regional, regional_frame

HERE = Path(__file__).parent


def airport():
    """A runway of 600 m along z with its lights, an apron, a terminal and a tower."""
    model = Model("airport")
    concrete = model.material((150, 150, 150))
    asphalt = model.material((72, 72, 76))
    edge = model.material((255, 255, 224), WHITE)
    end_red = model.material((255, 0, 0), RED)
    threshold = model.material((0, 255, 64), GREEN)
    taxi_blue = model.material((32, 64, 255), BLUE)
    wall = model.material((210, 200, 180))
    strobe = model.material((240, 240, 255), WHITE)
    obstruction = model.material((255, 48, 32), RED)
    sock_north = model.material((255, 128, 0), CYAN)
    sock_south = model.material((255, 255, 255), CYAN)
    hangars = model.material((96, 96, 112), MAGENTA)
    vehicles = model.material((230, 200, 0), MAGENTA)
    chimney = model.material((64, 64, 64), YELLOW)
    statues = model.material((180, 160, 120), MAGENTA)
    guard = model.material((255, 191, 0), GREEN)
    glass = model.material((40, 60, 70))

    pavement = model.texture(["PAVE_01.BMP", "PAVE_01_LM.BMP"])
    runway = model.texture(["RWY_18.BMP"])
    terminal = model.texture(["TERM_01.BMP", "TERM_01_LM.BMP"])
    gate = model.texture(["GATE_01.BMP"])
    marks = model.texture(["MARKS.BMP", "MARKS_LM.BMP"])

    model.quad(asphalt, (-15, -300), (15, 300), 0.05, runway)
    model.quad(concrete, (40, -80), (140, 60), 0.05, pavement)
    model.quad(asphalt, (15, -10), (40, 10), 0.05, pavement)
    model.markers(edge, spread(-300, 300, 11, -16) + spread(-300, 300, 11, 16))
    model.markers(end_red, [(x, 0.3, z) for z in (-302, 302) for x in (-12, -4, 4, 12)])
    model.markers(threshold, [(x, 0.3, -304) for x in (-12.5, -7.5, -2.5, 2.5, 7.5, 12.5)],
                  (0.0, 0.0, -1.0))
    model.markers(taxi_blue, spread(-12, 12, 3, 20.25) + spread(-12, 12, 3, 38.75))
    model.wall(wall, (100, 60), (60, 60), 9.0, terminal)
    model.wall(wall, (60, 60), (60, 78), 9.0, gate)
    model.markers(strobe, [(0.0, 1.5, -330.0 - 30 * n) for n in range(5)],
                  (0.0, 0.087156, -0.996195))
    model.markers(obstruction, [(120.0, 24.6, 70.0), (123.5, 24.6, 70.0), (121.75, 31.2, 71.5)])
    model.block(sock_north, [((-40.0, 0.0, 250.0), (1.0, 0.0, 0.0), (0.0, 0.0)),
                             ((-40.0, 6.5, 250.0), (1.0, 0.0, 0.0), (0.0, 1.0)),
                             ((-40.0, 6.5, 252.4), (1.0, 0.0, 0.0), (1.0, 1.0))], [(2, 0, 1)], marks)
    model.block(sock_south, [((-40.0, 5.25, -250.0), (1.0, 0.0, 0.0), (0.0, 1.0)),
                             ((-38.5, 5.25, -250.0), (1.0, 0.0, 0.0), (1.0, 1.0)),
                             ((-40.0, 0.25, -250.0), (1.0, 0.0, 0.0), (0.0, 0.0))], [(0, 1, 2)])
    model.markers(hangars, [(70.0, 0.0, -70.0), (110.0, 0.0, -70.0)])
    model.markers(vehicles, [(62.5, 0.05, 40.0), (66.25, 0.05, 41.5), (71.0, 0.05, 38.75)],
                  texture=marks)
    # Drawn a second time below, with a texture: only the first place is rewritten.
    model.markers(guard, [(17.5, 0.6, -11.5), (17.5, 0.6, 11.5)], (-1.0, 0.0, 0.0))
    model.markers(chimney, [(95.0, 14.0, 75.0)])
    model.markers(statues, [(85.0, 0.1, 50.0), (88.0, 0.1, 50.0)])
    model.quad(guard, (16.5, -11), (17.0, 11), 0.06, pavement)
    model.wall(glass, (124, 68), (118, 68), 24.0, gate)
    return model


def aircraft(name):
    """A wing with its lamps and a beacon on the fin; metres, z forward."""
    model = Model(name, "TEXTURE_AIRCRAFT")
    paint = model.material((235, 235, 240))
    left = model.material((255, 0, 0), RED)
    right = model.material((0, 255, 0), GREEN)
    beacon = model.material((255, 32, 16), YELLOW)
    strobe = model.material((255, 255, 255), WHITE)
    skin = model.texture(["SKIN_01.BMP", "SKIN_01_L.BMP"])
    model.quad(paint, (-5.5, -0.7), (5.5, 0.9), 0.8, skin)
    model.markers(left, [(-5.55, 0.82, 0.6)], (-0.866025, 0.0, 0.5), 0.04)
    model.markers(right, [(5.55, 0.82, 0.6)], (0.866025, 0.0, 0.5), 0.04)
    model.markers(beacon, [(0.0, 2.31, -4.2)], (0.0, 1.0, 0.0), 0.05)
    model.markers(strobe, [(-5.58, 0.82, 0.2), (5.58, 0.82, 0.2)], (0.0, 0.0, 1.0), 0.04)
    return model


def airport_frame():
    latitude = 48.315 / 360 * 40007000
    longitude = (360 - 4.4275) / 360 * 2**32
    yield "; airport.asm: object frame"
    yield ""
    yield "    include C:\\GMAX\\GAMEPACKS\\FS2002\\INCLUDE\\BGL.INC"
    yield "    include C:\\GMAX\\GAMEPACKS\\FS2002\\INCLUDE\\MORVANE.INC"
    yield ""
    yield "object_0 label BGLCODE"
    yield (f"    SCALE_AGL airport_skip,0,0A0h,65536,{hex_word(int(latitude))},"
           f"{hex_word(int(latitude % 1 * 65536))},{hex_word(int(longitude))},"
           f"{hex_word(int(longitude % 1 * 65536))},0,0")
    yield "    INSTANCE_CALL airport_MASTER,0,0,02000h"
    yield "airport_skip label BGLCODE"
    yield "    BGL_RETURN"
    yield ""
    yield "    include C:\\GMAX\\EXPORT\\airport_0.asm"
    yield ""
    yield "    END"


def aircraft_frame(name, dictionary):
    yield f"; {name}.asm: model frame"
    yield ""
    yield "    include C:\\GMAX\\GAMEPACKS\\FS2002\\INCLUDE\\MDL.INC"
    yield ""
    yield "model_header label dword"
    yield "    db  'M','D','L','8'"
    yield "    dd  (model_end) - (model_header)"
    yield "visual_model_header label dword"
    yield from dictionary
    yield ""
    yield "model_outside label BGLCODE"
    yield f"    include C:\\GMAX\\EXPORT\\{name}_0.asm"
    yield ""
    yield "model_end label dword"
    yield "    END"


OPEN_HEADER = ["    dd  0"]
FULL_HEADER = [
    "    dd  param_extension_dictionary - visual_model_header",
    "    dd   160",
    "    db  'F','S','8','0'",
    "    dd  2048",
    "visual_model_header_end  label dword",
    "",
    "    db  'D','I','C','T'",
    "param_extension_dictionary     label dword",
    "    dd (param_extension_dictionary_end) - (param_extension_dictionary) - 4",
    "    dict_0_gearPosition equ 136",
    "    dd 2,136,8, 01C6B2F40h, 04A7D91E3h, 0B2C80D5Fh, 0E19A3476h",
    "    dict_0_flapsAngle equ 144",
    "    dd 2,144,8, 07D30E5A9h, 04B51C8F2h, 09E06A37Dh, 05F84B21Ch",
    "    dict_g_propSpeed equ 152",
    "    dd 2,152,8, 0A84F16D7h, 04F93BE05h, 0A6D1792Ch, 03C58E0F4h",
    "param_extension_dictionary_end     label dword",
]


def hangar():
    model = Model("hangar")
    steel = model.material((196, 200, 204))
    sheet = model.texture(["HANGAR_1.BMP", "HANGAR_1_L.BMP"])
    for start, end in [((-16, -12), (16, -12)), ((16, -12), (16, 12)), ((16, 12), (-16, 12)),
                       ((-16, 12), (-16, -12))]:
        model.wall(steel, start, end, 8.5, sheet)
    model.quad(steel, (-16, -12), (16, 12), 8.5, sheet)
    return model


def fuel_tank():
    """A tank of twelve sides, designed at half size."""
    model = Model("fuel_tank")
    white = model.material((240, 240, 236))
    ring = [(2.5 * math.cos(n * math.pi / 6), 2.5 * math.sin(n * math.pi / 6)) for n in range(12)]
    for n in range(12):
        model.wall(white, ring[n], ring[n - 1], 3.2, None)
    top = [((x, 3.2, z), (0.0, 1.0, 0.0), (0.0, 0.0)) for x, z in ring]
    model.block(white, top, [(0, n + 1, n) for n in range(1, 11)])
    return model


def light_mast():
    model = Model("light_mast")
    grey = model.material((120, 124, 128))
    lamp = model.texture(["MASTLAMP.BMP"])
    for start, end in [((-0.2, 0), (0.2, 0)), ((0, -0.2), (0, 0.2))]:
        model.wall(grey, start, end, 24.0, None)
    model.quad(grey, (-1.5, -1.5), (1.5, 1.5), 24.1, lamp)
    return model


def chimney():
    """A chimney of 15 m with a lamp and smoke, and a windsock beside it: the example of the guide."""
    model = Model("chimney")
    brick = model.material((150, 80, 64))
    lamp = model.material((255, 48, 32), RED)
    smoke = model.material((64, 64, 64), YELLOW)
    sock = model.material((255, 128, 0), CYAN)
    for start, end in [((-1, -1), (1, -1)), ((1, -1), (1, 1)), ((1, 1), (-1, 1)), ((-1, 1), (-1, -1))]:
        model.wall(brick, start, end, 15.0, None)
    model.markers(lamp, [(1.0, 15.0, -1.0)], (0.0, 0.0, -1.0))
    model.markers(smoke, [(0.0, 15.0, 0.0)])
    # Both upper corners are equally high, so that it does not matter in which order they come.
    model.block(sock, [((12.0, 0.0, 0.0), (0.0, 0.0, -1.0), (0.0, 0.0)),
                       ((12.0, 6.0, 0.0), (0.0, 0.0, -1.0), (0.0, 1.0)),
                       ((14.5, 6.0, 0.0), (0.0, 0.0, -1.0), (1.0, 1.0))], [(0, 1, 2)])
    return model


def design_frame(name, size, scale):
    """The frame of a design that goes into a library: `size` is its diameter in scale units."""
    yield f"; {name}.asm: object frame"
    yield ""
    yield "    include C:\\GMAX\\GAMEPACKS\\FS2002\\INCLUDE\\BGL.INC"
    yield ""
    yield "object_0 label BGLCODE"
    yield f"    SCALE_AGL {name}_skip,0,{size},{scale},051EDB8h,0,0FCD9FF8Bh,0,0,0"
    yield f"    INSTANCE_CALL {name}_MASTER,0,0,0"
    yield f"{name}_skip label BGLCODE"
    yield "    BGL_RETURN"
    yield ""
    yield f"    include C:\\GMAX\\EXPORT\\{name}_0.asm"
    yield ""
    yield "    END"


def main():
    folder = HERE / "airport"
    write(folder / "airport_0.asm", airport().lines())
    write(folder / "airport.asm", airport_frame())
    write(HERE / "regional" / "regional_0.asm", regional().lines())
    write(HERE / "regional" / "regional.asm", regional_frame())
    for name, header in [("aircraft-lights", OPEN_HEADER), ("aircraft-dictionary", FULL_HEADER)]:
        stem = name.replace("-", "_")
        write(HERE / name / f"{stem}_0.asm", aircraft(stem).lines())
        write(HERE / name / f"{stem}.asm", aircraft_frame(stem, header))
    write(HERE / "chimney" / "chimney_0.asm", chimney().lines())
    write(HERE / "chimney" / "chimney.asm", design_frame("chimney", "40", 65536))
    for model, size, scale in [(hangar(), "41", 65536), (fuel_tank(), "7", 32768),
                               (light_mast(), "030h", 65536)]:
        write(HERE / "library" / f"{model.name}_0.asm", model.lines())
        write(HERE / "library" / f"{model.name}.asm", design_frame(model.name, size, scale))


if __name__ == "__main__":
    main()
