#!/usr/bin/env python3
"""The README's way to a first program, each command as it stands: readme_test.py FOLDER

FOLDER is made anew and serves as the home directory. The commands run in the top directory, which has to be built as
the preset linux: building is done then, and installing is not.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys

TOP = pathlib.Path(__file__).resolve().parents[2]
TEXT = (TOP / "README.md").read_text("utf-8")
SECTION = re.search(r"^## A first program\n(.*?)^## ", TEXT, re.S | re.M).group(1)
BLOCKS = re.findall(r"^```(\w+)\n(.*?)^```$", SECTION, re.S | re.M)


def packages(command):
    return set(command.removeprefix("sudo apt-get install -y ").split())


def needed():
    """The packages that tools/test installs."""
    return set(re.search(r"^TOOLS=\((.*)\)$", (TOP / "tools/test").read_text("utf-8"), re.M).group(1).split())


def main():
    home = pathlib.Path(sys.argv[1]).resolve()
    shutil.rmtree(home, ignore_errors=True)
    (home / "first").mkdir(parents=True)
    for language, name in (("cpp", "first.cpp"), ("cmake", "CMakeLists.txt")):
        (text,) = [text for kind, text in BLOCKS if kind == language]
        (home / "first" / name).write_text(text, "utf-8")

    lines = [line for kind, text in BLOCKS if kind == "sh" for line in text.splitlines()]
    if packages(lines[0]) != needed():
        sys.exit(f"the README installs {packages(lines[0])}, tools/test {needed()}")
    # Each block of text is what the command in front of it prints.
    script = ["set -euo pipefail"]
    shown = []
    for kind, text in BLOCKS:
        if kind == "sh":
            script += [line for line in text.splitlines() if line != lines[0]]
        elif kind == "text":
            script[-1] += f" | tee {home}/shown.{len(shown)}"
            shown.append(text)
    environment = {name: os.environ[name] for name in ("PATH", "LANG", "LC_ALL", "CCACHE_DIR") if name in os.environ}
    run = subprocess.run(["bash", "-c", "\n".join(script)], cwd=TOP, env={**environment, "HOME": str(home)},
                         capture_output=True, text=True)
    if run.returncode:
        sys.exit(f"the commands end with {run.returncode}:\n{run.stdout}\n{run.stderr}")
    for number, text in enumerate(shown):
        printed = (home / f"shown.{number}").read_text("utf-8")
        if printed != text:
            sys.exit(f"the README shows {text!r}, its commands print {printed!r}")
    if len(shown) != 2 or len(lines) < 10:
        sys.exit("the README has lost a way to the first program")


if __name__ == "__main__":
    main()
