#!/usr/bin/env python3
"""Makes winapi/Locale/LocaleDataTable.cpp: facts about the locales, and what differs from ICU's texts.

Reads data/winapi/locale-facts.tsv (columns headed by the numbers of the facts) and locale-patches.tsv (id, fact,
value; G1 to G12 and H1 to H12 are the genitive names of months, long and short, ERA the era's, CALn that of calendar
n). A column is a list of values and one byte for each locale; a patch is a place in the list of texts and where its
UTF-8 text begins.
"""
import pathlib

top = pathlib.Path(__file__).resolve().parents[2]
data = top / "data/winapi"

# As TextPlace in winapi/Locale/LocaleTexts.h has them.
PLACES = [2, 4, 6, 8, 14, 15, 19, 20, 21, 22, 23, 29, 30, 31, 32, *range(40, 80), 80, 81, 4097, 4099, 4102, 4103,
          4104, 4110, 4111]
PLACES = [str(place) for place in PLACES] + [f"G{month}" for month in range(1, 13)] + \
    [f"H{month}" for month in range(1, 13)] + ["ERA"] + [f"CAL{number}" for number in (1, 3, 4, 5, 6, 7, 8, 22, 23)]
# The country's English name is in two facts. The duration's picture and the sorting's name are patched for the
# invariant locale alone; the services don't have them.
SAME, LEFT_OUT = {"4098": "6"}, {"93", "4115"}
# A locale's id and tag stand in the table of locales.
DERIVED = {"1", "tag", "88", "calendars"}


def lines_of(name):
    return [line.split("\t") for line in (data / name).read_text("utf-8").splitlines()]


def quoted(text):
    """A literal of the bytes; what follows an escape can't run on into it."""
    out = ""
    for byte in text.encode("utf-8"):
        out += chr(byte) if 32 <= byte < 127 and chr(byte) not in '"\\?' else f"\\{byte:03o}"
    return f'"{out}"'


class Pool:
    """Texts one behind the other, each with a zero behind it."""

    def __init__(self):
        self.places, self.size = {}, 0

    def place(self, text):
        if text not in self.places:
            self.places[text] = self.size
            self.size += len(text.encode("utf-8")) + 1
        return self.places[text]

    def write(self, out):
        for text in self.places:
            out.write(f"    {quoted(text)} \"\\0\"\n")


def write_numbers(out, numbers):
    line = "   "
    for number in numbers:
        if len(line) + len(str(number)) + 2 > 100:
            out.write(line + "\n")
            line = "   "
        line += f" {number},"
    out.write(line + "\n")


lines = lines_of("locale-facts.tsv")
head = lines[0]
rows = [row for row in lines[1:] if not row[0].startswith("#")]
column = {title: [row[place] for row in rows] for place, title in enumerate(head)}
places = {int(lcid, 16): place for place, lcid in enumerate(column[head[0]])}
assert all(int(row[0], 16) == int(lcid, 16) for row, lcid in zip(rows, column["1"]))

pool = Pool()
facts = []
for title in head[1:]:
    if title in DERIVED:
        continue
    values = list(dict.fromkeys(column[title]))
    assert len(values) <= 256
    facts.append((int(title), [pool.place(value) for value in values], [values.index(v) for v in column[title]]))
facts.sort()
signatures = list(dict.fromkeys(column["88"]))
calendars = list(dict.fromkeys(column["calendars"]))

patches = {}
for lcid, fact, value in (row for row in lines_of("locale-patches.tsv") if not row[0].startswith("#")):
    if fact in LEFT_OUT:
        continue
    key = (places[int(lcid, 16)], PLACES.index(SAME.get(fact, fact)))
    assert patches.setdefault(key, value) == value, f"{lcid} {fact} twice"
texts = Pool()
patches = [(*key, texts.place(value)) for key, value in sorted(patches.items())]
assert texts.size < 0x10000 and pool.size < 0x10000

with open(top / "winapi/Locale/LocaleDataTable.cpp", "w", encoding="utf-8", newline="\n") as out:
    out.write("// Made by tools/tables/make_locale_facts.py from data/winapi/locale-facts.tsv and locale-patches.tsv: "
              f"{len(facts)} facts, {len(patches)} patches.\n// Not edited by hand.\n"
              "// clang-format off\n"
              '#include "Locale/LocaleData.h"\n\n'
              "namespace winapi\n{\n"
              "const char factTexts[] =\n")
    pool.write(out)
    out.write("    ;\n\n// Where the texts of each column's values begin.\nconst WORD factValues[] = {\n")
    begin, columns, cells = 0, [], []
    for number, values, indexes in facts:
        columns.append((number, begin))
        begin += len(values)
        write_numbers(out, values)
    out.write("};\n\n// Ascending: the fact, and where its values begin.\nconst FactColumn factColumns[] = {\n")
    for number, start in columns:
        out.write(f"    {{{number}, {start}}},\n")
    out.write("};\nconst unsigned factColumnCount = sizeof factColumns / sizeof factColumns[0];\n\n"
              f"const BYTE factCells[][{len(rows)}] = {{\n")
    for number, values, indexes in facts:
        out.write(f"    {{ // {number}\n")
        write_numbers(out, indexes)
        out.write("    },\n")
    out.write("};\n\nconst WORD signatures[][16] = {\n")
    for signature in signatures:
        words = [int(word, 16) for word in signature.split()]
        halves = ", ".join(f"0x{half:04X}" for word in words for half in (word & 0xFFFF, word >> 16))
        out.write(f"    {{{halves}}},\n")
    out.write(f"}};\nconst BYTE signatureOf[{len(rows)}] = {{\n")
    write_numbers(out, [signatures.index(value) for value in column["88"]])
    longest = max(len(value.split(",")) for value in calendars)
    assert longest < 4
    out.write("};\n\n// The locale's own calendar first; 0 ends a list.\nconst BYTE calendarLists[][4] = {\n")
    for value in calendars:
        out.write(f"    {{{', '.join(value.split(','))}}},\n")
    out.write(f"}};\nconst BYTE calendarListOf[{len(rows)}] = {{\n")
    write_numbers(out, [calendars.index(value) for value in column["calendars"]])
    out.write("};\n\nconst char patchTexts[] =\n")
    texts.write(out)
    out.write(f"    ;\n\n// Where the patches of each locale begin, and their end.\nconst WORD patchesOf[{len(rows) + 1}] = {{\n")
    write_numbers(out, [sum(1 for patch in patches if patch[0] < place) for place in range(len(rows) + 1)])
    out.write("};\nconst BYTE patchPlaces[] = {\n")
    write_numbers(out, [patch[1] for patch in patches])
    out.write("};\nconst WORD patchBegins[] = {\n")
    write_numbers(out, [patch[2] for patch in patches])
    out.write("};\n} // namespace winapi\n")
