# SPDX-License-Identifier: GPL-3.0-or-later
"""`library create`: its source assembled, and the bytes read back by `bgl analyse`."""

import json
import tomllib

import masm
from cases import EXAMPLES, Work, must_assemble, must_not_assemble, require


def analysed(program, work, source):
    assembled = must_assemble(work / source)
    (work / "made.bgl").write_bytes(assembled.bytes)
    return assembled, json.loads(program.run(work, "--json", "bgl", "analyse", "made.bgl")[0])


def examples(program):
    with Work(EXAMPLES / "library") as work:
        program.run(work, "library", "create", "objects.toml", "--output", "objects.asm")
        assembled, document = analysed(program, work, "objects.asm")
        objects = tomllib.loads((work / "objects.toml").read_text())["object"]
        require(len(document["objects"]) == len(objects) == 3, "not as many objects as in the list")
        for n, (made, listed) in enumerate(zip(document["objects"], objects)):
            check_object(program, work, made, listed)
            check_lengths(assembled, n)


def check_object(program, work, made, listed):
    words = [int(word, 16) for word in listed["guid"].split(",")]
    require(made["guid"] == words, f"{listed['design']}: identifier {made['guid']}")
    described = json.loads(program.run(work, "--json", "library", "describe", listed["design"])[0])
    expected = {"scale": float(listed.get("scale", described["scale"])),
                "type": listed.get("type", 0), "power": listed.get("image_power", 0),
                "name": listed.get("name", described["name"])}
    for key, value in expected.items():
        require(made[key] == value, f"{listed['design']}: {key} is {made[key]}, not {value}")


def check_lengths(assembled, n):
    """The record's own lengths, and that its code holds whole commands."""
    labels, data = assembled.labels, assembled.bytes
    begin, code, end = (labels[f"LIBRARY_{n}{part}"] for part in ("", "_START", "_END"))
    words = [int.from_bytes(data[begin + at:begin + at + 4], "little") for at in (17, 21)]
    require(words == [code - begin, end - code], f"object {n}: lengths {words}")
    masm.commands(data[code:end])


def same_labels(program):
    """Two designs with lights have LBL1 both; the note says so."""
    recipe = '[[assign]]\nkind = "Lights"\nLightVariable = "beacnt"\n'
    with Work(EXAMPLES / "library") as work:
        for base in ("hangar", "light_mast"):
            model = (work / f"{base}_0.asm").read_text()
            marked = model.replace("  0.000000,0.000000,0.000000,", "  1.000000,0.000000,0.000000,", 1)
            (work / f"{base}_0.asm").write_text(marked)
            (work / "lights.toml").write_text(recipe)
            program.process(work, base, "lights.toml")
        command = ["library", "create", "objects.toml", "--output", "objects.asm"]
        errors = program.run(work, *command)[1]
        require("LBL1 is defined here again" in errors, errors)
        must_not_assemble(work / "objects.asm", "already defined")
        program.run(work, "--yes", "rename-labels", "hangar_0.asm", "H")
        require("defined here again" not in program.run(work, *command)[1], "still noted")
        must_assemble(work / "objects.asm")


def run(program):
    examples(program)
    same_labels(program)
    return 2
