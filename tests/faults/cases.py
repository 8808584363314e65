# SPDX-License-Identifier: GPL-3.0-or-later
"""The commands, each on files of its own."""

import os
import shutil
from dataclasses import dataclass
from typing import Callable, Sequence


@dataclass
class Case:
    command: Sequence[str]
    files: Sequence[str] = ()  # folders of the checkout whose files are there at the start
    setup: Callable = lambda folder: None  # makes further files
    before: Sequence[Sequence[str]] = ()  # commands that have been run before
    after: Callable = lambda folder: None  # what became of the files since
    # Commands that bring the start back before the command is run a second time; one that begins
    # with "--maybe" may find nothing to do.
    start_again: Sequence[Sequence[str]] = ()
    # A command that is not for files it has been run on: how a second run ends.
    status_when_done: int | None = None
    # The files are replaced one after the other: a failure keeps those that are done, and says so.
    stepwise: bool = False
    # Messages that stand before the one of a failure that comes late.
    told_before: Sequence[str] = ()
    # Files that grow by an empty line with every run, as every saved line store does.
    growing: Sequence[str] = ()
    # Working files of the program's own, which hold something else at every step.
    scratch: Sequence[str] = ()
    random: bytes = b""  # a pattern of what differs from run to run
    reports_only: bool = False  # writes nothing but scratch files
    manifest: str = ""  # of a build: says at each moment what is made
    # Failures are listed among what the command prints, in its own words.
    listed: bool = False
    program: str = "cli"


def give_second_names(*names):
    def setup(folder):
        for name in names:
            os.link(folder / name, folder / f"second name of {name}")
    return setup


def put_behind_links(*names):
    def setup(folder):
        (folder / "elsewhere").mkdir()
        for name in names:
            shutil.move(folder / name, folder / "elsewhere" / name)
            os.symlink(f"elsewhere/{name}", folder / name)
    return setup


def write_file(name, data):
    def setup(folder):
        (folder / name).write_bytes(data)
    return setup


def processed_since(*names):
    """Files that differ from their backups."""
    def setup(folder):
        for name in names:
            with open(folder / name, "ab") as file:
                file.write(b"; processed\r\n" * 3)
    return setup


BUILD = ("build", "--jobs", "1", "--keep-going")
BUILD_SCRATCH = ["build/.morvane-build.json", "build/.morvane-build.lock"]
SETS = """[[set]]
base = "exports/apron"
recipe = "recipes/apron.toml"
suffix = "A"
[[set]]
base = "exports/tower"
recipe = "recipes/tower.toml"
"""
OTHERS = """[[aircraft]]
name = "glider"
complete = "complete"
shadow_optimization = true
shadow = "shadow"
compile = false
[[library]]
list = "objects.toml"
output = "library.asm"
"""


def write_project(steps):
    def setup(folder):
        (folder / "morvane.toml").write_text(
            '[project]\ncompiler = ["./compiler"]\nmacros = "morvane.inc"\n' + steps)
        (folder / "morvane.inc").write_bytes(b"; macros\r\n")
        compiler = folder / "compiler"
        compiler.write_text('#!/bin/sh\nexec cp "$2" "${2%.asm}.bgl"\n')
        compiler.chmod(0o755)
    return setup


def export_again(*names):
    def setup(folder):
        for name in names:
            with open(folder / name, "ab") as file:
                file.write(b"; exported again\r\n")
    return setup


AIRCRAFT = ("process", "aircraft_dictionary", "aircraft_dictionary.toml")
FRAME = "aircraft_dictionary.asm"
PAIR = ("aircraft_dictionary_0.asm", FRAME)
EXPORTS = ("complete", "fuselage", "wings_high", "wings_low", "shadow")
LIBRARY_FILE = "tests/golden/bgl-universal/in"
ASSEMBLE = ("assemble", "--complete", "complete", "--flexing-wings", "--fuselage", "fuselage",
            "--wings-high", "wings_high", "--wings-low", "wings_low", "--shadow-optimization",
            "--shadow", "shadow")

def add_compiler(folder):
    """One that compiles nothing: only our own calls are of interest."""
    (folder / "bglc").write_text("#!/bin/sh\necho compiled\n")
    (folder / "bglc").chmod(0o755)


CASES = {
    "inspect": Case(("inspect", "airport"), ["examples/airport"], reports_only=True),
    "check": Case(("check", "airport", "airport.toml"), ["examples/airport"], reports_only=True,
                  listed=True),
    "process-dry-run": Case((*AIRCRAFT, "--dry-run"), ["examples/aircraft-dictionary"],
                            reports_only=True),
    "process-lights": Case(("process", "aircraft_lights", "aircraft_lights.toml"),
                           ["examples/aircraft-lights"], status_when_done=1,
                           growing=["aircraft_lights.asm"]),
    "compile": Case(("compile", "airport"), ["examples/airport"], add_compiler,
                    scratch=["home/comp.txt"], reports_only=True),
    "library-describe": Case(("library", "describe", "hangar"), ["examples/library"],
                             reports_only=True),
    "bgl-analyse": Case(("bgl", "analyse", "airport.BGL"), [LIBRARY_FILE],
                        scratch=["home/out.txt", "home/error.txt"], reports_only=True),
    "process-one-file": Case(("process", "airport", "airport.toml"), ["examples/airport"],
                             status_when_done=1),
    "process-pair": Case(AIRCRAFT, ["examples/aircraft-dictionary"], status_when_done=1, growing=[FRAME]),
    "process-behind-links": Case(AIRCRAFT, ["examples/aircraft-dictionary"], put_behind_links(*PAIR),
                                 status_when_done=1, growing=[f"elsewhere/{FRAME}"]),
    "process-output": Case((*AIRCRAFT, "--output", "new"), ["examples/aircraft-dictionary"]),
    "process-trace": Case((*AIRCRAFT, "--trace"), ["examples/aircraft-dictionary"], status_when_done=1,
                          stepwise=True, growing=[FRAME],
                          scratch=["bgl_code.txt", "bgl_new_code.txt", "new_azm.txt"]),
    # An interrupted process is undone by restore, whichever of its files were written.
    "process-then-restore": Case(AIRCRAFT, ["examples/aircraft-dictionary"],
                                 before=[("backup", "aircraft_dictionary")],
                                 start_again=[("--yes", "restore", "aircraft_dictionary")],
                                 growing=PAIR),
    "backup-first": Case(("--yes", "backup", "airport"), ["examples/airport"], stepwise=True),
    "backup-again": Case(("--yes", "backup", "airport"), ["examples/airport"],
                         before=[("backup", "airport")],
                         after=processed_since("airport.asm", "airport_0.asm"), stepwise=True),
    "backup-forced": Case(("--yes", "backup", "--force", "airport"), ["examples/airport"],
                          before=[("backup", "airport"), ("process", "airport", "airport.toml")],
                          stepwise=True),
    "restore": Case(("--yes", "restore", "airport"), ["examples/airport"], before=[("backup", "airport")],
                    after=processed_since("airport.asm", "airport_0.asm"), stepwise=True),
    "rename-labels": Case(("--yes", "rename-labels", "airport_0.asm", "G2"), ["examples/airport"],
                          status_when_done=0),
    "assemble": Case(ASSEMBLE, ["examples/aircraft-flex"], before=[("backup", *EXPORTS)],
                     start_again=[("--yes", "restore", *EXPORTS)], stepwise=True,
                     scratch=["home/temp.masm"],
                     growing=[f"{base}{end}" for base in EXPORTS for end in (".asm", "_0.asm")]),
    "bgl-universal": Case(("--yes", "bgl", "universal", "airport.BGL"), [LIBRARY_FILE],
                          start_again=[("--maybe", "bgl", "revert", "airport.BGL")]),
    "bgl-revert": Case(("bgl", "revert", "airport.BGL"), [LIBRARY_FILE],
                       before=[("--yes", "bgl", "universal", "airport.BGL")],
                       status_when_done=1, stepwise=True,
                       told_before=["[information] File restored."]),
    "bgl-reports": Case(("bgl", "search", "scenery"), ["tests/golden/bgl-search/in"],
                        scratch=["home/out.txt", "home/error.txt"], reports_only=True),
    "library-create": Case(("library", "create", "objects.toml", "--output", "library.asm"),
                           ["examples/library"]),
    "library-create-again": Case(("library", "create", "objects.toml", "--output", "library.asm"),
                                 ["examples/library"], write_file("library.asm", b"old\r\n")),
    "library-identifiers": Case(
        ("library", "create", "kept", "--generate-guids", "--output", "library.asm"),
        ["examples/library", "tests/golden/library-generate-guids/in"], stepwise=True,
        random=rb"(0[0-9A-F]{8}, ){3}0[0-9A-F]{8}",
        scratch=["library.asm"]),  # sorted by identifiers that are new every time
    "build-first": Case(BUILD, ["examples/project"], write_project(SETS), status_when_done=0,
                        scratch=BUILD_SCRATCH, manifest="build/.morvane-build.json"),
    "build-again": Case(BUILD, ["examples/project"], write_project(SETS), before=[BUILD],
                        after=export_again("exports/apron_0.asm", "exports/tower_0.asm",
                                           "morvane.inc"),
                        status_when_done=0, scratch=BUILD_SCRATCH,
                        manifest="build/.morvane-build.json"),
    "build-others": Case(BUILD, ["examples/aircraft-flex", "examples/library"],
                         write_project(OTHERS), status_when_done=0, scratch=BUILD_SCRATCH,
                         manifest="build/.morvane-build.json"),
    "render": Case(("render", "airport", "--output", "airport.png", "--size", "64x48"),
                   ["examples/airport"], status_when_done=0),
    "settings": Case(("home",), program="write_settings", stepwise=True),
}

if __name__ == "__main__":
    print(";".join(CASES))
