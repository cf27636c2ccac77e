#!/usr/bin/env python3
"""Makes winapi/Errors/ErrorTexts.cpp: the published texts of the system errors.

Reads data/winapi/error-texts.tsv (code, name, a substitute's text, published text), in ascending order of codes.
"""
import pathlib

top = pathlib.Path(__file__).resolve().parents[2]
rows = []
for line in (top / "data/winapi/error-texts.tsv").read_text("utf-8").splitlines():
    if not line.startswith("#"):
        code, name, _, text = line.split("\t")
        rows.append((int(code), name, text))
assert rows == sorted(rows) and len({code for code, _, _ in rows}) == len(rows), "codes must ascend"
assert all(text.isascii() and text for _, _, text in rows), "the narrow texts are the same bytes in every code page"
assert all("%" not in text for _, _, text in rows), "no text has inserts"

with open(top / "winapi/Errors/ErrorTexts.cpp", "w", encoding="utf-8", newline="\n") as out:
    out.write("// Made by tools/tables/make_error_texts.py from data/winapi/error-texts.tsv: "
              f"{len(rows)} texts. Not edited by hand.\n"
              "// clang-format off\n"
              '#include "Errors/ErrorTexts.h"\n\n'
              "namespace winapi\n{\nconst ErrorText errorTexts[] = {\n")
    for code, name, text in rows:
        escaped = text.replace("\\", "\\\\").replace('"', '\\"')
        out.write(f'    {{{code}, "{escaped}"}}, // {name}\n')
    out.write("};\nconst unsigned errorTextCount = sizeof errorTexts / sizeof errorTexts[0];\n} // namespace winapi\n")
