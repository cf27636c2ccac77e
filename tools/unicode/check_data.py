#!/usr/bin/env python3
"""Checks data/unicode-2.0: the database files by their sums, the tables by the rules that the README there tells.

Prints what breaks a rule and exits with 1. The text processing words of ctype3.tsv follow no rule of the database; of
them only the form is checked.
"""
import hashlib
import pathlib
import re
import sys

DATA = pathlib.Path(__file__).resolve().parents[2] / "data/unicode-2.0"
SUMS = {
    "UnicodeData-2.0.14.txt": "fdb15931fefb25d34546c575c6507732a4ac48b4b4148510f46ee0161a84c336",
    "Blocks-1.txt": "91b0d41a60af658a73e277f108d3f4959a8ec3f3983654b24c00db3a4e146877",
}
ROWS = {"property": 1169, "block": 80, "numeric": 350, "digit": 204, "czone": 406, "katakana": 302, "hiragana": 302,
        "decomposition": 601, "upper": 673, "lower": 673, "ctype1": 256 + 1311, "ctype2": 256 + 630,
        "ctype3": 256 + 877}
IOTA = {*range(0x1F80, 0x1F88), *range(0x1F90, 0x1F98), *range(0x1FA0, 0x1FA8), 0x1FB3, 0x1FC3, 0x1FF3}
WORD = {"Lu": 0x101, "Ll": 0x102, "Lt": 0x103, "Lo": 0x100, "Nd": 0x04, "Cs": 0, "Co": 0, "": 0}
# Character words that the category doesn't give.
WORD_EXCEPTIONS = {
    0x100: "01A6 0262 026A 0274 0276 0280 0281 028F 0294-0299 029B 029C 029F 02A1 02A2 0F90-0F95 0F97 0F99-0FAD "
           "0FB1-0FB7 0FB9 FB29",
    0x102: "03F3",
    0x04: "0BF0-0BF2 0F2A-0F33 2070 2074-2079 2080-2089",
    0x10: "0192 093D 0A72-0A74 0ABD 0B3D 0E30 0E32 0E33 0E40-0E45 0EB0 0EB2 0EB3 0EBD 0EC0-0EC4 1FBE 207F 2102 2107 "
          "210A-2113 2115 2118-211D 2124 2126 2128 212A-2131 2133-2138 FE70-FE72 FE74 FE76-FEFC FFA0",
    0x48: "3000 FEFF",
}
BIDI = {"L": 1, "R": 2, "EN": 3, "ES": 4, "ET": 5, "AN": 6, "CS": 7, "B": 8, "S": 9, "WS": 10, "ON": 11}
GREEK_NEUTRALS = {0x374, 0x375, 0x37E, 0x384, 0x385, 0x387}
breaches = []


def expect(found, wanted, what):
    """Sets, maps or lists that must be equal; shows what one has and the other hasn't."""
    if found != wanted:
        as_set = (lambda x: set(x.items()) if isinstance(x, dict) else set(x))
        few = sorted(as_set(found) ^ as_set(wanted), key=str)[:8]
        breaches.append(f"{what}: {few}")


def lines_of(name):
    return [line.split("\t") for line in (DATA / f"{name}.tsv").read_text("ascii").splitlines()[1:]]


def pairs_of(name):
    return {int(source, 16): int(target, 16) for source, target in lines_of(name)}


def words_of(name):
    words = [0] * 65536
    for first, last, value in lines_of(name):
        words[int(first, 16):int(last, 16) + 1] = [int(value, 0)] * (int(last, 16) - int(first, 16) + 1)
    return words


class Database:
    """The fields of each record by its character; records of a First and Last pair by the first one."""

    def __init__(self):
        self.records = {}
        self.ranges = {}
        for line in (DATA / "UnicodeData-2.0.14.txt").read_text("ascii").splitlines():
            fields = line.split(";")
            character = int(fields[0], 16)
            if fields[1].endswith("Last>"):
                self.ranges[list(self.records)[-1]] = character
            else:
                self.records[character] = fields

    def field(self, number):
        return {character: fields[number] for character, fields in self.records.items() if fields[number]}

    def all(self, number):
        """The field of each character, those between First and Last included."""
        values = [""] * 65536
        for character, fields in self.records.items():
            for c in range(character, self.ranges.get(character, character) + 1):
                values[c] = fields[number]
        return values

    def canonical(self, character):
        """The full canonical decomposition, in which the one mark U+0344 stays whole; the character itself for none."""
        text = self.records.get(character, [""] * 6)[5]
        if not text or text.startswith("<") or character == 0x344:
            return [character]
        return [c for part in text.split() for c in self.canonical(int(part, 16))]

    def compatible(self, *kinds):
        """Compatibility decompositions of these kinds, <wide> and the like; of all for none."""
        found = {}
        for character, text in self.field(5).items():
            kind, _, units = text.partition(" ")
            if kind.startswith("<") and (not kinds or kind in kinds):
                found[character] = [int(unit, 16) for unit in units.split()]
        return found


def check_files():
    for name, wanted in SUMS.items():
        expect([hashlib.sha256((DATA / name).read_bytes()).hexdigest()], [wanted], name)
    for name, wanted in ROWS.items():
        expect([len(lines_of(name))], [wanted], f"rows of {name}.tsv")


def check_property(database):
    rows = []
    for character, fields in database.records.items():
        last = database.ranges.get(character)
        if last is None and rows and rows[-1][2] == fields[2] and not rows[-1][3]:
            rows[-1][1] = character
        else:
            rows.append([character, last or character, fields[2], last is not None])
    wanted = [(f"{first:04X}", f"{last:04X}", category) for first, last, category, _ in rows]
    expect([(first, last, category) for first, last, _, category in lines_of("property")], wanted, "property.tsv")


def check_block():
    wanted = []
    for line in (DATA / "Blocks-1.txt").read_text("ascii").splitlines():
        if re.match(r"[0-9A-F]{4}; ", line):
            wanted.append(tuple(line.split("; ")[:2]))
    expect([(first, last) for first, last, value, _ in lines_of("block") if value != "70"], wanted, "block.tsv")


def check_numbers(database):
    wanted = {}
    for character, text in database.field(8).items():
        top, _, bottom = text.partition("/")
        wanted[character] = (int(top), int(bottom or 1))
    expect({int(c, 16): (int(top), int(bottom)) for c, top, bottom in lines_of("numeric")}, wanted, "numeric.tsv")
    digits = {character: 0x30 + int(text) for character, text in database.field(7).items() if character > 0x39}
    left_out = {*range(0xF20, 0xF2A), *range(0xFF10, 0xFF1A)}
    expect(pairs_of("digit"), {c: d for c, d in digits.items() if c not in left_out}, "digit.tsv")


def check_forms(database):
    compatible = database.compatible()
    wanted = {c: units[0] for c, units in compatible.items() if 0xFE30 <= c <= 0xFFEE and len(units) == 1}
    marks = {0xFE70 + n: [0x64B, 0x64B, 0x64C, 0, 0x64D, 0, 0x64E, 0x64E, 0x64F, 0x64F, 0x650, 0x650, 0x651, 0x651,
                          0x652, 0x652][n] for n in range(16) if n not in (3, 5)}
    wanted.update(marks)
    for c in (0xFE68, 0xFF3C):
        wanted.pop(c)
    expect(pairs_of("czone"), wanted, "czone.tsv")
    widened = {units[0]: c for c, units in database.compatible("<wide>").items()}
    widened.update({c: units[0] for c, units in database.compatible("<narrow>").items() if 0xFF61 <= c <= 0xFFDC})
    widened.pop(0x5C)
    kana = {c: c + 0x60 for c in [*range(0x3041, 0x3095), 0x309D, 0x309E]}
    expect(pairs_of("katakana"), {**widened, **kana}, "katakana.tsv")
    back = {target: source for source, target in kana.items()}
    expect(pairs_of("hiragana"), {**{c: back.get(t, t) for c, t in widened.items()}, **{t: s for s, t in kana.items()}},
           "hiragana.tsv")


def check_decomposition(database):
    """Of a row that the database has as well: nothing, or just the voice marks of kana, differs."""
    halfwidth = {0x3099: 0xFF9E, 0x309A: 0xFF9F}
    sequences, wanted = {}, {}
    for source, units in lines_of("decomposition"):
        sequence = tuple(database.canonical(int(source, 16)))
        if len(sequence) > 1 and source not in ("01FE", "01FF"):
            wanted[source] = tuple(halfwidth.get(c, c) for c in sequence)
            sequences[source] = tuple(int(unit, 16) for unit in units.split())
    expect(sequences, wanted, "decomposition.tsv")


def check_case(database):
    up = {c: int(text, 16) for c, text in database.field(12).items()}
    down = {c: int(text, 16) for c, text in database.field(13).items()}
    pairs = {c: target for c, target in up.items() if down.get(target) == c}
    pairs.update({c + 0x30: c for c in range(0x10A0, 0x10C6)})
    expect([len(pairs)], [699], "pairs of the database with the Georgian ones")
    pairs = {c: target for c, target in pairs.items() if c not in IOTA and c != 0x258}
    pairs.update({0x275: 0x19F, 0x1DD: 0x18E})
    expect(pairs_of("upper"), pairs, "upper.tsv")
    expect(pairs_of("lower"), {target: c for c, target in pairs.items()}, "lower.tsv")


def listed(text):
    for part in text.split():
        first, _, last = part.partition("-")
        yield from range(int(first, 16), int(last or first, 16) + 1)


def without_private_use(words):
    """Nothing is told of surrogates, private use and the replacement character."""
    return [0 if 0xD800 <= c <= 0xF8FF or c == 0xFFFD else word for c, word in enumerate(words)]


def check_words(database):
    """Above U+00FF; below, each word is a row of its own."""
    wanted = without_private_use([WORD.get(category, 0x10) for category in database.all(2)])
    for word, characters in WORD_EXCEPTIONS.items():
        for c in listed(characters):
            if wanted[c] == word:
                breaches.append(f"U+{c:04X} is no exception")
            wanted[c] = word
    for c in listed("FF10-FF19 FF21-FF26 FF41-FF46"):
        wanted[c] |= 0x80
    expect(dict(enumerate(words_of("ctype1")[256:], 256)), dict(enumerate(wanted[256:], 256)), "ctype1.tsv")


def check_layout(database):
    wanted = without_private_use([BIDI.get(text, 0) for text in database.all(4)])
    words = words_of("ctype2")
    for c in GREEK_NEUTRALS:
        wanted[c] = 11
    controls = {9: 9, 10: 8, 11: 9, 12: 10, 13: 8}
    for c in [*range(0x20), *range(0x7F, 0xA0)]:
        wanted[c] = controls.get(c, 0)
    expect(dict(enumerate(words)), dict(enumerate(wanted)), "ctype2.tsv")


def main():
    database = Database()
    check_files()
    check_property(database)
    check_block()
    check_numbers(database)
    check_forms(database)
    check_decomposition(database)
    check_case(database)
    check_words(database)
    check_layout(database)
    print("\n".join(breaches + [f"unicode data: {len(breaches)} breaches"]))
    sys.exit(1 if breaches else 0)


main()
