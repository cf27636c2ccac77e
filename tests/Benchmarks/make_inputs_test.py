#!/usr/bin/env python3
"""What benchmarks/make_inputs.py makes of packages, with small ones made up here."""
import gzip
import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest

TOP = pathlib.Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(TOP / "benchmarks"))
import make_inputs  # noqa: E402

DIGITS = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"


def catalogue(pairs):
    """A compiled catalogue of messages: number of pairs, places of both tables, lengths and places, texts."""
    pairs = [(b"", b"Content-Type: text/plain; charset=UTF-8\n")] + [(k.encode(), v.encode()) for k, v in pairs]
    heads, texts, place = b"", b"", 28 + 16 * len(pairs)
    for column in (0, 1):
        for pair in pairs:
            heads += struct.pack("<2I", len(pair[column]), place + len(texts))
            texts += pair[column] + b"\0"
    return struct.pack("<7I", 0x950412DE, 0, len(pairs), 28, 28 + 8 * len(pairs), 0, 0) + heads + texts


def packages(cache):
    """Unpacked packages in the cache, with a few lines each."""
    def put(package, path, content):
        file = cache / package / "usr/share" / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(content)
    put("wamerican-huge", "dict/american-english-huge", "".join(f"word{n}\n" for n in range(20)).encode())
    put("wngerman", "dict/ngerman", "Haus\nTür\n".encode())
    articles = ["Haus /haus/ <n>\nhouse <n>\n", "Haus /haus/ <n>\nhouse <s>\n", "Tor /to/\n\n", "Tür /ty/\n [x] door, gate <n>\n"]
    index, text = "00databaseinfo\tA\tB\n", b""
    for article in articles:
        index += f"x\t{DIGITS[len(text) // 64]}{DIGITS[len(text) % 64]}\t{DIGITS[len(article.encode())]}\n"
        text += article.encode()
    put("dict-freedict-deu-eng", "dictd/freedict-deu-eng.index", index.encode())
    put("dict-freedict-deu-eng", "dictd/freedict-deu-eng.dict.dz", gzip.compress(text))
    for language in make_inputs.FAQS:
        put(f"debian-faq-{language}", f"doc/debian/FAQ/debian-faq.{language}.txt.gz", gzip.compress(f"{language} ж\n".encode()))
    put("iso-codes", "locale/el/LC_MESSAGES/iso_3166-1.mo", catalogue([("Greece", "Ελλάδα"), ("Iceland", "Ισλανδία")]))


def run(folder):
    done = subprocess.run([sys.executable, TOP / "benchmarks/make_inputs.py", folder / "out", "--cache", folder / "cache"],
                          capture_output=True, text=True, env={"PATH": str(folder / "no-programs")})
    return done, {path.name: path.read_text("utf-8") for path in (folder / "out").glob("*")}


class MakeInputs(unittest.TestCase):
    def setUp(self):
        held = tempfile.TemporaryDirectory()
        self.addCleanup(held.cleanup)
        self.folder = pathlib.Path(held.name)

    def test_each_input_of_the_packages(self):
        packages(self.folder / "cache")
        done, made = run(self.folder)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(made["pairs.tsv"], "Haus\thouse\nTür\t[x] door, gate\n")
        self.assertEqual(made["heads"], "Haus\nTür\n")
        self.assertEqual(made["record.sizes"], "26\n26\n10\n30\n")
        self.assertEqual(made["names"], "Ελλάδα\nΙσλανδία\n")
        self.assertEqual(made["faq.zh-cn"], "zh-cn ж\n")
        self.assertEqual(made["mixed"], "".join(made[f"faq.{x}"] for x in make_inputs.FAQS) + made["names"])
        self.assertEqual(made["words.de"], "Haus\nTür\n")

    def test_the_shuffled_words_are_the_same_each_time(self):
        packages(self.folder / "cache")
        first, again = run(self.folder)[1], run(self.folder)[1]
        self.assertEqual(first["words.en.shuf"], again["words.en.shuf"])
        self.assertNotEqual(first["words.en.shuf"], first["words.en"])
        self.assertEqual(sorted(first["words.en.shuf"].split()), sorted(first["words.en"].split()))

    def test_characters_of_two_units_are_refused(self):
        packages(self.folder / "cache")
        (self.folder / "cache/wngerman/usr/share/dict/ngerman").write_text("\U0001D11E\n", "utf-8")
        done, _ = run(self.folder)
        self.assertEqual(done.returncode, 1)
        self.assertIn("words.de", done.stderr)

    def test_a_package_that_cannot_be_had_is_named(self):
        packages(self.folder / "cache")
        (self.folder / "cache/wngerman").rename(self.folder / "away")
        done, made = run(self.folder)
        self.assertEqual(done.returncode, 1)
        self.assertIn("can't be had from here, nothing is made: wngerman\n", done.stderr)
        self.assertEqual(made, {})


if __name__ == "__main__":
    unittest.main()
