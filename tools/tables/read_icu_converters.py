#!/usr/bin/env python3
"""Makes data/icu/converters.tsv: what the converters of ICU that data/winapi/codepages.tsv names give.

Run once, on a machine with ICU 72 (Debian's libicu72); the tables of the code pages are then made of the file, by
make_codepages.py, and need no ICU.

A row is a converter, T or F, a first code and values of four digits each, which belong to the codes that follow one
another from there. T: bytes (of two or three for a code above FF) to the one unit that they give. F: a unit to the
byte or pair that it gives, only where that isn't the lowest one that gives the unit. "----" is none.
"""
import ctypes
import ctypes.util
import pathlib
import re
import sys

top = pathlib.Path(__file__).resolve().parents[2]
MORE = {"rule:eucjp": "euc-jp-2007"}
NONE = "----"
FEW = {"T": 4, "F": 0}  # so many codes that the table lacks don't end a row; in T it has all that have a value

library = ctypes.util.find_library("icuuc") or sys.exit("libicuuc isn't there")
icu = ctypes.CDLL(library)
VERSION = re.search(r"\.so\.(\d+)", library).group(1)


class Converter:
    def __init__(self, name):
        self.error = ctypes.c_int(0)
        self.handle = self.call("ucnv_open", ctypes.c_void_p, name.encode())
        assert self.handle, name
        for what, action in (("To", "TO"), ("From", "FROM")):
            stop = getattr(icu, f"UCNV_{action}_U_CALLBACK_STOP_{VERSION}")
            self.call(f"ucnv_set{what}UCallBack", None, self.pointer(), stop, None, None, None)
        getattr(icu, f"ucnv_setFallback_{VERSION}")(self.pointer(), ctypes.c_byte(1))
        self.units = (ctypes.c_uint16 * 8)()
        self.bytes = ctypes.create_string_buffer(16)

    def pointer(self):
        return ctypes.c_void_p(self.handle)

    def call(self, name, result, *arguments):
        function = getattr(icu, f"{name}_{VERSION}")
        function.restype = result
        self.error.value = 0
        return function(*arguments, ctypes.byref(self.error))

    def unit(self, text):
        """The one unit that the bytes give, or None."""
        count = self.call("ucnv_toUChars", ctypes.c_int32, self.pointer(), self.units, 8, text, len(text))
        return self.units[0] if self.error.value <= 0 and count == 1 else None

    def code(self, unit):
        """The byte or, as a number above 255, the pair that a unit gives, or None."""
        self.units[0] = unit
        count = self.call("ucnv_fromUChars", ctypes.c_int32, self.pointer(), self.bytes, 16, self.units, 1)
        known = self.error.value <= 0 and (count == 1 or count == 2 and self.bytes.raw[0] != 0)
        return int.from_bytes(self.bytes.raw[:count], "big") if known else None


def rows(table, few):
    """(first code, values) of stretches of a table, each within 256 codes."""
    first, values = None, []
    for code in sorted(table):
        gap = code - first - len(values) if first is not None else 0
        if first is not None and (gap > few or code >> 8 != first >> 8):
            yield first, values
            first, values = None, []
        if first is None:
            first, gap = code, 0
        values += [None] * gap + [table[code]]
    if values:
        yield first, values


def text(value):
    return NONE if value is None else f"{value:04X}"


def read(name, leads, triples):
    converter = Converter(name)
    to = {byte: converter.unit(bytes([byte])) for byte in range(256)}
    for lead in leads:
        for trail in range(256):
            to[lead << 8 | trail] = converter.unit(bytes([lead, trail]))
    if triples:
        to = {0x8F0000 | lead << 8 | trail: converter.unit(bytes([0x8F, lead, trail]))
              for lead in range(0xA1, 0xFF) for trail in range(0xA1, 0xFF)}
    to = {code: unit for code, unit in to.items() if unit is not None}
    back = {to[code]: code for code in sorted(to, reverse=True)}
    given = {} if triples else {unit: converter.code(unit) for unit in range(0x10000) if not 0xD800 <= unit < 0xE000}
    different = {unit: code for unit, code in given.items() if code != back.get(unit)}
    for kind, table in (("T", to), ("F", different)):
        for first, values in rows(table, FEW[kind]):
            yield f"{name}\t{kind}\t{first:04X}\t{''.join(map(text, values))}\n"


def main():
    wanted = {}
    for line in (top / "data/winapi/codepages.tsv").read_text("utf-8").splitlines():
        if line.startswith("#"):
            continue
        lead, name = line.split("\t")[4:6]
        name = MORE.get(name, name)
        if ":" in name or name == "none":
            continue
        leads = wanted.setdefault(name, set())
        for part in lead.split() if lead != "-" else ():
            first, last = (int(end, 16) for end in part.split("-"))
            leads.update(range(first, last + 1))
    with open(top / "data/icu/converters.tsv", "w", encoding="ascii", newline="\n") as out:
        out.write(f"# converter\tT or F\tfirst code\tvalues; ICU {VERSION}; tools/tables/read_icu_converters.py tells more\n")
        for name in sorted(wanted):
            out.writelines(read(name, sorted(wanted[name]), name in MORE.values()))


if __name__ == "__main__":
    main()
