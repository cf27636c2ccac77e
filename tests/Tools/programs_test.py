#!/usr/bin/env python3
"""The programs that are installed, used as a stranger would: programs_test.py VERSION FOLDER PROGRAM...

FOLDER is made anew; PROGRAM are the paths of the programs.
"""
import os
import pathlib
import resource
import shutil
import signal
import stat
import subprocess
import sys
import unittest

VERSION, FOLDER = sys.argv[1], pathlib.Path(sys.argv[2])
PROGRAMS = {pathlib.Path(path).name: path for path in sys.argv[3:]}
CHECKERS = ["reccheck", "listcheck", "vercheck"]
READERS = CHECKERS + ["recdump", "listdump"]
# What each program answers with text, and no failure, when WORDS lies there.
GOOD = {"lexicon": ["list", "words.rec"], "charinfo": ["a"], "almanac": ["2026-03"],
        "reccheck": ["words.rec"], "recdump": ["words.rec"], "listcheck": ["words.list"],
        "listdump": ["words.list"], "vercheck": ["version.bin"],
        "recode": ["--from", "utf-8", "--to", "utf-16", "words.tsv", "-"], "settings": ["list", "words.ini"],
        "specimen": ["DejaVu Sans"],
        # What it answers needs a server; its own test has one.
        "ask": ["--help"]}
DATA = pathlib.Path(__file__).resolve().parents[1] / "Data"


def bytes_of(name):
    lines = (DATA / name).read_text("utf-8").splitlines()
    return bytes.fromhex("".join(line.split("#")[0] for line in lines))


def run(program, *arguments, **more):
    more.setdefault("stdin", subprocess.DEVNULL)
    more.setdefault("stdout", subprocess.PIPE)
    return subprocess.run([PROGRAMS[program], *arguments], stderr=subprocess.PIPE, timeout=60, **more)


class Programs(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        shutil.rmtree(FOLDER, ignore_errors=True)
        FOLDER.mkdir(parents=True)
        os.chdir(FOLDER)
        pathlib.Path("words.tsv").write_bytes(b"".join(b"w%d\tv%d\n" % (n, n) for n in range(20000)))
        subprocess.run([PROGRAMS["lexicon"], "build", "words.tsv", "words.rec"], check=True, capture_output=True)
        pathlib.Path("words.list").write_bytes(bytes_of("complist-example.hex"))
        head = bytes(6) + "VS_VERSION_INFO\0".encode("utf-16-le")
        pathlib.Path("version.bin").write_bytes(bytes([len(head)]) + head[1:])
        pathlib.Path("words.ini").write_bytes(b"".join(b"[w%d]\r\nv=1\r\n" % n for n in range(2000)))
        cls.record = pathlib.Path("words.rec").read_bytes()

    def expect(self, answer, status, errors=b""):
        self.assertEqual((answer.returncode, answer.stderr), (status, errors), answer.stdout)

    def test_help_and_version_work_in_every_program(self):
        for name in PROGRAMS:
            answer = run(name, "--help")
            self.expect(answer, 0)
            self.assertTrue(answer.stdout.startswith(b"usage: " + name.encode()), answer.stdout)
            answer = run(name, "--version")
            self.expect(answer, 0)
            self.assertEqual(answer.stdout.decode(), f"{name} (Ostra) {VERSION}\n")

    def test_a_wrong_use_is_told_and_ends_with_2(self):
        for name in PROGRAMS:
            answer = run(name)
            self.assertEqual((answer.returncode, answer.stdout), (2, b""), name)
            self.assertIn(b"usage: " + name.encode(), answer.stderr)
        for name in READERS + ["lexicon"]:
            answer = run(name, "--nonsense")
            self.assertEqual((answer.returncode, answer.stdout), (2, b""), name)
            self.assertTrue(answer.stderr.startswith(name.encode() + b": unknown option --nonsense\n"))

    def test_a_full_disk_under_the_output_is_told(self):
        for name in PROGRAMS:
            for arguments in (GOOD[name], ["--help"], ["--version"]):
                with open("/dev/full", "wb") as full:
                    answer = run(name, *arguments, stdout=full)
                self.expect(answer, 1, name.encode() + b": cannot write the output\n")

    def test_a_limit_of_the_size_of_files_is_told_and_leaves_the_old_lexicon(self):
        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (65536, 65536))

        pathlib.Path("limited.rec").write_bytes(b"old")
        answer = run("lexicon", "build", "words.tsv", "limited.rec", preexec_fn=limit)
        self.assertEqual((answer.returncode, answer.stdout, answer.stderr.count(b"\n")), (1, b"", 1), answer.stderr)
        self.assertTrue(answer.stderr.startswith(b"lexicon: cannot write limited.rec: "), answer.stderr)
        self.assertEqual(pathlib.Path("limited.rec").read_bytes(), b"old")
        self.assertFalse(pathlib.Path("limited.rec.new").exists())
        with open("listed", "wb") as listed:
            answer = run("lexicon", "list", "words.rec", stdout=listed, preexec_fn=limit)
        self.expect(answer, 1, b"lexicon: cannot write the output\n")

    def test_who_stops_reading_ends_the_program_in_silence(self):
        for name in ("lexicon", "recdump", "specimen"):
            reading, writing = os.pipe()
            os.close(reading)
            answer = run(name, *GOOD[name], stdout=writing, restore_signals=True)
            os.close(writing)
            self.expect(answer, -signal.SIGPIPE)

    def test_a_hyphen_is_the_standard_input(self):
        for name in READERS:
            data = pathlib.Path(GOOD[name][0]).read_bytes()
            answer = run(name, "-", stdin=None, input=data)
            self.assertEqual(answer.stdout, run(name, GOOD[name][0]).stdout.replace(GOOD[name][0].encode(), b"-"))
            self.expect(answer, run(name, GOOD[name][0]).returncode)
        answer = run("lexicon", "build", "-", "other.rec", stdin=None, input=pathlib.Path("words.tsv").read_bytes())
        self.expect(answer, 0)
        self.assertEqual(pathlib.Path("other.rec").read_bytes(), self.record)
        answer = run("lexicon", "lookup", "-", "w7", stdin=None, input=self.record)
        self.expect(answer, 0)
        self.assertEqual(answer.stdout, b"w7\tv7\n")
        # One of that name is reached by its folder.
        pathlib.Path("-").write_bytes(self.record)
        self.assertEqual(run("lexicon", "lookup", "./-", "w7").stdout, b"w7\tv7\n")
        self.assertEqual(run("reccheck", "./-").stdout, b"./-: sound\n")

    def test_an_input_that_cant_be_read_is_told(self):
        for name in READERS:
            self.expect(run(name, "."), 1, name.encode() + b": .: Is a directory\n")
            self.expect(run(name, "none"), 1, name.encode() + b": none: No such file or directory\n")
            with DirectoryInput() as folder:
                self.expect(run(name, "-", stdin=folder), 1, name.encode() + b": -: Is a directory\n")
            # Opens, and can't be read at its start.
            self.expect(run(name, "/proc/self/mem"), 1, name.encode() + b": /proc/self/mem: Input/output error\n")
        for arguments in (["build", "-", "x.rec"], ["list", "-"]):
            with DirectoryInput() as folder:
                answer = run("lexicon", *arguments, stdin=folder)
            self.assertEqual((answer.returncode, answer.stdout), (1, b""))
            self.assertEqual(answer.stderr.count(b"\n"), 1)
        for arguments in (["build", ".", "x.rec"], ["list", "."], ["list", "none"]):
            answer = run("lexicon", *arguments)
            self.assertEqual((answer.returncode, answer.stdout, answer.stderr.count(b"\n")), (1, b"", 1))

    def test_an_input_without_the_right_to_read_is_told(self):
        pathlib.Path("closed").write_bytes(b"")
        os.chmod("closed", 0)
        # Whoever may read everything becomes somebody else.
        more = {"user": 65534} if os.geteuid() == 0 else {}
        try:
            run("reccheck", "--version", **more)
        except PermissionError:
            self.skipTest("nobody else may run the programs here")
        for name in READERS:
            self.expect(run(name, "closed", **more), 1, name.encode() + b": closed: Permission denied\n")
        answer = run("lexicon", "list", "closed", **more)
        self.assertEqual((answer.returncode, answer.stderr.count(b"\n")), (1, 1))

    def test_one_bad_file_takes_no_verdict_from_the_others(self):
        pathlib.Path("bad").write_bytes(b"nothing")
        for name in CHECKERS:
            good = GOOD[name][0]
            answer = run(name, good, ".", "bad", "none", good)
            lines = answer.stdout.decode().splitlines()
            self.assertEqual(answer.returncode, 1)
            self.assertEqual((lines[0], lines[-1]), (f"{good}: sound", f"{good}: sound"))
            self.assertTrue(lines[1].startswith("bad: damaged at "), lines)
            self.assertEqual(len(lines), 3, lines)
            self.assertEqual(answer.stderr.count(b"\n"), 2)
        for name in ("recdump", "listdump"):
            good = GOOD[name][0]
            answer = run(name, good, ".", good)
            self.assertEqual(answer.returncode, 1)
            self.assertEqual(answer.stdout, 2 * run(name, good).stdout)

    def test_names_may_hold_anything(self):
        for raw in (b"broken\xff.rec", b"new\nline: sound.rec", b"--help me", "Stra\u00dfe\u20ac.rec".encode()):
            pathlib.Path(os.fsdecode(raw)).write_bytes(self.record)
            shown = raw.replace(b"\n", b"?")
            answer = run("reccheck", "--", raw)
            self.expect(answer, 0)
            self.assertEqual(answer.stdout, shown + b": sound\n")
        answer = run("lexicon", "list", b"broken\xff.rec")
        self.expect(answer, 1, b"lexicon: argument 1 is not well-formed UTF-8\n")
        answer = run("charinfo", b"broken\xff")
        self.expect(answer, 1, b"charinfo: the text is not UTF-8\n")
        answer = run("almanac", "read", b"broken\xff")
        self.expect(answer, 1, b"almanac: an argument is not UTF-8\n")
        answer = run("ask", b"broken\xff")
        self.expect(answer, 1, b"ask: argument 1 is not well-formed UTF-8\n")
        answer = run("lexicon", "build", "words.tsv", b"broken\xff.rec")
        self.expect(answer, 1, b"lexicon: argument 2 is not well-formed UTF-8\n")

    def test_what_is_no_plain_file_is_no_output_and_stays(self):
        os.mkfifo("pipe")
        self.expect(run("lexicon", "build", "words.tsv", "pipe"), 1, b"lexicon: pipe: this is no plain file\n")
        self.assertTrue(stat.S_ISFIFO(os.lstat("pipe").st_mode))
        # The superuser's failures could take the real device away from everybody.
        device = "/dev/full"
        if os.geteuid() == 0:
            device = "full"
            try:
                os.mknod(device, stat.S_IFCHR | 0o666, os.makedev(1, 7))
            except OSError as error:
                self.skipTest(f"no devices can be made here: {error}")
        os.symlink(device, "link.rec")
        for name in (device, "link.rec"):
            answer = run("lexicon", "build", "words.tsv", name)
            self.assertEqual((answer.returncode, answer.stdout), (1, b""))
            self.assertTrue(answer.stderr.endswith(f"{device}: this is no plain file\n".encode()), answer.stderr)
        answer = run("lexicon", "draw", "words.rec", "w77", "-o", device)
        self.assertEqual((answer.returncode, answer.stdout, answer.stderr.count(b"\n")), (1, b"", 1))
        self.assertTrue(stat.S_ISCHR(os.lstat(device).st_mode) and os.path.islink("link.rec"))
        self.assertFalse(os.path.exists(device + ".new") or os.path.exists("pipe.new"))

    def test_a_picture_may_go_to_the_standard_output(self):
        answer = run("lexicon", "draw", "words.rec", "w77", "-o", "/dev/stdout")
        self.expect(answer, 0)
        self.assertTrue(answer.stdout.startswith(b"<svg"), answer.stdout[:99])


class DirectoryInput:
    """A directory as the standard input, as with "< ."."""

    def __enter__(self):
        self.descriptor = os.open(".", os.O_RDONLY)
        return self.descriptor

    def __exit__(self, *_):
        os.close(self.descriptor)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
