#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Shows that a command never leaves a half-written file, whichever of its calls goes wrong.

    run_faults.py --cli PROGRAM --preload LIBRARY CASE...

Each case of cases.py is run once to count its calls that read or change files. Then it is run
again for every call, each time in a fresh copy of its files, and that call is made to go wrong in
every way there is. After each run the files are looked at: whole, old or new, and no third.
"""

import argparse
import errno
import itertools
import json
import re
import shutil
import subprocess
import sys
from pathlib import Path

from cases import CASES
from scratch import STRAY, Program, Scratch, boxes, contents, describe

ROOT = Path(__file__).resolve().parents[2]

# What the message must say, by the error of the system.
FAILURES = {
    errno.ENOSPC: ("61", "Disk full"),
    errno.EIO: ("57", "Device I/O error"),
    errno.EACCES: ("70", "Permission denied"),
    errno.EROFS: ("70", "Permission denied"),
}
DEATHS = ("kill", "torn", "powerless")

# Calls that only read. To die before one leaves what dying before the next change leaves.
READS = ("open-for-reading ", "read ", "pread ")
READ_FAILURES = {
    errno.EACCES: FAILURES[errno.EACCES],
    errno.EIO: FAILURES[errno.EIO],
    errno.ENOENT: (),  # it was there a moment ago
}


def without_empty_lines(data):
    return [line for line in data.split(b"\r\n") if line]


class Broken(Exception):
    """A rule that did not hold."""


def require(condition, text, result=None):
    if not condition:
        raise Broken(text + (f"\n{describe(result)}" if result else ""))


def is_own(name):
    """A file of the program folder: its defaults are written on the way."""
    return name.startswith("home/")


class Runs:
    """One case: its files at the start, and as a run that nothing disturbs leaves them."""

    def __init__(self, program, case, folder):
        self.program = program
        self.case = case
        self.count = 0
        self.start = folder / "start"
        self.make_start()
        self.old = self.contents(self.start)
        with Scratch() as scratch:
            work = self.fresh_copy(scratch)
            journal = scratch / "journal"
            result = self.run(work, FAULTS_JOURNAL=str(journal))
            require(result.returncode == 0, "the undisturbed run fails", result)
            self.new = self.contents(work)
            self.calls = journal.read_text(encoding="utf-8").splitlines()
        require(self.case.reports_only or self.new != self.old, "the command changes nothing")

    def make_start(self):
        self.start.mkdir()
        (self.start / "home").mkdir()
        for folder in self.case.files:
            shutil.copytree(ROOT / folder, self.start, dirs_exist_ok=True)
        self.case.setup(self.start)
        for command in self.case.before:
            result = self.program.run(command, self.start)
            require(result.returncode == 0, f"{command} fails", result)
        self.case.after(self.start)

    def fresh_copy(self, scratch):
        work = scratch / "work"
        if work.exists():
            shutil.rmtree(work)
        # Keeps links and second names as they are.
        subprocess.run(["cp", "-a", self.start, work], check=True)
        return work

    def run(self, work, **faults):
        self.count += 1
        return self.program.run(self.case.command, work, faults, program=self.case.program)

    def contents(self, work):
        found = {name: data for name, data in contents(work).items()
                 if name not in self.case.scratch}
        if self.case.random:
            found = {name: re.sub(self.case.random, b"RANDOM", data)
                     for name, data in found.items()}
        return found

    def allowed(self, name, data):
        """Whether a file is as it was or as it is to be."""
        return data in (self.old.get(name), self.new.get(name))

    def require_whole(self, work, result):
        now = self.contents(work)
        for name in {**self.old, **now}:
            if name not in now:
                require(name not in self.old or name not in self.new, f"{name} is gone", result)
            elif not STRAY.search(name):
                require(self.allowed(name, now[name]), f"{name} is neither old nor new", result)

    def require_state(self, work, state, result, strays_allowed=False):
        """The user's files are in one state; the program's own may be old or new."""
        self.require_whole(work, result)
        now = self.contents(work)
        for name in sorted({*now, *state}):
            if is_own(name) or (strays_allowed and STRAY.search(name)):
                continue
            require(now.get(name) == state.get(name), f"{name} is not as it should be", result)

    def is_new(self, name, data):
        if name in self.case.growing:
            return without_empty_lines(data) == without_empty_lines(self.new[name])
        return data == self.new.get(name) or (is_own(name) and self.allowed(name, data))

    def is_done(self, work):
        now = self.contents(work)
        return all(now.get(name) == self.new.get(name) for name in {**self.old, **self.new}
                   if not is_own(name))

    def read_fails_at(self, n, code):
        """Either it does not matter, or the command is refused and says why."""
        with Scratch() as scratch:
            work = self.fresh_copy(scratch)
            result = self.run(work, FAULTS_AT=str(n), FAULTS_DO=str(code))
            if result.returncode == 0:
                self.require_state(work, self.new, result, strays_allowed=True)
                return
            require(result.returncode in (1, 2), "the exit status is not 0, 1 or 2", result)
            if code == errno.ENOENT or self.case.listed:
                # Some commands have words of their own for a missing file.
                require(result.stderr or (self.case.listed and result.stdout), "nothing says why",
                        result)
            else:
                # What is wrong with a recipe or a list is described without a number.
                number, description = READ_FAILURES[code]
                self.require_words(result, [number, description][result.returncode - 1:])
            if self.case.stepwise:
                self.require_told(work, result)
            else:
                self.require_state(work, self.old, result)

    def require_words(self, result, words):
        said = result.stderr.decode("latin-1")
        for word in words:
            require(word in said, f"nothing says '{word}'", result)

    def read_short_at(self, n, always):
        """A read that returns less than it was asked for is carried on."""
        with Scratch() as scratch:
            work = self.fresh_copy(scratch)
            faults = {"FAULTS_ALWAYS": "1"} if always else {}
            result = self.run(work, FAULTS_AT=str(n), FAULTS_DO="short", **faults)
            require(result.returncode == 0, "a short read is not carried on", result)
            self.require_state(work, self.new, result)

    def run_again(self, work):
        """A following run of the same command works, and takes the strays with it."""
        if self.case.status_when_done is not None and self.is_done(work):
            result = self.run(work)
            require(result.returncode == self.case.status_when_done,
                    "a run on what is done does not end as it should", result)
            return
        for command in self.case.start_again:
            maybe = command[0] == "--maybe"
            result = self.program.run(command[1:] if maybe else command, work)
            require(maybe or result.returncode == 0, f"{command} fails", result)
        result = self.run(work)
        require(result.returncode == 0, "a following run fails", result)
        for name, data in self.contents(work).items():
            require(self.is_new(name, data), f"{name} is not new after a following run", result)

    def die_at(self, n, how):
        with Scratch() as scratch:
            work = self.fresh_copy(scratch)
            result = self.run(work, FAULTS_AT=str(n), FAULTS_DO=how)
            require(result.returncode < 0, "the process did not die", result)
            self.require_whole(work, result)
            self.run_again(work)

    def fail_at(self, n, code):
        with Scratch() as scratch:
            work = self.fresh_copy(scratch)
            result = self.run(work, FAULTS_AT=str(n), FAULTS_DO=str(code))
            if result.returncode == 0:
                # What fails when all is in place is not worth a message, and no reason to go back.
                self.require_state(work, self.new, result, strays_allowed=True)
                self.run_again(work)
                return
            require(result.returncode == 1, "the exit status is not 1", result)
            self.require_message(result, code)
            if self.case.stepwise:
                self.require_told(work, result)
            else:
                self.require_state(work, self.old, result)

    def require_told(self, work, result):
        """Every file that is no longer the old one is named."""
        self.require_whole(work, result)
        said = result.stderr.decode("utf-8")
        for name, data in self.contents(work).items():
            require(not STRAY.search(name), f"{name} was left behind", result)
            require(data == self.old.get(name) or is_own(name) or name in said,
                    f"nothing tells that {name} has changed", result)

    def require_message(self, result, code):
        if self.case.listed:
            require(result.stderr, "nothing says why", result)
            return
        shown = [box for box in boxes(result) if box not in self.case.told_before]
        require(len(shown) == 1, "there is not exactly one message", result)
        for word in FAILURES[code]:
            require(word in shown[0], f"the message does not say '{word}'", result)

    def fail_from(self, n, code):
        """The disk stays broken: then nobody can clean up, but the files are whole."""
        with Scratch() as scratch:
            work = self.fresh_copy(scratch)
            result = self.run(work, FAULTS_AT=str(n), FAULTS_DO=str(code), FAULTS_ALWAYS="1")
            require(result.returncode in (0, 1, 2), "the exit status is not 0, 1 or 2", result)
            self.require_whole(work, result)
            self.run_again(work)

    def write_short_at(self, n, always):
        with Scratch() as scratch:
            work = self.fresh_copy(scratch)
            faults = {"FAULTS_ALWAYS": "1"} if always else {}
            result = self.run(work, FAULTS_AT=str(n), FAULTS_DO="short", **faults)
            require(result.returncode == 0, "a short write is not carried on", result)
            self.require_state(work, self.new, result)

    def all_faults(self):
        for n, call in enumerate(self.calls, 1):
            if call.startswith(READS):
                yield from self.read_faults(n, call)
                continue
            for how in DEATHS:
                yield f"{how} at call {n}, {call}", lambda n=n, how=how: self.die_at(n, how)
            for code in FAILURES:
                name = errno.errorcode[code]
                yield f"{name} at call {n}, {call}", lambda n=n, c=code: self.fail_at(n, c)
            yield f"EIO from call {n} on, {call}", lambda n=n: self.fail_from(n, errno.EIO)
            if call.startswith("write "):
                for always in (False, True):
                    yield (f"short write at call {n}, {call}",
                           lambda n=n, always=always: self.write_short_at(n, always))

    def read_faults(self, n, call):
        for code in READ_FAILURES:
            if code != errno.ENOENT or call.startswith("open"):
                name = errno.errorcode[code]
                yield (f"{name} at call {n}, {call}",
                       lambda n=n, c=code: self.read_fails_at(n, c))
        yield f"EIO from call {n} on, {call}", lambda n=n: self.fail_from(n, errno.EIO)
        if not call.startswith("open"):
            for always in (False, True):
                yield (f"short read at call {n}, {call}",
                       lambda n=n, always=always: self.read_short_at(n, always))


class BuildRuns(Runs):
    """A build makes what it can: after each run its files are whole, its manifest says nothing that
    is not so, and the next build makes the rest."""

    def require_whole(self, work, result):
        super().require_whole(work, result)
        manifest = work / self.case.manifest
        if not manifest.exists():
            return
        steps = json.loads(manifest.read_text(encoding="utf-8"))["steps"]
        for name, step in steps.items():
            for file in step["outputs"] if step["made"] else []:
                self.require_as_recorded(manifest.parent / file["path"], file, name, result)

    def require_as_recorded(self, path, file, step, result):
        require(path.exists(), f"{path.name} of {step} is said to be made, but missing", result)
        found = path.stat()
        require((found.st_size, found.st_mtime_ns) == (file["size"], file["modified"]),
                f"{path.name} of {step} is not what the manifest says", result)

    def read_fails_at(self, n, code):
        self.one_fault(n, code, READ_FAILURES[code])

    def fail_at(self, n, code):
        self.one_fault(n, code, FAILURES[code])

    def one_fault(self, n, code, words):
        with Scratch() as scratch:
            work = self.fresh_copy(scratch)
            result = self.run(work, FAULTS_AT=str(n), FAULTS_DO=str(code))
            require(result.returncode in (0, 1, 2), "the exit status is not 0, 1 or 2", result)
            if result.returncode == 0:
                self.require_state(work, self.new, result, strays_allowed=True)
            else:
                self.require_whole(work, result)
                require(result.stderr, "nothing says why", result)
                said = (result.stdout + result.stderr).decode("latin-1")
                require(not words or words[1] in said, f"nothing says '{words[-1:]}'", result)
            self.run_again(work)


def run_case(program, name, every):
    """Number of calls and of runs, and what went wrong; of the faults each `every`-th."""
    wrong = []
    with Scratch() as folder:
        try:
            kind = BuildRuns if CASES[name].manifest else Runs
            runs = kind(program, CASES[name], folder)
        except Broken as broken:
            return 0, 0, [f"{name}: {broken}"]
        for what, fault in itertools.islice(runs.all_faults(), 0, None, every):
            try:
                fault()
            except Broken as broken:
                wrong.append(f"{name}: {what}: {broken}")
        return len(runs.calls), runs.count, wrong


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--cli", required=True)
    parser.add_argument("--preload", required=True)
    parser.add_argument("--write-settings", help="the program of write_settings.cpp")
    parser.add_argument("--every", type=int, default=1, metavar="N",
                        help="only each N-th fault (default: each)")
    parser.add_argument("cases", nargs="*", choices=[*CASES, []], default=[])
    options = parser.parse_args()
    program = Program(options.cli, options.preload, options.write_settings)
    failed = False
    for name in options.cases or CASES:
        calls, count, wrong = run_case(program, name, options.every)
        print(f"{name}: {calls} calls, {count} runs, {len(wrong)} failures")
        for text in wrong:
            print(text, file=sys.stderr)
        failed = failed or bool(wrong)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
