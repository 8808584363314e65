# SPDX-License-Identifier: GPL-3.0-or-later
"""The shapes of exports: model files built from quads, walls and markers, and the frame files."""

import math

WHITE, RED, GREEN, BLUE = (1, 1, 1), (1, 0, 0), (0, 1, 0), (0, 0, 1)
CYAN, MAGENTA, YELLOW, NONE = (0, 1, 1), (1, 0, 1), (1, 1, 0), (0, 0, 0)


class Model:
    """Materials, textures and draw blocks of one model file."""

    def __init__(self, name, texture_class="TEXTURE_BUILDING"):
        self.name, self.texture_class = name, texture_class
        self.materials, self.textures, self.vertices, self.blocks = [], [], [], []

    def material(self, rgb, highlight=NONE):
        self.materials.append((rgb, highlight))
        return len(self.materials) - 1

    def texture(self, files):
        self.textures.append(files)
        return len(self.textures) - 1

    def block(self, material, corners, triangles, texture=None):
        """Corners are (position, normal, texture place), metres; y is the height."""
        first = len(self.vertices)
        self.vertices += corners
        self.blocks.append((material, texture, first, len(corners), triangles))

    def markers(self, material, places, normal=(0.0, 1.0, 0.0), size=0.2, texture=None):
        """One small triangle at each place; its first vertex is the place itself."""
        corners, triangles = [], []
        for x, y, z in places:
            n = len(corners)
            corners += [((x, y, z), normal, (0.0, 0.0)),
                        ((x + size, y, z), normal, (1.0, 0.0)),
                        ((x, y, z + size), normal, (0.0, 1.0))]
            triangles.append((n, n + 1, n + 2))
        self.block(material, corners, triangles, texture)

    def quad(self, material, low, high, height, texture):
        corners = [((x, height, z), (0.0, 1.0, 0.0), (u, v)) for x, z, u, v in
                   [(low[0], low[1], 0.0, 0.0), (high[0], low[1], 1.0, 0.0),
                    (high[0], high[1], 1.0, 1.0), (low[0], high[1], 0.0, 1.0)]]
        self.block(material, corners, [(2, 0, 1), (3, 0, 2)], texture)

    def wall(self, material, start, end, height, texture):
        dx, dz = end[0] - start[0], end[1] - start[1]
        length = math.hypot(dx, dz)
        normal = (dz / length, 0.0, -dx / length)
        corners = [((x, y, z), normal, (u, v)) for (x, z), y, u, v in
                   [(start, 0.0, 0.0, 1.0), (end, 0.0, 1.0, 1.0),
                    (end, height, 1.0, 0.0), (start, height, 0.0, 0.0)]]
        self.block(material, corners, [(2, 0, 1), (3, 0, 2)], texture)

    def lines(self):
        yield f"; {self.name}_0.asm: model data"
        yield ""
        yield "BGL_BEGIN 0800h ; version = 8.00"
        yield f"{self.name}_MASTER label BGLCODE"
        yield from self.list_lines()
        yield f"{self.name}_LOD_100 label BGLCODE"
        for part, block in enumerate(self.blocks):
            yield from self.block_lines(part, *block)
        yield f"{self.name}_END label BGLCODE"
        yield "BGL_END"
        yield "BGL_RETURN"

    def reach(self):
        """Distance of the farthest corner from the origin."""
        return max(math.dist((0, 0, 0), corner[0]) for corner in self.vertices)

    def list_lines(self):
        yield "    MATERIAL_LIST_BEGIN"
        for n, (rgb, mark) in enumerate(self.materials):
            color = ",".join(f"{part / 255:.6f}" for part in rgb)
            shine = ",".join(f"{part:.6f}" for part in mark)
            yield (f"    MATERIAL_DEF {color},1.000000,  {color},  {shine},"
                   f"  0.000000,0.000000,0.000000,  0.000000 ; {n}")
        yield "    MATERIAL_LIST_END"
        yield ""
        yield "    TEXTURE_LIST_BEGIN"
        for n, files in enumerate(self.textures):
            yield (f"    TEXTURE_DEF {self.texture_class}, <255,255,255,255>, {self.reach():.6f},"
                   f" \"{files[0]}\" ; {n}")
        yield "    TEXTURE_LIST_END"
        yield ""
        yield "    VERTEX_LIST_BEGIN"
        for n, corner in enumerate(self.vertices):
            place, normal, uv = ((f"{value + 0.0:.6f}" for value in part) for part in corner)
            yield f"    VERTEX_DEF {','.join(place)}, {','.join(normal)}, {','.join(uv)} ; {n}"
        yield "    VERTEX_LIST_END"
        yield ""

    def block_lines(self, part, material, texture, first, count, triangles):
        if texture is None:
            yield f"    MATERIAL {material},0"
        else:
            files = ";".join(self.textures[texture])
            yield f"    MATERIAL {material},{texture} ; <255,255,255,255> {files};;"
        yield f"    DRAW_TRI_BEGIN {first}, {count}"
        for n, corners in enumerate(triangles):
            numbers = ",".join(f"{corner:4d}" for corner in corners)
            yield f"    DRAW_TRI {numbers} ; poly={n} part={part}"
        yield "    DRAW_TRI_END"
        yield ""


def spread(start, end, count, x, y=0.3):
    step = (end - start) / (count - 1)
    return [(x, y, start + n * step) for n in range(count)]


def hex_word(value):
    return f"0{value & 0xFFFFFFFF:X}h"


def write(path, lines):
    path.parent.mkdir(exist_ok=True)
    path.write_bytes("".join(line + "\r\n" for line in lines).encode("cp1252"))
