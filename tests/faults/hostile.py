#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Real disks and hostile inputs: what no preloaded library can stand in for.

    hostile.py --cli PROGRAM [TEST...]

Each test is a function here. A test that the machine cannot run (it needs root for a small disk of
its own, say) prints why and counts as passed.
"""

import argparse
import os
import re
import shutil
import stat
import struct
import subprocess
import sys
import time
from pathlib import Path

from scratch import STRAY, Program, Scratch, boxes, contents, describe

ROOT = Path(__file__).resolve().parents[2]
TESTS = {}


class Broken(Exception):
    """A rule that did not hold."""


class Impossible(Exception):
    """What this machine cannot show."""


def test(function):
    TESTS[function.__name__.replace("_", "-")] = function
    return function


def require(condition, text, result=None):
    if not condition:
        raise Broken(text + (f"\n{describe(result)}" if result else ""))


def require_refused(result, number, *words, status=1):
    """Refused with exactly one box that holds the number; the words stand anywhere."""
    require(result.returncode == status, f"the exit status is not {status}", result)
    shown = boxes(result)
    require(len(shown) == 1, "there is not exactly one message", result)
    require(re.search(rf"\b{number}\b", shown[0]), f"the message has no {number}", result)
    said = result.stderr.decode("utf-8", "surrogateescape")
    for word in words:
        require(word in said, f"nothing says '{word}'", result)


def copy_example(folder, name):
    shutil.copytree(ROOT / "examples" / name, folder, dirs_exist_ok=True)
    (folder / "home").mkdir(exist_ok=True)


PROCESS = ("process", "airport", "airport.toml")


def as_ordinary_user(folder):
    """Options that run a program without root's rights, which no mode of a file can stop."""
    if os.geteuid() != 0:
        return {}
    for path in [folder, *folder.rglob("*")]:
        os.chown(path, 65534, 65534, follow_symlinks=False)
    return {"user": 65534, "group": 65534, "extra_groups": []}


class SmallDisk:
    """A disk in memory that holds next to nothing."""

    def __init__(self, folder, size):
        self.folder = folder
        self.size = size

    def __enter__(self):
        self.folder.mkdir()
        mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={self.size}", "tmpfs",
                                  self.folder], capture_output=True, check=False)
        if mounted.returncode != 0:
            raise Impossible("this machine allows no disk of our own: "
                             + mounted.stderr.decode().strip())
        return self.folder

    def __exit__(self, *_):
        subprocess.run(["umount", self.folder], check=True)


@test
def full_disk(program, scratch):
    """A disk that is really full."""
    with SmallDisk(scratch / "disk", "128k") as disk:
        copy_example(disk, "airport")
        os.rmdir(disk / "home")
        filler = disk / "filler"
        with open(filler, "wb", buffering=0) as file:
            try:
                while True:
                    file.write(bytes(4096))
            except OSError:
                pass
        old = contents(disk)
        home = {"MORVANE_HOME": str(scratch / "home")}
        (scratch / "home").mkdir()
        result = program.run(PROCESS, disk, variables=home)
        require_refused(result, 61, "Disk full")
        require(contents(disk) == old, "files have changed", result)
        filler.unlink()
        result = program.run(PROCESS, disk, variables=home)
        require(result.returncode == 0, "with room again it fails", result)


@test
def file_made_read_only(program, scratch):
    copy_example(scratch, "airport")
    user = as_ordinary_user(scratch)
    (scratch / "airport_0.asm").chmod(0o444)
    old = contents(scratch)
    result = program.run(PROCESS, scratch, **user)
    require_refused(result, 70, "Permission denied", "airport_0.asm")
    require(contents(scratch)["airport_0.asm"] == old["airport_0.asm"], "it was written", result)
    require(not any(STRAY.search(name) for name in contents(scratch)), "a stray is left", result)


@test
def folder_made_read_only(program, scratch):
    copy_example(scratch, "airport")
    user = as_ordinary_user(scratch)
    old = contents(scratch)
    scratch.chmod(0o555)
    result = program.run(PROCESS, scratch, **user)
    require_refused(result, 70, "Permission denied", "airport_0.asm")
    scratch.chmod(0o755)
    now = contents(scratch)
    require({n: d for n, d in now.items() if not n.startswith("home/")} == old,
            "files have changed", result)


@test
def file_replaced_by_a_folder(program, scratch):
    copy_example(scratch, "airport")
    (scratch / "new_0.asm").mkdir()
    result = program.run((*PROCESS, "--output", "new"), scratch)
    require_refused(result, 75, "new_0.asm is a folder")
    require((scratch / "new_0.asm").is_dir(), "the folder is gone", result)


@test
def folder_in_place_of_an_input(program, scratch):
    copy_example(scratch, "airport")
    (scratch / "airport_0.asm").unlink()
    (scratch / "airport_0.asm").mkdir()
    result = program.run(PROCESS, scratch)
    require(result.returncode == 1 and len(boxes(result)) == 1, "it is not refused", result)


@test
def symbolic_link(program, scratch):
    copy_example(scratch, "airport")
    (scratch / "real").mkdir()
    shutil.move(scratch / "airport_0.asm", scratch / "real" / "model")
    os.symlink("real/model", scratch / "airport_0.asm")
    result = program.run(PROCESS, scratch)
    require(result.returncode == 0, "it fails", result)
    require((scratch / "airport_0.asm").is_symlink(), "the link was replaced", result)
    require(b"BGL_LIGHT" in (scratch / "real" / "model").read_bytes(), "not written", result)


@test
def dangling_link(program, scratch):
    """A link to a file that is not there yet: that file is made, as any editor would."""
    copy_example(scratch, "airport")
    os.symlink("nowhere/new_0.asm", scratch / "new_0.asm")
    result = program.run((*PROCESS, "--output", "new"), scratch)
    require_refused(result, 76, "Path not found")
    require(os.readlink(scratch / "new_0.asm") == "nowhere/new_0.asm", "the link is gone", result)
    os.symlink("here_0.asm", scratch / "newer_0.asm")
    result = program.run((*PROCESS, "--output", "newer"), scratch)
    require(result.returncode == 0 and (scratch / "here_0.asm").is_file(), "not written", result)
    require((scratch / "newer_0.asm").is_symlink(), "the link was replaced", result)


@test
def links_in_a_ring(program, scratch):
    copy_example(scratch, "airport")
    os.symlink("b_0.asm", scratch / "a_0.asm")
    os.symlink("a_0.asm", scratch / "b_0.asm")
    result = program.run((*PROCESS, "--output", "a"), scratch)
    require_refused(result, 75)


@test
def named_pipe(program, scratch):
    """Refused at once, not waited for, wherever a file is expected."""
    copy_example(scratch, "airport")
    os.mkfifo(scratch / "pipe")
    os.mkfifo(scratch / "pipe.asm")
    os.mkfifo(scratch / "pipe_0.asm")
    for command in (("inspect", "pipe"), ("process", "airport", "pipe"),
                    (*PROCESS, "--output", "pipe"), ("--yes", "rename-labels", "pipe", "G2"),
                    ("backup", "pipe")):
        result = program.run(command, scratch, timeout=10)
        require(result.returncode in (1, 2), f"{command} is not refused", result)
        require(result.stderr, f"{command} says nothing", result)
        require(stat.S_ISFIFO(os.stat(scratch / "pipe_0.asm").st_mode), "the pipe is gone", result)


@test
def changed_between_open_and_save(program, scratch):
    """Another program adds a line after the set was opened."""
    def set_up(name):
        work = scratch / name
        work.mkdir()
        copy_example(work, "airport")
        (work / "home" / "fx_list.txt").write_bytes(b"fx_a\r\n")
        return work

    # The trace files are written between Open and Save.
    journal = scratch / "journal"
    program.run((*PROCESS, "--trace"), set_up("first"), {"FAULTS_JOURNAL": str(journal)})
    calls = journal.read_text().splitlines()
    at = 1 + next(i for i, call in enumerate(calls) if call.startswith("open bgl_code.txt"))
    for answer, status in (((), 1), (("--no",), 1), (("--yes",), 0)):
        work = set_up("-".join(("work", *answer)))
        faults = {"FAULTS_AT": str(at), "FAULTS_DO": "append", "FAULTS_FILE": "airport_0.asm"}
        result = program.run((*answer, *PROCESS, "--trace"), work, faults)
        require(result.returncode == status, "the exit status is wrong", result)
        said = result.stderr.decode()
        require("[question] Another program has changed this since it was opened:\n"
                "airport_0.asm\n" in said, "nothing is asked", result)
        added = b"; by another program" in (work / "airport_0.asm").read_bytes()
        require(added == (status == 1), "the answer does not count", result)


@test
def recipes_of_every_bad_kind(program, scratch):
    """Wrong recipes are status 2 and name the file; none takes long."""
    copy_example(scratch, "airport")
    bad = {
        "empty": b"",
        "binary": bytes(range(256)) * 100,
        "zeros": bytes(100000),
        "utf16": '[[assign]]\nkind = "Lights"\n'.encode("utf-16"),
        "latin1": b'[[assign]]\nkind = "Effects"\nlstEffectType = "\xe4"\n',
        "nested-arrays": b"x = " + b"[" * 50000,
        "nested-tables": b"x = " + b"{a = " * 50000,
        "nested-keys": b".".join([b"a"] * 50000) + b" = 1\n",
        "long-key": b"k" * 500000 + b" = 1\n",
        "many-assignments": b'[[assign]]\nkind = "Sky"\n' * 20000,
        "huge": b"# comment\n" * 300000,
        "no-end": b'[[assign]]\nkind = "Lights',
        "number": b"[[assign]]\nmaterial = 99999999999999999999999\n",
    }
    for name, data in bad.items():
        (scratch / "bad.toml").write_bytes(data)
        start = time.monotonic()
        result = program.run(("process", "airport", "bad.toml"), scratch, timeout=60)
        require(result.returncode == 2, f"{name}: the exit status is not 2", result)
        require(b"bad.toml" in result.stderr, f"{name}: the file is not named", result)
        require(len(result.stderr) < 200000, f"{name}: too much is said")
        require(time.monotonic() - start < 20, f"{name}: it takes too long")


@test
def settings_of_every_bad_kind(program, scratch):
    """Settings that are no settings never stop the program."""
    for name, data in {"binary": bytes(range(256)) * 1000, "lines": b"\n" * 1000000,
                       "line": b"x" * 10000000}.items():
        work = scratch / name
        work.mkdir()
        copy_example(work, "airport")
        for file in ("fx_list.txt", "morvane.ini", "model.ini", "libview.ini"):
            (work / "home" / file).write_bytes(data)
        result = program.run(PROCESS, work)
        require(result.returncode == 0, f"{name}: it fails", result)


def big_model(path, lines_between):
    model = (ROOT / "examples/airport/airport_0.asm").read_bytes()
    with open(path, "wb") as file:
        file.write(model)
        file.write(lines_between)


@test
def line_of_100_megabytes(program, scratch):
    """Carried through unchanged."""
    copy_example(scratch, "airport")
    line = b"; " + b"x" * 100_000_000
    big_model(scratch / "airport_0.asm", line)
    result = program.run(PROCESS, scratch, timeout=120)
    require(result.returncode == 0, "it fails", result)
    require((scratch / "airport_0.asm").read_bytes().endswith(line + b"\r\n\r\n"), "not kept")


@test
def ten_million_empty_lines(program, scratch):
    copy_example(scratch, "airport")
    big_model(scratch / "airport_0.asm", b"\n" * 10_000_000)
    result = program.run(PROCESS, scratch, timeout=120)
    require(result.returncode == 0, "it fails", result)
    require((scratch / "airport_0.asm").read_bytes().endswith(b"\r\n" * 10_000_001), "not kept")


NAMES = ("line\nbreak", "quo\"te", "it's", "100%s%n", "-dash", "--yes", "; touch owned",
         "$(touch owned)", "`touch owned`", "| touch owned", "ümläut", "blank blank", "tab\there", "star*?[x]")


@test
def odd_file_names(program, scratch):
    """Names are names and nothing else."""
    example = ROOT / "examples/airport"
    for name in NAMES:
        for end in (".asm", "_0.asm"):
            shutil.copy(example / f"airport{end}", scratch / (name + end))
        shutil.copy(example / "airport.toml", scratch / (name + ".toml"))
        (scratch / "home").mkdir(exist_ok=True)
        for command in (("inspect", "--", name), ("backup", "--", name),
                        ("process", "--", name, name + ".toml"),
                        ("--yes", "restore", "--", name)):
            result = program.run(command, scratch)
            require(result.returncode == 0, f"{command} fails", result)
        require((scratch / (name + "_asm.bck")).is_file(), f"no backup of {name!r}")
    require(not (scratch / "owned").exists(), "a name was run")


@test
def compiler_gets_its_arguments_whole(program, scratch):
    """No name turns the compiler's command line into another one."""
    compiler = scratch / "bglc"
    compiler.write_text('#!/bin/sh\nfor a in "$@"; do printf "<%s>" "$a"; done\n')
    compiler.chmod(0o755)
    (scratch / "home").mkdir()
    for name in NAMES:
        shutil.copy(ROOT / "examples/airport/airport.asm", scratch / (name + ".asm"))
        shutil.copy(ROOT / "examples/airport/airport_0.asm", scratch / (name + "_0.asm"))
        result = program.run(("compile", "--", name), scratch)
        require(result.returncode == 0, f"{name!r}: it fails", result)
        got = result.stdout.decode()
        require(got.count("<") == 2 and name in got, f"{name!r}: arguments are {got!r}")
    require(not (scratch / "owned").exists(), "a name was run")


@test
def sparse_bgl_of_4_gigabytes(program, scratch):
    """Only what is asked for is read, and a copy that does not fit is given up."""
    with SmallDisk(scratch / "disk", "4m") as disk:
        for number, library in enumerate((200, 0x7FFFFF00)):
            header = bytearray(128)
            struct.pack_into("<h", header, 0, 1)
            struct.pack_into("<i", header, 62, library)
            with open(disk / f"{number}.bgl", "wb") as file:
                file.write(header)
                file.seek(library)
                file.write(struct.pack("<5i", 40, 0, 0, 0, 0) * 3)
                file.truncate(4 << 30)
        for command in (("bgl", "analyse", "0.bgl"), ("bgl", "analyse", "1.bgl"),
                        ("bgl", "search", ".")):
            start = time.monotonic()
            result = program.run(command, disk, variables={"MORVANE_HOME": str(scratch / "home")})
            require(result.returncode == 0, f"{command} fails", result)
            require(time.monotonic() - start < 20, f"{command} takes too long", result)
        result = program.run(("--yes", "bgl", "universal", "0.bgl"), disk,
                             variables={"MORVANE_HOME": str(scratch / "home")})
        require_refused(result, 61, "Disk full")
        require(sorted(path.name for path in disk.iterdir()) == ["0.bgl", "1.bgl"],
                "a copy was left behind", result)


@test
def names_in_files_are_no_paths(program, scratch):
    """What a recipe or a design calls something never becomes the name of a file."""
    work = scratch / "deep" / "down"
    work.mkdir(parents=True)
    copy_example(work, "airport")
    (work / "evil.toml").write_text(
        '[[assign]]\nhighlight = "Red"\nkind = "Effects"\nlstEffectType = "../../owned"\n'
        '[[assign]]\nkind = "Library New"\nlibGUID = "/../../owned"\n', encoding="utf-8")
    before = set(contents(scratch))
    result = program.run(("process", "airport", "evil.toml", "--trace"), work)
    require(result.returncode == 0, "it fails", result)
    new = set(contents(scratch)) - before
    require(all(name.startswith("deep/down/") for name in new), f"{new} were made", result)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--cli", required=True)
    parser.add_argument("--preload", required=True)
    parser.add_argument("tests", nargs="*")
    options = parser.parse_args()
    program = Program(options.cli, options.preload)
    failed = 0
    for name in options.tests or TESTS:
        with Scratch() as scratch:
            scratch.chmod(0o755)
            try:
                TESTS[name](program, scratch)
                print(f"{name}: passed")
            except Impossible as reason:
                print(f"{name}: not shown: {reason}")
            except (Broken, subprocess.TimeoutExpired) as broken:
                failed += 1
                print(f"{name}: {broken}", file=sys.stderr)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
