#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes the cases of tests/golden whose results follow from the rules in this folder."""

import json
import os
import shutil
import subprocess
import sys
import tempfile
import tomllib
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import scenes  # noqa: E402
from assemble import assemble  # noqa: E402
from basic import save  # noqa: E402
from opened import WORDS, OpenSet, count_triangles  # noqa: E402
from process import apply, merged  # noqa: E402

ROOT = Path(__file__).resolve().parents[2]
GOLDEN = ROOT / "tests" / "golden"


def put(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(text if isinstance(text, bytes) else text.encode("latin-1"))


class Case:
    """A case folder, and a copy of its files to work in."""

    def __init__(self, name, command, source, recipe=None):
        self.folder = GOLDEN / name
        shutil.rmtree(self.folder, ignore_errors=True)
        put(self.folder / "command", command + "\n")
        self.work = Path(tempfile.mkdtemp())
        if isinstance(source, str):
            put(self.folder / "from", source + "\n")
            shutil.copytree(ROOT / source, self.work, dirs_exist_ok=True)
        else:
            for file, data in source.items():
                put(self.folder / "in" / file, data)
        if recipe is not None:
            put(self.folder / "in" / "recipe.toml", recipe)
        if (self.folder / "in").exists():
            shutil.copytree(self.folder / "in", self.work, dirs_exist_ok=True)
        self.before = {path: path.read_bytes() for path in self.work.iterdir() if path.is_file()}
        os.chdir(self.work)

    def finish(self, stdout, stderr=""):
        for path in filter(Path.is_file, self.work.iterdir()):
            if self.before.get(path) != path.read_bytes():
                put(self.folder / "out" / path.name, path.read_bytes())
        if stdout:
            put(self.folder / "stdout", stdout)
        if stderr:
            put(self.folder / "stderr", stderr)
        shutil.rmtree(self.work)


def lines_of(texts):
    return "".join(text + "\n" for text in texts)


def finished(base):
    return f"[information] Finished. Use 'bglc /bgl {base}.asm' to compile.\n"


def run(base, recipe):
    opened = OpenSet(base)
    with open(recipe, "rb") as file:
        return opened, apply(opened, tomllib.load(file))


def save_set(opened, output):
    save(output + "_0.asm", [0] + merged(opened))
    if opened.frame_changed:
        save(output + ".asm", opened.frame)


def closing_label_notes(opened, output):
    """What is told of the second and further closing labels of one name."""
    first, notes = {}, []
    for number, line in enumerate(merged(opened), 1):
        if line in ("SKIP_FX  label BGLCODE", "SKIP_LIB  label BGLCODE"):
            label, place = line.split()[0], f"{output}_0.asm:{number}"
            if label in first:
                notes.append(f"Note: {place}: {label} is defined here again, after {first[label]}; no"
                             " code jumps to it: comment this line out, or let the recipe say"
                             " unique_labels = true. [skip-label]")
            first.setdefault(label, place)
    return notes


def process_case(name, base, source, recipe=None, output=None, extra=None):
    """Recipe text None: the example's own file. `extra` writes further files."""
    recipe_name = "recipe.toml" if recipe is not None else base + ".toml"
    options = f" --output {output}" if output else ""
    options += " --trace" if extra else ""
    case = Case(name, f"morvane-cli process {base} {recipe_name}{options}", source, recipe)
    opened, _ = run(base, recipe_name)
    save_set(opened, output or base)
    if extra:
        extra(opened)
    log = opened.log + closing_label_notes(opened, output or base) + ["Done. "]
    case.finish(lines_of(log), finished(output or base))


def write_traces(opened):
    save("bgl_code.txt", opened.model)
    code = (opened.buffer + [""] * opened.buffer[0])[:opened.buffer[0] + 1]
    save("bgl_new_code.txt", code)
    if opened.frame_changed:
        save("new_azm.txt", opened.frame)


def files_of(base, scene, end="\n"):
    model, frame = scene
    return {base + "_0.asm": "".join(line + end for line in model),
            base + ".asm": "".join(line.replace("BASE", base) + end for line in frame)}


def inspect_cases():
    case = Case("inspect-airport", "morvane-cli inspect airport", "examples/airport")
    opened = OpenSet("airport")
    rows = [f"{n:3d}  MATERIAL {row[0]:<4d} {WORDS[row[4]]:<8s}color {row[5]}  lines {row[2]} to"
            f" {row[3]}  triangles {count_triangles(opened.model, row[2])}"
            for n, row in enumerate(opened.trans) if row]
    case.finish(lines_of(opened.log + rows))

    case = Case("inspect-airport-json", "morvane-cli inspect airport --json", "examples/airport")
    opened = OpenSet("airport")
    case.finish(json.dumps(inspected(opened), indent=2, ensure_ascii=False) + "\n")


def inspected(opened):
    place = opened.placement
    return {"base": opened.base, "model_lines": opened.model[0], "frame_lines": opened.frame[0],
            "materials": len(opened.materials), "vertex_list": opened.vertex_list,
            "translations": [
                {"row": n, "number": row[0], "list_line": row[1], "selecting_line": row[2],
                 "block_end": row[3], "highlight": row[4], "color": row[5], "processed": row[6],
                 "triangles": count_triangles(opened.model, row[2]),
                 "highlight_name": WORDS[row[4]], "rewritten": False}
                for n, row in enumerate(opened.trans) if row],
            "placement": {"a": place.a, "b": place.b, "b_degrees": place.degrees,
                          "line": place.line, "rotation": float(place.rotation)},
            "messages": opened.log}


def airport_cases():
    process_case("process-airport", "airport", "examples/airport")
    process_case("process-airport-output", "airport", "examples/airport", output="lit")
    process_case("process-airport-trace", "airport", "examples/airport", extra=write_traces)

    case = Case("process-airport-json", "morvane-cli --json process airport airport.toml",
                "examples/airport")
    opened, done = run("airport", "airport.toml")
    save_set(opened, "airport")
    rows = [{"row": row, "kind": kind, "lines": lines} for row, kind, lines in done]
    document = {"processed": rows, "unprocessed": 0, "saved": ["airport_0.asm"],
                "messages": opened.log + ["Done. "]}
    case.finish(json.dumps(document, indent=2) + "\n", finished("airport"))


def second_process_case():
    """The second run finds the set rewritten, and prints its box only."""
    case = Case("refuse-second-process", "", "examples/airport")
    put(case.folder / "command", "morvane-cli process airport airport.toml\n" * 2)
    put(case.folder / "status", "1\n")
    opened, _ = run("airport", "airport.toml")
    save_set(opened, "airport")
    case.finish(lines_of(opened.log + ["Done. "]), finished("airport")
                + "[critical] This file cannot be used. (Already processed ?)\n")


def difference(name, lines):
    """What `diff -u` finds between a file and lines as they are saved."""
    old = Path(name).read_bytes()
    new = "".join(line + "\r\n" for line in lines).encode("latin-1")
    with tempfile.TemporaryDirectory() as folder:
        Path(folder, "old").write_bytes(old)
        Path(folder, "new").write_bytes(new)
        return subprocess.run(["diff", "-u", "--label", name, "--label", name, folder + "/old",
                               folder + "/new"], capture_output=True).stdout.decode("latin-1")


def dry_run_case(name, base):
    case = Case(f"process-{name}-dry-run",
                f"morvane-cli process {base} {base}.toml --dry-run", f"examples/{name}")
    opened, _ = run(base, base + ".toml")
    text = difference(base + "_0.asm", merged(opened))
    if opened.frame_changed:
        text += difference(base + ".asm", opened.frame[1:])
    case.finish(lines_of(opened.log) + text)


def aircraft_cases():
    for name in ("lights", "dictionary"):
        process_case(f"process-aircraft-{name}", f"aircraft_{name}", f"examples/aircraft-{name}")
        dry_run_case(f"aircraft-{name}", f"aircraft_{name}")
    process_case("process-aircraft-trace", "aircraft_lights", "examples/aircraft-lights",
                 extra=write_traces)


AIRCRAFT = ["complete", "fuselage", "wings_high", "wings_low", "shadow"]
WINGS = " --flexing-wings --fuselage fuselage --wings-high wings_high --wings-low wings_low"


def note(file, line, store, text):
    """A note about the last of the lines that begin so."""
    number = max(n for n, found in enumerate(store.splitlines(), 1) if found.startswith(line))
    return f"Note: {file}:{number}: {text}\n"


def two_shadows():
    text = Path("complete.asm").read_text(encoding="latin-1")
    first = next(n for n, line in enumerate(text.splitlines(), 1) if line.startswith("model_shadow"))
    return note("complete.asm", "model_shadow label", text,
                f"model_shadow is defined here again, after complete.asm:{first}; comment this line"
                " out together with the include line after it, unless the shadow is to come from"
                " that model: then comment the first one out. [duplicate-label]")


def no_shadow():
    text = Path("complete.asm").read_text(encoding="latin-1")
    label = next(n for n, line in enumerate(text.splitlines(), 1)
                 if line.startswith("; model_shadow"))
    return note("complete.asm", "    SHADOW_VICALL32", text,
                "the label model_shadow is defined nowhere; put \"model_shadow label BGLCODE\" and a"
                " line that includes the shadow model before the line BGL_END, or remove the"
                f" \";\" of line {label} to cast the shadow from the whole model."
                " [undefined-label]")


def assemble_case(name, options, wings, shadow, notes=str):
    case = Case(name, "morvane-cli assemble --complete complete" + options, "examples/aircraft-flex")
    assemble(AIRCRAFT, wings, shadow)
    case.finish("", "[information] The modification seems to be successful. Output file is"
                " complete.asm\n\nComplile with 'bglc /mdl complete.asm'\n" + notes())


def assemble_cases():
    assemble_case("assemble-wings", WINGS + " --shadow shadow", True, False, two_shadows)
    assemble_case("assemble-shadow", " --shadow-optimization --shadow shadow", False, True,
                  no_shadow)
    assemble_case("assemble-wings-and-shadow", WINGS + " --shadow-optimization --shadow shadow",
                  True, True)
    for path in (GOLDEN / "assemble-shadow/out").iterdir():
        put(GOLDEN / "assemble-processed-before/out" / path.name, path.read_bytes())
    expected = ROOT / "examples/aircraft-flex/expected"
    for path in (GOLDEN / "assemble-wings-and-shadow/out").iterdir():
        put(expected / path.name, path.read_bytes())


def light_cases():
    recipe = """
[[assign]]
material = 1
kind = "Lights"

[[assign]]
material = 2
kind = "Lights"
LightVariable = "beacnt"
DayFlag = true

[[assign]]
material = 3
kind = "Lights"
LightType = "*LIGHT_PANEL*"
LightVariable = "second_flash"
AircraftFlag = true

[[assign]]
kind = "Lights"
LightType = "LIGHT_LOGO"
LightInt = ""
LightVariable = "becon5"
FlashMask = "xyz"
DayFlag = true
AircraftFlag = true
"""
    process_case("process-light-flags", "lamps", files_of("lamps", scenes.light_flags()), recipe)
    process_case("process-keeps-bytes", "lamps", files_of("lamps", scenes.odd_bytes(), "\r\n"),
                 recipe)
    lone = files_of("lamps", scenes.odd_bytes(), "\r")
    process_case("process-lone-cr-and-no-last-end", "lamps",
                 {name: data.rstrip("\r") for name, data in lone.items()}, recipe)


def placing_cases():
    recipe = """
[[assign]]
color = "0000FF"
kind = "Effects"
lstEffectType = "fx_a"
fx_Terrain_alt = "4"

[[assign]]
material = 1
kind = "Library"
libScale = "3"
lib_Terrain_alt = "1234.5"

[[assign]]
material = 4
kind = "Library New"
libScale = "1"

[[assign]]
highlight = "Yellow"
kind = "Effects"
lstEffectType = "fx_b"
fx_OTG = true
"""
    west = scenes.places("0,100,131072,051EDB8h,0CAAAh,0FCD9FF8Bh,07DD6h,0,0", "0,0,0C000h")
    process_case("process-places-west", "here", files_of("here", west), recipe)
    south = scenes.places("7,8,32768,0FFCB2A31h,0,0123h,0,0,0", "0,0,0")
    process_case("process-places-south", "here", files_of("here", south), recipe)


def windsock_case():
    recipe = """
[[assign]]
material = 1
kind = "Windsock"
ws_lit = true

[[assign]]
kind = "Windsock"
ws_mastColor = "123456"
"""
    process_case("process-windsocks", "socks", files_of("socks", scenes.windsocks()), recipe)


def dictionary_cases():
    recipe = '[[assign]]\nkind = "Lights"\nLightVariable = "becon2"\nAircraftFlag = true\n'
    model = scenes.light_flags()[0]
    listed = ["    dict_g_lightStates equ 152",
              "    dd 2,152,4, 057F0E99Dh, 04E9C0523h, 0BB12B6BCh, 0063FE72Fh",
              "    dict_0_other equ 156", "    dd 2,156,8, 01h, 02h, 03h, 04h"]
    process_case("process-dictionary-has-entry", "craft",
                 files_of("craft", (model, scenes.dictionary_frame(listed, 164))), recipe)
    commented = ["    dict_0_a equ 8", "; a comment", "    dd 2,8,16, 01h, 02h, 03h, 04h", "",
                 "    dict_0_b equ 24", "    dd 2,24,4, 05h, 06h, 07h, 08h"]
    process_case("process-dictionary-comments", "craft",
                 files_of("craft", (model, scenes.dictionary_frame(commented, 28))), recipe)


def main():
    inspect_cases()
    airport_cases()
    second_process_case()
    dry_run_case("airport", "airport")
    aircraft_cases()
    assemble_cases()
    light_cases()
    placing_cases()
    windsock_case()
    dictionary_cases()


if __name__ == "__main__":
    main()
