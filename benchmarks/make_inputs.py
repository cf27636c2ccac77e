#!/usr/bin/env python3
"""Makes the inputs of the benchmarks from packages of Debian.

    make_inputs.py DIR [--cache FOLDER]

The packages are downloaded by apt-get into the cache, build/benchmark-packages in the tree unless named, and unpacked
there; none is installed. Packages that lie in the cache already aren't asked for again, so that a machine without a
network can be given them. Exits with 1 and says which package can't be had; the programs work without the inputs, on
generated ones, whose figures say little.
"""
import argparse
import gettext
import gzip
import pathlib
import random
import shutil
import subprocess
import sys

TOP = pathlib.Path(__file__).resolve().parents[1]
sys.dont_write_bytecode = True
sys.path.insert(0, str(TOP / "tools"))
import freedict_to_tsv  # noqa: E402

SEED = 19970101
FAQS = ["de", "fr", "ru", "ja", "ko", "zh-cn"]
NAME_LANGUAGES = ["ar", "he", "hi", "th", "el", "ka", "ta", "bn", "hy", "bo"]
NAME_LISTS = ["iso_3166-1", "iso_639-2", "iso_639-3"]
PACKAGES = ["wamerican-huge", "wngerman", "dict-freedict-deu-eng", "iso-codes"] + [f"debian-faq-{x}" for x in FAQS]


def fetch(package, cache):
    """The package's files below a folder of its own in the cache; None if it can't be had."""
    unpacked = cache / package
    if unpacked.is_dir():
        return unpacked
    if not list(cache.glob(f"{package}_*.deb")):
        apt_get = shutil.which("apt-get")
        if not apt_get or subprocess.run([apt_get, "download", "-qq", package], cwd=cache,
                                         stderr=subprocess.DEVNULL).returncode:
            return None
    archive = sorted(cache.glob(f"{package}_*.deb"))[-1]
    partial = cache / (package + ".part")
    subprocess.run(["dpkg-deb", "-x", archive, partial], check=True)
    partial.rename(unpacked)
    return unpacked


def names(path):
    """The translations in a compiled catalogue, a line each; nothing for a language that has none."""
    if not path.exists():
        return ""
    with path.open("rb") as file:
        catalogue = gettext.GNUTranslations(file)._catalog
    return "".join(text + "\n" for key, text in catalogue.items() if key)


def articles(share):
    """(headword, first line of translations, bytes) of each article of the dictionary, in the index's order."""
    with gzip.open(share / "dictd/freedict-deu-eng.dict.dz") as file:
        text = file.read()
    with (share / "dictd/freedict-deu-eng.index").open(encoding="utf-8") as index:
        for offset, length in freedict_to_tsv.places(index):
            lines = text[offset : offset + length].decode("utf-8").split("\n")
            yield lines[0].split(" /")[0].strip(), lines[1].split(" <")[0].strip(), length


def lines(items):
    return "".join(f"{item}\n" for item in items)


def make(folders):
    """Name and text of each input."""
    share = {package: folder / "usr/share" for package, folder in folders.items()}
    words = (share["wamerican-huge"] / "dict/american-english-huge").read_text("utf-8")
    yield "words.en", words
    yield "words.de", (share["wngerman"] / "dict/ngerman").read_text("utf-8")
    shuffled = words.splitlines()
    random.Random(SEED).shuffle(shuffled)
    yield "words.en.shuf", lines(shuffled)

    entries = list(articles(share["dict-freedict-deu-eng"]))
    pairs = dict.fromkeys((head, translation) for head, translation, _ in entries if head and translation)
    yield "pairs.tsv", lines("\t".join(pair) for pair in pairs)
    yield "heads", lines(dict.fromkeys(head for head, _ in pairs))
    yield "record.sizes", lines(size for _, _, size in entries)

    mixed = []
    for language in FAQS:
        path = share[f"debian-faq-{language}"] / f"doc/debian/FAQ/debian-faq.{language}.txt.gz"
        mixed.append(gzip.decompress(path.read_bytes()).decode("utf-8"))
        yield f"faq.{language}", mixed[-1]
    locale = share["iso-codes"] / "locale"
    mixed.append("".join(names(locale / language / "LC_MESSAGES" / f"{catalogue}.mo")
                         for language in NAME_LANGUAGES for catalogue in NAME_LISTS))
    yield "names", mixed[-1]
    yield "mixed", "".join(mixed)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("dir", type=pathlib.Path, metavar="DIR")
    parser.add_argument("--cache", type=pathlib.Path, default=TOP / "build/benchmark-packages")
    arguments = parser.parse_args()
    arguments.cache.mkdir(parents=True, exist_ok=True)
    folders = {package: fetch(package, arguments.cache) for package in PACKAGES}
    missing = [package for package, folder in folders.items() if not folder]
    if missing:
        sys.exit("these packages can't be had from here, nothing is made: " + " ".join(missing))
    arguments.dir.mkdir(parents=True, exist_ok=True)
    for name, text in make(folders):
        if max(text) > "\uffff" or text.startswith("\ufeff"):
            sys.exit(f"{name}: the inputs are to be single UTF-16 units without a mark of byte order")
        (arguments.dir / name).write_bytes(text.encode("utf-8"))
        print(f"{name:14} {len(text.encode('utf-8')):9} bytes {text.count(chr(10)):7} lines")


if __name__ == "__main__":
    main()
