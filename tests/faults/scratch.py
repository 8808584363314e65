# SPDX-License-Identifier: GPL-3.0-or-later
"""Running the program under test in folders of its own, and looking at what it leaves there."""

import os
import re
import shutil
import subprocess
import tempfile
from pathlib import Path

STRAY = re.compile(r"\.morvane-(tmp|old)$")
BOX = re.compile(r"^(\[(?:critical|exclamation|information|message)\] .*)$", re.MULTILINE)


def memory_folder():
    """Where a flush costs nothing; what is tested does not depend on the medium."""
    return "/dev/shm" if os.access("/dev/shm", os.W_OK) else None


class Scratch:
    """A folder that is removed at the end of a with block."""

    def __init__(self, where=None):
        self.path = Path(tempfile.mkdtemp(prefix="morvane-faults-", dir=where or memory_folder()))

    def __enter__(self):
        return self.path

    def __exit__(self, *_):
        for folder, _, _ in os.walk(self.path):
            os.chmod(folder, 0o700)
        shutil.rmtree(self.path)


def contents(folder):
    """Every file below a folder: its relative path and its bytes; a link by where it leads."""
    result = {}
    for path in sorted(folder.rglob("*")):
        name = str(path.relative_to(folder))
        if path.is_symlink():
            result[name] = ("link", os.readlink(path))
        elif path.is_file():
            result[name] = path.read_bytes()
    return result


class Program:
    """The programs under test, with the library that makes calls fail."""

    def __init__(self, cli, preload=None, write_settings=None):
        self.paths = {"cli": os.path.abspath(cli),
                      "write_settings": os.path.abspath(write_settings or "")}
        self.preload = os.path.abspath(preload or "")

    def run(self, arguments, folder, faults=None, program="cli", timeout=60,
            variables=None, **options):
        environment = {**os.environ, "MORVANE_HOME": str(folder / "home"), "LC_ALL": "C.UTF-8",
                       **(variables or {})}
        for name in ("FAULTS_AT", "FAULTS_DO", "FAULTS_JOURNAL", "FAULTS_ALWAYS"):
            environment.pop(name, None)
        if faults:
            environment.update(faults, LD_PRELOAD=self.preload)
            # A sanitizer's own library does not come first then, which it would refuse.
            environment["ASAN_OPTIONS"] = "verify_asan_link_order=0"
        return subprocess.run([self.paths[program], *arguments], cwd=folder, env=environment,
                              stdin=subprocess.DEVNULL, capture_output=True, timeout=timeout,
                              check=False, **options)


def boxes(result):
    """The message boxes on standard error."""
    return BOX.findall(result.stderr.decode("latin-1"))


def describe(result):
    return (f"status {result.returncode}\n--- stdout\n{result.stdout.decode('latin-1')[-400:]}"
            f"\n--- stderr\n{result.stderr.decode('latin-1')[-400:]}")
