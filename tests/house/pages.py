# SPDX-License-Identifier: GPL-3.0-or-later
"""The pages of the documents, taken apart: headings, links, blocks of code."""

import re
from dataclasses import dataclass
from pathlib import Path
from textwrap import dedent
from urllib.parse import unquote


@dataclass
class Block:
    """A block of code. `kind` is the word after the fence, empty for an indented block."""
    kind: str
    line: int
    lines: list


@dataclass
class Page:
    path: Path
    text: str

    @property
    def name(self):
        return self.path.name


def pages(checkout):
    names = sorted(checkout.glob("docs/*.md"))
    names += [checkout / name for name in ("README.md", "CHANGELOG.md", "NOTICES.md")]
    return [Page(path, path.read_text(encoding="utf-8")) for path in names]


def blocks(page):
    """All blocks of code, without their indentation."""
    found, lines, at = [], page.text.split("\n"), 0
    while at < len(lines):
        fence = re.match(r"( *)```(\w*)$", lines[at])
        indented = lines[at].startswith("    ") and (at == 0 or not lines[at - 1].strip())
        block = Block(fence.group(2) if fence else "", at + 1, [])
        if fence:
            margin, at = len(fence.group(1)), at + 1
            while lines[at].strip() != "```":
                block.lines.append(lines[at][margin:])
                at += 1
        elif indented:
            while at < len(lines) and (lines[at].startswith("    ") or not lines[at].strip()):
                block.lines.append(lines[at][4:])
                at += 1
            at -= 1
            block.lines = dedent("\n".join(block.lines)).split("\n")
        if fence or indented:
            found.append(block)
        at += 1
    return found


def prose(page):
    """The page's text with its blocks of code left blank, line by line."""
    lines = page.text.split("\n")
    for block in blocks(page):
        first = block.line if block.kind == "" and "```" not in lines[block.line - 1] else block.line + 1
        for at in range(first - 1, first - 1 + len(block.lines)):
            lines[at] = ""
    return lines


def anchors(page):
    """The names by which the page's headings can be linked to."""
    found = set()
    for line in prose(page):
        heading = re.match(r"#+ (.*)", line)
        if heading:
            title = re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", heading.group(1)).lower()
            name = re.sub(r"[^\w\- ]", "", title).replace(" ", "-")
            count = 0
            while name + (f"-{count}" if count else "") in found:
                count += 1
            found.add(name + (f"-{count}" if count else ""))
    return found


def links(page):
    """(line, target) of every link and picture."""
    found = []
    for number, line in enumerate(prose(page), 1):
        line = re.sub(r"`[^`]*`", "", line)
        for target in re.findall(r"\]\(([^)\s]+)\)", line):
            found.append((number, unquote(target)))
        for source in re.findall(r'\bsrc(?:set)?="([^"]+)"', line):
            found += [(number, part.split()[0]) for part in source.split(",")]
    return found


def inline_code(page):
    """(line, text) of all code within sentences; a text may go on in the next line."""
    text = "\n".join(prose(page))
    return [(text.count("\n", 0, match.start()) + 1, " ".join(match.group(1).split()))
            for match in re.finditer(r"`([^`]+)`", text)]
