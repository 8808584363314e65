"""The writing commands, each on files of its own."""

import os
import shutil
from dataclasses import dataclass
from typing import Callable, Sequence


@dataclass
class Case:
    command: Sequence[str]
    examples: Sequence[str] = ()  # folders of examples/ whose files are there at the start
    setup: Callable = lambda folder: None  # makes further files
    before: Sequence[Sequence[str]] = ()  # commands that have been run before
    after: Callable = lambda folder: None  # what became of the files since
    # Commands that bring the start back before the command is run a second time.
    start_again: Sequence[Sequence[str]] = ()
    # A command that is not for files it has been run on: how a second run ends.
    status_when_done: int | None = None
    # The files are replaced one after the other: a failure keeps those that are done, and says so.
    stepwise: bool = False
    # Files that grow by an empty line with every run, as every saved line store does.
    growing: Sequence[str] = ()
    # Working files of the program's own, which hold something else at every step.
    scratch: Sequence[str] = ()
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


def processed_since(*names):
    """Files that differ from their backups."""
    def setup(folder):
        for name in names:
            with open(folder / name, "ab") as file:
                file.write(b"; processed\r\n" * 3)
    return setup


AIRCRAFT = ("process", "aircraft_dictionary", "aircraft_dictionary.toml")
FRAME = "aircraft_dictionary.asm"
PAIR = ("aircraft_dictionary_0.asm", FRAME)
EXPORTS = ("complete", "fuselage", "wings_high", "wings_low", "shadow")
ASSEMBLE = ("assemble", "--complete", "complete", "--flexing-wings", "--fuselage", "fuselage",
            "--wings-high", "wings_high", "--wings-low", "wings_low", "--shadow-optimization",
            "--shadow", "shadow")

CASES = {
    "process-one-file": Case(("process", "airport", "airport.toml"), ["airport"],
                             status_when_done=1),
    "process-pair": Case(AIRCRAFT, ["aircraft-dictionary"], status_when_done=1, growing=[FRAME]),
    "process-behind-links": Case(AIRCRAFT, ["aircraft-dictionary"], put_behind_links(*PAIR),
                                 status_when_done=1, growing=[f"elsewhere/{FRAME}"]),
    "process-output": Case((*AIRCRAFT, "--output", "new"), ["aircraft-dictionary"]),
    "process-trace": Case((*AIRCRAFT, "--trace"), ["aircraft-dictionary"], status_when_done=1,
                          stepwise=True, growing=[FRAME],
                          scratch=["bgl_code.txt", "bgl_new_code.txt", "new_azm.txt"]),
    # An interrupted process is undone by restore, whichever of its files were written.
    "process-then-restore": Case(AIRCRAFT, ["aircraft-dictionary"],
                                 before=[("backup", "aircraft_dictionary")],
                                 start_again=[("--yes", "restore", "aircraft_dictionary")],
                                 growing=PAIR),
    "backup-first": Case(("--yes", "backup", "airport"), ["airport"], stepwise=True),
    "backup-again": Case(("--yes", "backup", "airport"), ["airport"],
                         before=[("backup", "airport")],
                         after=processed_since("airport.asm", "airport_0.asm"), stepwise=True),
    "restore": Case(("--yes", "restore", "airport"), ["airport"], before=[("backup", "airport")],
                    after=processed_since("airport.asm", "airport_0.asm"), stepwise=True),
    "rename-labels": Case(("--yes", "rename-labels", "airport_0.asm", "G2"), ["airport"],
                          status_when_done=0),
    "assemble": Case(ASSEMBLE, ["aircraft-flex"], before=[("backup", *EXPORTS)],
                     start_again=[("--yes", "restore", *EXPORTS)], stepwise=True,
                     scratch=["home/temp.masm"],
                     growing=[f"{base}{end}" for base in EXPORTS for end in (".asm", "_0.asm")]),
    "settings": Case(("home",), program="write_settings", stepwise=True),
}

if __name__ == "__main__":
    print(";".join(CASES))
