#!/usr/bin/env python3
"""Compiles RawCopies.cpp and looks at its warnings: raw_copies.py compiler include-folder...

Each line that is marked `// warns` copies an object without a hold on its block, and has to be warned of; no other line
may be.
"""
import pathlib
import re
import subprocess
import sys

SOURCE = pathlib.Path(__file__).resolve().parent / "RawCopies.cpp"
TOLD = "copies without a use of the block: take the pointer constructor, or v_Set"
failures = []


def compile_source(compiler, folders, how, *flags):
    """Whether it compiles, and what the compiler says."""
    includes = [word for folder in folders for word in (how, folder)]
    command = [compiler, "-std=c++20", "-fsyntax-only", *includes, *flags, str(SOURCE)]
    result = subprocess.run(command, capture_output=True, text=True)
    return result.returncode == 0, result.stderr


def expect(truth, what, said=""):
    if not truth:
        failures.append(f"{what}\n{said}")


def warned_lines(said):
    pattern = rf"{re.escape(str(SOURCE))}:(\d+):\d+: warning: [^\n]*{re.escape(TOLD)}"
    return {int(number) for number in re.findall(pattern, said)}


def check(compiler, folders):
    text = SOURCE.read_text("ascii").splitlines()
    marked = {number for number, line in enumerate(text, 1) if line.endswith("// warns")}
    expect(len(marked) > 20, "the source has its marks")
    for how in ("-I", "-isystem"):
        done, said = compile_source(compiler, folders, how, "-Werror=deprecated-declarations")
        expect(done and not said, f"{how}: a program that doesn't copy so compiles without a word", said)
        done, said = compile_source(compiler, folders, how, "-DCOPIES")
        lines = warned_lines(said)
        expect(done and lines == marked, f"{how}: not warned of: {sorted(marked - lines)}, "
               f"warned of in vain: {sorted(lines - marked)}", said)
        done, said = compile_source(compiler, folders, how, "-DCOPIES", "-Werror=deprecated-declarations")
        expect(not done, f"{how}: where the warning is an error, the program doesn't compile", said)
        done, said = compile_source(compiler, folders, how, "-DCOPIES", "-DVECTOR", "-DOSTRA_RAW_COPIES", "-Werror")
        expect(done and not said, f"{how}: a program that means it compiles without a word", said)
    check_vector(compiler, folders, text)


def check_vector(compiler, folders, text):
    """A container's copies are made in headers of the system, where compilers warn if they are asked to; g++ warns by
    itself if the library's headers are none of those."""
    line = 1 + next(number for number, line in enumerate(text) if "push_back" in line)
    here = f"{SOURCE}:{line}:"
    asked = [("-I", ["-Wsystem-headers"]), ("-isystem", ["-Wsystem-headers"])]
    version = subprocess.run([compiler, "--version"], capture_output=True, text=True, check=True).stdout
    if "clang" not in version:
        asked.append(("-I", []))
    for how, flags in asked:
        done, said = compile_source(compiler, folders, how, "-DVECTOR", *flags)
        expect(done and TOLD in said and here in said, f"{how} {flags}: a vector's copies are warned of", said)


check(sys.argv[1], sys.argv[2:])
for failure in failures:
    print(failure)
sys.exit(bool(failures))
