#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks the documents of `bgl analyse --json` and `bgl search --json` against docs/bgl.schema.json,
and the commands on docs/scripting.md against what they are to find.

    check_documents.py MORVANE_CLI CHECKOUT

Ends with 77, "not run", when the schema checker or jq is missing.
"""

import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

try:
    import jsonschema
except ImportError:
    print("the schema checker is missing (package python3-jsonschema)")
    sys.exit(77)

TOWER = "005ADE080h,042E14DCFh,073AEB9A1h,0FFFFFFFEh"


def documents(program, golden, home):
    """What the program prints for files of every kind, with the arguments that it was given."""
    commands = [["search", golden / "bgl-search/in/scenery"], ["search", golden / "nowhere"],
                ["analyse", golden / "nowhere.bgl"]]
    commands += [["analyse", path] for path in sorted(golden.glob("bgl-*/in/**/*.[bB][gG][lL]"))]
    for command in commands:
        arguments = [program, "--program-folder", home, "--json", "bgl", *command]
        run = subprocess.run(arguments, capture_output=True, check=False,
                             env={**os.environ, "PATH": "/nowhere"})  # no wine
        if run.returncode not in (0, 1):
            sys.exit(f"{command} ended with status {run.returncode}: {run.stderr.decode()}")
        yield command, json.loads(run.stdout)


def check_schema(program, checkout, home):
    schema = json.loads((checkout / "docs/bgl.schema.json").read_text())
    jsonschema.Draft7Validator.check_schema(schema)
    count = 0
    for command, document in documents(program, checkout / "tests/golden", home):
        try:
            jsonschema.validate(document, schema, cls=jsonschema.Draft7Validator)
        except jsonschema.ValidationError as error:
            sys.exit(f"{command}: {error}")
        count += 1
    for wrong in ({}, {"file": "x", "valid": True, "messages": []}, {"folder": "x"}):
        if jsonschema.Draft7Validator(schema).is_valid(wrong):
            sys.exit(f"the schema takes {wrong}")
    return count


def check_examples(program, checkout, home):
    """Runs the page's commands; each must print something about the tower."""
    page = (checkout / "docs/scripting.md").read_text()
    shutil.copytree(checkout / "tests/golden/bgl-search/in/scenery", Path(home) / "work/scenery")
    second = Path(home) / "work/scenery/world/second.bgl"
    shutil.copy(Path(home) / "work/scenery/world/airport.bgl", second)
    path = f"{Path(program).parent}:{os.environ['PATH']}"
    commands = [match[0].replace("\n    ", "\n")
                for match in re.finditer(r"(?<=\n    )(morvane-cli bgl search|jq|for )(.*\n)(    .*\n)*", page)]
    found = 0
    for command in commands:
        command = command.replace("hangar", "TOWER")
        run = subprocess.run(["sh", "-c", command], cwd=Path(home) / "work", text=True, check=True,
                             capture_output=True,
                             env={**os.environ, "PATH": path, "MORVANE_HOME": str(home)})
        if "> objects.json" not in command:
            found += 1
            if TOWER not in run.stdout and "airport.bgl" not in run.stdout:
                sys.exit(f"{command}\nfound nothing: {run.stdout}{run.stderr}")
    if found != 5:
        sys.exit(f"the page shows {found} commands that find something, not 5")
    return found


def main():
    program, checkout = Path(sys.argv[1]).resolve(), Path(sys.argv[2])
    with tempfile.TemporaryDirectory(prefix="morvane-test-") as home:
        print(f"{check_schema(program, checkout, home)} documents hold to the schema")
        if shutil.which("jq") is None:
            print("jq is missing (package jq)")
            sys.exit(77)
        print(f"{check_examples(program, checkout, home)} commands of the page find what they say")


if __name__ == "__main__":
    main()
