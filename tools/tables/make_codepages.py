#!/usr/bin/env python3
"""Makes winapi/Text/CodePageFacts.cpp: facts about the code pages, and what differs from ICU's converters.

Reads data/winapi/codepages.tsv and data/winapi/codepage-patches.tsv (page, T or F, first, last, value; values count
up through a range; "-" is undefined). A row of patches becomes three numbers of 7 bits a byte, low bits first, the
top bit set but on the last: how far the first code lies behind the last one of the row before, how long the range
is, and the value's distance from the value before, shifted left by one and inverted if negative. Undefined is the
value FFFF. Each page's two directions begin afresh at 0.
"""
import pathlib

top = pathlib.Path(__file__).resolve().parents[2]
data = top / "data/winapi"


def rows_of(name):
    return [line.split("\t") for line in (data / name).read_text("utf-8").splitlines() if not line.startswith("#")]


def packed(number):
    out = []
    while number >= 128:
        out.append(number & 127 | 128)
        number >>= 7
    return out + [number]


def encoded(rows):
    """The bytes of one page's one direction, which end with the number of codes that they change."""
    out, last, previous = [], 0, 0
    for first, end, value in rows:
        assert last <= first <= end <= 0xFFFF and value <= 0xFFFF, "rows must ascend"
        assert value == 0xFFFF or value + end - first < 0xFFFF, "FFFF stands for undefined"
        distance = value - previous
        out += packed(first - last) + packed(end - first) + packed(distance * 2 if distance >= 0 else -distance * 2 - 1)
        last, previous = end, value
    return out


patches = {}
for page, direction, first, last, value in rows_of("codepage-patches.tsv"):
    value = 0xFFFF if value == "-" else int(value, 16)
    patches.setdefault((int(page), direction), []).append((int(first, 16), int(last, 16), value))

RULES = {"rule:johab": "johab", "rule:eucjp": "eucjp", "none": "none"}
pages, stream = [], []
for page, size, default, undefined, lead, converter, to_count, from_count, *_ in rows_of("codepages.tsv"):
    to_rows, from_rows = (patches.pop((int(page), direction), []) for direction in "TF")
    for rows, count in ((to_rows, to_count), (from_rows, from_count)):
        assert sum(last - first + 1 for first, last, _ in rows) == int(count), f"patches of {page}"
    ranges = [] if lead == "-" else [tuple(int(end, 16) for end in part.split("-")) for part in lead.split()]
    assert len(ranges) <= 3 and (size == "2") == bool(ranges), f"lead bytes of {page}"
    ranges += [(1, 0)] * (3 - len(ranges))
    pages.append((int(page), int(default, 16), int(undefined, 16), ranges, converter, len(stream), len(to_rows),
                  len(from_rows)))
    stream += encoded(to_rows) + encoded(from_rows)
assert pages == sorted(pages), "pages must ascend"
assert not patches, f"patches of unknown pages {list(patches)}"

with open(top / "winapi/Text/CodePageFacts.cpp", "w", encoding="utf-8", newline="\n") as out:
    out.write("// Made by tools/tables/make_codepages.py from data/winapi/codepages.tsv and codepage-patches.tsv: "
              f"{len(pages)} pages,\n// {len(stream)} bytes of patches. Not edited by hand.\n"
              "// clang-format off\n"
              '#include "Text/CodePageFacts.h"\n\n'
              "namespace winapi\n{\n"
              "// page, default byte, undefined unit, lead bytes, rule, converter, patches: start, rows to and from\n"
              "const CodePageFacts codePages[] = {\n")
    for page, default, undefined, ranges, converter, start, to_count, from_count in pages:
        lead = ", ".join("{0x%02X, 0x%02X}" % part for part in ranges)
        rule = RULES.get(converter, "icu")
        text = f'"{converter}"' if rule == "icu" else "nullptr"
        out.write(f"    {{{page}, 0x{default:02X}, 0x{undefined:04X}, {{{lead}}}, CodePageRule::{rule.upper()}, {text}, "
                  f"{start}, {to_count}, {from_count}}},\n")
    out.write("};\nconst unsigned codePageCount = sizeof codePages / sizeof codePages[0];\n\n"
              "const unsigned char codePagePatches[] = {\n")
    for start in range(0, len(stream), 16):
        out.write("    " + ",".join(map(str, stream[start:start + 16])) + ",\n")
    out.write("};\n} // namespace winapi\n")
