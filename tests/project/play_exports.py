#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Plays gmax while morvane-cli watch runs, and counts what is rebuilt.

    play_exports.py --cli PROGRAM [--exports 200]

Writes both files of a set in the four manners in which exporters were seen to write, by the clock:
in place in pieces, to temporary names and renamed, the second file 0.8 s after the first, deleted
and written after a pause. Each export must be rebuilt exactly once, from both of its own files.
A machine that is so busy that the second file comes more than a second late has not played the
manner: that export is played again.
"""

import argparse
import os
import queue
import re
import signal
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

QUIET = 1.0  # seconds for which both files are unchanged before they are read
LATE = 0.97 * QUIET
PATIENCE = 60.0


def crlf(*lines):
    return "".join(line + "\r\n" for line in lines).encode("ascii")


def model(number):
    """One red material; its triangles tell which export it is."""
    return crlf(
        "BGL_BEGIN 0800h", "MATERIAL_LIST_BEGIN",
        "    MATERIAL_DEF 0.5,0.5,0.5,1.0,  0.5,0.5,0.5,  1.0,0.0,0.0,  0.0,0.0,0.0,  0.0 ; m",
        "MATERIAL_LIST_END", "VERTEX_LIST_BEGIN",
        *[f"    VERTEX_DEF {x},0.0,0.0, 0.0,1.0,0.0, 0.0,0.0 ; v" for x in ("0.0", "1.0", "4.0")],
        "VERTEX_LIST_END", "master label BGLCODE", "    MATERIAL 0,0 ; x",
        "    DRAW_TRI_BEGIN 0, 3", *["    DRAW_TRI 0, 1, 2"] * number, "    DRAW_TRI_END",
        "    BGL_RETURN", "BGL_END", "BGL_RETURN")


def frame(number):
    return crlf(f"; export {number}", "object label BGLCODE",
                "    SCALE_AGL skip, 5, 40, 65536, 0100h, 0, 0200h, 0, 0, 0",
                "    INSTANCE_CALL master, 0, 0, 0", "skip label BGLCODE",
                "    include C:\\EXPORT\\a_0.asm", "    END")


class Exporter:
    """Writes in the four manners; `slowest` is the longest pause that it made in a pair."""

    def __init__(self, folder):
        self.model, self.frame = folder / "a_0.asm", folder / "a.asm"
        self.slowest = 0.0
        self.last = None

    def touched(self):
        now = time.monotonic()
        if self.last is not None:
            self.slowest = max(self.slowest, now - self.last)
        self.last = now

    def in_pieces(self, path, data):
        with open(path, "wb") as file:
            for n in range(3):
                file.write(data[n * len(data) // 3:(n + 1) * len(data) // 3])
                file.flush()
                self.touched()
                time.sleep(0.25)

    def write(self, path, data):
        path.write_bytes(data)
        self.touched()

    def in_place(self, number):
        self.in_pieces(self.model, model(number))
        self.in_pieces(self.frame, frame(number))

    def renamed(self, number):
        work = [self.model.with_suffix(".tmp"), self.frame.with_suffix(".tmp")]
        self.in_pieces(work[0], model(number))
        self.in_pieces(work[1], frame(number))
        os.replace(work[0], self.model)
        self.touched()
        time.sleep(0.25)
        os.replace(work[1], self.frame)
        self.touched()

    def one_late(self, number):
        self.write(self.model, model(number))
        time.sleep(0.8)
        self.write(self.frame, frame(number))

    def deleted(self, number):
        self.model.unlink()
        self.frame.unlink()
        time.sleep(1.5)
        self.write(self.model, model(number))
        self.write(self.frame, frame(number))

    def play(self, number):
        """Whether the pauses were as short as the exporter's."""
        self.slowest, self.last = 0.0, None
        [self.in_place, self.renamed, self.one_late, self.deleted][number % 4](number)
        return self.slowest < LATE


class Watch:
    """The program, and what it made: the numbers of model and frame at each rebuild."""

    def __init__(self, cli, folder):
        self.folder = folder
        environment = {**os.environ, "MORVANE_HOME": str(folder)}
        self.process = subprocess.Popen([cli, "watch"], cwd=folder, env=environment, text=True,
                                        stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        self.lines = queue.Queue()
        threading.Thread(target=self.read, daemon=True).start()

    def read(self):
        for line in self.process.stdout:
            self.lines.put(line.rstrip())

    def made(self):
        text = (self.folder / "build/a_0.asm").read_text(encoding="ascii")
        found = re.match(r"; export (\d+)", (self.folder / "build/a.asm").read_text("ascii"))
        return text.count("    BGL_LIGHT "), int(found.group(1)) if found else 0

    def builds(self, seconds, at_least=0):
        """What is made within the time, or until there are as many builds; and what else it said."""
        made, other = [], []
        end = time.monotonic() + seconds
        while time.monotonic() < end and not (at_least and len(made) >= at_least):
            try:
                line = self.lines.get(timeout=0.05)
            except queue.Empty:
                continue
            if re.match(r"\d+ steps?: 1 made, ", line):
                made.append(self.made())
            elif not line.startswith("["):
                other.append(line)
        return made, other

    def stop(self):
        self.process.send_signal(signal.SIGINT)
        return self.process.wait(30)


def write_project(folder):
    (folder / "exports").mkdir()
    (folder / "exports/a_0.asm").write_bytes(model(1))
    (folder / "exports/a.asm").write_bytes(frame(1))
    (folder / "red.toml").write_text('[[assign]]\nhighlight = "Red"\nkind = "Lights"\n'
                                     'LightVariable = "beacnt"\n')
    (folder / "morvane.toml").write_text('[[set]]\nbase = "exports/a"\nrecipe = "red.toml"\n')


def play_all(watch, exporter, count):
    """Number of rebuilds, of exports played too slowly, and what went wrong."""
    rebuilt, slow, wrong = 0, 0, []
    number = 1
    while rebuilt < count and len(wrong) < 10:
        number += 1
        counts = exporter.play(number)
        made, other = watch.builds(PATIENCE, at_least=1)
        more, others = watch.builds(QUIET + 0.3)
        if not counts:
            slow += 1
            continue
        rebuilt += 1
        if made + more != [(number, number)] or other + others:
            wrong.append(f"export {number}: made {made + more}, said {other + others}")
    return rebuilt, slow, wrong


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--cli", required=True)
    parser.add_argument("--exports", type=int, default=200)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        write_project(folder)
        watch = Watch(os.path.abspath(options.cli), folder)
        first, other = watch.builds(PATIENCE, at_least=1)
        if len(first) != 1:
            sys.exit(f"the first build was not made: {other}")
        rebuilt, slow, wrong = play_all(watch, Exporter(folder / "exports"), options.exports)
        status = watch.stop()
    for text in wrong:
        print(text, file=sys.stderr)
    print(f"{rebuilt} exports, {len(wrong)} of them not rebuilt exactly once from a whole pair; "
          f"{slow} more were played too slowly to count; the watch ended with status {status}")
    return 1 if wrong or status != 0 else 0


if __name__ == "__main__":
    sys.exit(main())
