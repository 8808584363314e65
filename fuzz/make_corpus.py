#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Makes the seeds of the fuzzers from the examples: make_corpus.py FOLDER

FOLDER/NAME/ gets the seeds of fuzz_NAME. A seed of several files has them parted by lines of
"====", as the fuzzers take them apart. What a fuzzer finds later goes into the same folders.
"""

import struct
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
EXAMPLES = ROOT / "examples"
SEPARATOR = b"====\n"
BASES = ("complete", "fuselage", "wings_high", "wings_low", "shadow")


def read(*names):
    return [(EXAMPLES / name).read_bytes() for name in names]


def source_sets():
    for path in sorted(EXAMPLES.glob("*/*_0.asm")):
        frame = path.with_name(path.name.replace("_0.asm", ".asm"))
        if frame.is_file():
            for number, choices in enumerate((b"\0\1\2\3\4" * 4, b"\x18\x09\x0a\x0b\x0c" * 4)):
                yield f"{path.stem}-{number}", [choices + b"\n", frame.read_bytes(),
                                                path.read_bytes()]
    # Small sets, since a fuzzer works faster on them.
    for path in sorted((ROOT / "tests/golden").glob("*/in/*_0.asm")):
        frame = path.with_name(path.name.replace("_0.asm", ".asm"))
        if frame.is_file() and path.stat().st_size < 4000:
            yield path.parts[-3], [b"\0\1\2\3\4", frame.read_bytes(), path.read_bytes()]


def labels():
    for path in sorted(EXAMPLES.glob("*/*.asm")):
        yield path.stem, [b"G2\n", path.read_bytes()]
    yield "overlapping", [b"G\n", b"a label b\nab label c\nb,a;ab a\n label d\nlabel\n"]


def assemblies():
    files = read(*(f"aircraft-flex/{base}{end}" for base in BASES for end in (".asm", "_0.asm")))
    for flags in b"\1\2\3":
        yield str(flags), [bytes([flags]), *files]


def frames():
    for path in sorted([*EXAMPLES.glob("*/*.asm"), *(ROOT / "tests/golden").glob("*/*/*.asm")]):
        if not path.name.endswith("_0.asm") and path.stat().st_size < 20000:
            yield f"{path.parts[-3]}-{path.stem}", [path.read_bytes()]


def bgl_files():
    for path in sorted((ROOT / "tests/golden").rglob("*.[bB][gG][lL]")):
        yield f"{path.parts[-3]}-{path.stem}", [path.read_bytes()]
    yield "header", [struct.pack("<h", 1) + bytes(126)]


def documents():
    for path in sorted([*EXAMPLES.rglob("*.toml"), *(ROOT / "tests/golden").rglob("*.toml")]):
        yield f"{path.parts[-3]}-{path.stem}", [path.read_bytes()]
    yield "settings", [b"md001\r\nc:\\a\r\n\r\n \r\nb\r\n"]


def numbers():
    for text in ("1", "-0.5", "  +12.250e-3x", ".5", "1e400", "0FFFFFFFFh", "7fffffff", "123456789",
                 "0.0000005", "999999.9999995", "2147483647.5", "1E+", "--1", "1e-400"):
        yield text.strip(), [text.encode()]
    for value in (0.0, -0.0, 0.5, 1.5, 2.5, 1e15, 123456.7890625, 5e-324, 1.7976931348623157e308):
        yield value.hex(), [struct.pack("<d", value)]


SEEDS = {"source_set": source_sets, "labels": labels, "assemble": assemblies,
         "dictionary": frames, "bgl": bgl_files, "recipe": documents, "library_list": documents,
         "numbers": numbers, "line_store": labels}


def main():
    target = Path(sys.argv[1])
    for name, seeds in SEEDS.items():
        folder = target / name
        folder.mkdir(parents=True, exist_ok=True)
        for title, files in seeds():
            (folder / ("seed-" + title)).write_bytes(SEPARATOR.join(files))


if __name__ == "__main__":
    main()
