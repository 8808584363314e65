#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""run.py PROGRAM GROUP...: what the program writes, through an assembler. Exit status 1 when
something that should assemble does not, or the reverse."""

import random
import sys
import time
from concurrent.futures import ThreadPoolExecutor

import aircraft_cases
import fault_cases
import library_cases
import masm
import random_sets
from cases import (EXAMPLES, Failed, Program, Work, check_objects, must_assemble,
                   must_not_assemble, require)

import scenes  # noqa: E402  (cases has named its folder)

SETS = {"airport": "airport", "regional": "regional", "aircraft-lights": "aircraft_lights",
        "aircraft-dictionary": "aircraft_dictionary"}
DESIGNS = ["hangar", "fuel_tank", "light_mast"]


def runner(_):
    """The lengths that the stub's macros have, and jumps at their bounds."""
    far = ["start label BGLCODE"]
    for count, fits in [(744, True), (745, False)]:
        lines = ["    IFMSK LBL1a, tod, 16", "    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL",
                 "    IFMSK LBL1a, beacnt, 02h"]
        lines += ["    BGL_LIGHT LIGHT_NAV, 0.0, 0.0, 0.0, 60 ,0.4, 0.04, 0FFFF0000h, 0.0, 1.0, 0.0"
                  ] * count
        try:
            assembled = masm.assemble(far + lines + ["LBL1a label BGLCODE"])
            require(fits, f"{count} aircraft lights assemble")
            require(assembled.labels["LBL1a"] == 22 + 44 * count, "lengths are not as in the tables")
        except masm.Refused as refused:
            require(not fits, f"{count} aircraft lights: {refused}")
    return 2


def examples(program):
    """All examples as they are, and processed by their recipes."""
    done = 0
    for folder, base in SETS.items():
        with Work(EXAMPLES / folder) as work:
            must_assemble(work / f"{base}.asm")
            document = program.process(work, base, f"{base}.toml")
            notes = [text for text in document["messages"] if "]" in text and "Note: " in text
                     and text.endswith("]")]
            require(not notes, f"{base}: {notes}")
            check_objects(must_assemble(work / f"{base}.asm"), document, base)
            done += 2
    for base in aircraft_cases.PARTS:
        must_assemble(EXAMPLES / "aircraft-flex" / f"{base}.asm")
    for base in DESIGNS:
        must_assemble(EXAMPLES / "library" / f"{base}.asm")
    return done + len(aircraft_cases.PARTS) + len(DESIGNS)


def process_and_check(program, work, name):
    document = program.process(work, "set", "set.toml")
    check_objects(must_assemble(work / "set.asm", masm.UNPUBLISHED), document, name)


def light_sets():
    """Every type with every variable, once for each setting of the flags that the dialog allows."""
    for flags in ({}, {"DayFlag": True}, {"AircraftFlag": True}):
        yield [{"kind": "Lights", "LightType": kind, "LightVariable": variable} | flags
               for kind in random_sets.LIGHT_TYPES for variable in random_sets.VARIABLES]


def other_sets():
    for flag in (False, True):
        guid = {"libGUID": random_sets.GUID, "lib_OTG": flag}
        yield [{"kind": "Effects", "lstEffectType": "fx_a", "fx_OTG": flag},
               {"kind": "Library", "libScale": "2"} | guid,
               {"kind": "Library New", "libScale": "1"} | guid, {"kind": "Library New"} | guid,
               {"kind": "Windsock", "ws_lit": flag}, {"kind": "Windsock", "ws_mastColor": "AB00CD"}]


def kinds(program):
    """Every kind with every flag and each combination that the window allows."""
    rng, done = random.Random(14), 0
    for assignments in [*light_sets(), *other_sets()]:
        aircraft = assignments[0].get("AircraftFlag", False)
        with Work() as work:
            frame = scenes.AIRCRAFT_FRAME if aircraft else random_sets.scenery_frame(rng)
            rows = [{"material": n + 1} | keys for n, keys in enumerate(assignments)]
            random_sets.write_set(work, [random_sets.block(rng) for _ in rows], frame, rows)
            process_and_check(program, work, str(assignments[0]))
        done += len(assignments)
    return done + refused_kinds(program, rng)


def refused_kinds(program, rng):
    """What the window offers and no assembler takes: the simulator defines no such light type, and
    a variable that nobody chose is an empty operand."""
    for keys in ({"LightType": "*LIGHT_PANEL*", "LightVariable": "beacnt"}, {}):
        with Work() as work:
            random_sets.write_set(work, [random_sets.block(rng)], random_sets.scenery_frame(rng),
                                  [{"kind": "Lights"} | keys])
            program.process(work, "set", "set.toml")
            must_not_assemble(work / "set.asm", "error" if keys else "missing value")
    return 2


def random_cases(program):
    """100 random sets: half from a seed that stays, half from a fresh one."""
    fresh = random.SystemRandom().getrandbits(32)
    print(f"fresh seed {fresh}")

    def check(seed):
        with Work() as work:
            random_sets.write_random_set(random.Random(seed), work)
            process_and_check(program, work, f"seed {seed}")

    seeds = [first + n for first in (2002, fresh) for n in range(50)]
    with ThreadPoolExecutor(4) as pool:
        return len(list(pool.map(check, seeds)))


def labels(program):
    """A model beside itself with renamed labels, processed: one source with both."""
    with Work(EXAMPLES / "airport") as work:
        program.process(work, "airport", "airport.toml")
        (work / "twin_0.asm").write_bytes((work / "airport_0.asm").read_bytes())
        frame = (work / "airport.asm").read_text()
        both = frame.replace("    END", "    include twin_0.asm\n    END")
        (work / "airport.asm").write_text(both)
        must_not_assemble(work / "airport.asm", "already defined")
        program.run(work, "--yes", "rename-labels", "twin_0.asm", "G2")
        must_assemble(work / "airport.asm")
    return 2


GROUPS = {"runner": runner, "examples": examples, "kinds": kinds, "random": random_cases,
          "aircraft": aircraft_cases.run, "labels": labels, "library": library_cases.run,
          "faults": fault_cases.run}


def main(program, *groups):
    for group in groups or GROUPS:
        begun = time.monotonic()
        try:
            done = GROUPS[group](Program(program))
        except Failed as failed:
            sys.exit(f"{group}: {failed}")
        print(f"{group}: {done} cases in {time.monotonic() - begun:.1f} s")


if __name__ == "__main__":
    main(*sys.argv[1:])
