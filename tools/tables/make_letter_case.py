#!/usr/bin/env python3
"""Makes winapi/Text/UpperCaseTable.cpp and LowerCaseTable.cpp: the upper and the lower case of single units.

Reads data/winapi/upper-case.tsv and lower-case.tsv (first, last, step, distance), in ascending order.
"""
import pathlib

top = pathlib.Path(__file__).resolve().parents[2]
for case in ("upper", "lower"):
    rows = []
    for line in (top / f"data/winapi/{case}-case.tsv").read_text("utf-8").splitlines():
        if not line.startswith("#"):
            first, last, step, distance = line.split("\t")
            rows.append((int(first, 16), int(last, 16), int(step), int(distance)))
    assert all(a[1] < b[0] for a, b in zip(rows, rows[1:])), "rows must ascend"
    assert all(0 < last + distance < 0x10000 and step in (1, 2) for _, last, step, distance in rows)

    with open(top / f"winapi/Text/{case.title()}CaseTable.cpp", "w", encoding="utf-8", newline="\n") as out:
        out.write(f"// Made by tools/tables/make_letter_case.py from data/winapi/{case}-case.tsv: "
                  f"{len(rows)} runs. Not edited by hand.\n"
                  "// clang-format off\n"
                  '#include "Text/UpperCase.h"\n\n'
                  f"namespace winapi\n{{\nconst CaseRun {case}CaseRuns[] = {{\n")
        for first, last, step, distance in rows:
            out.write(f"    {{0x{first:04X}, 0x{last:04X}, {step}, {distance}}},\n")
        out.write(f"}};\nconst unsigned {case}CaseRunCount = sizeof {case}CaseRuns / sizeof {case}CaseRuns[0];\n"
                  "} // namespace winapi\n")
