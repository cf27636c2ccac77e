#!/usr/bin/env python3
"""Version records of real files: version_files_test.py LINES VERCHECK FOLDER...

Every program and library of the folders is read by a reader of its own, and by the library (LINES prints what that
finds); both have to tell the same, and VERCHECK has to call each record sound. Ends with 77 where no folder is there.
"""
import pathlib
import struct
import subprocess
import sys
import tempfile

SKIPPED = 77
KEYS = ["Comments", "CompanyName", "FileDescription", "FileVersion", "InternalName", "LegalCopyright",
        "LegalTrademarks", "OriginalFilename", "PrivateBuild", "ProductName", "ProductVersion", "SpecialBuild"]


class Image:
    """A file for 32 or 64 bits."""

    def __init__(self, data):
        self.data = data
        header = self.long(60)
        if data[:2] != b"MZ" or data[header:header + 4] != b"PE\0\0":
            raise ValueError("no executable file")
        self.sections = []
        first = header + 24 + self.word(header + 20)
        for number in range(self.word(header + 6)):
            self.sections.append(struct.unpack_from("<IIII", data, first + 40 * number + 8))
        directories = header + 24 + (112 if self.word(header + 24) == 0x20B else 96)
        self.resources = self.long(directories + 16)

    def word(self, at):
        return struct.unpack_from("<H", self.data, at)[0]

    def long(self, at):
        return struct.unpack_from("<I", self.data, at)[0]

    def place(self, address):
        for _, start, size, offset in self.sections:
            if start <= address < start + size:
                return offset + address - start
        raise ValueError("an address outside")

    def tree(self, at, base):
        """The directory as a dictionary, in its order."""
        named, numbered = self.word(at + 12), self.word(at + 14)
        entries = {}
        for number in range(named + numbered):
            name, offset = struct.unpack_from("<II", self.data, at + 16 + 8 * number)
            child = base + (offset & 0x7FFFFFFF)
            entries[name] = self.tree(child, base) if offset >> 31 else (self.long(child), self.long(child + 4))
        return entries

    def record(self):
        if not self.resources:
            return None
        base = self.place(self.resources)
        named = self.tree(base, base).get(16)
        if not named:
            return None
        address, size = next(iter(next(iter(named.values())).values()))
        start = self.place(address)
        return self.data[start:start + size]


def text(data, at):
    end = at
    while data[end:end + 2] != b"\0\0":
        end += 2
    return data[at:end].decode("utf-16-le", "surrogatepass"), end + 2


def padded(at):
    return (at + 3) & ~3


def nodes(data, at, end):
    """(key, number of the value's units or bytes, where it begins, the node's end) of the nodes between."""
    while at + 6 <= end:
        length, value, _ = struct.unpack_from("<HHH", data, at)
        if length == 0:
            return
        key, behind = text(data, at + 6)
        yield key, value, padded(behind), at + length
        at = padded(at + length)


def read(data):
    """The fixed part and the strings of the first table."""
    (_, size, start, end), = list(nodes(data, 0, len(data)))[:1]
    fixed = struct.unpack_from("<13I", data[start:start + size].ljust(52, b"\0"))
    strings = []
    for key, _, first, last in nodes(data, padded(start + size), end):
        if key == "StringFileInfo":
            for _, _, entries, table_end in list(nodes(data, first, last))[:1]:
                for name, count, value, _ in nodes(data, entries, table_end):
                    strings.append((name, text(data, value)[0] if count else ""))
    return fixed, strings


def shown(value):
    units = struct.unpack(f"<{len(value.encode('utf-16-le', 'surrogatepass')) // 2}H",
                          value.encode("utf-16-le", "surrogatepass"))
    return "".join(chr(u) if 32 <= u < 127 and u != 92 else f"\\u{u:04x}" for u in units)


def expected(path):
    try:
        record = Image(path.read_bytes()).record()
    except (ValueError, struct.error):
        record = None
    if record is None:
        return False, f"{path}\t0\t" + "0 " * 13 + "\t" * 13
    fixed, strings = read(record)
    fields, others = dict.fromkeys(KEYS, ""), []
    for key, value in strings:
        if key in fields:
            fields[key] = value
        else:
            others += [key, value]
    line = f"{path}\t{int(fixed[0] == 0xFEEF04BD)}\t" + "".join(f"{number} " for number in fixed) + "\t"
    return True, line + "".join(shown(value) + "\t" for value in list(fields.values()) + others)


def main():
    lines, vercheck, *folders = sys.argv[1:]
    there = [pathlib.Path(folder) for folder in folders if pathlib.Path(folder).is_dir()]
    if not there:
        print("SKIPPED: none of these folders is there: " + " ".join(folders))
        return SKIPPED
    files = sorted(path for folder in there for path in folder.iterdir()
                   if path.is_file() and not path.name.startswith("."))
    with tempfile.NamedTemporaryFile("w") as names:
        names.write("".join(f"{path}\n" for path in files))
        names.flush()
        found = subprocess.run([lines, names.name], capture_output=True, text=True, timeout=300, check=True)
    records, wrong = 0, []
    for path, line in zip(files, found.stdout.splitlines(), strict=True):
        has, wanted = expected(path)
        records += has
        if line != wanted:
            wrong.append(f"{path}\n  library {line}\n  reader  {wanted}")
    verdicts = subprocess.run([vercheck, *map(str, files)], capture_output=True, text=True, timeout=300)
    counts = {end: sum(line.endswith(": " + end) for line in verdicts.stdout.splitlines())
              for end in ("sound", "no version record")}
    wrong += [line for line in verdicts.stdout.splitlines() if "damaged" in line]
    print("\n".join(wrong + [f"version files: {len(files)} files, {records} records, {counts['sound']} sound, "
                             f"{len(wrong)} differences"]))
    return 1 if wrong or not records or counts["sound"] < records else 0


sys.exit(main())
