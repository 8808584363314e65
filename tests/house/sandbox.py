# SPDX-License-Identifier: GPL-3.0-or-later
"""A folder in which the commands of the documents run: the files that the pages speak of are there,
made from the examples, and a stand-in for the compiler."""

import os
import re
import shutil
import subprocess
import tempfile
from dataclasses import dataclass
from pathlib import Path
from textwrap import dedent

COMPILER = """#!/bin/sh
case $1 in
    /bgl) ending=bgl ;;
    /mdl) ending=mdl ;;
    *) exit 2 ;;
esac
[ -f "$2" ] || { echo "cannot open file : $2"; exit 1; }
echo "Assembling: $2"
: >"${2%.asm}.$ending"
"""

# Runs commands as if they were typed one after the other. A command that watches is ended by Ctrl-C
# once it has built.
SHELL = r"""
number=0
watch() {
    env --default-signal=INT sh -c "exec $1" >"$2.out" 2>"$2.err" </dev/null &
    local program=$!
    for _ in $(seq 600); do
        ! grep -qE ' steps?:' "$2.out" && kill -0 $program || break
        sleep 0.1
    done
    kill -INT $program
    wait $program
}
run() {
    local trace=$TRACE/$number
    case $1 in
        "morvane-cli watch"*) watch "$1" "$trace" ;;
        *) eval "$1" >"$trace.out" 2>"$trace.err" </dev/null ;;
    esac
    echo $? >"$trace.status"
    number=$((number + 1))
}
"""


@dataclass
class Run:
    status: int
    output: str
    errors: str


class Sandbox:
    def __init__(self, program, checkout):
        self.program, self.checkout = Path(program), Path(checkout)
        self.held = tempfile.TemporaryDirectory(prefix="morvane-test-")
        self.root = Path(self.held.name)
        self.folder = self.root / "work"
        self.where = self.folder
        self.fill()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.held.cleanup()

    def copy(self, source, *names):
        for name in names:
            target = self.folder / name
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(self.checkout / source, target)

    def copy_set(self, source, name):
        """Copies a set under another name, as if it had been exported under that."""
        old = Path(source).name
        for ending in (".asm", "_0.asm"):
            text = (self.checkout / (source + ending)).read_bytes()
            target = self.folder / (name + ending)
            target.parent.mkdir(parents=True, exist_ok=True)
            target.write_bytes(re.sub(rb"\b" + old.encode() + rb"(?=_|\b)",
                                      Path(name).name.encode(), text))

    def fill(self):
        examples = "examples/"
        shutil.copytree(self.checkout / "examples", self.folder / "examples")
        shutil.copytree(self.checkout / "examples/library", self.folder / "library")
        for path in (self.checkout / "examples/library").iterdir():
            self.copy(path, path.name)
        for folder in ("exports", "recipes"):
            shutil.copytree(self.checkout / "examples/project" / folder, self.folder / folder)
        for name in ("apron", "terminal", "tower"):
            self.copy_set(f"{examples}project/exports/{name}", name)
            self.copy(f"{examples}project/recipes/{name}.toml", f"{name}.toml")
        self.copy(f"{examples}project/recipes/shared.toml", "shared.toml", "edge_lights.toml")
        for name in ("airport", "exports/airport"):
            self.copy_set(f"{examples}airport/airport", name)
        self.copy(f"{examples}airport/airport.toml", "airport.toml")
        self.copy_set(f"{examples}chimney/chimney", "mymodel")
        self.copy_set(f"{examples}chimney/chimney", "scenery/mymodel")
        for name, others in {"complete": ["plane", "exports/complete"],
                             "fuselage": ["body", "exports/fuselage"],
                             "wings_high": ["high", "wings", "exports/high"],
                             "wings_low": ["low", "exports/low"], "shadow": ["exports/shadow"]}.items():
            for other in [name, *others]:
                self.copy_set(f"{examples}aircraft-flex/{name}", other)
        self.copy_set(f"{examples}aircraft-lights/aircraft_lights", "glider")
        readme = (self.checkout / "README.md").read_text()
        recipe, project = re.findall(r"(?ms)^ *```toml\n(.*?)```", readme)
        self.write("mymodel.toml", dedent(recipe))
        self.write("scenery/mymodel.toml", dedent(recipe))
        self.write("scenery/morvane.toml", dedent(project))
        self.copy("share/morvane.inc", "morvane.inc", "scenery/morvane.inc", "share/morvane.inc", "examples/project/morvane.inc")
        self.write("morvane.toml", '[project]\n[[set]]\nbase = "exports/tower"\n'
                                   'recipe = "recipes/tower.toml"\n')
        libraries = "tests/golden/bgl-search/in/scenery"
        shutil.copytree(self.checkout / libraries, self.folder / "scenery", dirs_exist_ok=True)
        self.copy(f"{libraries}/world/airport.bgl", "airport.bgl", "objects.bgl", "airport_library.bgl")
        self.write("made/.keep", "")
        compiler = self.write("../bin/bglc", COMPILER)
        compiler.chmod(0o755)
        (self.root / "bin/morvane-cli").symlink_to(self.program)

    def write(self, name, text):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
        return path

    def run(self, commands):
        """Runs the commands in the folder that earlier ones went to."""
        trace = Path(tempfile.mkdtemp(dir=self.root))
        script = SHELL + "".join(f"run {quoted(command)}\n" for command in commands)
        script += 'pwd >"$TRACE/where"\n'
        environment = {**os.environ, "PATH": f"{self.root / 'bin'}:{os.environ['PATH']}",
                       "TRACE": str(trace), "HOME": str(self.root / "home"),
                       "MORVANE_HOME": str(self.root / "settings")}
        subprocess.run(["bash", "-c", script], cwd=self.where, env=environment, check=True)
        self.where = Path((trace / "where").read_text().strip())
        read = lambda name: (trace / name).read_text(errors="replace")
        return [Run(int(read(f"{n}.status")), read(f"{n}.out"), read(f"{n}.err"))
                for n in range(len(commands))]


def quoted(text):
    return "'" + text.replace("'", "'\\''") + "'"
