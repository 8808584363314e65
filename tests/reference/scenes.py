# SPDX-License-Identifier: GPL-3.0-or-later
"""Small source sets for single rules, in other shapes than the examples: LF ends, no leading
blanks, odd spacing. Like an export each of them can be assembled."""

HIGHLIGHTS = {"Blue": "0.0,0.0,1.0", "Green": "0.0,1.0,0.0", "Cyan": "0.0,1.0,1.0",
              "Red": "1.0,0.0,0.0", "Magenta": "1.0,0.0,1.0", "Yellow": "1.0,1.0,0.0",
              "White": "1.0,1.0,1.0"}

# BASE stands for the set's name.
MACROS = "include C:\\GMAX\\MORVANE.INC"
INCLUDE = "include C:\\EXPORT\\BASE_0.asm"
AIRCRAFT_FRAME = [MACROS, "visual_model_header label dword", "dd  0",
                  "model_outside label BGLCODE", INCLUDE, "END"]


def material(color, highlight):
    return f"MATERIAL_DEF {color},1.0, {color}, {HIGHLIGHTS[highlight]}, 0.0,0.0,0.0, 0.0 ; x"


def vertex(x, y, z, normal="0.0,1.0,0.0"):
    return f"VERTEX_DEF {x},{y},{z}, {normal}, 0.0,0.0 ; v"


def model(blocks, bgl_end=True):
    """Blocks are (material line, vertices, triangles); material n is that of block n."""
    lines = ["BGL_BEGIN 0800h ; version = 8.00", "MASTER label BGLCODE", "MATERIAL_LIST_BEGIN"]
    lines += [block[0] for block in blocks] + ["MATERIAL_LIST_END", "VERTEX_LIST_BEGIN"]
    lines += [line for block in blocks for line in block[1]] + ["VERTEX_LIST_END"]
    first = 0
    for n, (_, vertices, triangles) in enumerate(blocks):
        lines += [f"MATERIAL {n},0", f"DRAW_TRI_BEGIN {first}, {len(vertices)}"]
        lines += [f"DRAW_TRI {a:4d},{b:4d},{c:4d} ; poly={p} part={n}"
                  for p, (a, b, c) in enumerate(triangles)]
        lines.append("DRAW_TRI_END")
        first += len(vertices)
    return lines + (["BGL_END", "BGL_RETURN"] if bgl_end else [])


def frame(scale_agl, instance_call):
    return [MACROS, "object_0 label BGLCODE", "SCALE_AGL object_end," + scale_agl,
            "INSTANCE_CALL MASTER," + instance_call, "object_end label BGLCODE", "BGL_RETURN", INCLUDE,
            "END"]


CORNERS = [vertex("1.5", "0.0", "-2.25"), vertex("-10.125", "3.0", "4.0", "0.6,0.0,0.8"),
           vertex("0.000000", "0.000000", "0.000000", "-1.0,0.0,0.0")]


def light_flags():
    """Four materials of lights, one for each setting of the two flags."""
    blocks = [(material(color, "Red"), CORNERS, [(0, 1, 2), (1, 2, 0)][:n % 2 + 1])
              for n, color in enumerate(["1.0,0.5,0.0", "0.0,0.0,0.0", "0.1,0.2,0.3",
                                 "0.5,1.0,1.0"])]
    return model(blocks), AIRCRAFT_FRAME


def windsocks():
    def sock(*points, order=(0, 1, 2)):
        return [vertex(*point) for point in points], [order]

    shapes = [sock(("0.0", "0.0", "0.0"), ("1.0", "10.0", "0.0"), ("4.0", "10.0", "0.0")),
              # Two lowest: the first of them is the foot, the third vertex the sock's other end.
              sock(("2.5", "7.0", "1.0"), ("1.0", "-1.5", "2.0"), ("3.0", "-1.5", "-2.0"),
                   order=(1, 0, 2)),
              # Exactly as high as it must be; the swap puts the former first vertex last.
              sock(("8.0", "0.5", "8.0"), ("0.0", "0.1", "0.0"), ("0.0000004", "0.0", "0.0000005"))]
    colors = ["1.0,0.501961,0.0", "0.2,0.4,0.6", "0.0,0.0,1.0"]
    blocks = [(material(color, "Cyan"), *shape) for color, shape in zip(colors, shapes)]
    return model(blocks), AIRCRAFT_FRAME


def places(scale_agl, instance_call):
    """Effects and library calls around a reference point."""
    colors = ["1.0,0.0,0.0", "0.0,1.0,0.0", "0.0,0.0,1.0", "1.0,1.0,1.0"]
    blocks = [(material(color, "Yellow"), CORNERS, [(0, 1, 2), (1, 2, 0), (2, 0, 1)])
              for color in colors]
    return model(blocks), frame(scale_agl, instance_call)


def dictionary_frame(body, size):
    return [MACROS, "visual_model_header label dword",
            "    dd  param_extension_dictionary - visual_model_header", f"    dd   {size}",
            "    db  'F','S','8','0'", "    dd  2048", "visual_model_header_end  label dword", "",
            "    db  'D','I','C','T'", "param_extension_dictionary     label dword",
            "    dd (param_extension_dictionary_end) - (param_extension_dictionary) - 4", *body,
            "param_extension_dictionary_end     label dword", INCLUDE, "END"]


def odd_bytes():
    """A set whose every second line has something that must come through as it is."""
    lines, frame_lines = light_flags()
    lines[1:1] = ["; caf\xe9 \x80 \x9f \xff", "\ttabbed\t", "   ", "; \x01\x07 control", "",
                  "; a long line " + "x" * 5000]
    return lines, frame_lines
