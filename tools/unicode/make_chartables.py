#!/usr/bin/env python3
"""Makes src/Ostra/Unicode/CharRows.h and CharTables.cpp from data/unicode-2.0.

    make_chartables.py           writes both
    make_chartables.py --check   writes nothing; exits with 1 if one of them differs from what it would write

CharRows.h has the rows of each table in the order of its file, as a search takes them; only the tests and the numeric
value look there. CharTables.cpp has the same as two stages: where the values of each run of characters stand, and the
values; equal runs have theirs in common. A character of several rows has the value of the one that the search meets
first.
"""
import pathlib
import sys

TOP = pathlib.Path(__file__).resolve().parents[2]
DATA = TOP / "data/unicode-2.0"
TARGET = TOP / "src/Ostra/Unicode"
BYTE_RUN, MAPPING_RUN = 32, 64
LIMIT = 65536

# In the order of CT_CharTables::et_Mapping.
PAIRS = {"UPPER": ("upper", 673), "LOWER": ("lower", 673), "DIGIT": ("digit", 204), "CZONE": ("czone", 406),
         "KATAKANA": ("katakana", 302), "HIRAGANA": ("hiragana", 302)}
WORDS = {"CHARACTER": ("ctype1", 1311), "LAYOUT": ("ctype2", 630), "TEXT_PROCESSING": ("ctype3", 877)}
CATEGORIES = {"Mn": "MarkNonSpacing", "Mc": "MarkSpacingCombining", "Me": "MarkEnclosing", "Nd": "NumberDecimalDigit",
              "Nl": "NumberLetter", "No": "NumberOther", "Zs": "SeparatorSpace", "Zl": "SeparatorLine",
              "Zp": "SeparatorParagraph", "Cc": "OtherControl", "Cf": "OtherFormat", "Cs": "OtherSurrogate",
              "Co": "OtherPrivateUse", "Cn": "OtherNotAssigned", "Lu": "LetterUppercase", "Ll": "LetterLowercase",
              "Lt": "LetterTitlecase", "Lm": "LetterModifier", "Lo": "LetterOther", "Pc": "PunctuationConnector",
              "Pd": "PunctuationDash", "Ps": "PunctuationOpen", "Pe": "PunctuationClose", "Po": "PunctuationOther",
              "Sm": "SymbolMath", "Sc": "SymbolCurrency", "Sk": "SymbolModifier", "So": "SymbolOther"}
UNKNOWN_PROPERTY = len(CATEGORIES)
LETTER = 0x80  # beside the number of a category that begins with L


def lines_of(name):
    return [line.split("\t") for line in (DATA / f"{name}.tsv").read_text("ascii").splitlines()[1:]]


def ranges_of(name):
    return [(int(first, 16), int(last, 16), int(value, 0)) for first, last, value, *_ in lines_of(name)]


def found(rows, character):
    """The row of a binary search: of an even number of rows the middle one is the last of the first half."""
    low, count = 0, len(rows)
    while count:
        middle = low + (count - 1) // 2
        first, last = rows[middle][0], rows[middle][1]
        if first <= character <= last:
            return rows[middle]
        if character < first:
            count = middle - low
        else:
            count -= middle - low + 1
            low = middle + 1
    return None


def searched(rows, default):
    hits = (found(rows, character) for character in range(65536))
    return [hit[2] if hit else default for hit in hits]


def distances(pairs):
    values = [0] * 65536
    for source, target in pairs:
        values[source] = target - source & 0xFFFF
    return values


def runs(values, length, blocks):
    """The number of each run's block; blocks that aren't there yet are added."""
    return [blocks.setdefault(tuple(values[start:start + length]), len(blocks)) for start in range(0, 65536, length)]


def flat(blocks):
    return [value for block in blocks for value in block]


class Rows:
    """The text of CharRows.h, and what its counts are."""

    def __init__(self):
        self.text = []
        self.counts = []

    def add(self, kind, name, rows, count):
        assert len(rows) == count, f"{name}: {len(rows)} rows for {count}"
        self.text.append(f"    static constexpr {kind} {name}[] = {{\n" + wrapped(rows) + "    };\n")
        self.counts.append((name, count))


class Tables:
    """The text of CharTables.cpp, and the size of its tables."""

    def __init__(self):
        self.text = []
        self.names = []

    def add(self, kind, name, items):
        self.text.append(f"const {kind} CT_CharTables::{name}[] = {{\n" + wrapped(items) + "};\n")
        self.names.append(name)

    def add_bytes(self, name, values):
        """The number of each run's block, a byte, and the blocks."""
        blocks = {}
        numbers = runs(values, BYTE_RUN, blocks)
        assert max(numbers + values) <= 255, name
        self.add("unsigned char", name, numbers + flat(blocks))

    def add_mappings(self, mappings):
        """The place of each run of each mapping, and the blocks, which the mappings have in common."""
        blocks, numbers = {}, []
        for values in mappings:
            numbers += runs(values, MAPPING_RUN, blocks)
        places = [len(numbers) + number * MAPPING_RUN for number in numbers]
        assert max(places) <= 65535, "a place is 16 bits"
        self.add("unsigned short", "sau_Mappings", places + flat(blocks))

    def add_text(self, name, lines):
        self.text.append(f"const char16_t CT_CharTables::{name}[] =\n    " + "\n    ".join(lines) + ";\n")
        self.names.append(name)


def wrapped(items):
    lines, line = [], "   "
    for item in items:
        if len(line) + len(str(item)) + 2 > 118:
            lines.append(line)
            line = "   "
        line += f" {item},"
    return "\n".join(lines + [line]) + "\n"


def offsets(names):
    """Where each name begins in a text that ends each with a zero."""
    starts, length = [], 0
    for name in names:
        starts.append(length)
        length += len(name) + 1
    return starts


def range_rows(rows):
    return [f"{{0x{first:04X},0x{last:04X},{value}}}" for first, last, value in rows]


def add_properties(rows, tables):
    for line in lines_of("property"):
        assert list(CATEGORIES).index(line[3]) == int(line[2]), f"{line}: not the category's number"
    properties, blocks = ranges_of("property"), ranges_of("block")
    rows.add("st_CharRange", "PROPERTY", range_rows(properties), 1169)
    rows.add("st_CharRange", "BLOCK", range_rows(blocks), 80)
    marked = [number | LETTER * name.startswith("L") for number, name in enumerate(CATEGORIES)] + [UNKNOWN_PROPERTY]
    tables.add_bytes("san1_Property", [marked[number] for number in searched(properties, UNKNOWN_PROPERTY)])
    tables.add_bytes("san1_Block", searched(blocks, 0))


def add_words(rows, tables):
    columns = []
    for name, (file, count) in WORDS.items():
        ranges = ranges_of(file)
        direct, ranges = ranges[:256], ranges[256:]
        assert [row[:2] for row in direct] == [(n, n) for n in range(256)] and ranges[0][0] >= 0x100, file
        assert ranges[-1] == (0xFFEF, 0xFFFF, 0), f"{file}: the last row"
        rows.add("unsigned short", f"{name}_DIRECT", [f"0x{value:X}" for *_, value in direct], 256)
        rows.add("st_CharRange", name, range_rows(ranges), count)
        columns.append([value for *_, value in direct] + searched(ranges, 0)[256:])
    numbers = {}
    values = [numbers.setdefault(words, len(numbers)) for words in zip(*columns)]
    tables.add_bytes("san1_Words", values)
    tables.add("CT_CharTables::st_Words", "saso_Words",
               ["{{" + ",".join(f"0x{word:X}" for word in words) + "}}" for words in numbers])


def add_numbers(rows):
    numbers = [(int(character, 16), int(top), int(bottom)) for character, top, bottom in lines_of("numeric")]
    assert numbers == sorted(numbers), "numbers must ascend"
    rows.add("st_CharNumber", "NUMERIC", [f"{{0x{c:04X},{top},{bottom}}}" for c, top, bottom in numbers], 350)


def add_mappings(rows, tables):
    """The distances of the pairs, then where the decompositions stand."""
    mappings = []
    for name, (file, count) in PAIRS.items():
        pairs = [(int(source, 16), int(target, 16)) for source, target in lines_of(file)]
        assert pairs == sorted(pairs), f"{file}: rows must ascend"
        assert all(target and source != target for source, target in pairs), f"{file}: a row that maps to nothing"
        rows.add("st_CharMapping", name, [f"{{0x{s:04X},0x{t:04X}}}" for s, t in pairs], count)
        mappings.append(distances(pairs))
    sequences = {int(source, 16): sequence.split() for source, sequence in lines_of("decomposition")}
    assert list(sequences) == sorted(sequences), "decompositions must ascend"
    assert all(2 <= len(sequence) <= 3 for sequence in sequences.values())
    rows.add("st_CharDecomposition", "DECOMPOSITION",
             [f"{{0x{source:04X},{{{','.join('0x' + unit for unit in sequence)}}}}}"
              for source, sequence in sequences.items()], 601)
    places, units = [0] * 65536, ["0"]
    for source, sequence in sequences.items():
        places[source] = len(units)
        units += ["0x" + unit for unit in sequence] + ["0"]
    tables.add_mappings(mappings + [places])
    tables.add("char16_t", "sac_Sequences", units)


def add_names(tables):
    blocks = {int(value): name for _, _, value, name in lines_of("block")}
    assert sorted(blocks) == list(range(1, 71)), "blocks"
    block_names = ["Unknown"] + [blocks[value] for value in sorted(blocks)]
    for kind, names in (("Property", list(CATEGORIES.values()) + ["Unknown"]), ("Block", block_names)):
        tables.add_text(f"sac_{kind}Names", [f'u"{name}\\0"' for name in names])
        tables.add("unsigned short", f"sau_{kind}Name", offsets(names))


def made():
    """The texts by file name."""
    rows, tables = Rows(), Tables()
    add_properties(rows, tables)
    add_words(rows, tables)
    add_numbers(rows)
    add_mappings(rows, tables)
    add_names(tables)
    head = ("// Made by tools/unicode/make_chartables.py from data/unicode-2.0. Not edited by hand.\n"
            "// clang-format off\n")
    counts = "".join(f"static_assert(std::size(CT_CharRows::{name}) == {count});\n" for name, count in rows.counts)
    size = " +\n    ".join(f"sizeof(CT_CharTables::{name})" for name in tables.names)
    return {
        "CharRows.h": head + "#pragma once\n\n#include <Ostra/Unicode/CharTables.h>\n\n"
        "// The rows of each table, in the order in which a search goes through them.\nclass CT_CharRows\n{\npublic:\n" +
        "\n".join(rows.text) + "};\n",
        "CharTables.cpp": head + "#include <Ostra/Unicode/CharTables.h>\n\n#include <Ostra/Unicode/CharRows.h>\n\n"
        "#include <iterator>\n\n" + counts + "\n" + "\n".join(tables.text) +
        "\n// With the numbers, which are searched as they are.\n"
        "constexpr std::size_t CT_CharTables::sn_Size()\n{\n    return " + size +
        " +\n    sizeof(CT_CharRows::NUMERIC);\n}\n"
        f"static_assert(CT_CharTables::sn_Size() < {LIMIT});\n",
    }


def main():
    check = sys.argv[1:] == ["--check"]
    if sys.argv[1:] and not check:
        sys.exit(__doc__)
    different = 0
    for name, text in made().items():
        file = TARGET / name
        if not check:
            file.write_text(text, "ascii", newline="\n")
        elif file.read_bytes() != text.encode("ascii"):
            print(f"{file.relative_to(TOP)} differs from what tools/unicode/make_chartables.py makes")
            different = 1
    sys.exit(different)


main()
