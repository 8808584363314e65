#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Holds the documents to the program: their links, recipes, commands, pictures and options.

    check_documents.py links|recipes|commands|options|json|codes|assembler|pictures MORVANE_CLI CHECKOUT

Ends with 77, "not run", when what it needs is missing.
"""

import json
import re
import subprocess
import sys
import tempfile
from pathlib import Path

from pages import anchors, blocks, inline_code, links, pages
from sandbox import Sandbox

failures = []


def fail(page, line, text):
    failures.append(f"{page.name}:{line}: {text}")


def check_links(_program, checkout):
    """Every link leads to a file, and its anchor to a heading."""
    all_pages = {page.path.resolve(): page for page in pages(checkout)}
    count = 0
    for page in all_pages.values():
        for line, target in links(page):
            if re.match(r"\w+:", target):
                continue
            count += 1
            name, _, anchor = target.partition("#")
            path = (page.path.parent / name).resolve() if name else page.path.resolve()
            if not path.exists():
                fail(page, line, f"{target} leads nowhere")
            elif anchor and anchor not in anchors(all_pages[path]):
                fail(page, line, f"{target}: no such heading")
    return f"{count} links"


def check_recipes(program, checkout):
    """Every block of TOML is a recipe, a list or a project that the program takes."""
    count = 0
    for page in pages(checkout):
        for block in blocks(page):
            if block.kind != "toml":
                continue
            count += 1
            text = "\n".join(block.lines) + "\n"
            with Sandbox(program, checkout) as sandbox:
                if "[project]" in text:
                    name, command = "taken.toml", "morvane-cli build taken.toml --dry-run"
                elif "[[object]]" in text:
                    name, command = "library/taken.toml", "morvane-cli library create library/taken.toml --output taken.asm"
                else:
                    name, command = "taken.toml", "morvane-cli check taken.toml"
                (sandbox.folder / name).write_text(text)
                run = sandbox.run([command])[0]
                if run.status != 0:
                    fail(page, block.line, f"{command}: {run.output}{run.errors}")
    return f"{count} recipes, lists and projects"


def joined(lines):
    """Lines that end with a backslash go on in the next one."""
    return "\n".join(lines).replace("\\\n", " ").split("\n")


def commands_of(block):
    """(command, expected output or None) for what a block shows to be typed."""
    found = []
    for line in joined(block.lines):
        if block.kind == "console":
            if line.startswith("$ "):
                found.append((line[2:], []))
            elif found:
                found[-1][1].append(line)
        elif line.startswith("morvane-cli "):
            found.append((line, None))
    return found


def is_synopsis(command):
    """A command with words that stand for something: BASE, FILE, "..."."""
    return re.search(r"(?<![-\w./])[A-Z]{2,}\b(?!=)(?! G2)|\.\.\.|\[", command.split("#")[0]) is not None


def matches(expected, actual):
    """Whether the lines are those expected, where "..." stands for any number of lines."""
    if not expected:
        return not actual
    if expected[0] == "...":
        return any(matches(expected[1:], actual[n:]) for n in range(len(actual) + 1))
    return bool(actual) and expected[0].rstrip() == actual[0].rstrip() and matches(expected[1:], actual[1:])


def run_block(sandbox, page, block, commands):
    for command, expected in commands:
        run = sandbox.run([command])[0]
        if run.status == 1 and "nobody is there to answer" in run.errors:
            run = sandbox.run([command.split(" #")[0] + " --yes"])[0]
        if run.status != 0:
            fail(page, block.line, f"{command}\nended with {run.status}: {run.output}{run.errors}")
        elif expected and not matches(expected, run.output.splitlines()):
            fail(page, block.line, f"{command}\nprinted\n{run.output}")


def check_page_commands(program, checkout, page):
    """Blocks of a session go on where the one before ended; others begin anew."""
    count = 0
    with Sandbox(program, checkout) as session:
        for block in blocks(page):
            commands = [pair for pair in commands_of(block) if not is_synopsis(pair[0])]
            if not commands:
                continue
            count += len(commands)
            if block.kind == "console":
                run_block(session, page, block, commands)
            else:
                with Sandbox(program, checkout) as sandbox:
                    run_block(sandbox, page, block, commands)
    return count


def script_problem(checkout, words):
    """What is wrong with a command that builds or tests this project; these are not run."""
    if words[0] in ("cmake", "ctest"):
        presets = json.loads((checkout / "CMakePresets.json").read_text())
        known = [preset["name"] for group in ("configurePresets", "buildPresets", "testPresets")
                 for preset in presets.get(group, [])]
        named = [words[at + 1] for at, word in enumerate(words[:-1]) if word == "--preset"]
        return "" if all(name in known for name in named) else f"no such preset: {named}"
    path = checkout / words[0]
    if not path.is_file():
        return "no such file"
    text = path.read_text(errors="replace")
    missing = [word for word in words[1:] if word.startswith("--") and word not in text]
    return f"does not know {missing}" if missing else ""


def check_scripts(checkout, page):
    count = 0
    for block in blocks(page):
        for line in joined(block.lines):
            words = line.removeprefix("$ ").split("#")[0].split()
            if words and re.match(r"(\./(run|test)|cmake|ctest|(tools|fuzz|bench|packaging)/\S+)$", words[0]):
                count += 1
                problem = script_problem(checkout, words)
                if problem:
                    fail(page, block.line, f"{line}: {problem}")
    return count


def check_commands(program, checkout):
    """Runs every command that a page shows; compares what it prints where the page shows that."""
    known = all_options(program)
    ran = looked = 0
    for page in pages(checkout):
        if page.name == "CHANGELOG.md":
            continue  # history
        if page.name != "scripting.md":  # has a test of its own
            ran += check_page_commands(program, checkout, page)
        looked += check_scripts(checkout, page)
        shown = inline_code(page) + [(block.line, command) for block in blocks(page)
                                     for command, _ in commands_of(block) if is_synopsis(command)]
        for line, text in shown:
            if text.startswith("morvane-cli "):
                looked += 1
                problem = usage_problem(known, text.split()[1:])
                if problem:
                    fail(page, line, f"{text}: {problem}")
    return f"{ran} commands run, {looked} looked at"


def usage_problem(known, words):
    command = ""
    for word in words:
        if f"{command} {word}".strip() in known:
            command = f"{command} {word}".strip()
    options = [word.split("=")[0] for word in words if word.startswith("-")]
    missing = [option for option in options if option not in known[command] | known[""]]
    if not command and not options:
        return "no such command"
    return f"no such option: {missing}" if missing else ""


def help_of(program, command):
    return subprocess.run([program, *command.split(), "--help"], capture_output=True, text=True,
                          check=True).stdout


def all_options(program, command="", found=None):
    """The options of every command by its name; those of all commands under ""."""
    found = {} if found is None else found
    text = help_of(program, command)
    own = text.split("\nCommon options:")[0]
    found[command] = set(re.findall(r"(?m)^  (?:-\w,)?(--[\w-]+)", own)) | set(re.findall(r"(?m)^  (-\w),", own))
    below = text.split("Subcommands:\n")[1:]
    for name in re.findall(r"(?m)^  (\S+) ", below[0].split("\n\n")[0]) if below else []:
        all_options(program, f"{command} {name}".strip(), found)
    return found


def check_options(program, checkout):
    """cli.md has a section for every command, with all of its options and no others."""
    page = next(page for page in pages(checkout) if page.name == "cli.md")
    sections = dict(re.findall(r"(?ms)^## ([^\n]*)\n(.*?)(?=^## |\Z)", page.text))
    known = all_options(program)
    count = 0
    for command, options in known.items():
        if command in ("library", "bgl"):
            continue
        title = command or "What all commands share"
        if title not in sections:
            fail(page, 1, f"no section {title}")
            continue
        rows = re.findall(r"(?m)^\| (`-[^|]*)\|", sections[title])
        named = set(re.findall(r"`(--?[\w-]+)", " ".join(rows)))
        count += len(named)
        wanted = options if not command else options - {"--help", "-h"}
        for option in sorted(wanted ^ named):
            fail(page, 1, f"{title}: {option} is {'missing' if option in wanted else 'unknown'}")
    return f"{count} options of {len(known)} commands"


JSON_RUNS = {
    "inspect": "inspect airport", "process": "process airport --dry-run",
    "sets": "process apron tower", "check": "check airport airport.toml",
    "render": "render airport --output a.png", "backup": "backup airport",
    "restore": "restore airport --yes", "compile": "compile airport",
    "rename-labels": "rename-labels wings_0.asm G2 --yes",
    "assemble": "assemble --complete complete --shadow-optimization --shadow shadow",
    "library describe": "library describe hangar",
    "library create": "library create objects.toml --output objects.asm",
    "bgl analyse": "bgl analyse airport.bgl", "bgl search": "bgl search scenery",
    "bgl universal": "bgl universal airport.bgl --yes", "bgl revert": "bgl revert airport.bgl",
    "build": "build morvane.toml tower", "error": "inspect nowhere",
}


def check_json(program, checkout):
    """Every command's document holds to docs/cli.schema.json."""
    try:
        import jsonschema
    except ImportError:
        print("the schema checker is missing (package python3-jsonschema)")
        sys.exit(77)
    schema = json.loads((checkout / "docs/cli.schema.json").read_text())
    jsonschema.Draft7Validator.check_schema(schema)
    with Sandbox(program, checkout) as sandbox:
        for name, arguments in JSON_RUNS.items():
            run = sandbox.run([f"morvane-cli --json {arguments}"])[0]
            part = {"definitions": schema["definitions"], "allOf": [{"$ref": f"#/definitions/{name}"}]}
            for error in jsonschema.Draft7Validator(part).iter_errors(json.loads(run.output)):
                failures.append(f"{arguments}: {error.message}")
            if jsonschema.Draft7Validator(part).is_valid({}):
                failures.append(f"{name}: the schema takes anything")
    return f"{len(JSON_RUNS)} documents"


def check_codes(_program, checkout):
    """Every code that the program can report is explained in problems.md."""
    text = (checkout / "docs/problems.md").read_text()
    codes = set()
    for path in [*(checkout / "src/problems").glob("*.cpp"), *(checkout / "src/objects").glob("*.cpp")]:
        source = path.read_text()
        codes |= set(re.findall(r'Severity::\w+,\s*"([a-z]+(?:-[a-z]+)+)"', source))
        codes |= set(re.findall(r'\{"([a-z]+(?:-[a-z]+)+)", Severity::', source))
    failures.extend(f"problems.md: `{code}` is missing" for code in sorted(codes)
                    if f"`{code}`" not in text)
    return f"{len(codes)} codes"


def squeezed(line):
    return " ".join(line.split())


def check_assembler(program, checkout):
    """Every line of assembler that a page shows is in an example, or in what is made of one."""
    known = set()
    with Sandbox(program, checkout) as sandbox:
        for recipe in (sandbox.folder / "examples").glob("*/*.toml"):
            if recipe.with_suffix(".asm").is_file():
                base = str(recipe.with_suffix("").relative_to(sandbox.folder))
                sandbox.run([f"morvane-cli process {base} --output made/{recipe.stem} --with-frame"])
        for path in sandbox.folder.rglob("*.asm"):
            known |= {squeezed(line) for line in path.read_text().splitlines()}
    count = 0
    for page in pages(checkout):
        for block in blocks(page):
            if block.kind == "asm":
                count += len(block.lines)
                for line in block.lines:
                    if squeezed(line) not in known:
                        fail(page, block.line, f"in no example: {line}")
    return f"{count} lines"


def check_pictures(program, checkout):
    """The committed pictures are what the program draws."""
    with tempfile.TemporaryDirectory(prefix="morvane-test-") as folder:
        subprocess.run([checkout / "tools/make-pictures", program, folder], check=True,
                       capture_output=True)
        drawn = sorted(Path(folder).glob("*.png"))
        for picture in drawn:
            if picture.read_bytes() != (checkout / "docs/images" / picture.name).read_bytes():
                failures.append(f"docs/images/{picture.name} is outdated: run tools/make-pictures")
        return f"{len(drawn)} pictures"


def main():
    what, program, checkout = sys.argv[1], str(Path(sys.argv[2]).resolve()), Path(sys.argv[3]).resolve()
    checks = {"links": check_links, "recipes": check_recipes, "commands": check_commands,
              "options": check_options, "json": check_json, "codes": check_codes,
              "assembler": check_assembler, "pictures": check_pictures}
    print(checks[what](program, checkout))
    if failures:
        sys.exit("\n".join(failures))


if __name__ == "__main__":
    main()
