#!/usr/bin/env python3
"""Writes a dictionary of the dict format as lines of headword, tab, translation.

    freedict_to_tsv.py DICTIONARY.index DICTIONARY.dict.dz [HEADWORDS] > OUTPUT.tsv

A line of the index is a folded headword, and offset and length of its article in base-64 digits, apart by tabs; the
articles lie in a gzip file. The first line of an article of the German-English dictionary is the headword as it is
written, with pronunciation and grammar behind it; the second line holds the translations with their labels; examples
and notes follow, which are left out. Articles come in the index's order, up to the number of headwords asked for.
"""

import gzip
import re
import sys

DIGITS = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"
VALUES = {digit: value for value, digit in enumerate(DIGITS)}

# A pronunciation stands between slashes, with a blank in front and none behind the first one.
PRONUNCIATION = re.compile(r" /(?! )[^/]*/(?= |$)")
# What follows a word: grammar, region and register, an abbreviation, pronunciation.
LABEL = re.compile(r"\s*<[^<>]*>.*$|\s\[[^\[\]]*\].*$| /(?! ).*$")
SUBJECT = re.compile(r"^(?:\s*\[[^\[\]]*\])+\s*")


def number(digits):
    value = 0
    for digit in digits:
        value = value * 64 + VALUES[digit]
    return value


def places(index):
    """Offset and length of each article in the order of the index, the ones about the dictionary itself left out."""
    seen = set()
    for line in index:
        fields = line.rstrip("\n").split("\t")
        if len(fields) < 3 or fields[0].startswith(("00database", "00-database")):
            continue
        place = number(fields[1]), number(fields[2])
        if place not in seen:
            seen.add(place)
            yield place


def headword(line):
    found = PRONUNCIATION.search(line)
    if found:
        return line[: found.start()].strip()
    return re.split(r" [<(]", line, maxsplit=1)[0].strip()


def parts(line):
    """The line cut at its commas, but not at those within brackets."""
    depth = 0
    start = 0
    for place, character in enumerate(line):
        if character in "([{<":
            depth += 1
        elif character in ")]}>":
            depth = max(0, depth - 1)
        elif character == "," and depth == 0 and line[place + 1 : place + 2] == " ":
            yield line[start:place]
            start = place + 2
    yield line[start:]


def translations(line):
    for part in parts(SUBJECT.sub("", line)):
        text = LABEL.sub("", SUBJECT.sub("", part)).strip()
        if text and not text.startswith("/"):
            yield text


def pairs(index, articles):
    for offset, length in places(index):
        lines = articles[offset : offset + length].decode("utf-8").split("\n")
        word = headword(lines[0])
        # Text about the dictionary has no translation line, and a mark alone is no word.
        if any(map(str.isalpha, word)) and len(lines) > 1 and not lines[1].startswith("  "):
            for translation in translations(lines[1]):
                yield word, translation


def main(arguments):
    if len(arguments) not in (2, 3):
        sys.exit(__doc__)
    limit = int(arguments[2]) if len(arguments) == 3 else None
    with gzip.open(arguments[1]) as file:
        articles = file.read()
    words = set()
    with open(arguments[0], encoding="utf-8") as index:
        output = open(sys.stdout.fileno(), "w", encoding="utf-8", newline="\n", closefd=False)
        for word, translation in pairs(index, articles):
            if word not in words and len(words) == limit:
                break
            words.add(word)
            output.write(f"{word}\t{translation}\n")
        output.close()


if __name__ == "__main__":
    main(sys.argv[1:])
