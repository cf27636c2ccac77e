#!/usr/bin/env python3
"""Tells which lines and branches of src/ and winapi/ the tests reach.

    tools/coverage.py [BUILD]           the figures of the files below their floor, then one line of all
    tools/coverage.py --uncovered FILE  the lines of FILE with what isn't reached
    tools/coverage.py --list            the branches of src/ that aren't reached and aren't listed
    tools/coverage.py --clear           forgets what ran so far

BUILD is a tree of the preset linux-coverage, whose programs have run; build/linux-coverage if it isn't told.
`tools/test coverage` does all of it.

How it counts:
- A line or branch of a header counts as reached if it is so in any of the objects that have it. Instances of one
  template, and the copies that the compiler makes of one constructor, are one function; where instances differ in
  how many branches a line has, each form of the line counts by itself.
- Branches are those of gcov: each way out of each condition, so `if (a && b)` has four. Left out is what only a
  compiler sees: the way on and the way out by an exception behind each call (nothing in src/ throws, and winapi/ does
  to end a service early, which the lines of the handler tell), the question whether a static inside a function is
  there already, the question whether what is deleted is null, and the functions that construct and destroy static
  objects.
- A process that ends by a signal, _exit or TerminateProcess doesn't tell what it has run. Its share is missing.

The branches of src/ that no test takes stand in tests/Coverage/uncovered.txt, each below the reason why. The list has
to be true: a branch that isn't reached and isn't listed is reported, and so is one that is listed and reached.
"""

import argparse
import collections
import concurrent.futures
import json
import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
LIST = ROOT / "tests/Coverage/uncovered.txt"
# What has to be reached: of the lines and of the branches, in percent.
FLOORS = {"src": (99.0, 95.0), "winapi": (95.0, 85.0)}
MADE = re.compile(r"^// (Made|Generated) by", re.M)
STATIC_INSIDE = re.compile(r"^\s+(thread_local\s+)?static\b")
DELETES = re.compile(r"\bdelete\b")
STARTS = re.compile(r"_GLOBAL__(sub_)?[ID]|__static_initialization_and_destruction|__tcf_|^_ZTH|^_ZTW")


class File:
    """What is known of one source: per line whether it ran, and the branches of each form of it."""

    def __init__(self, name):
        self.name = name
        self.text = (ROOT / name).read_text().split("\n")
        self.lines = {}
        self.forms = {}

    def add(self, line, place, function):
        number = line["line_number"]
        self.lines[number] = self.lines.get(number, False) or line["count"] > 0
        taken = branches(line["branches"])
        if not taken or self.made_by_compiler(number, taken):
            return
        # Two functions may share a line, as a lambda does with what it stands in.
        form = (number, place.get(function), len(taken))
        old = self.forms.get(form, [False] * len(taken))
        self.forms[form] = [a or b for a, b in zip(old, taken)]

    def made_by_compiler(self, number, taken):
        text = self.text[number - 1]
        return STATIC_INSIDE.match(text) or len(taken) == 2 and DELETES.search(text) and not re.search(r"\bif\b|\?|&&", text)

    def uncovered(self):
        """The lines with how many branches of theirs aren't taken."""
        result = collections.Counter()
        for (number, _, _), taken in self.forms.items():
            result[number] += taken.count(False)
        return {number: count for number, count in sorted(result.items()) if count}

    def figures(self):
        taken = [one for form in self.forms.values() for one in form]
        return Figures(sum(self.lines.values()), len(self.lines), sum(taken), len(taken))


class Figures:
    def __init__(self, lines=0, all_lines=0, branches=0, all_branches=0):
        self.counts = (lines, all_lines, branches, all_branches)

    def __add__(self, other):
        return Figures(*(a + b for a, b in zip(self.counts, other.counts)))

    def percents(self):
        lines, all_lines, taken, all_taken = self.counts
        return (100 * lines / all_lines if all_lines else 100, 100 * taken / all_taken if all_taken else 100)

    def reach(self, floors):
        return all(percent >= floor for percent, floor in zip(self.percents(), floors))


def branches(raw):
    """Which branches of a line are taken, without the two behind a call that may throw."""
    kept = []
    for branch in raw:
        if branch["throw"]:
            if kept and kept[-1]["fallthrough"]:
                kept.pop()
            continue
        kept.append(branch)
    return [branch["count"] > 0 for branch in kept]


def name_of(path, folder):
    """The name inside the project of a source that counts; None for any other."""
    path = pathlib.Path(os.path.normpath(os.path.join(folder, path)))
    if not path.is_relative_to(ROOT):
        return None
    name = path.relative_to(ROOT).as_posix()
    return name if re.match(r"(src|winapi)/(?!tests/)", name) else None


def notes(build):
    """The notes of each object that counts: of the library's, and of those of tests that have run code of headers."""
    for note in sorted(build.rglob("*.gcno")):
        if note.with_suffix(".gcda").exists() or re.search(r"/(src|winapi)/CMakeFiles/", note.as_posix()):
            yield note


def told(batch):
    """What gcov tells of some objects."""
    run = subprocess.run(["gcov", "--branch-probabilities", "--branch-counts", "--json-format", "--stdout", *map(str, batch)],
                         capture_output=True, text=True, check=True)
    return [json.loads(line) for line in run.stdout.splitlines() if line.startswith("{")]


def read(build):
    """All files by name."""
    files = {}
    skipped = set()
    objects = list(notes(build))
    batches = [objects[at:at + 16] for at in range(0, len(objects), 16)]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for answers in pool.map(told, batches):
            for answer in answers:
                for source in answer["files"]:
                    name = name_of(source["file"], answer.get("current_working_directory", "/"))
                    if name is None or name in skipped:
                        continue
                    if name not in files:
                        file = File(name)
                        if MADE.search("\n".join(file.text[:5])):
                            skipped.add(name)
                            continue
                        files[name] = file
                    collect(files[name], source)
    return dict(sorted(files.items()))


def collect(file, source):
    place = {one["name"]: (one["start_line"], one["start_column"]) for one in source["functions"]}
    for line in source["lines"]:
        function = line.get("function_name", "")
        if not STARTS.search(function):
            file.add(line, place, function)


def found(files):
    """The branches of src/ that aren't taken: how many for each file and text of a line."""
    result = collections.Counter()
    for file in files.values():
        if file.name.startswith("src/"):
            for number, count in file.uncovered().items():
                result[file.name, file.text[number - 1].strip()] += count
    return result


def listed():
    """The least and the largest number of branches that the list has for each file and text of a line."""
    least, largest = collections.Counter(), collections.Counter()
    name = None
    for number, line in enumerate(LIST.read_text().splitlines(), 1):
        entry = re.fullmatch(r"    (?:(\d+)-)?(\d+)  (\S.*)", line)
        if entry:
            low, high, text = entry.groups()
            largest[name, text] += int(high)
            least[name, text] += int(low if low else high)
        elif line.startswith("src/"):
            name = line
        elif line and not line.startswith("#"):
            sys.exit(f"{LIST}:{number}: can't be read")
    return least, largest


def differences(files):
    """What the list lacks, and what it has that isn't so."""
    uncovered = found(files)
    least, largest = listed()
    new = {key: count - largest[key] for key, count in uncovered.items() if count > largest[key]}
    gone = {key: count - uncovered[key] for key, count in least.items() if count > uncovered[key]}
    return new, gone


def show(title, entries):
    print(title)
    name = None
    for (file, text), count in sorted(entries.items()):
        if file != name:
            print(file)
            name = file
        print(f"    {count}  {text}")


def show_file(file):
    missing = file.uncovered()
    for number, text in enumerate(file.text, 1):
        ran = file.lines.get(number)
        if ran is False or number in missing:
            print(f"{number:5} {'-' if ran is False else ' '} {missing.get(number, ''):2} {text}")


def table(files):
    """The files below the floor of their folder, those that lack most first."""
    rows = []
    for file in files.values():
        figures = file.figures()
        if not figures.reach(FLOORS[file.name.split("/")[0]]):
            lines, all_lines, taken, all_taken = figures.counts
            rows.append((all_lines - lines + all_taken - taken, file.name, figures))
    print("Below their folder's floor:  lines   missing  branches   missing")
    for _, name, figures in sorted(rows, key=lambda row: (-row[0], row[1])):
        lines, all_lines, taken, all_taken = figures.counts
        percents = figures.percents()
        print(f"{name:56} {percents[0]:5.1f} % {all_lines - lines:6}  {percents[1]:5.1f} % {all_taken - taken:8}")


def judge(files):
    """Prints all that there is to tell; 0 if nothing is amiss."""
    table(files)
    new, gone = differences(files)
    if new:
        show("Not reached, and not listed in tests/Coverage/uncovered.txt:", new)
    if gone:
        show("Listed in tests/Coverage/uncovered.txt, and reached:", gone)
    sums = {folder: sum((file.figures() for file in files.values() if file.name.startswith(folder + "/")), Figures())
            for folder in FLOORS}
    good = not new and not gone
    parts = []
    for folder, floors in FLOORS.items():
        _, all_lines, _, all_taken = sums[folder].counts
        percents = sums[folder].percents()
        parts.append(f"{folder} {percents[0]:.2f} % of {all_lines:,} lines, {percents[1]:.2f} % of {all_taken:,} branches")
        if not sums[folder].reach(floors):
            good = False
            parts[-1] += f" (floor {floors[0]:.0f} % and {floors[1]:.0f} %)"
    parts.append(f"{sum(found(files).values()):,} branches of src not reached, "
                 f"{sum(new.values())} of them not listed, {sum(gone.values())} listed ones reached")
    print("coverage: " + "; ".join(parts))
    return 0 if good else 1


def main():
    options = argparse.ArgumentParser()
    options.add_argument("build", nargs="?", type=pathlib.Path, default=ROOT / "build/linux-coverage")
    options.add_argument("--uncovered", metavar="FILE")
    options.add_argument("--list", action="store_true")
    options.add_argument("--clear", action="store_true")
    given = options.parse_args()
    if given.clear:
        for counts in given.build.rglob("*.gcda"):
            counts.unlink()
        return 0
    files = read(given.build.resolve())
    if given.uncovered:
        show_file(files[given.uncovered])
        return 0
    if given.list:
        show("", differences(files)[0])
        return 0
    return judge(files)


if __name__ == "__main__":
    sys.exit(main())
