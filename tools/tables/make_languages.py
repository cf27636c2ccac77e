#!/usr/bin/env python3
"""Makes src/System/LocaleInfo/LanguageTables.cpp: the languages and sublanguages by their ordinals.

Reads data/languages/primary.tsv and sub.tsv; the README there tells their columns and rules.
"""
import collections
import pathlib

top = pathlib.Path(__file__).resolve().parents[2]


def rows_of(name):
    lines = (top / f"data/languages/{name}.tsv").read_text("ascii").splitlines()
    return [line.split("\t") for line in lines if not line.startswith("#")]


primaries = [(int(number, 16), code, name, int(subs)) for number, code, name, subs in rows_of("primary")]
subs = [(int(primary, 16) * 256 + int(sub), code, name) for primary, sub, code, name in rows_of("sub")]
for rows in (primaries, subs):
    numbers = [row[0] for row in rows]
    assert numbers == sorted(set(numbers)), "rows must ascend, for they are searched"
    assert all(len(row[1]) == 2 and '"' not in row[2] and "\\" not in row[2] for row in rows)
assert len({row[1] for row in primaries}) == len(primaries), "one code a language"
assert [key for key, *_ in subs if key < 256] == [0, 1, 2], "three sublanguages of any language"
counts = collections.Counter(key // 256 for key, *_ in subs)
for number, code, _, count in primaries:
    assert count == (counts.pop(number, 0) if number else 0), f"sublanguages of {code}"
assert set(counts) <= {0}, "sublanguages without a language"

with open(top / "src/System/LocaleInfo/LanguageTables.cpp", "w", encoding="ascii", newline="\n") as out:
    out.write("// Made by tools/tables/make_languages.py from data/languages: "
              f"{len(primaries)} languages, {len(subs)} sublanguages.\n// Not edited by hand.\n"
              "// clang-format off\n"
              "#include <System/LocaleInfo/Language.h>\n\n"
              f"const unsigned CT_Language::sn_PrimaryLanguages = {len(primaries)};\n"
              f"const unsigned CT_Language::sn_SubLanguages = {len(subs)};\n\n"
              "const CT_Language::st_PrimaryLanguage CT_Language::saso_PrimaryLanguages[] = {\n")
    for ordinal, (number, code, name, count) in enumerate(primaries):
        out.write(f'    /* {ordinal:2} */ {{0x{number:02X}, "{code}", "{name}", {count}}},\n')
    out.write("};\n\nconst CT_Language::st_SubLanguage CT_Language::saso_SubLanguages[] = {\n")
    for ordinal, (key, code, name) in enumerate(subs):
        out.write(f'    /* {ordinal:2} */ {{0x{key:04X}, "{code}", "{name}"}},\n')
    out.write("};\n")
