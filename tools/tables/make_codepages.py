#!/usr/bin/env python3
"""Makes winapi/Text/CodePageFacts.cpp and CodePageUnits.cpp: facts about the code pages and their tables.

A page is made of a converter of data/icu/converters.tsv or of a rule, and of what differs from that on the platform:
data/winapi/codepages.tsv names the pages, codepage-patches.tsv the differences (page, T or F, first, last, value;
values count up through a range; "-" is undefined).

Rows that are alike stand in the tables once, whichever pages they belong to:

- codePageUnits has the 256 bytes of each page (FFFF for a lead byte), and rows of 32 pairs;
- codePagePairRows has the numbers of those rows, 8 for each byte from the page's first lead byte to its last one;
- codePageBytes has rows of 64 units of pages of one byte: the byte of each, 0 for none;
- codePageByteRows has blocks of 16 numbers of such rows, codePageByteBlocks the 64 blocks of each page.

For pages of pairs the way from units to bytes is the way back from the lowest of the codes of each unit, but for the
undefined unit, whose code stands among the facts, and for codePageDifferences. A row there is three numbers of 7 bits
a byte, low bits first, the top bit set but on the last: how far the first unit lies behind the last one of the row
before, how long the range is, and the code's distance from the code before, shifted left by one and inverted if
negative. None is the code FFFF.
"""
import pathlib

top = pathlib.Path(__file__).resolve().parents[2]
NONE = 0xFFFF
PAIRS, CELLS, BLOCK = 32, 64, 16  # what a row of pairs, a row of bytes and a block of rows have


def rows_of(name):
    return [line.split("\t") for line in (top / "data" / name).read_text("utf-8").splitlines()
            if not line.startswith("#")]


# ---- What the pages are made of -------------------------------------------------------------------------------------


def inverse(to):
    """Unit to the lowest of its codes."""
    return {to[code]: code for code in sorted(to, reverse=True)}


def read_converters():
    """name -> (code to unit, unit to code)"""
    converters = {}
    for name, kind, first, values in rows_of("icu/converters.tsv"):
        table = converters.setdefault(name, ({}, {}))["TF".index(kind)]
        for n in range(0, len(values), 4):
            value = values[n:n + 4]
            table[int(first, 16) + n // 4] = None if value == "----" else int(value, 16)
    for to, back in converters.values():
        for code in [code for code, unit in to.items() if unit is None]:
            del to[code]
        given = inverse(to) | back
        back.clear()
        back |= {unit: code for unit, code in given.items() if code is not None}
    return converters


class Page:
    """to has the unit of each byte and pair, back the code of each unit."""

    def __init__(self, fields):
        page, size, default, undefined, lead, converter, self.to_count, self.from_count, *_ = fields
        self.page, self.default, self.undefined = int(page), int(default, 16), int(undefined, 16)
        self.converter = converter
        self.ranges = [] if lead == "-" else [tuple(int(end, 16) for end in part.split("-")) for part in lead.split()]
        assert len(self.ranges) <= 3 and (size == "2") == bool(self.ranges), f"lead bytes of {page}"
        self.leads = [byte for first, last in self.ranges for byte in range(first, last + 1)]
        self.to, self.back = {}, {}

    def has(self, code):
        return code >> 8 in self.leads if code > 0xFF else code not in self.leads

    def take(self, to, back):
        self.to = {code: unit for code, unit in to.items() if self.has(code)}
        self.back = {unit: code for unit, code in back.items() if self.has(code)}

    def take_rule(self, pairs):
        to = {byte: byte for byte in range(0xA0) if byte not in self.leads} | pairs
        self.take(to, inverse(to))

    def change(self, patches):
        for direction, table, count in (("T", self.to, self.to_count), ("F", self.back, self.from_count)):
            rows = patches.pop((self.page, direction), [])
            assert sum(last - first + 1 for first, last, _ in rows) == int(count), f"patches of {self.page}"
            for first, last, value in rows:
                for code in range(first, last + 1):
                    table.pop(code, None)
                    if value is not None:
                        table[code] = value + code - first

    def unit(self, code):
        return self.to.get(code, self.undefined)


# ---- Rules ----------------------------------------------------------------------------------------------------------
# Letters of Johab have five bits each: their numbers, FILL where the letter's place stands empty.

FILL = -1


def numbers(places):
    """place -> number, counting up over the places, of which the first is the empty one."""
    return {place: number + FILL for number, place in enumerate(places)}


INITIALS = numbers(range(1, 21))
VOWELS = numbers([2, *range(3, 8), *range(10, 16), *range(18, 24), *range(26, 30)])
FINALS = numbers([1, *range(2, 18), *range(19, 30)])


def hangul(pair):
    """Three letters: a syllable, or one letter alone."""
    initial, vowel, final = INITIALS.get(pair >> 10 & 31), VOWELS.get(pair >> 5 & 31), FINALS.get(pair & 31)
    if None in (initial, vowel, final):
        return None
    if initial != FILL and vowel != FILL:
        return 0xAC00 + (initial * 21 + vowel) * 28 + final + 1
    alone = [base + number for base, number in ((0x1100, initial), (0x1161, vowel), (0x11A8, final)) if number != FILL]
    return alone[0] if len(alone) == 1 else None


def korean_row(lead, second):
    """The row of page 949 that holds a half of a row of symbols or Chinese characters."""
    if lead == 0xD8:
        return 0xFE if second else 0xC9
    return (0xA1 + 2 * (lead - 0xD9) if lead < 0xE0 else 0xCA + 2 * (lead - 0xE0)) + second


def johab(korean):
    pairs = {pair: hangul(pair) for pair in range(0x8400, 0xD400)}
    trails = [*range(0x31, 0x7F), *range(0x91, 0xFF)]  # 188 in two stretches are two rows of 94
    for lead in [*range(0xD8, 0xDF), *range(0xE0, 0xFA)]:
        for place, trail in enumerate(trails):
            pairs[lead << 8 | trail] = korean.get(korean_row(lead, place >= 94) << 8 | (0xA1 + place % 94))
    return {pair: unit for pair, unit in pairs.items() if unit is not None}


def shifted(lead, trail):
    """A pair of two bytes from A1 to FE lies in page 932 two rows to a row."""
    row, cell = lead - 0xA1, trail - 0xA1
    first = row // 2 + (0x81 if row < 62 else 0xC1)
    return first << 8 | (0x9F + cell if row % 2 else 0x40 + cell + (cell >= 63))


def euc_jp(japanese, third):
    pairs = {0x8E00 | trail: 0xFF61 + trail - 0xA1 for trail in range(0xA1, 0xE0)}
    for lead in range(0xA1, 0xFF):
        for trail in range(0xA1, 0xFF):
            pairs[lead << 8 | trail] = japanese.get(shifted(lead, trail))
            pairs[lead << 8 | trail & 0x7F] = third.get(0x8F0000 | lead << 8 | trail)
    return {pair: unit for pair, unit in pairs.items() if unit is not None}


def read_pages():
    patches = {}
    for page, direction, first, last, value in rows_of("winapi/codepage-patches.tsv"):
        value = None if value == "-" else int(value, 16)
        patches.setdefault((int(page), direction), []).append((int(first, 16), int(last, 16), value))
    converters = read_converters()
    pages = {}
    for fields in rows_of("winapi/codepages.tsv"):
        page = Page(fields)
        pages[page.page] = page
        if page.converter == "rule:johab":
            page.take_rule(johab(pages[949].to))
        elif page.converter == "rule:eucjp":
            page.take_rule(euc_jp(pages[932].to, converters["euc-jp-2007"][0]))
        elif page.converter != "none":
            page.take(*converters[page.converter])
        page.change(patches)
    assert list(pages) == sorted(pages), "pages must ascend"
    assert not patches, f"patches of unknown pages {list(patches)}"
    return list(pages.values())


# ---- The tables -----------------------------------------------------------------------------------------------------


class Pool:
    """Values in one piece; equal stretches stand there once, at places that are multiples of their step."""

    def __init__(self):
        self.values, self.places = [], {}

    def place(self, values, step=1):
        values = tuple(values)
        if (values, step) not in self.places:
            self.values += [0] * (-len(self.values) % step)
            self.places[values, step] = len(self.values) // step
            self.values += values
        return self.places[values, step]


units, pair_rows, cells, byte_rows, byte_blocks, differences = Pool(), Pool(), Pool(), Pool(), Pool(), []


def packed(number):
    out = []
    while number >= 128:
        out.append(number & 127 | 128)
        number >>= 7
    return out + [number]


def ranges_of(table):
    """[first, last, value] of stretches whose values count up, or are all NONE."""
    ranges = []
    for code in sorted(table):
        value = table[code]
        if ranges and code == ranges[-1][1] + 1:
            first, last, begin = ranges[-1]
            if NONE in (value, begin) and value == begin or NONE not in (value, begin) and value == begin + code - first:
                ranges[-1][1] = code
                continue
        ranges.append([code, code, value])
    return ranges


def add_differences(page):
    """The place of the page's rows and their number."""
    lowest = inverse(page.to)
    different = {unit: page.back.get(unit, NONE) for unit in lowest.keys() | page.back.keys()
                 if page.back.get(unit) != lowest.get(unit) and unit != page.undefined}
    start, last, previous, rows = len(differences), 0, 0, ranges_of(different)
    for first, end, value in rows:
        distance = value - previous
        differences.extend(packed(first - last) + packed(end - first) +
                           packed(distance * 2 if distance >= 0 else -distance * 2 - 1))
        last, previous = end, value
    return start, len(rows)


def pair_tables(page):
    def row(code):
        return units.place((page.unit(code + n) if page.has(code) else page.undefined for n in range(PAIRS)), PAIRS)
    codes = range(page.leads[0] << 8, page.leads[-1] + 1 << 8, PAIRS)
    return (pair_rows.place(map(row, codes)), *add_differences(page))


def byte_tables(page):
    assert [unit for unit, code in page.back.items() if not code] == [0], f"byte 0 of {page.page}"

    def row(unit):
        return cells.place((page.back.get(unit + n, 0) for n in range(CELLS)), CELLS)

    def block(first):
        return byte_rows.place((row(first + n * CELLS) for n in range(BLOCK)), BLOCK)
    return byte_blocks.place((block(first) for first in range(0, 0x10000, CELLS * BLOCK))), 0, 0


def is_own(page, byte, unit):
    return byte not in page.leads and page.unit(byte) == unit and page.back.get(unit) == byte


def longest_run(page):
    """First byte, length and first unit of bytes of the upper half whose units follow one another, both ways."""
    best = (0, 0, 0)
    for first in range(0x80, 0x100):
        unit, length = page.unit(first), 0
        while first + length < 0x100 and is_own(page, first + length, unit + length):
            length += 1
        if length > best[1]:
            best = (first, length, unit)
    return best


def facts_row(page):
    bytes_at = units.place((NONE if byte in page.leads else page.unit(byte) for byte in range(256)))
    place, start, rows = pair_tables(page) if page.leads else byte_tables(page)
    lead = ", ".join("{0x%02X, 0x%02X}" % part for part in page.ranges + [(1, 0)] * (3 - len(page.ranges)))
    has_ascii = str(all(is_own(page, byte, byte) for byte in range(0x80))).lower()
    first, length, unit = longest_run(page)
    code = page.back.get(page.undefined, NONE)
    return (f"    {{{page.page}, 0x{page.default:02X}, 0x{page.undefined:04X}, 0x{code:04X}, {{{lead}}}, {has_ascii}, "
            f"{{0x{first:02X}, {length}, 0x{unit:04X}}}, {bytes_at}, {place}, {start}, {rows}}},\n")


def write(name, head, body):
    with open(top / "winapi/Text" / name, "w", encoding="ascii", newline="\n") as out:
        out.write("// Made by tools/tables/make_codepages.py from data/icu/converters.tsv, data/winapi/codepages.tsv and\n"
                  f"// codepage-patches.tsv: {head}. Not edited by hand.\n"
                  "// clang-format off\n"
                  '#include "Text/CodePageFacts.h"\n\n'
                  f"namespace winapi\n{{\n{body}}} // namespace winapi\n")


def array(kind, name, values):
    lines = ("    " + ",".join(map(str, values[start:start + 20])) + ",\n" for start in range(0, len(values), 20))
    return f"const {kind} {name}[] = {{\n{''.join(lines)}}};\n"


def main():
    pages = read_pages()
    rows = [facts_row(page) for page in pages]
    assert max(pair_rows.values + byte_rows.values) <= 0xFFFF and max(byte_blocks.values) <= 0xFF
    write("CodePageFacts.cpp", f"{len(pages)} pages",
          "// page, default byte, undefined unit and its code, lead bytes, has ASCII, run of bytes, place of the bytes; place\n"
          "// in codePagePairRows, place and number of differences, or place in codePageByteBlocks\n"
          f"const CodePageFacts codePages[] = {{\n{''.join(rows)}}};\n"
          "const unsigned codePageCount = sizeof codePages / sizeof codePages[0];\n")
    size = 2 * (len(units.values) + len(pair_rows.values) + len(byte_rows.values)) + len(cells.values) + \
        len(byte_blocks.values) + len(differences)
    write("CodePageUnits.cpp", f"{size} bytes",
          array("WCHAR", "codePageUnits", units.values) + array("WORD", "codePagePairRows", pair_rows.values) +
          array("BYTE", "codePageBytes", cells.values) + array("WORD", "codePageByteRows", byte_rows.values) +
          array("BYTE", "codePageByteBlocks", byte_blocks.values) + array("BYTE", "codePageDifferences", differences))


if __name__ == "__main__":
    main()
