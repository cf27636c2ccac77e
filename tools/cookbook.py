#!/usr/bin/env python3
"""docs/cookbook.md shows the programs of examples/cookbook and what they print.

    cookbook.py --check RECIPE COMMAND...   compares source and output with the page
    cookbook.py --write RECIPE COMMAND...   puts both on the page; a new recipe gets a section at its end
    cookbook.py --check-page                each program has its section, each section its program

COMMAND runs the program of examples/cookbook/RECIPE.cpp, as in build/linux/bin/cookbook_RECIPE.
Output is printable ASCII, and the same on every target.
"""
import difflib
import os
import pathlib
import re
import subprocess
import sys
import tempfile

TOP = pathlib.Path(__file__).resolve().parents[1]
PAGE = TOP / "docs/cookbook.md"
RECIPES = TOP / "examples/cookbook"
SECTION = re.compile(r"`examples/cookbook/(\w+)\.cpp`:\n\n```cpp\n(.*?)```\n\n```text\n(.*?)```\n", re.S)


def shown():
    """{recipe: (code, output)} of the page."""
    found = SECTION.findall(PAGE.read_text("utf-8"))
    sections = {recipe: (code, output) for recipe, code, output in found}
    if len(sections) != len(found):
        sys.exit("a program has more than one section")
    return sections


def source(recipe):
    return (RECIPES / f"{recipe}.cpp").read_text("utf-8")


def output(command):
    command = [str(pathlib.Path(word).resolve()) if pathlib.Path(word).exists() else word for word in command]
    program = command[-1]
    with tempfile.TemporaryDirectory() as folder:
        # On Linux the registry lies there, too, and the session.
        variables = {**os.environ, "XDG_DATA_HOME": str(pathlib.Path(folder) / "data"), "XDG_RUNTIME_DIR": folder}
        run = subprocess.run(command, cwd=folder, env=variables, capture_output=True, timeout=300)
    if run.returncode:
        sys.exit(f"{program} ended with {run.returncode}:\n{run.stdout!r}\n{run.stderr!r}")
    text = run.stdout.replace(b"\r\n", b"\n").decode("ascii")
    if "\r" in text or not text.endswith("\n"):
        sys.exit(f"{program} prints no lines: {text!r}")
    return text


def differences(what, on_page, real):
    return list(difflib.unified_diff(on_page.splitlines(), real.splitlines(), f"{what} on the page", what, lineterm=""))


def check(recipe, command):
    if recipe not in shown():
        sys.exit(f"docs/cookbook.md has no section for {recipe}: tools/cookbook.py --write {recipe} COMMAND")
    code, text = shown()[recipe]
    found = differences("source", code, source(recipe)) + differences("output", text, output(command))
    if found:
        sys.exit("\n".join(found))


def check_page():
    programs = {path.stem for path in RECIPES.glob("*.cpp")}
    sections = shown()
    if set(sections) != programs:
        sys.exit(f"only programs: {programs - set(sections)}, only sections: {set(sections) - programs}")
    wrong = [recipe for recipe in sections if sections[recipe][0] != source(recipe)]
    if wrong:
        sys.exit(f"the page shows another source of: {wrong}")


def write(recipe, command):
    section = f"`examples/cookbook/{recipe}.cpp`:\n\n```cpp\n{source(recipe)}```\n\n```text\n{output(command)}```\n"
    page = PAGE.read_text("utf-8")
    if recipe in shown():
        page = SECTION.sub(lambda found: section if found.group(1) == recipe else found.group(0), page)
    else:
        page = page.rstrip("\n") + f"\n\n## {recipe.capitalize()}\n\n{section}"
    PAGE.write_text(page, "utf-8", newline="\n")


if __name__ == "__main__":
    if sys.argv[1:] == ["--check-page"]:
        check_page()
    elif len(sys.argv) > 3 and sys.argv[1] in ("--check", "--write"):
        (check if sys.argv[1] == "--check" else write)(sys.argv[2], sys.argv[3:])
    else:
        sys.exit(__doc__)
