"""Runs test programs within limits: an altered library may hang, fill the memory or write without an end."""
import json
import os
import re
import resource
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path

MEMORY = 6 << 30
FILE_SIZE = 6 << 30
SUITE = re.compile(r"^(?:TYPED_)?TEST(?:_F|_P|_SUITE_P)?\((\w+),", re.M)
# Comparisons with models and sweeps over damaged files.
SLOW = re.compile("Model|(Damage|Ways)$")


class Outcome:
    """How one run ended: what failed first, and how long it took."""

    def __init__(self, failed, seconds):
        self.failed, self.seconds = failed, seconds


def _limits(seconds):
    resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds + 1))
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
    resource.setrlimit(resource.RLIMIT_FSIZE, (FILE_SIZE, FILE_SIZE))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def _environment(folder, extra, library):
    names = ("PATH", "LANG", "LC_ALL")
    result = {name: os.environ[name] for name in names if name in os.environ}
    result |= {"HOME": folder, "TMPDIR": folder, "XDG_RUNTIME_DIR": folder, "TZ": "UTC"} | extra
    if library:
        result["LD_LIBRARY_PATH"] = str(library)
    return result


def _end_all(process):
    """Ends the program with all that it has started."""
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass
    process.wait()


def _failed_in(output, state):
    """The test that failed, by what the program printed."""
    names = re.findall(r"^\[  FAILED  \] ([\w/]+\.[\w/]+)", output, re.M)
    if names:
        return names[0]
    begun = re.findall(r"^\[ RUN      \] ([\w/]+\.[\w/]+)", output, re.M)
    return (begun[-1] if begun else "the start") + f" ({state})"


def run(words, extra, library, work, cpu, wall):
    """Runs a program in a folder of its own, for so many seconds of the processor and of the clock at most."""
    folder = tempfile.mkdtemp(dir=work)
    start = time.monotonic()
    with open(Path(work) / "output.txt", "w+", errors="replace") as output:
        process = subprocess.Popen(words, cwd=folder, env=_environment(folder, extra, library), stdin=subprocess.DEVNULL,
                                   stdout=output, stderr=subprocess.STDOUT, start_new_session=True,
                                   preexec_fn=lambda: _limits(cpu))
        try:
            state = process.wait(wall)
            if state in (-signal.SIGXCPU, -signal.SIGKILL):
                state = "time-out"
        except subprocess.TimeoutExpired:
            state = "time-out"
        finally:
            _end_all(process)
        output.seek(0)
        text = output.read(50_000_000)
    shutil.rmtree(folder, ignore_errors=True)
    return Outcome(_failed_in(text, state) if state != 0 else None, time.monotonic() - start)


class Tests:
    """The entries of ctest that the mutants are tried with, and how long each takes without a mutant."""

    ENTRIES = ("ostra_tests", "inside_tests", "fault_tests", "ostra_tests_narrow", "inside_tests_narrow", "utf8_tests",
               "ostra_tests_japanese")
    NEAR = ("ostra_tests", "inside_tests")

    def __init__(self, build):
        self.build, self.work = build, build.work
        listed = subprocess.run(["ctest", "--test-dir", build.source_build, "--show-only=json-v1"], check=True,
                                capture_output=True, text=True).stdout
        entries = {entry["name"]: entry for entry in json.loads(listed)["tests"]}
        self.entries = {name: entries[name] for name in self.ENTRIES}
        self.times, self.suites = {}, {}

    def _call(self, name):
        """Program, options and environment of an entry."""
        entry = self.entries[name]
        variables = next((value["value"] for value in entry["properties"] if value["name"] == "ENVIRONMENT"), [])
        return Path(entry["command"][0]).name, entry["command"][1:], dict(pair.split("=", 1) for pair in variables)

    def _suites_of(self, name):
        """The suites that the program of an entry has, with the names that parameters give them."""
        program = self._call(name)[0]
        if program not in self.suites:
            listed = subprocess.run([self.build.source_build / "bin" / program, "--gtest_list_tests"], check=True,
                                    capture_output=True, text=True, cwd=self.work).stdout
            self.suites[program] = re.findall(r"^([\w/]+)\.(?= |$)", listed, re.M)
        return self.suites[program]

    def near(self, path):
        """Entries with a filter each, for the tests in the folder that mirrors the source's; quick ones first."""
        folder = self.build.project / Path(path.replace("src/", "tests/", 1)).parent
        texts = [file.read_text(errors="replace") for file in folder.glob("*.cpp")] if folder.is_dir() else []
        here = {suite for text in texts for suite in SUITE.findall(text)}
        steps = []
        for slow in (False, True):
            for name in self.NEAR:
                suites = [suite for suite in self._suites_of(name)
                          if here & set(suite.split("/")) and bool(SLOW.search(suite)) == slow]
                if suites:
                    steps.append((name, ":".join(f"{suite}.*" for suite in suites)))
        return steps

    def attempt(self, name, only, usual=120):
        """Runs an entry, or the tests of it that a filter names, in a time that is of the usual one's order."""
        program, options, extra = self._call(name)
        executable, library = self.build.program(program)
        if not executable:
            return Outcome("the linker", 0)
        if only:
            options = [word for word in options if not word.startswith("--gtest_filter")] + ["--gtest_filter=" + only]
        words = [str(executable), *options, "--gtest_fail_fast", "--gtest_color=no"]
        return run(words, extra, library, self.work, int(3 * usual + 10), 6 * usual + 60)

    def measure(self, name, only):
        """The same without a mutant, once: it has to pass."""
        if (name, only) not in self.times:
            self.build.clear()
            outcome = self.attempt(name, only)
            if outcome.failed:
                raise SystemExit(f"without a mutant {name} fails: {outcome.failed}")
            self.times[name, only] = outcome.seconds

    def killer(self, name, only):
        """The test that fails, and fails again; None if all pass."""
        usual = self.times[name, only]
        first = self.attempt(name, only, usual)
        if not first.failed:
            return None
        test = first.failed.split(" ")[0]
        if "." not in test or "time-out" in first.failed:
            return first.failed
        for again in (test, only):
            if self.attempt(name, again, usual).failed:
                return first.failed
        print(f"   {test} failed once and passed then: not counted", flush=True)
        return None
