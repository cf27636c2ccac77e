#!/usr/bin/env python3
"""docs/man has the manual pages of the programs, made from what they print with --help.

    manpage.py --write PROGRAM...    makes the pages anew
    manpage.py --check PROGRAM...    compares them; groff, where there is one, has nothing to say of them

PROGRAM is a path, as in build/linux/bin/lexicon. A help text is a usage, paragraphs, and sections: a heading with a
colon, below it lines of two blanks, a term, and what it means, which may go on in the lines below it.
"""
import pathlib
import re
import shutil
import subprocess
import sys

PAGES = pathlib.Path(__file__).resolve().parents[1] / "docs/man"


def printed(program, option):
    run = subprocess.run([program, option], capture_output=True, text=True)
    if run.returncode or run.stderr:
        sys.exit(f"{program} {option} ends with {run.returncode}: {run.stderr}")
    return run.stdout


def plain(text):
    """Text that means nothing to the formatter."""
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return "\\&" + text if text[:1] in (".", "'") else text


def synopsis(name, block):
    lines = []
    for line in block:
        words = line.removeprefix("usage:").strip()
        assert words.startswith(name), f"a usage that doesn't begin with {name}"
        lines += [f".B {name}", plain(words.removeprefix(name).strip()), ".br"]
    return lines[:-1]


def section(block):
    lines = [f".SH {block[0].removesuffix(':').upper()}"]
    for line in block[1:]:
        item = re.fullmatch(r"  (\S.*?)(?:  +(.*))?", line)
        if item:
            lines += [".TP", f".B {plain(item.group(1))}"] + ([plain(item.group(2))] if item.group(2) else [])
        else:
            lines.append(plain(line.strip()))
    return lines


def page(program):
    name = pathlib.Path(program).stem
    version = re.fullmatch(r"\w+ \((\w+)\) ([\d.]+)\n", printed(program, "--version"))
    assert version, f"a version of {name} of another form"
    library, number = version.groups()
    blocks = [part.split("\n") for part in printed(program, "--help").rstrip("\n").split("\n\n")]
    sentence = re.split(r"[.:]\s", "\n".join(blocks[1]) + " ")[0].replace("\n", " ")
    brief = sentence[0].lower() + sentence[1:]
    lines = [f'.\\" Made by tools/manpage.py from the help of {name}. Not edited by hand.',
             f'.TH {name.upper()} 1 "" "{library} {number}"', ".SH NAME", f"{name} \\- {plain(brief)}", ".SH SYNOPSIS"]
    lines += synopsis(name, blocks[0]) + [".SH DESCRIPTION"]
    for number, block in enumerate(blocks[1:]):
        if block[0].endswith(":") and len(block) > 1 and block[1].startswith("  "):
            lines += section(block)
        else:
            lines += ([".PP"] if number else []) + [plain(line) for line in block]
    return name, "\n".join(lines) + "\n"


def check(path, text):
    if not path.exists() or path.read_text("utf-8") != text:
        sys.exit(f"{path.name} isn't what is made of the help text: tools/manpage.py --write PROGRAM...")
    if shutil.which("groff"):
        run = subprocess.run(["groff", "-man", "-ww", "-z", path], capture_output=True, text=True)
        if run.returncode or run.stderr:
            sys.exit(f"{path.name}: {run.stderr}")


if __name__ == "__main__":
    if len(sys.argv) < 3 or sys.argv[1] not in ("--write", "--check"):
        sys.exit(__doc__)
    for program in sys.argv[2:]:
        name, text = page(program)
        if sys.argv[1] == "--check":
            check(PAGES / f"{name}.1", text)
        else:
            PAGES.mkdir(exist_ok=True)
            (PAGES / f"{name}.1").write_text(text, "utf-8", newline="\n")
