#!/usr/bin/env python3
"""Makes cmake/hidden.map, the list of what the shared library keeps to itself: exports.py [--check]

A class is exported as a whole; what stands behind `private:` in a public header is no part of the interface, so it is
listed here, but for virtual functions (tables of derived classes name them) and what an inline function names.
--check only compares and exits with 1 if the list is out of date.
"""
import pathlib
import re
import sys

TOP = pathlib.Path(__file__).resolve().parents[2]
MAP = TOP / "cmake/hidden.map"
# Programs that test the library set what the library knows of the system; those that measure it let a list scan.
KEPT = re.compile(r"CT_OS::s[a-z]*_(?!Init)|CT_CompList::v_ScanFromNow")
# What follows a name: its arguments. The linker's patterns know no brackets outside of ranges.
END = "[!_a-zA-Z0-9]*"
HEAD = """# Made by tests/Policy/exports.py: what the library has and doesn't export.
{
    local:
        # What templates of the standard library leave behind.
        _ZNSt*; _ZNKSt*; _ZSt*; _ZZNSt*; _ZGVZNSt*; _ZTISt*; _ZTSSt*; _ZTVSt*;
        _ZN9__gnu_cxx*; _ZNK9__gnu_cxx*;
        # Private members.
        extern "C++" {
"""
TAIL = """        };
};
"""


def stripped(text):
    pattern = r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'|^\s*#[^\n]*'
    return re.sub(pattern, " ", text, flags=re.S | re.M)


def block_end(text, start):
    """The place behind the brace that closes the one at `start`."""
    depth = 0
    for at in range(start, len(text)):
        depth += (text[at] == "{") - (text[at] == "}")
        if depth == 0:
            return at + 1
    raise ValueError("braces don't match")


def statements(body):
    """(access, declaration, whether it has a block) of each member of a class."""
    access, head, at = "private", "", 0
    while at < len(body):
        label = re.compile(r"\s*(public|protected|private)\s*:(?!:)").match(body, at)
        if label and not head.strip():
            access, at = label.group(1), label.end()
            continue
        if body[at] == "{":
            at = block_end(body, at)
            yield access, head.strip(), True
            head = ""
            if re.compile(r"\s*;").match(body, at):
                at = body.index(";", at) + 1
            continue
        if body[at] == ";":
            yield access, head.strip(), False
            head = ""
        else:
            head += body[at]
        at += 1


def member_name(declaration):
    """(name, is a function) of a declaration that may have a symbol; None for others."""
    plain = re.sub(r"^template\s*<[^>]*>\s*", "", declaration)
    if re.match(r"(friend|using|typedef|enum|virtual)\b", plain) or re.search(r"\b(override|operator)\b", plain):
        return None
    if re.search(r"=\s*(0|delete|default)$", plain):
        return None
    function = re.search(r"(~?\w+)\s*\(", plain)
    if function:
        return function.group(1), True
    data = re.match(r"static\b(?!\s+constexpr).*?(\w+)\s*(\[[^\]]*\]\s*)*(=.*)?$", plain, re.S)
    return (data.group(1), False) if data else None


def bodies(text):
    """All that stands in function bodies and initialisers of a header."""
    found = []
    for match in re.finditer(r"\)\s*(?:const|noexcept|override|:[^;{]*(?:\{[^{}]*\})?)*\s*\{", text):
        start = match.end() - 1
        found.append(text[match.start():block_end(text, start)])
    return " ".join(found)


def private_members(text):
    for match in re.finditer(r"\bclass\s+OSTRA_API\s+(\w+)[^;{]*\{", text):
        owner = match.group(1)
        body = text[match.end():block_end(text, match.end() - 1) - 1]
        public, private, records = set(), {}, set()
        for access, declaration, has_block in statements(body):
            record = re.match(r"(?:struct|class|union)\s+(\w+)", declaration)
            if record:
                if access == "private" and has_block:
                    records.add(record.group(1))
                continue
            member = member_name(declaration)
            if not member or member[0].lstrip("~") == owner:
                continue
            if access != "private":
                public.add(member[0])
            elif not (has_block and member[1]):
                private[member[0]] = (member[1], declaration.startswith("template"))
        for name in sorted(private.keys() - public):
            yield owner, name, *private[name]
        for name in sorted(records):
            yield owner, name, None, False


def patterns():
    names = re.findall(r"^#include <(.*)>", (TOP / "src/Ostra/Ostra.h").read_text("utf-8"), re.M)
    texts = [stripped((TOP / "src" / name).read_text("utf-8")) for name in names]
    used = set(re.findall(r"\w+", " ".join(bodies(text) for text in texts)))
    for text in texts:
        for owner, name, is_function, is_template in private_members(text):
            member = f"{owner}::{name}"
            if is_function is None:
                yield f"{member}::*"
            elif name not in used and not KEPT.match(member):
                if is_template:
                    yield f"*{member}{END}"
                else:
                    yield f"{member}{END}" if is_function else f'"{member}"'


def main():
    text = HEAD + "".join(f"            {line};\n" for line in sorted(set(patterns()))) + TAIL
    if sys.argv[1:] == ["--check"]:
        if MAP.read_text("utf-8") == text:
            return 0
        print("cmake/hidden.map isn't what the headers say: run tests/Policy/exports.py")
        return 1
    MAP.write_text(text, "utf-8")
    return 0


sys.exit(main())
