#!/usr/bin/env python3
"""Which public operations the sweeps of tests/Faults reach:

swept.py --nm NM --objdump OBJDUMP --library LIBRARY --objects OBJECT:OBJECT... PROGRAM

PROGRAM (swept_tests) has the sweeps and a library whose calls are all there, OBJECTs; it is run, and tells the places
whose calls were under way when an allocation or a service failed. The operations are what LIBRARY exports. One that
can come to the heap or to a service, by calls that name their function or over a virtual one, is swept, or stands in
tests/Faults/unswept.txt with the reason why not. Exits with 1 where one is neither, or a line there is out of date.
"""
import argparse
import bisect
import collections
import os
import pathlib
import re
import subprocess
import sys
import tempfile

TOP = pathlib.Path(__file__).resolve().parents[2]
UNSWEPT = TOP / "tests/Faults/unswept.txt"
SERVICES = TOP / "tests/Faults/services.txt"
WRAP = TOP / "tests/Faults/Wrap.cmake"
HEAP = re.compile(r"(malloc|calloc|realloc|strdup|_Zn[wa]m.*)$")
# What reports a failure comes to both in its own right, and is swept by itself.
REPORTS = re.compile(r"_ZNK?(15CT_ErrorManager|9CT_Report(?!\d+spv_))")
KINDS = ("heap", "service")


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def service_symbols():
    """Of the services, but for conversions of texts: an operation goes on with what there is of those."""
    rows = [line.split() for line in SERVICES.read_text().splitlines() if line and not line.startswith("#")]
    return {row[3] for row in rows if row[0] not in ("MultiByteToWideChar", "WideCharToMultiByte")} | set(re.findall(r"REG_[A-Z_]+=(\w+)", WRAP.read_text()))


def plain(name):
    """An operation as it is known: without what compilers add."""
    return re.sub(r" ?\[(clone|abi:)[^]]*\]", "", name)


def operations(nm, library):
    names = set()
    for line in output(nm, "-D", "-C", "--defined-only", library).splitlines():
        kind, name = line.split(" ", 2)[1:]
        name = plain(name)
        # Instances of templates are the library's own, and so are the services.
        if kind in "TWi" and not re.match(r"winapi::|[^(]*<|_|(non-)?virtual thunk", name):
            names.add(name)
    return names


class Symbols:
    """The functions of a program by their places."""

    def __init__(self, nm, program):
        rows, self.start = [], 0
        for line in output(nm, "-C", "--defined-only", program).splitlines():
            address, kind, name = line.split(" ", 2)
            if name == "__executable_start":
                self.start = int(address, 16)
            if kind in "TtWw":
                rows.append((int(address, 16), plain(name)))
        rows.sort()
        self.places = [row[0] for row in rows]
        self.names = collections.defaultdict(set)
        for place, name in rows:
            self.names[place].add(name)

    def at(self, offset):
        index = bisect.bisect_right(self.places, offset + self.start) - 1
        return self.names[self.places[index]] if index >= 0 else set()


class Graph:
    """Which functions call which, by their mangled names."""

    FUNCTION = re.compile(r"[0-9a-f]+ <(.+)>:$")
    NAMED = re.compile(r"\t(?:call|jmp|lea|bl?)\w* .*<([^>+]+)>$")
    MOVED = re.compile(r"R_\w+\s+([^-+\s]+)")
    VIRTUAL = re.compile(r"\tcallq? +\*|\tblr\t")

    def __init__(self, objdump, objects):
        self.calls = collections.defaultdict(set)
        self.virtual = set()
        for name in objects:
            self.read(output(objdump, "-dr", "--no-show-raw-insn", name))

    def read(self, text):
        function = None
        for line in text.splitlines():
            start = self.FUNCTION.match(line)
            if start:
                function = start.group(1)
                self.calls[function]
                continue
            if self.VIRTUAL.search(line):
                self.virtual.add(function)
            called = self.MOVED.search(line) or self.NAMED.search(line)
            if called:
                self.calls[function].add(called.group(1))

    def reached(self, functions):
        seen, left = set(functions), list(functions)
        while left:
            for other in self.calls.get(left.pop(), ()):
                if other not in seen and not REPORTS.match(other):
                    seen.add(other)
                    left.append(other)
        return seen


def swept_by(program, symbols):
    """kind -> the names of functions under way at a failure; and the lines of figures."""
    with tempfile.NamedTemporaryFile("r", suffix=".swept") as file:
        done = subprocess.run([program, "--gtest_brief=1"], env={**os.environ, "OSTRA_SWEPT": file.name},
                              capture_output=True, text=True, cwd=os.path.dirname(file.name))
        if done.returncode:
            sys.exit(done.stdout + done.stderr)
        names = {kind: set() for kind in KINDS}
        for line in file:
            kind, offset = line.split()
            names[kind] |= symbols.at(int(offset, 16))
    return names, re.findall(r"^(?:heap|service) sweep: .*", done.stdout, re.M)


def candidates(graph, functions):
    """kind -> how an operation comes to it: "calls", "virtual", or not at all."""
    reached = graph.reached(functions)
    services = service_symbols()
    found = {}
    for kind, is_goal in (("heap", HEAP.match), ("service", services.__contains__)):
        if any(is_goal(name) for name in reached):
            found[kind] = "calls"
        elif reached & graph.virtual:
            found[kind] = "virtual"
    return found


def read_unswept():
    """kind -> operation -> reason"""
    listed, kind, reason = {kind: {} for kind in KINDS}, None, None
    for line in UNSWEPT.read_text().splitlines():
        if not line.strip() or line.startswith("#"):
            continue
        if line[0] != " ":
            kind, reason = line.split(": ", 1)
            continue
        listed[kind][line.strip()] = reason
    return listed


def functions_of(graph):
    """operation -> its mangled names"""
    mangled = list(graph.calls)
    clear = subprocess.run(["c++filt"], input="\n".join(mangled), capture_output=True, text=True, check=True).stdout
    functions = collections.defaultdict(set)
    for name, operation in zip(mangled, clear.splitlines()):
        functions[plain(operation)].add(name)
    return functions


def judge(kind, ways, swept, listed):
    """The line of counts of a kind, and what is wrong."""
    counts, wrong = collections.Counter(), []
    for name, way in ways.items():
        if name in swept:
            counts["swept"] += 1
            if name in listed:
                wrong.append(f"{kind}: {name} is swept, and stands in {UNSWEPT.name}")
        elif way:
            counts[way if name in listed else "missing"] += 1
            if name not in listed:
                wrong.append(f"{kind}: {name} isn't swept, and doesn't stand in {UNSWEPT.name} ({way})")
    line = (f"{kind}: {counts['swept']} of {len(ways)} public operations swept; {counts['calls']} that may come there and "
            f"{counts['virtual']} that call virtual functions listed with a reason; {counts['missing']} missing")
    return line, wrong


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    for option in ("nm", "objdump", "library", "objects"):
        parser.add_argument("--" + option, required=True)
    parser.add_argument("program")
    arguments = parser.parse_args()
    swept, figures = swept_by(arguments.program, Symbols(arguments.nm, arguments.program))
    graph = Graph(arguments.objdump, arguments.objects.split(":"))
    functions = functions_of(graph)
    public = sorted(operations(arguments.nm, arguments.library))
    ways = {name: candidates(graph, functions[name]) for name in public}
    wrong = [] if len(public) > 1000 else [f"only {len(public)} operations: the list of exports can't be read"]
    for kind, listed in read_unswept().items():
        line, found = judge(kind, {name: ways[name].get(kind) for name in public}, swept[kind], listed)
        print(line)
        wrong += found + [f"{kind}: {name} in {UNSWEPT.name} is no operation" for name in listed if not functions[name]]
    print("\n".join(figures))
    if wrong:
        sys.exit("\n".join(wrong))


if __name__ == "__main__":
    main()
