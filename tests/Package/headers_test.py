#!/usr/bin/env python3
"""Compiles the public headers beside those of other libraries: headers_test.py [--each] include-folder...

GLib, Qt and ICU are taken from pkg-config; what isn't installed is named and left out. Each source includes both sides,
in both orders, then declares names that belong to the program; every warning that the library's headers give is an
error. With --each every public header is compiled alone with all of the others, not Ostra/Ostra.h only.
"""
import argparse
import concurrent.futures
import itertools
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

# The others' headers warn under these flags themselves, so they count as the system's.
FLAGS = ["-std=c++20", "-fPIC", "-fsyntax-only", "-Wall", "-Wextra", "-Wpedantic", "-Wconversion", "-Wsign-conversion",
         "-Werror"]
PEERS = {"glib-2.0": "<glib.h>", "Qt6Core": "<QtCore>", "icu-uc": "<unicode/unistr.h>"}
NAMES = """
enum class Method { GET, POST, DELETE };
enum Level { INFO, ERROR };
struct interface { int min = 1, max = 2; };
inline unsigned GetTickCount() { return 3; }
inline int min(int left, int right) { return left < right ? left : right; }
inline int max(int left, int right) { return left < right ? right : left; }
#if __has_include(<windows.h>)
#error "<windows.h> is there, and nobody asked for it"
#endif
"""
# GLib has macros of these names.
TRUTH = "const int TRUE = 1, FALSE = 0;\n"
MAIN = """
int main()
{
    const interface ends;
    const bool good = Method::DELETE != Method::GET && ERROR != INFO && GetTickCount() == 3
        && min(ends.min, ends.max) == 1 && max(ends.min, ends.max) == 2 && TRUE != FALSE;
    return good ? 0 : 1;
}
"""


def flags_of(package):
    """How the package's headers are found; None if it isn't there."""
    pkg_config = shutil.which("pkg-config")
    if not pkg_config:
        return None
    result = subprocess.run([pkg_config, "--cflags", package], capture_output=True, text=True)
    return None if result.returncode else re.sub(r"(^|\s)-I", r"\1-isystem", result.stdout).split()


def sources(headers, peers, each):
    """(what it is, its flags, its text) of everything to compile."""
    for header in headers:
        every = header == "Ostra/Ostra.h"
        for count in range(len(peers) + 1):
            # A header of its own goes alone, and beside all the others at once.
            if count not in (0, len(peers)) and not (every and each):
                continue
            if count and not every and not each:
                continue
            for chosen in itertools.combinations(peers, count):
                ours = f"#include <{header}>\n"
                theirs = "".join(f"#include {PEERS[peer]}\n" for peer in chosen)
                tail = NAMES + ("" if "glib-2.0" in chosen else TRUTH) + MAIN
                flags = [flag for peer in chosen for flag in peers[peer]]
                yield " ".join([header, *chosen]), flags, ours + theirs + tail
                if chosen:
                    yield " ".join([*chosen, header]), flags, theirs + ours + tail


def compile_source(compiler, folders, what, flags, text):
    """What is wrong with it; an empty text if nothing is."""
    with tempfile.TemporaryDirectory() as directory:
        source = pathlib.Path(directory) / "source.cpp"
        source.write_text(text, "ascii")
        includes = [f"-I{folder}" for folder in folders]
        result = subprocess.run([compiler, *FLAGS, *includes, *flags, str(source)], capture_output=True, text=True)
    return f"{compiler}: {what}\n{result.stderr}" if result.returncode or result.stderr else ""


def headers_of(folders):
    """The public headers are those that Ostra/Ostra.h names."""
    for folder in folders:
        whole = pathlib.Path(folder) / "Ostra/Ostra.h"
        if whole.exists():
            return ["Ostra/Ostra.h", *re.findall(r"#include <(.*)>", whole.read_text("ascii"))]
    sys.exit("Ostra/Ostra.h lies in none of the folders")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--each", action="store_true")
    parser.add_argument("folders", nargs="+")
    arguments = parser.parse_args()
    peers = {peer: flags for peer in PEERS if (flags := flags_of(peer)) is not None}
    compilers = [compiler for compiler in ("g++", "clang++") if shutil.which(compiler)]
    for absent in [name for name in (*PEERS, "g++", "clang++") if name not in peers and name not in compilers]:
        print(f"== without {absent}, which isn't here")
    jobs = [(compiler, arguments.folders, *source) for compiler in compilers
            for source in sources(headers_of(arguments.folders), peers, arguments.each)]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        failures = [said for said in pool.map(lambda job: compile_source(*job), jobs) if said]
    for failure in failures[:5]:
        print(failure)
    print(f"{len(jobs) - len(failures)} of {len(jobs)} sources compile, by {' and '.join(compilers)}, "
          f"beside {', '.join(peers) or 'nothing'}")
    sys.exit(bool(failures) or not compilers)


main()
