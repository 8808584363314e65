#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes the BGL files that the cases tests/golden/bgl-* start from.

What the program is to make of them is written by hand, in the cases' own files; the documents of
--json are written out here.
"""

import json
from pathlib import Path

GOLDEN = Path(__file__).resolve().parent.parent / "golden"
TOWER = (0x05ADE080, 0x42E14DCF, 0x73AEB9A1, 0xFFFFFFFE)


def number(value, width=4):
    return (value & (256 ** width - 1)).to_bytes(width, "little")


def header(fields, size=128):
    """A header with numbers at the offsets given; those of 2 bytes are known by their offset."""
    data = bytearray(size)
    for offset, value in fields.items():
        width = 2 if offset in (0, 22, 24, 126) else 4
        data[offset:offset + width] = number(value, width)
    return bytes(data)


def record(guid, power, scale, kind, name, code):
    return (b"".join(map(number, guid)) + bytes([power]) + number(41 + len(name)) +
            number(len(code)) + number(40) + number(scale) + number(kind) + number(2) + name + code)


def library(fields, objects):
    """The library lies at offset 130, as in files that library sources are compiled to."""
    records = [record(*o) for o in objects]
    index, offset = b"", 20 * (len(objects) + 1)
    for o, data in zip(objects, records):
        index += number(offset) + b"".join(map(number, o[0]))
        offset += len(data)
    return header({**fields, 62: 130}, 130) + index + bytes(20) + b"".join(records)


def every_field():
    """Each field holds its own decimal offset as hexadecimal digits behind a mark of its width."""
    fields = {0: 1, 2: 10001750, 6: -10001750, 10: 0x7FFFFFFF, 14: -2 ** 31,
              22: 0xA022, 24: 0xA024, 126: 0xA126}
    for offset in [18, *range(26, 126, 4), *range(128, 168, 4)]:
        fields[offset] = int(f"B0000{offset:03d}", 16)
    return header(fields, 168)


def airport_library():
    return library({0: 3, 2: 5000000, 6: 4000000, 10: 0x10000000, 14: 0x0F000000, 26: 7}, [
        (TOWER, 100, 65536, 0, b"Tower", b"\x0a" * 100),
        ((1, 2, 3, 4), 255, 32768, 7, b"B\xfcro mit \"Anbau\"\0rest", b""),
        ((0, 0, 0, 5), 0, 0, -1, b"N" * 60, b"code"),
    ])


def field_names():
    """Names of a header's fields by their offsets, read from the report written by hand."""
    names = {}
    for line in (GOLDEN / "bgl-every-field/stdout").read_text().splitlines():
        if line[1:4].isdigit() and int(line[1:4]) < 128:
            names[int(line[1:4])] = line[5:].split(":")[0]
    return names


def objects_json(file):
    return [
        {"guid": list(TOWER), "guid_text": "005ADE080h,042E14DCFh,073AEB9A1h,0FFFFFFFEh",
         "scale": 1.0, "type": 0, "power": 100, "name": "Tower", "file": file},
        {"guid": [1, 2, 3, 4], "guid_text": "000000001h,000000002h,000000003h,000000004h",
         "scale": 2.0, "type": 7, "power": 255, "name": "B\u00fcro mit \"Anbau\"", "file": file},
        {"guid": [0, 0, 0, 5], "guid_text": "000000000h,000000000h,000000000h,000000005h",
         "scale": None, "type": -1, "power": 0, "name": "N" * 47, "file": file},
    ]


def analysis_json():
    values = {0: 3, 2: 5000000, 6: 4000000, 10: 0x10000000, 14: 0x0F000000, 26: 7, 62: 130}
    return {
        "file": "airport.BGL", "valid": True,
        "header": {name: values.get(offset, 0) for offset, name in field_names().items()},
        "extension": None,
        "bounds": {"north": 5000000 * 180 / 20003494.319128808,
                   "south": 4000000 * 180 / 20003494.319128808, "east": 22.5, "west": 21.09375},
        "compressed": False, "objects": objects_json("airport.BGL"), "messages": [],
    }


def search_json():
    return {
        "folder": "scenery", "complete": True, "objects": objects_json("scenery/world/airport.bgl"),
        "counters": {"folders": 3, "total_files": 6, "bgl_files": 5, "invalid_files": 2,
                     "compressed_files": 0, "object_files": 1, "library_files": 1,
                     "library_objects": 3},
        "messages": [],
    }


def write_document(case, document):
    text = json.dumps(document, indent=2, ensure_ascii=False)
    (GOLDEN / case / "stdout").write_text(text + "\n", encoding="utf-8")


def write(case, name, data):
    path = GOLDEN / case / "in" / name
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(data)


def main():
    write("bgl-every-field", "every_field.bgl", every_field())
    for case in ("bgl-analyse-library", "bgl-analyse-json", "bgl-universal", "bgl-revert"):
        write(case, "airport.BGL", airport_library())
    for case in ("bgl-search", "bgl-search-json"):
        write(case, "scenery/world/airport.bgl", airport_library())
        write(case, "scenery/none.bgl", library({0: 1}, []))
        write(case, "scenery/old/objects.bgl", header({0: 1, 58: 128}) + b"objects")
        write(case, "scenery/old/readme.txt", b"not a BGL file\r\n")
        write(case, "scenery/old/broken.bgl", b"\x01\x02\x92\x19")
        write(case, "scenery/old/empty.bgl", b"")
    write("bgl-analyse-invalid", "newer.bgl", header({0: 0x0201, 2: 0x56781992}, 128))
    write("bgl-universal-refused", "objects.bgl", header({0: 1, 58: 128}))
    write("bgl-universal-declined", "airport.bgl", airport_library())
    write_document("bgl-analyse-json", analysis_json())
    write_document("bgl-search-json", search_json())


if __name__ == "__main__":
    main()
