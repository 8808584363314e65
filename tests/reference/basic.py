# SPDX-License-Identifier: GPL-3.0-or-later
"""Numbers, texts and line stores.

Part of the reference that the golden files were made with: plain Python, one rule after the other,
sharing nothing with the program.
"""

import math
import re
from decimal import ROUND_HALF_UP, Decimal

PI = 3.14159265358979


class RuntimeFailure(Exception):
    TEXTS = {6: "Overflow", 9: "Subscript out of range", 11: "Division by zero",
             13: "Type mismatch"}

    def __init__(self, number):
        super().__init__(f"{number}: {self.TEXTS[number]}")
        self.number, self.text = number, self.TEXTS[number]


def trim(text):
    return text.strip(" ")


def val(text):
    match = re.match(r" *([+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d+)?)", text)
    return float(match.group(1)) if match else 0.0


def number(text):
    """A field that a kind computes with."""
    if trim(text) == "":
        return 0.0
    if not re.fullmatch(r"[+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d+)?", trim(text)):
        raise RuntimeFailure(13)
    return float(trim(text))


def hex_value(text):
    digits = re.match(r"[0-9A-Fa-f]*", text).group(0).lstrip("0")
    if len(digits) > 8:
        raise RuntimeFailure(6)
    value = int(digits or "0", 16)
    return value - 2**32 if value >= 2**31 else value


def hex_text(value):
    """Upper-case digits of a number rounded to 32 bits, halves to even."""
    rounded = round(value)
    if not -2**31 <= rounded <= 2**31 - 1:
        raise RuntimeFailure(6)
    return f"{rounded & 0xFFFFFFFF:X}"


def formatted(value, low, high):
    """At least `low` and at most `high` decimals, of 15 significant digits."""
    taken = Decimal(f"{value:.14e}").quantize(Decimal(1).scaleb(-high), ROUND_HALF_UP)
    text = f"{abs(taken):f}"
    while high > low and text.endswith("0"):
        text, high = text[:-1], high - 1
    if text.endswith("."):
        text = text[:-1]
    return "-" + text if taken < 0 else text


def divide(a, b):
    if b == 0:
        raise RuntimeFailure(11)
    return a / b


def floor(value):
    return math.floor(value)


def load(path):
    """Element 0 is the index of the spare element, the last of the list."""
    with open(path, "rb") as file:
        data = file.read().decode("latin-1")
    lines = re.split("\r\n|\n|\r", data)
    if lines[-1] == "":
        lines.pop()
    return [len(lines) + 1] + lines + [""]


def save(path, store):
    with open(path, "wb") as file:
        for line in store[1:]:
            file.write(line.encode("latin-1") + b"\r\n")


def split_fields(line):
    """Element 0 is the keyword, then the operands."""
    p = 1
    while p <= len(line) and line[p - 1] in " \x07":
        p += 1
    if p <= len(line) and line[p - 1] == ";":
        return ["com"]
    q = p
    while q <= len(line) and line[q - 1] not in " \x07;":
        q += 1
    fields = [trim(line[p - 1:q - 1])]
    if q < len(line):
        rest = trim(line[q:])
        while len(rest) > 1:
            j = 1
            while j < len(rest) and rest[j - 1] not in ",;":
                j += 1
            fields.append(rest[:j - 1])
            rest = trim(rest[j:])
    if len(fields) > 41:
        raise RuntimeFailure(9)
    return fields


def field(fields, index):
    return fields[index] if index < len(fields) else ""


def get_field(line, index):
    return field(split_fields(line), index)
