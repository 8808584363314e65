# SPDX-License-Identifier: GPL-3.0-or-later
"""Random sets that have the shape of exports, with recipes of values that a compiler takes."""

import scenes

LIGHT_TYPES = ["LIGHT_NAV", "LIGHT_BEACON", "LIGHT_LANDING", "LIGHT_TAXI", "LIGHT_STROBE",
               "LIGHT_RECOGNITION", "LIGHT_WING", "LIGHT_LOGO", "LIGHT_NONE"]
VARIABLES = ["six_second_beacon", "second_flash", "becon2", "becon3", "becon4", "becon5", "beacnt"]
GUID = "05ADE0809h,042E14DCFh,073AEB9A1h,089EC6060h"


def toml(value):
    if isinstance(value, bool):
        return "true" if value else "false"
    return str(value) if isinstance(value, int) else f'"{value}"'


def recipe_text(assignments):
    return "\n".join("[[assign]]\n" + "".join(f"{key} = {toml(value)}\n"
                                             for key, value in keys.items())
                     for keys in assignments)


def write_set(folder, blocks, frame, assignments, base="set"):
    """Blocks are those of scenes.model."""
    texts = {base + "_0.asm": scenes.model(blocks), base + ".asm": frame}
    for name, lines in texts.items():
        (folder / name).write_text("\n".join(lines).replace("BASE", base) + "\n")
    (folder / (base + ".toml")).write_text(recipe_text(assignments))


def real(rng, most=3000):
    return f"{rng.uniform(-most, most):.{rng.randint(1, 6)}f}"


def upright(rng):
    """Three corners of which the second is the highest."""
    x, y, z = (rng.uniform(-900, 900) for _ in range(3))
    points = [(x, y, z), (x + rng.random(), y + rng.uniform(1, 9), z), (x, y + 0.5, z + 2)]
    return [scenes.vertex(*(f"{value:.6f}" for value in point)) for point in points]


def block(rng):
    color = ",".join(f"{rng.random():.6f}" for _ in range(3))
    count = rng.randint(1, 6)
    corners = [corner for _ in range(count) for corner in upright(rng)]
    triangles = [(3 * n, 3 * n + 1, 3 * n + 2) for n in range(count)]
    return scenes.material(color, rng.choice(list(scenes.HIGHLIGHTS))), corners, triangles


def scenery_frame(rng):
    word = lambda bits: f"0{rng.getrandbits(bits):X}h"  # noqa: E731
    return scenes.frame(f"{rng.randint(0, 9)},0A0h,{rng.choice([65536, 131072, 32768])},"
                        f"{word(22)},{word(16)},{word(32)},{word(16)},0,0",
                        f"0,0,{rng.choice(['0', '04000h', '0C123h'])}")


def frame(rng):
    body = ["    dict_0_a equ 136", "    dd 2,136,16, 01h, 02h, 03h, 04h"]
    return rng.choice([scenes.AIRCRAFT_FRAME, scenes.dictionary_frame(body, 152)])


def lights(rng, aircraft):
    keys = {"kind": "Lights", "LightType": rng.choice(LIGHT_TYPES),
            "LightInt": str(rng.randint(0, 5000)), "LightAttnL": f"{rng.random():.3f}",
            "LightAttS": f"{rng.random():.4f}", "LightVariable": rng.choice(VARIABLES),
            "DayFlag": rng.random() < 0.4, "AircraftFlag": aircraft and rng.random() < 0.6}
    if rng.random() < 0.5:
        keys["FlashMask"] = f"{rng.getrandbits(16):X}"
    return keys


def assignment(rng, kind, aircraft):
    if kind == "Lights":
        return lights(rng, aircraft)
    if kind == "Effects":
        return {"kind": kind, "lstEffectType": "fx_smoke", "fx_OTG": rng.random() < 0.5,
                "fx_Terrain_alt": str(rng.randint(0, 5000))}
    if kind == "Windsock":
        return {"kind": kind, "ws_mastColor": f"{rng.getrandbits(24):06X}",
                "ws_lit": rng.random() < 0.5}
    return {"kind": kind, "libGUID": GUID, "libScale": rng.choice(["0.5", "1", "3", "12.25"]),
            "lib_OTG": rng.random() < 0.5, "lib_Terrain_alt": str(rng.randint(0, 5000))}


def write_random_set(rng, folder):
    """Effects and library calls need a place on the globe; each closes with a label of its own name,
    so a set takes one material of either."""
    aircraft, count = rng.random() < 0.3, rng.randint(1, 9)
    once = ["Effects", "Library"]
    rng.shuffle(once)
    chosen = []
    for _ in range(count):
        kind = rng.choice(["Lights", "Lights", "Windsock", "Library New"])
        if not aircraft and once and rng.random() < 0.3:
            kind = once.pop()
        chosen.append(kind)
    assignments = [{"material": row + 1} | assignment(rng, kind, aircraft)
                   for row, kind in enumerate(chosen)]
    rng.shuffle(assignments)
    write_set(folder, [block(rng) for _ in chosen],
              frame(rng) if aircraft else scenery_frame(rng), assignments)
