#!/usr/bin/env python3
"""Alters one operator, constant or condition of the library at a time, and looks whether a test fails.

    tools/mutants.py [N] [--seed S] [--all | --file PATH...] [--from PLACE] [--again] [--preset linux]

N mutants, 40 if not told, of what the seed, which is printed, picks out of the sources and the inner headers in src/:
of those that the work tree or the last commit changes if there are any, and of all with --all. Templates and inline
functions of headers that programs include are left out, as all tests would have to be compiled for each. --again tries
the last run's survivors once more. A run tells the place of each mutant in the seed's order, and where the next one is:
--from goes on there, as long as the sources are the same.

A mutant is compiled as the build compiles its source, and linked with the other objects of the build, which has to be
up to date. Everything that is made lies in build/mutants. A mutant that can't be compiled, or that gives the same code,
doesn't count. First the tests run that mirror the source's folder, then all of ostra_tests and inside_tests on both
roads, fault_tests and utf8_tests. A run that takes too long is a failing one.

tools/mutation/equivalent.txt names those that no test can tell from the library, each with the reason. They are listed
and don't count.
"""
import argparse
import json
import os
import random
import subprocess
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "mutation"))
from build import Build  # noqa: E402
from sites import Site, sites_of  # noqa: E402
from trials import Tests  # noqa: E402

PROJECT = Path(__file__).resolve().parent.parent
WORK = PROJECT / "build" / "mutants"
RESULTS = PROJECT / "build" / "mutants.json"


class Mutant:
    """A site of a source with the text that stands there instead."""

    def __init__(self, site, other, text, number=0):
        self.path, self.number = site.path, number
        self.text = text[:site.begin] + other + text[site.end:]
        self.line = text.count("\n", 0, site.begin) + 1
        self.before, self.after = self._line_of(text), self._line_of(self.text)
        above = text.split("\n")[:self.line - 1]
        self.occurrence = 1 + sum(line.strip() == self.before for line in above)
        self.place = [site.path, site.begin, site.end, other]

    def _line_of(self, text):
        return text.split("\n")[self.line - 1].strip()

    def __str__(self):
        number = f"{self.number} " if self.number else ""
        return f"{number}{self.path}:{self.line}\n      {self.before}\n   -> {self.after}"

    def reason(self, known):
        """Why it is equivalent, if it is known as such."""
        places = self.path, f"{self.path} ({self.occurrence})"
        return next(filter(None, (known.get((place, self.before, self.after)) for place in places)), None)


def read_equivalent():
    """The mutants that are known to behave as the library does: path, line before and after, and why."""
    result, lines = {}, (PROJECT / "tools/mutation/equivalent.txt").read_text().split("\n")
    blocks = [line for line in lines if line and not line.startswith("#")]
    for path, before, after, reason in zip(*[iter(blocks)] * 4):
        if (before[:2], after[:2], reason[:2]) != ("- ", "+ ", "= "):
            raise SystemExit(f"equivalent.txt: no block of four lines at {path}")
        result[path, before[2:], after[2:]] = reason[2:]
    return result


def changed_files():
    """What the work tree changes in src/, else what the last commit did."""
    def git(*words):
        return subprocess.run(["git", *words], cwd=PROJECT, check=True, capture_output=True, text=True).stdout.split()
    changed = git("diff", "--name-only", "HEAD", "--", "src") + git("ls-files", "-o", "--exclude-standard", "src")
    return changed or git("diff", "--name-only", "HEAD~1", "HEAD", "--", "src")


def candidates(build, arguments):
    """The mutants in the order in which they are tried."""
    paths = sorted(str(path.relative_to(build.base)) for path in (build.base / "src").rglob("*")
                   if path.suffix == ".cpp" or str(path.relative_to(build.base)) in build.includers)
    first = set(arguments.file or ([] if arguments.all else changed_files()))
    if arguments.file:
        paths = [path for path in paths if path in first]
    texts = {path: (build.base / path).read_text() for path in paths}
    sites = [site for path in paths for site in sites_of(path, texts[path])]
    choice = random.Random(arguments.seed)
    choice.shuffle(sites)
    sites.sort(key=lambda site: site.path not in first)
    print(f"mutants: seed {arguments.seed}; {len(sites)} places in {len(paths)} files"
          + (f", {len(first & set(paths))} of them first" if first else ""), flush=True)
    for number, site in enumerate(sites, 1):
        mutant = Mutant(site, choice.choice(site.others), texts[site.path], number)
        if number >= arguments.first:
            yield mutant


def survivors_of_last(build):
    """The mutants that the last run left alive, where their sources are as they were."""
    for path, begin, end, other, before in json.loads(RESULTS.read_text()):
        mutant = Mutant(Site(path, begin, end, ()), other, (build.base / path).read_text())
        if mutant.before == before:
            yield mutant
        else:
            print(f"   {path} has changed: a mutant of it is left out")


def killer_of(mutant, steps, build, tests):
    """The test that tells the mutant from the library; None, or "broken" or "same" for what is no mutant."""
    for step in steps:
        tests.measure(*step)
    if not build.alter(mutant.path, mutant.text):
        return "broken"
    killer = next((killer for step in steps if (killer := tests.killer(*step))), None)
    return "same" if not killer and build.is_same(mutant.path) else killer


class Count:
    """What became of the mutants so far."""

    def __init__(self):
        self.killed, self.left, self.alike = 0, [], []
        self.no_mutants = {"broken": 0, "same": 0}

    def total(self):
        return self.killed + len(self.left)

    def add_killed(self, mutant, killer):
        self.killed += 1
        print(f"killed {mutant}\n      {killer}", flush=True)

    def add_left(self, mutant):
        self.left.append(mutant)
        RESULTS.write_text(json.dumps([[*left.place, left.before] for left in self.left]))


def try_near(mutants, number, build, tests):
    """Tries mutants with the tests beside their sources, until so many count."""
    known, count = read_equivalent(), Count()
    for mutant in mutants:
        if count.total() >= number:
            print(f"the next one: --from {mutant.number}")
            break
        if mutant.reason(known):
            count.alike.append(mutant)
            continue
        killer = killer_of(mutant, tests.near(mutant.path), build, tests)
        if killer in count.no_mutants:
            count.no_mutants[killer] += 1
        elif killer:
            count.add_killed(mutant, killer)
        else:
            count.add_left(mutant)
            print(f"left {mutant}", flush=True)
    print(f"not counted: {count.no_mutants['broken']} that can't be compiled, {count.no_mutants['same']} with the same code,"
          f" {len(count.alike)} known as equivalent")
    for mutant in count.alike:
        print(f"equivalent {mutant}\n      {mutant.reason(known)}")
    return count


def try_all(count, build, tests):
    """Tries those that are left with all tests."""
    left, count.left = count.left, []
    steps = [(name, "") for name in tests.entries]
    print(f"{count.killed} killed by the tests beside their sources; {len(left)} left for all tests", flush=True)
    for mutant in left:
        if killer := killer_of(mutant, steps, build, tests):
            count.add_killed(mutant, killer)
        else:
            count.add_left(mutant)
            print(f"SURVIVED {mutant}", flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("count", nargs="?", type=int, default=40)
    parser.add_argument("--seed", type=int, default=int(os.environ.get("OSTRA_SEED", time.time() % 1_000_000)))
    parser.add_argument("--all", action="store_true")
    parser.add_argument("--file", nargs="+")
    parser.add_argument("--from", dest="first", type=int, default=1, metavar="PLACE")
    parser.add_argument("--again", action="store_true")
    parser.add_argument("--preset", default="linux")
    arguments = parser.parse_args()
    start = time.monotonic()
    build = Build(PROJECT, arguments.preset, WORK)
    tests = Tests(build)
    mutants = list(survivors_of_last(build)) if arguments.again else candidates(build, arguments)
    count = try_near(mutants, arguments.count, build, tests)
    try_all(count, build, tests)
    for mutant in count.left:
        print(f"survivor {mutant}")
    share = 100 * count.killed / max(count.total(), 1)
    print(f"mutants: {count.total()}, killed {count.killed} ({share:.1f} %), {time.monotonic() - start:.0f} s")


if __name__ == "__main__":
    main()
