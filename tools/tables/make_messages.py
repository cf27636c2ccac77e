#!/usr/bin/env python3
"""Makes the module's string table from resources/Messages.txt (id, tab, text; ascending).

Writes resources/StringTable.rc for Windows and resources/StringTable.cpp for other systems.
"""
import pathlib

resources = pathlib.Path(__file__).resolve().parents[2] / "resources"
head = "// Made by tools/tables/make_messages.py from resources/Messages.txt: {} texts. Not edited by hand.\n"


def escaped(text, quote):
    return text.replace("\\", "\\\\").replace('"', quote)


rows = []
for line in (resources / "Messages.txt").read_text("utf-8").splitlines():
    number, text = line.split("\t")
    rows.append((int(number), text))
assert rows == sorted(rows) and len({number for number, _ in rows}) == len(rows), "ids must ascend"
assert all(text.isascii() for _, text in rows), "a resource compiler reads the texts in its own code page"

with open(resources / "StringTable.rc", "w", encoding="utf-8", newline="\n") as out:
    out.write(head.format(len(rows)))
    out.write("STRINGTABLE\nLANGUAGE 0, 0\nBEGIN\n")
    for number, text in rows:
        out.write(f'    {number} "{escaped(text, chr(34) * 2)}"\n')
    out.write("END\n")

with open(resources / "StringTable.cpp", "w", encoding="utf-8", newline="\n") as out:
    out.write(head.format(len(rows)))
    out.write("// clang-format off\n#include <windows.h>\n\nnamespace\n{\nconst StringEntry table[] = {\n")
    for number, text in rows:
        out.write(f'    {{{number}, u"{escaped(text, chr(92) + chr(34))}"}},\n')
    out.write("};\n\n__attribute__((constructor(200))) void Register()\n{\n")
    out.write("    RegisterStringTable(table, sizeof(table) / sizeof(table[0]));\n}\n} // namespace\n")
