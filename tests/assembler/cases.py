# SPDX-License-Identifier: GPL-3.0-or-later
"""What the groups of cases share: work folders, runs of the program, checks."""

import json
import os
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

import masm

ROOT = Path(__file__).resolve().parents[2]
EXAMPLES = ROOT / "examples"
sys.path.insert(0, str(ROOT / "tests" / "reference"))

COUNTERS = {"Lights": "lights", "Effects": "effects", "Windsock": "windsocks", "Library": "calls",
            "Library New": "calls"}


class Failed(Exception):
    pass


class Program:
    def __init__(self, path):
        self.path = str(Path(path).resolve())

    def run(self, folder, *words, status=0):
        """Standard output and error of a run, which must end with that status."""
        home = Path(folder) / ".home"
        home.mkdir(exist_ok=True)
        done = subprocess.run([self.path, "--program-folder", str(home), *words], cwd=folder,
                              capture_output=True, text=True, errors="replace")
        if done.returncode != status:
            raise Failed(f"{' '.join(words)}: status {done.returncode}\n{done.stdout}{done.stderr}")
        return done.stdout, done.stderr

    def process(self, folder, base, recipe):
        """Processes a set; gives the document of --json."""
        return json.loads(self.run(folder, "--json", "process", base, recipe)[0])


# Writes are synced; in memory that costs nothing.
MEMORY = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None


class Work:
    """A folder with copies of files, gone when the block is left."""

    def __init__(self, *sources):
        self.sources = sources

    def __enter__(self):
        self.folder = Path(tempfile.mkdtemp(prefix="assembler", dir=MEMORY))
        for source in self.sources:
            shutil.copytree(source, self.folder, dirs_exist_ok=True)
        return self.folder

    def __exit__(self, *_):
        shutil.rmtree(self.folder)


def require(condition, text):
    if not condition:
        raise Failed(text)


def must_assemble(path, extra=""):
    """`extra`: definitions besides the stub's."""
    try:
        return masm.assemble_file(path, extra)
    except masm.Refused as refused:
        raise Failed(f"{path} does not assemble: {refused}") from None


def must_not_assemble(path, because):
    try:
        masm.assemble_file(path)
    except masm.Refused as refused:
        require(because in str(refused), f"{path}: refused, but not for {because}: {refused}")
        return
    raise Failed(f"{path} assembles, which it must not ({because})")


def triangles_of(processed):
    """Triangles of a processed material, from the number of its lines of code."""
    kind, lines = processed["kind"], processed["lines"]
    return {"Lights": lines - 1, "Windsock": lines}.get(kind, lines // 3)


def expected_counts(processed):
    counts = dict.fromkeys(masm.NAMES.values(), 0)
    for material in processed:
        counts[COUNTERS[material["kind"]]] += triangles_of(material)
        if material["kind"] == "Library New":
            counts["matrices"] += triangles_of(material)
    return counts


def check_objects(assembled, document, name):
    counts, expected = masm.count_objects(assembled), expected_counts(document["processed"])
    require(counts == expected, f"{name}: the bytes hold {counts}, the program says {expected}")
