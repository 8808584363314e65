# SPDX-License-Identifier: GPL-3.0-or-later
"""A regional airport of a few thousand triangles: runway, taxiway, apron, terminal, tower, hangars
and trees, with its lights, windsock, vehicles and smoke still to be made from markers."""

import math
import random

from export_shapes import BLUE, CYAN, GREEN, MAGENTA, RED, WHITE, YELLOW, Model, hex_word, spread

UP = (0.0, 1.0, 0.0)


def box(model, material, low, high, height, texture, base=0.0):
    """Four walls and a roof over the ground from `low` to `high` (x, z)."""
    (x0, z0), (x1, z1) = low, high
    for start, end in [((x0, z0), (x1, z0)), ((x1, z0), (x1, z1)), ((x1, z1), (x0, z1)),
                       ((x0, z1), (x0, z0))]:
        panels(model, material, start, end, base, height, 1, texture)
    model.quad(material, low, high, base + height, texture)


def panels(model, material, start, end, base, height, count, texture):
    """A wall of `count` panels side by side."""
    (x0, z0), (x1, z1) = start, end
    length = math.hypot(x1 - x0, z1 - z0)
    normal = ((z1 - z0) / length, 0.0, (x0 - x1) / length)
    corners, triangles = [], []
    for n in range(count + 1):
        x, z = x0 + (x1 - x0) * n / count, z0 + (z1 - z0) * n / count
        corners += [((x, base, z), normal, (n, 1.0)), ((x, base + height, z), normal, (n, 0.0))]
    for n in range(0, 2 * count, 2):
        triangles += [(n, n + 2, n + 3), (n, n + 3, n + 1)]
    model.block(material, corners, triangles, texture)


def vault(model, material, low, high, base, rise, texture, steps=16):
    """A roof that arches over z, from `low` to `high` (x, z)."""
    (x0, z0), (x1, z1) = low, high
    corners, triangles = [], []
    for n in range(steps + 1):
        angle = math.pi * n / steps
        z = z0 + (z1 - z0) * (1 - math.cos(angle)) / 2
        y, normal = base + rise * math.sin(angle), (0.0, math.sin(angle), -math.cos(angle))
        corners += [((x, y, z), normal, (u, n / steps)) for x, u in ((x0, 0.0), (x1, 4.0))]
    for n in range(0, 2 * steps, 2):
        triangles += [(n, n + 2, n + 3), (n, n + 3, n + 1)]
    for side in (0, 1):  # the two gables, each a fan
        triangles += [(side, 2 * n + side, 2 * n + 2 + side) for n in range(1, steps)]
    model.block(material, corners, triangles, texture)


def ring(center, radius, height, sides):
    x, z = center
    turns = [2 * math.pi * n / sides for n in range(sides)]
    return [((x + radius * math.cos(a), height, z + radius * math.sin(a)),
             (math.cos(a), 0.0, math.sin(a)), (n / sides, 1.0)) for n, a in enumerate(turns)]


def column(model, material, center, rings, sides, texture=None):
    """Rings of (height, radius) one above the other; the last one is closed to a point."""
    corners = [corner for height, radius in rings for corner in ring(center, radius, height, sides)]
    triangles = []
    for level in range(len(rings) - 1):
        for n in range(sides):
            a, b = level * sides + n, level * sides + (n + 1) % sides
            triangles += [(a, b, b + sides), (a, b + sides, a + sides)]
    last = (len(rings) - 1) * sides
    corners.append(((center[0], rings[-1][0] + 0.4, center[1]), UP, (0.5, 0.5)))
    triangles += [(last + n, last + (n + 1) % sides, len(corners) - 1) for n in range(sides)]
    model.block(material, corners, triangles, texture)


def trees(model, material, places, texture):
    """Crossed boards would do at a distance; these are cones of seven sides over a bare trunk."""
    sides, corners, triangles = 7, [], []
    for x, z, height in places:
        first = len(corners)
        corners += ring((x, z), height * 0.22, height * 0.18, sides)
        corners.append(((x, height, z), UP, (0.5, 0.0)))
        triangles += [(first + n, first + (n + 1) % sides, first + sides) for n in range(sides)]
    model.block(material, corners, triangles, texture)


def trunks(model, material, places):
    corners, triangles = [], []
    for x, z, height in places:
        first, low = len(corners), ring((x, z), height * 0.03, 0.0, 3)
        corners += low + [((p[0], height * 0.2, p[2]), n, uv) for p, n, uv in low]
        for n in range(3):
            a, b = first + n, first + (n + 1) % 3
            triangles += [(a, b, b + 3), (a, b + 3, a + 3)]
    model.block(material, corners, triangles)


def stripes(model, material, places, size, texture):
    """Paint on the ground: rectangles of one size."""
    corners, triangles = [], []
    for x, z in places:
        first = len(corners)
        corners += [((x + dx, 0.08, z + dz), UP, (0.0, 0.0)) for dx, dz in
                    [(0, 0), (size[0], 0), size, (0, size[1])]]
        triangles += [(first, first + 1, first + 2), (first, first + 2, first + 3)]
    model.block(material, corners, triangles, texture)


def forest(count):
    """Trees west of the runway and behind the hangars, the same on every run."""
    rng = random.Random(2002)
    places = []
    for n in range(count):
        x, z = rng.uniform(-330, -130), rng.uniform(-620, 620)
        if n % 3 == 0:
            x, z = rng.uniform(330, 480), rng.uniform(-480, 300)
        places.append((x, z, rng.uniform(6.0, 17.0)))
    return places


def ground(model, asphalt, concrete, paint, runway, pavement):
    for n in range(12):  # the runway in lengths of 100 m
        model.quad(asphalt, (-22.5, -600 + 100 * n), (22.5, -500 + 100 * n), 0.05, runway)
    model.quad(asphalt, (90, -600), (108, 600), 0.05, pavement)
    for z in (-560, -190, 180, 550):
        model.quad(asphalt, (22.5, z - 9), (90, z + 9), 0.05, pavement)
    for x, z in [(x, z) for x in range(3) for z in range(6)]:
        model.quad(concrete, (108 + 40 * x, -120 + 50 * z), (148 + 40 * x, -70 + 50 * z), 0.05,
                   pavement)
    stripes(model, paint, [(-0.45, z) for z in range(-540, 520, 50)], (0.9, 30.0), runway)
    stripes(model, paint, [(x, z) for z in (-594, 564) for x in range(-20, 20, 4)], (1.8, 30.0),
            runway)
    stripes(model, paint, [(230 + 0.0, z) for z in range(-110, 160, 30)], (0.2, 18.0), pavement)


def terminal(model, wall, roof, glass, facade, steel):
    box(model, wall, (240, -60), (285, 120), 11.0, facade)
    panels(model, glass, (239.9, 120), (239.9, -60), 2.5, 5.5, 36, facade)
    panels(model, glass, (285.1, -60), (285.1, 120), 2.5, 3.0, 36, facade)
    vault(model, roof, (236, -62), (290, 122), 11.0, 6.0, steel, 24)
    for z in (-40, -5, 30, 65, 100):  # the bridges to the aircraft
        box(model, wall, (222, z - 1.6), (240, z + 1.6), 3.0, facade, 4.0)
        column(model, model.steel, (221, z), [(0.0, 0.5), (4.0, 0.5)], 8)
        box(model, glass, (218, z - 2.2), (222, z + 2.2), 3.4, facade, 3.8)


def tower(model, wall, glass, facade):
    column(model, wall, (300, -95), [(0.0, 4.2), (22.0, 3.2), (26.0, 5.6)], 12, facade)
    column(model, glass, (300, -95), [(26.1, 5.6), (30.0, 6.4)], 12, facade)
    column(model, model.steel, (300, -95), [(30.1, 6.6), (31.0, 5.0), (31.4, 0.4)], 12)
    box(model, wall, (292, -90), (318, -74), 6.0, facade)


def hangars(model, wall, roof, sheet):
    for z in (-420, -360, -300, -240):
        box(model, wall, (130, z), (180, z + 44), 9.0, sheet)
        vault(model, roof, (130, z), (180, z + 44), 9.0, 7.0, sheet, 20)
        panels(model, model.steel, (129.9, z + 38), (129.9, z + 6), 0.0, 8.0, 8, sheet)


def lights(model):
    edge = model.material((255, 255, 224), WHITE)
    ends = model.material((255, 0, 0), RED)
    threshold = model.material((0, 255, 64), GREEN)
    taxi = model.material((32, 64, 255), BLUE)
    approach = model.material((240, 240, 255), WHITE)
    obstruction = model.material((255, 48, 32), RED)
    model.markers(edge, [place for x in (-24.0, 24.0) for place in spread(-600, 600, 21, x)])
    model.markers(ends, [(x, 0.3, z) for z in (-603, 603) for x in range(-18, 19, 6)])
    model.markers(threshold, [(x, 0.3, z) for z in (-605, 605) for x in range(-21, 22, 6)])
    model.markers(taxi, [place for x in (88.5, 109.5) for place in spread(-580, 580, 30, x)])
    model.markers(approach, [(x, 1.5, -640.0 - 30 * n) for n in range(10) for x in (-1.5, 0.0, 1.5)],
                  (0.0, 0.087156, -0.996195))
    model.markers(obstruction, [(300.0, 32.4, -95.0), (155.0, 16.6, -398.0), (155.0, 16.6, -218.0)])


def objects(model):
    sock = model.material((255, 128, 0), CYAN)
    vehicles = model.material((230, 200, 0), MAGENTA)
    masts = model.material((96, 96, 112), MAGENTA)
    chimney = model.material((64, 64, 64), YELLOW)
    model.block(sock, [((x, y, z), (1.0, 0.0, 0.0), (0.0, 0.0)) for z0 in (-500.0, 500.0)
                       for x, y, z in [(50.0, 6.5, z0), (50.0, 0.0, z0), (50.0, 6.5, z0 + 2.4)]],
                [(0, 1, 2), (3, 4, 5)])
    model.markers(vehicles, [(212.0 - 3 * n, 0.05, -30.0 + 35 * n) for n in range(5)])
    model.markers(masts, [(225.0, 0.0, z) for z in (-100.0, 10.0, 120.0, 170.0)])
    model.markers(chimney, [(278.0, 17.0, 100.0)])


def regional():
    model = Model("regional")
    asphalt, concrete = model.material((70, 72, 76)), model.material((168, 166, 160))
    paint, wall = model.material((250, 250, 245)), model.material((214, 206, 190))
    roof, glass = model.material((150, 158, 166)), model.material((52, 84, 104))
    model.steel = model.material((120, 124, 130))
    leaves, bark = model.material((58, 96, 48)), model.material((92, 70, 50))
    runway, pavement = model.texture(["RWY_45.BMP"]), model.texture(["PAVE_02.BMP", "PAVE_02_LM.BMP"])
    facade, sheet = model.texture(["TERM_02.BMP", "TERM_02_LM.BMP"]), model.texture(["SHEET_1.BMP"])
    needles = model.texture(["FIR_01.BMP"])
    ground(model, asphalt, concrete, paint, runway, pavement)
    terminal(model, wall, roof, glass, facade, sheet)
    tower(model, wall, glass, facade)
    hangars(model, wall, roof, sheet)
    places = forest(180)
    trees(model, leaves, places, needles)
    trunks(model, bark, places)
    lights(model)
    objects(model)
    return model


def regional_frame():
    latitude = 47.2093 / 360 * 40007000
    longitude = 11.3271 / 360 * 2**32
    yield "; regional.asm: object frame"
    yield ""
    yield "    include C:\\GMAX\\GAMEPACKS\\FS2002\\INCLUDE\\BGL.INC"
    yield "    include C:\\GMAX\\GAMEPACKS\\FS2002\\INCLUDE\\MORVANE.INC"
    yield ""
    yield "object_0 label BGLCODE"
    yield (f"    SCALE_AGL regional_skip,0,05DCh,65536,{hex_word(int(latitude))},"
           f"{hex_word(int(latitude % 1 * 65536))},{hex_word(int(longitude))},"
           f"{hex_word(int(longitude % 1 * 65536))},0,0")
    yield "    INSTANCE_CALL regional_MASTER,0,0,0"
    yield "regional_skip label BGLCODE"
    yield "    BGL_RETURN"
    yield ""
    yield "    include C:\\GMAX\\EXPORT\\regional_0.asm"
    yield ""
    yield "    END"
