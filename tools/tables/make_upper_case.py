#!/usr/bin/env python3
"""Makes winapi/Text/UpperCaseTable.cpp: the upper case of single units.

Reads data/winapi/upper-case.tsv (first, last, step, distance), in ascending order.
"""
import pathlib

top = pathlib.Path(__file__).resolve().parents[2]
rows = []
for line in (top / "data/winapi/upper-case.tsv").read_text("utf-8").splitlines():
    if not line.startswith("#"):
        first, last, step, distance = line.split("\t")
        rows.append((int(first, 16), int(last, 16), int(step), int(distance)))
assert all(a[1] < b[0] for a, b in zip(rows, rows[1:])), "rows must ascend"
assert all(0 < last + distance < 0x10000 and step in (1, 2) for _, last, step, distance in rows)

with open(top / "winapi/Text/UpperCaseTable.cpp", "w", encoding="utf-8", newline="\n") as out:
    out.write("// Made by tools/tables/make_upper_case.py from data/winapi/upper-case.tsv: "
              f"{len(rows)} runs. Not edited by hand.\n"
              "// clang-format off\n"
              '#include "Text/UpperCase.h"\n\n'
              "namespace winapi\n{\nconst UpperCaseRun upperCaseRuns[] = {\n")
    for first, last, step, distance in rows:
        out.write(f"    {{0x{first:04X}, 0x{last:04X}, {step}, {distance}}},\n")
    out.write("};\nconst unsigned upperCaseRunCount = sizeof upperCaseRuns / sizeof upperCaseRuns[0];\n"
              "} // namespace winapi\n")
