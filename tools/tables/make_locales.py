#!/usr/bin/env python3
"""Makes winapi/Base/LocaleTable.cpp: the locales, their ids and their code pages.

Reads data/winapi/locale-facts.tsv (columns headed by the numbers of the facts) and locale-aliases.tsv, whose ids
below 1000 (hexadecimal) of one language each tell where a language without a region lives.
"""
import pathlib

top = pathlib.Path(__file__).resolve().parents[2]
data = top / "data/winapi"
lines = [line.split("\t") for line in (data / "locale-facts.tsv").read_text("utf-8").splitlines()]
head = lines[0]
columns = [head.index(title) for title in ("tag", "4100", "11", "4113")]
rows = [(int(row[0], 16), *(row[column] for column in columns)) for row in lines[1:]
        if not row[0].startswith("#")]
lcids = {lcid: tag for lcid, tag, *_ in rows}

places = {lcid: place for place, (lcid, *_) in enumerate(rows)}
ids = dict(places)
aliases = []
for line in (data / "locale-aliases.tsv").read_text("utf-8").splitlines():
    if line.startswith("#"):
        continue
    lcid, name, target = line.split("\t")
    assert int(lcid, 16) not in ids, f"{lcid} twice"
    ids[int(lcid, 16)] = places[int(target, 16)]
    if int(lcid, 16) < 0x400:
        assert lcids[int(target, 16)] == name, f"alias {lcid}"
        aliases.append((name.split("-")[0], int(target, 16)))
aliases = sorted(aliases)
assert len({language for language, _ in aliases}) == len(aliases), "one home a language"

with open(top / "winapi/Base/LocaleTable.cpp", "w", encoding="utf-8", newline="\n") as out:
    out.write("// Made by tools/tables/make_locales.py from data/winapi/locale-facts.tsv and locale-aliases.tsv: "
              f"{len(rows)} locales,\n// {len(aliases)} languages. Not edited by hand.\n"
              "// clang-format off\n"
              '#include "Base/ProcessLocale.h"\n\n'
              "namespace winapi\n{\n"
              "// In the order of enumeration, the invariant one last: id, tag, ANSI, OEM and Mac code page\n"
              "const LocaleFacts locales[] = {\n")
    for lcid, tag, ansi, oem, mac in rows:
        out.write(f'    {{0x{lcid:04X}, "{tag}", {ansi}, {oem}, {mac}}},\n')
    out.write("};\nconst unsigned localeCount = sizeof locales / sizeof locales[0];\n\n"
              "// The home of each language, ascending by language.\n"
              "const LanguageHome languageHomes[] = {\n")
    for language, lcid in aliases:
        out.write(f'    {{"{language}", 0x{lcid:04X}}},\n')
    out.write("};\nconst unsigned languageHomeCount = sizeof languageHomes / sizeof languageHomes[0];\n\n"
              "// All ids, ascending, with the locale whose data they give.\n"
              "const LocaleId localeIds[] = {\n")
    for lcid, place in sorted(ids.items()):
        out.write(f"    {{0x{lcid:04X}, {place}}},\n")
    out.write("};\nconst unsigned localeIdCount = sizeof localeIds / sizeof localeIds[0];\n"
              "} // namespace winapi\n")
