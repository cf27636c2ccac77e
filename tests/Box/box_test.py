#!/usr/bin/env python3
"""The window of an error on a screen of its own, with a key pressed in it: box_test.py [--picture FILE] PROGRAM...

PROGRAM is error_box, with what starts it. On Linux zenity shows the box, under Wine the system's own. Needs xvfb-run,
xdotool and ImageMagick; without them it ends with 77, which counts as skipped. --picture keeps what the first box
looks like. --blank asks for the answers to keys alone: 32-bit Wine has no fonts to draw a box with.
"""
import argparse
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

TITLE = "Dictionary: ошибка"
TEXT = ("The file isn't there: C:\\new\\<b>&amp;.txt\nФайл не найден\nהקובץ לא נמצא\nファイルが見つかりません\n\n"
        "WinFile: line 312\nRecordManager: line 96\nmain.cpp: line 41")
ERROR = 0x10
# Buttons, a key that presses one of them, and the button's number.
CASES = [(2, "alt+i", 5), (1, "Return", 1), (1, "Escape", 2), (3, "alt+n", 7), (0, "Return", 1)]
SECONDS = 60


def missing(wine):
    tools = ["xvfb-run", "Xvfb", "xdotool", "import", "identify"] + ([] if wine else ["zenity", "fc-list"])
    gone = [tool for tool in tools if not shutil.which(tool)]
    for language in [] if wine or gone else ["ru", "he", "ja"]:
        if not subprocess.run(["fc-list", f":lang={language}"], capture_output=True, text=True).stdout.strip():
            gone.append(f"a font for the language {language}")
    return gone


def ask(*command):
    return subprocess.run(command, capture_output=True, text=True).stdout.split()


def wait_for_window(program):
    end = time.monotonic() + SECONDS
    while time.monotonic() < end:
        windows = ask("xdotool", "search", "--onlyvisible", "--name", "^" + TITLE)
        if windows:
            return windows[-1]
        if program.poll() is not None:
            break
        time.sleep(0.1)
    sys.exit(f"no window comes up; the program ended with {program.poll()}")


def take_picture(window, picture):
    """The window as it stands when it no longer changes."""
    colors = 0
    for _ in range(50):
        before = colors
        subprocess.run(["import", "-window", window, picture], check=True, capture_output=True)
        width, height, colors = map(int, ask("identify", "-format", "%w %h %k", picture))
        if colors == before and colors > 20 and width > 200 and height > 120:
            return
        time.sleep(0.1)
    sys.exit(f"the window shows nothing: {width} x {height} points of {colors} colours")


def check(command, buttons, key, number, picture, blank):
    program = subprocess.Popen(command + [str(buttons | ERROR)], stdout=subprocess.PIPE, text=True)
    try:
        window = wait_for_window(program)
        if not blank:
            take_picture(window, picture)
        end = time.monotonic() + SECONDS
        while program.poll() is None and time.monotonic() < end:
            # A window that has just come up may not take a key yet.
            subprocess.run(["xdotool", "windowfocus", window, "key", "--clearmodifiers", key], capture_output=True)
            time.sleep(0.3)
        answer = program.communicate(timeout=SECONDS)[0].strip()
    finally:
        program.kill()
    if answer != str(number):
        sys.exit(f"box {buttons}, key {key}: the answer is {answer!r} and not {number}")
    print(f"box {buttons}: key {key} gives {number}")


def check_without_display(command):
    environment = {name: value for name, value in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
    run = subprocess.run(command + ["0"], env=environment, capture_output=True, timeout=SECONDS)
    if run.stdout.decode().strip() != "-1" or run.stderr.decode() != f"{TITLE}\n{TEXT}\n":
        sys.exit(f"without a display: {run.stdout!r}, {run.stderr!r}")
    print("without a display: -1, title and text on the error stream")


def start_wine(command):
    """Anew, so that its desktop is on this screen. What serves it stays, with the output that it was begun with."""
    for words in (["wineboot", "-k"], ["cmd", "/c", "exit"]):
        subprocess.run(command[:-1] + words, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, timeout=SECONDS)


def run_inside(command, wine, kept, blank):
    if wine:
        start_wine(command)
    with tempfile.TemporaryDirectory() as folder:
        pictures = []
        for place, (buttons, key, number) in enumerate(CASES):
            picture = pathlib.Path(folder) / f"{place}.png"
            check(command, buttons, key, number, picture, blank)
            pictures.append(picture)
        if kept:
            subprocess.run(["convert", pictures[0], "-strip", "-colors", "64", f"png8:{kept}"], check=True)
    if not wine:
        check_without_display(command)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--inside", action="store_true")
    parser.add_argument("--picture", default="")
    parser.add_argument("--blank", action="store_true")
    parser.add_argument("program", nargs="+")
    arguments = parser.parse_args()
    wine = arguments.program[-1].endswith(".exe")
    if arguments.inside:
        run_inside(arguments.program, wine, arguments.picture, arguments.blank)
        return
    gone = missing(wine)
    if gone:
        print("SKIPPED, not here: " + ", ".join(gone))
        sys.exit(77)
    environment = dict(os.environ, GDK_BACKEND="x11", LC_ALL="C.UTF-8")
    environment.pop("WAYLAND_DISPLAY", None)
    # A server that resets when its last client leaves, as xdotool does each time, loses the one that comes then.
    sys.exit(subprocess.run(["xvfb-run", "-a", "-s", "-screen 0 800x600x24 -noreset", sys.executable, __file__, "--inside",
                             "--picture", arguments.picture, *(["--blank"] if arguments.blank else []),
                             *arguments.program], env=environment).returncode)


main()
