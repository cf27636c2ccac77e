#!/usr/bin/env python3
"""The program ask from outside: ask_test.py FOLDER VERSION SAMPLE LEXICON ASK SHEET [EMULATOR...]

FOLDER is made anew; LEXICON and ASK are the programs, and SAMPLE an input of the first one. Signals and the folder of
the session are for the systems that have them, and so is SHEET, which is empty elsewhere: a partner written with the
platform's own library for conversations.
"""
import os
import pathlib
import resource
import shutil
import signal
import stat
import subprocess
import sys
import tempfile
import threading
import time
import unittest

FOLDER, VERSION, SAMPLE = pathlib.Path(sys.argv[1]), sys.argv[2], sys.argv[3]
EMULATOR = sys.argv[7:]
LEXICON, ASK, SHEET = (EMULATOR + [program] for program in sys.argv[4:7])
WINDOWS = sys.argv[5].endswith(".exe")
SECONDS = 120
# Names of this run only: other programs of the user may be served at the time.
NAME = ["--application", f"OstraAskTest{os.getpid()}"]
PARTNER = NAME[1] + "|Lexicon"
# In memory, where sockets may lie whatever the length of FOLDER's name.
RUNTIME = tempfile.mkdtemp(prefix="ostra-ask-")


def run(*arguments, **more):
    """Status, output, errors. Into files, not pipes: an emulator's server may hold a pipe open."""
    with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as errors:
        more.setdefault("stdout", out)
        status = subprocess.run([*ASK, *arguments], stdin=subprocess.DEVNULL, stderr=errors, timeout=SECONDS,
                                **more).returncode
        out.seek(0)
        errors.seek(0)
        return status, out.read().decode("utf-8", "surrogateescape"), errors.read().decode("utf-8", "surrogateescape")


def ask(*arguments, **more):
    return run(*NAME, *arguments, **more)


def failed(line, status=1):
    return status, "", f"ask: {line}\n"


def emulated(arguments):
    """The number of the process that runs the program with these: the one started may have it as a child."""
    wanted = b"ask.exe\0" + b"\0".join(map(os.fsencode, arguments))
    for number in filter(str.isdigit, os.listdir("/proc")):
        try:
            line = pathlib.Path(f"/proc/{number}/cmdline").read_bytes().rstrip(b"\0")
        except OSError:  # It has ended meanwhile.
            continue
        if line.endswith(wanted) and b"start.exe" not in line:
            return int(number)
    raise ProcessLookupError(arguments)


class Started:
    """A program that goes on, and has told a line by the end of this."""

    def __init__(self, program, arguments, **more):
        self.out, self.errors = (pathlib.Path(tempfile.mkstemp(dir=RUNTIME)[1]) for _ in range(2))
        with open(self.out, "wb") as out, open(self.errors, "wb") as errors:
            self.process = subprocess.Popen([*program, *arguments], stdin=subprocess.DEVNULL, stdout=out,
                                            stderr=errors, **more)
        self.told(1)

    def told(self, lines):
        """Waits until it has told so many; those."""
        end = time.monotonic() + SECONDS
        while self.out.read_bytes().count(b"\n") < lines and self.process.poll() is None and time.monotonic() < end:
            time.sleep(0.01)
        return self.out.read_text("utf-8").splitlines()

    def ended(self):
        status = self.process.wait(SECONDS)
        return status, self.out.read_text("utf-8"), self.errors.read_text("utf-8")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()


class Served(Started):
    """A server that answers; it is stopped at the end."""

    def __init__(self, file="words.rec", *names, **more):
        self.arguments = [*(names or NAME), "serve", file]
        super().__init__(ASK, self.arguments, **more)

    def stop(self, number=signal.SIGINT):
        if self.process.poll() is None:
            os.kill(emulated(self.arguments) if WINDOWS else self.process.pid, number)
        return self.ended()

    def __exit__(self, *_):
        self.stop()
        super().__exit__()


class Ask(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        shutil.copy("sample.rec", "words.rec")

    def listed(self):
        with open("listed", "wb") as out:
            subprocess.run([*LEXICON, "list", "words.rec"], stdout=out, check=True, timeout=SECONDS)
        return pathlib.Path("listed").read_text("utf-8")

    def test_words_of_every_script_are_answered(self):
        with Served() as served:
            self.assertEqual(ask("Stra\u00dfe", "m\u00fcde"), (0, "street\nroad\ntired\n", ""))
            for word, other in (("\u65e5\u672c", "Japan"), ("\u05e9\u05dc\u05d5\u05dd", "peace"), ("\U0001f600", "\U0001f603"),
                                ("e\u0301", "\u00e9"), ("say \"a\"", "'b'\\"), ("\u0436" * 127, "long" * 2000)):
                self.assertEqual(ask("--add", word, other), (0, "", ""))
                self.assertEqual(ask(word), (0, other + "\n", ""))
                self.assertIn(f"\n{word}\t{other}\n", self.listed())
            self.assertEqual(ask("none", "m\u00fcde"), (1, "tired\n", f"ask: none: refused by {PARTNER}\n"))
            self.assertEqual(served.stop(), (0, f"words.rec: answers to {PARTNER}\n", ""))
        self.assertFalse(os.path.exists("words.rec.new"))
        self.assertEqual(ask("m\u00fcde"), failed(f"nobody answers to {PARTNER}", 3))

    def test_what_cant_be_asked_for_or_served_is_told(self):
        self.assertEqual(ask(""), failed('"" is empty'))
        self.assertEqual(run("\u0436" * 128)[0], 1)
        status, out, errors = ask("serve", "words.tsv")
        self.assertEqual((status, out, errors.count("\n")), (1, "", 1), errors)
        self.assertIn("words.tsv", errors)
        status, out, errors = ask("serve", "missing.rec")
        self.assertEqual((status, out, errors.count("\n")), (1, "", 1), errors)
        self.assertEqual(run("--version"), (0, f"ask (Ostra) {VERSION}\n", ""))

    def test_a_second_server_is_refused(self):
        with Served():
            self.assertEqual(ask("serve", "words.rec"), failed(f"another program answers to {PARTNER} already"))
            with Served("words.rec", *NAME, "--topic", "Other") as other:
                self.assertEqual(ask("--topic", "Other", "m\u00fcde")[1], "tired\n")
                self.assertEqual(other.stop()[0], 0)
            self.assertEqual(ask("m\u00fcde")[1], "tired\n")

    def test_clients_that_begin_at_once_are_all_answered(self):
        answers = []
        with Served():
            threads = [threading.Thread(target=lambda: answers.append(ask("m\u00fcde", "Stra\u00dfe"))) for _ in range(12)]
            for thread in threads:
                thread.start()
            for thread in threads:
                thread.join()
        self.assertEqual(answers, 12 * [(0, "tired\nstreet\nroad\n", "")])


class AskOnWindows(Ask):
    """Partners that are written with the platform's own library."""

    BOOK = ["--application", f"OstraSheetTest{os.getpid()}", "--topic", "Sheet"]
    SHEETS = BOOK[1] + "|Sheet"

    def cells(self, *arguments):
        return run(*self.BOOK, *arguments)

    def test_a_sheet_is_asked_for_cells_and_told_what_to_do(self):
        with Started(SHEET, ["serve", self.BOOK[1]]) as sheet:
            for _ in range(3):
                self.assertEqual(self.cells("R1C1", "R1C2", "R2C1", "R1C2", "R1C2"),
                                 (0, "Birne \u00e4\n12.50\n\n12.50\n12.50\n", ""))
            self.assertEqual(self.cells("R1C1:R2C2"), (0, "Pear\t12.50\nPlum\t3\n", ""))
            self.assertEqual(self.cells("Long", "R1C2"), (0, 30000 * "l" + "\n12.50\n", ""))
            self.assertEqual(self.cells("r1c2", "R9C9", "R1C2"),
                             (1, "12.50\n12.50\n", f"ask: R9C9: refused by {self.SHEETS}\n"))
            self.assertEqual(run(*self.BOOK[:3], "Other", "R1C1"), failed(f"nobody answers to {self.BOOK[1]}|Other", 3))
            self.assertEqual(self.cells("--execute", "[set R2C1 7]", "[set R2C1 8]"), (0, "", ""))
            self.assertEqual(self.cells("--execute", "[set]", "[set R2C1 9]"),
                             failed(f"[set]: refused by {self.SHEETS}"))
            self.assertEqual(self.cells("R2C1"), (0, "8\n", ""))
            self.assertEqual(self.cells("--execute", "[quit]"), (0, "", ""))
            self.assertEqual(sheet.ended(), (0, "ready\n", ""))
        self.assertEqual(self.cells("R1C1"), failed(f"nobody answers to {self.SHEETS}", 3))

    def test_a_sheet_that_is_silent_is_waited_for_until_the_time_is_out(self):
        with Started(SHEET, ["serve", self.BOOK[1]]) as sheet:
            start = time.monotonic()
            self.assertEqual(self.cells("--timeout", "1", "R1C2", "Stuck", "R1C2"),
                             (3, "12.50\n", f"ask: Stuck: no answer from {self.SHEETS} in 1 second\n"))
            self.assertGreaterEqual(time.monotonic() - start, 1)
            # Another conversation is answered when it listens again.
            self.assertEqual(self.cells("--timeout", "60", "R1C2"), (0, "12.50\n", ""))
            self.assertEqual(self.cells("--execute", "[quit]"), (0, "", ""))
            self.assertEqual(sheet.ended()[0], 0)

    def test_a_sheet_asks_the_lexicon_and_adds_to_it(self):
        steps = ["?m\u00fcde", "?none", '[add("pear","Birne")]', "?pear", "[remove]", "?PEAR"]
        with Served() as served, Started(SHEET, ["ask", NAME[1], *steps]) as sheet:
            lines = ["nobody", "found", "tired", "error 4009", "done", "Birne", "error 4009", "Birne", "ended", "found"]
            self.assertEqual(sheet.told(len(lines)), lines)
            # Its second conversation is open when the server ends.
            self.assertEqual(served.stop(), (0, f"words.rec: answers to {PARTNER}\n", ""))
            self.assertEqual(sheet.ended(), (0, "\n".join([*lines, "told of the end", ""]), ""))
        self.assertIn("\npear\tBirne\n", self.listed())


class AskOnPosix(Ask):
    def left(self):
        """What lies in the session's folder but the database."""
        return [name for name in os.listdir(RUNTIME + "/ostra-winapi") if not name.startswith("session.db")]

    def test_a_signal_ends_a_server_and_leaves_nothing_behind(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with Served() as served:
                self.assertEqual(ask("m\u00fcde")[0], 0)
                self.assertEqual(served.stop(number), (0, f"words.rec: answers to {PARTNER}\n", ""))
            self.assertEqual(self.left(), [])

    def test_a_killed_server_is_nobody_and_its_place_is_free(self):
        with Served() as served:
            self.assertEqual(ask("m\u00fcde")[0], 0)
            served.process.kill()
            served.process.wait()
            self.assertEqual(ask("m\u00fcde"), failed(f"nobody answers to {PARTNER}", 3))
            self.assertEqual(self.left(), [])
        with Served():
            self.assertEqual(ask("m\u00fcde")[0], 0)

    def test_a_server_that_is_silent_keeps_nobody_longer_than_the_timeout(self):
        with Served() as served, open("asked", "wb") as out, open("asked.errors", "wb") as errors:
            # Stopped between two words of one conversation: the first one is answered.
            words = 2000 * ["m\u00fcde"]
            client = subprocess.Popen([*ASK, *NAME, "--timeout", "1", *words], stdout=out, stderr=errors)
            while not os.path.getsize("asked") and client.poll() is None:
                time.sleep(0.001)
            served.process.send_signal(signal.SIGSTOP)
            start = time.monotonic()
            self.assertEqual(client.wait(SECONDS), 3)
            # The time-out, and three seconds for the farewell.
            self.assertLess(time.monotonic() - start, 30)
            self.assertRegex(pathlib.Path("asked.errors").read_text("utf-8"), f"ask: .*: no answer from {PARTNER}"
                             " in 1 second\n".replace("|", r"\|"))
            served.process.send_signal(signal.SIGCONT)

    def test_a_server_that_dies_meanwhile_is_told(self):
        with Served() as served, open("asked", "wb") as out, open("asked.errors", "wb") as errors:
            client = subprocess.Popen([*ASK, *NAME, "--timeout", "1", *(2000 * ["m\u00fcde"])], stdout=out, stderr=errors)
            while not os.path.getsize("asked") and client.poll() is None:
                time.sleep(0.001)
            served.process.kill()
            self.assertEqual(client.wait(SECONDS), 3)
            self.assertEqual(pathlib.Path("asked.errors").read_text("utf-8"),
                             f"ask: m\u00fcde: {PARTNER} has ended without an answer\n")
            served.process.wait()

    def test_an_addition_that_cant_be_kept_is_refused_and_changes_nothing(self):
        before = pathlib.Path("words.rec").read_bytes()
        os.mkdir("words.rec.new")
        with Served() as served:
            self.assertEqual(ask("--add", "a", "b")[0], 1)
            self.assertEqual(ask("m\u00fcde")[1], "tired\n")
            status, _, errors = served.stop()
        os.rmdir("words.rec.new")
        self.assertEqual((status, errors), (0, "ask: words.rec.new: this is no plain file\n"))
        self.assertEqual(pathlib.Path("words.rec").read_bytes(), before)

    def test_an_addition_with_a_limit_of_the_size_of_files_keeps_the_old_lexicon(self):
        # Larger than what the session needs.
        pathlib.Path("large.tsv").write_bytes(b"".join(b"word%d\tanother%d\n" % (n, n) for n in range(100000)))
        subprocess.run([*LEXICON, "build", "large.tsv", "words.rec"], check=True, stdout=subprocess.DEVNULL)
        before = pathlib.Path("words.rec").read_bytes()

        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (len(before) - 1, len(before) - 1))

        with Served(preexec_fn=limit) as served:
            self.assertEqual(ask("--timeout", "60", "--add", "a", "b")[0], 1)
            status, _, errors = served.stop()
        self.assertEqual((status, errors.count("\n")), (0, 1), errors)
        self.assertTrue(errors.startswith("ask: cannot write words.rec: "), errors)
        self.assertEqual(pathlib.Path("words.rec").read_bytes(), before)
        self.assertFalse(os.path.exists("words.rec.new"))

    def test_broken_texts_are_told(self):
        self.assertEqual(ask(b"a\xff"), failed("argument 1 is not well-formed UTF-8"))
        self.assertEqual(run("--topic", b"\xff", "a"), failed("a name is not well-formed UTF-8"))

    def test_who_stops_reading_ends_the_program_in_silence(self):
        with Served():
            reading, writing = os.pipe()
            os.close(reading)
            self.assertEqual(ask("m\u00fcde", stdout=writing, restore_signals=True), (-signal.SIGPIPE, "", ""))
            os.close(writing)
            # The server is none the worse, and has forgotten the client at the next one.
            self.assertEqual(ask("m\u00fcde"), (0, "tired\n", ""))

    def test_a_full_output_is_told(self):
        with Served(), open("/dev/full", "wb") as full:
            self.assertEqual(ask("m\u00fcde", stdout=full)[0::2], (1, "ask: cannot write the output\n"))
            self.assertEqual(run("--topic", NAME[1], "serve", "words.rec", stdout=full)[0::2],
                             (1, "ask: cannot write the output\n"))

    def test_without_a_folder_for_sessions_the_one_in_tmp_serves(self):
        without = {key: value for key, value in os.environ.items() if key != "XDG_RUNTIME_DIR"}
        folder = os.path.join("/tmp", f"ostra-winapi-{os.geteuid()}")
        with Served(env=without):
            self.assertEqual(ask("m\u00fcde", env=without), (0, "tired\n", ""))
            facts = os.lstat(folder)
            self.assertEqual((stat.S_IMODE(facts.st_mode), facts.st_uid), (0o700, os.geteuid()))
            self.assertEqual(ask("m\u00fcde")[0], 3)

    def test_a_folder_that_cant_be_used_is_told(self):
        os.mkdir("open")
        os.mkdir("open/ostra-winapi")
        os.chmod("open/ostra-winapi", 0o755)
        # Nothing can be made in the second, and the third is no folder.
        for place in (os.path.abspath("open"), "/proc", os.path.abspath("words.rec")):
            bad = {**os.environ, "XDG_RUNTIME_DIR": place}
            for arguments in (["m\u00fcde"], ["serve", "words.rec"]):
                status, out, errors = ask(*arguments, env=bad)
                self.assertEqual((status, out, errors.count("\n")), (1, "", 1), errors)
                self.assertTrue(errors.startswith("ask: conversations can't be held here: "), errors)


if __name__ == "__main__":
    shutil.rmtree(FOLDER, ignore_errors=True)
    FOLDER.mkdir(parents=True)
    os.chdir(FOLDER)
    os.environ["XDG_RUNTIME_DIR"] = RUNTIME
    shutil.copy(SAMPLE, "words.tsv")
    with open("built", "wb") as built:
        subprocess.run([*LEXICON, "build", "words.tsv", "sample.rec"], check=True, stdout=built)
    tests = unittest.defaultTestLoader.loadTestsFromTestCase(AskOnWindows if WINDOWS else AskOnPosix)
    done = unittest.TextTestRunner().run(tests).wasSuccessful()
    shutil.rmtree(RUNTIME, ignore_errors=True)
    sys.exit(not done)
