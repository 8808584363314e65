# SPDX-License-Identifier: GPL-3.0-or-later
"""A source set through an assembler: flattened, adapted to llvm-ml, and its bytes read back.

llvm-ml lacks a few forms that the simulator's own assembler has (`label`, `offset`, names with
points); these are rewritten line by line, everything else goes through as it is.
"""

import re
import shutil
import struct
import subprocess
import tempfile
from pathlib import Path

HERE = Path(__file__).resolve().parent
SHARE = HERE.parents[1] / "share"
STUB = (HERE / "stub.inc").read_text()
ASSEMBLER = shutil.which("llvm-ml-14") or shutil.which("llvm-ml")

# Not in the simulator's public definitions, but in the program's list.
UNPUBLISHED = "six_second_beacon equ 298h\nsecond_flash equ 29Ah\n"

LISTS = {"VERTEX_LIST_BEGIN": "VERTEX_DEF", "MATERIAL_LIST_BEGIN": "MATERIAL_DEF",
         "TEXTURE_LIST_BEGIN": "TEXTURE_DEF", "DRAW_TRI_BEGIN": "DRAW_TRI"}

# Whole lengths of commands; those with a count of entries behind it have (head, bytes an entry).
LENGTHS = {0xBC: 6, 0xBD: 2, 0x22: 2, 0x88: 6, 0x8A: 6, 0x23: 4, 0x24: 10, 0x39: 8, 0x5F: 8,
           0x3B: 10, 0xB8: 6, 0xAF: 50, 0xAE: 2, 0xB2: 44, 0xFE01: 132, 0xFE02: 36, 0xFE03: 20,
           0xFE05: 6, 0xFE06: 32, 0xFE07: 32, 0xFE08: 12, 0xFE09: 6, 0xFE0A: 8, 0xFE0B: 8,
           0xFE0C: 16, 0xFE0D: 16}
COUNTED = {0xB5: 32, 0xB6: 68, 0xB7: 80}
NAMES = {0xB2: "lights", 0xFE01: "effects", 0xFE02: "windsocks", 0xFE03: "calls", 0xAF: "matrices"}


class Refused(Exception):
    """The source does not assemble; the text says why."""


def read_lines(path):
    return Path(path).read_bytes().decode("latin-1").replace("\r\n", "\n").split("\n")


def found(path, folder):
    name = re.split(r"[\\/]", path)[-1]
    if name.lower() in ("morvane.inc", "model.inc"):
        return own_macros(name.lower())
    if name.lower().endswith(".inc"):
        return None  # the stub stands for the simulator's own
    for candidate in (Path(path), folder / path, folder / name):
        if name and candidate.is_file():
            return candidate
    raise Refused(f"cannot include {path}")


def own_macros(name):
    return SHARE / (name if (SHARE / name).exists() else "morvane.inc")


def flatten(path, folder=None, seen=None):
    """The file's lines with those of included files in place; an .inc file counts once."""
    folder, seen = folder or Path(path).parent, set() if seen is None else seen
    lines = []
    for line in read_lines(path):
        match = re.match(r"\s*include\s*([^;]*)", line, re.IGNORECASE)
        if not match:
            lines.append(line)
            continue
        file = found(match.group(1).strip(), folder)
        if file is None or (file in seen and file.suffix == ".inc"):
            continue
        seen.add(file)
        inner = flatten(file, folder, seen)
        if str(file).endswith("_0.asm"):
            number = sum(line.startswith("file_begin_") for line in lines + ["x"]) + len(seen) * 100
            inner = [f"file_begin_{number}:", *inner, f"file_end_{number}:"]
        lines += inner
    return lines


def entries(lines, begin, entry):
    end, count = begin.replace("_BEGIN", "_END"), 0
    for line in lines:
        keyword = (line.split() or [""])[0]
        if keyword == end:
            break
        count += keyword == entry
    return count


def adapt(lines):
    adapted = []
    for n, line in enumerate(lines):
        # A twin of each label, as those that begin with L do not get into the object file.
        line = re.sub(r"^\s*([^\s;\"]+)\s+label\s+\w+", r"\1:\nat_\1:", line)
        line = line.replace("AIRCRAFT_PARAMS.llapbh.", "AIRCRAFT_PARAMS_llapbh_")
        line = re.sub(r"\(offset (\w+)\)", r"(\1 - source_begin)", line)
        keyword = (line.split() or [""])[0]
        if keyword in LISTS:
            count = entries(lines[n + 1:], keyword, LISTS[keyword])
            code = line.split(";")[0].rstrip()
            code += (", " if keyword == "DRAW_TRI_BEGIN" else " ")
            code += str(count * 3 if keyword == "DRAW_TRI_BEGIN" else count)
            line = code
        if keyword.upper() != "END":
            adapted.append(line)
    return adapted


class Assembled:
    """The bytes of a source, its labels, and the distances of its 16-bit jumps."""

    def __init__(self, data):
        sections, self.labels, undefined = self.read(data)
        self.bytes = sections.get(".data", b"")
        far = sections.get(".text", b"")
        self.distances = struct.unpack(f"<{len(far) // 4}i", far)
        if undefined:
            raise Refused("undefined: " + ", ".join(sorted(undefined)))
        for distance in self.distances:
            if not -32768 <= distance <= 32767:
                raise Refused(f"a 16-bit jump of {distance} bytes")

    @staticmethod
    def read(data):
        count, table, symbols = struct.unpack_from("<2xH4xII", data)
        sections, names = {}, data[table + 18 * symbols:]
        for n in range(count):
            name, size, at = struct.unpack_from("<8s8xII", data, 20 + 40 * n)
            sections[name.rstrip(b"\0").decode()] = data[at:at + size]
        labels, undefined, n = {}, set(), 0
        while n < symbols:
            raw, value, section, _, kind, extra = struct.unpack_from("<8sIhHBB", data, table + 18 * n)
            if raw[:4] == b"\0\0\0\0":
                begin = struct.unpack_from("<4xI", raw)[0]
                name = names[begin:names.index(b"\0", begin)].decode("latin-1")
            else:
                name = raw.rstrip(b"\0").decode("latin-1")
            if section == 0 and kind == 2:
                undefined.add(name)
            labels[name.removeprefix("at_")] = value
            n += 1 + extra
        return sections, labels, undefined


def assemble(lines, extra=""):
    """Assembles flattened lines. Raises Refused with the assembler's first messages."""
    source = "\n".join([".386", ".model flat", STUB, extra, ".data", "source_begin:",
                        *adapt(lines), "end", ""])
    with tempfile.TemporaryDirectory() as folder:
        (Path(folder) / "source.asm").write_bytes(source.encode("latin-1"))
        run = subprocess.run([ASSEMBLER, "-m32", "/c", "source.asm", "/Fo", "source.obj"],
                             cwd=folder, capture_output=True, text=True, errors="replace")
        messages = [line for line in (run.stdout + run.stderr).splitlines() if "error" in line]
        if run.returncode != 0 or messages:
            raise Refused("\n".join(messages[:5]) or "the assembler failed")
        return Assembled((Path(folder) / "source.obj").read_bytes())


def assemble_file(path, extra=""):
    return assemble(flatten(path), extra)


def commands(code):
    """The opcodes of a stretch of code, one after another to its very end."""
    at, found_opcodes = 0, []
    while at < len(code):
        opcode = struct.unpack_from("<H", code, at)[0]
        found_opcodes.append(opcode)
        if opcode in LENGTHS:
            at += LENGTHS[opcode]
        elif opcode in COUNTED:
            at += 8 + COUNTED[opcode] * struct.unpack_from("<2xH", code, at)[0]
        elif opcode == 0xB9:
            at += 8 + 2 * struct.unpack_from("<6xH", code, at)[0]
        else:
            raise Refused(f"no command begins at {at}: {code[at:at + 8].hex()}")
    if at != len(code):
        raise Refused("the last command is cut off")
    return found_opcodes


def count_objects(assembled):
    """How many lights, effects, windsocks, calls and matrices the model files hold."""
    counts = dict.fromkeys(NAMES.values(), 0)
    for label, begin in assembled.labels.items():
        if label.startswith("file_begin_"):
            end = assembled.labels[label.replace("begin", "end")]
            for opcode in commands(assembled.bytes[begin:end]):
                if opcode in NAMES:
                    counts[NAMES[opcode]] += 1
    return counts
