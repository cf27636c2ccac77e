#!/usr/bin/env python3
"""What tools/coverage.py makes of a small project that g++ has built and gcov counted."""
import contextlib
import io
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

TOP = pathlib.Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(TOP / "tools"))
import coverage  # noqa: E402

HEADER = """\
#pragma once
inline int Sign(int n)
{
    if (n > 0)
        return 1;
    return n < 0 ? -1 : 0;
}
template <class T> int Size(T n)
{
    if constexpr (sizeof(T) == 1)
        return n == 1 || n == 2;
    else
        return n > 100;
}
"""
FIRST = """\
#include "Sign.h"
#include <string>
struct Thing { Thing(int n) noexcept : text(n > 5 ? "big" : "small") {} std::string text; };
int Second();
static int Start(int n) { return n > 1 ? 2 : 3; }
int start = Start(2);
int Never(int n)
{
    return n > 3;
}
int main(int, char**)
{
    static const Thing kept(4);
    Thing* thing = new Thing(7);
    delete thing;
    auto between = [](int n) { return n > 1 && n < 5; };
    return Sign(4) + Second() + Size(50) + Size(500L) + Size('\\1') + between(3) + between(9) + between(0);
}
"""
SECOND = """\
#include "../src/Sign.h"
int Second() { return Sign(0); }
"""


class Coverage(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # A way without symbolic links, as gcov tells names.
        cls.root = pathlib.Path(tempfile.mkdtemp()).resolve()
        for name, text in {"src/Sign.h": HEADER, "src/First.cpp": FIRST, "tests/Second.cpp": SECOND}.items():
            path = cls.root / name
            path.parent.mkdir(exist_ok=True)
            path.write_text(text)
        build = cls.root / "build/src/CMakeFiles"
        build.mkdir(parents=True)
        objects = []
        for name in ("src/First.cpp", "tests/Second.cpp"):
            objects.append(build / (pathlib.Path(name).stem + ".o"))
            subprocess.run(["g++", "-std=c++20", "-O0", "--coverage", "-c", cls.root / name, "-o", objects[-1]], cwd=build,
                           check=True)
        program = build / "program"
        subprocess.run(["g++", "--coverage", *objects, "-o", program], cwd=build, check=True)
        subprocess.run([program], cwd=build, check=False)
        cls.before = coverage.ROOT, coverage.LIST
        coverage.ROOT, coverage.LIST = cls.root, cls.root / "list.txt"
        cls.files = coverage.read(cls.root / "build")

    @classmethod
    def tearDownClass(cls):
        coverage.ROOT, coverage.LIST = cls.before
        shutil.rmtree(cls.root)

    def branches(self, name, number):
        """Per form of the line the branches that are taken and all."""
        file = self.files[name]
        return sorted((sum(taken), len(taken)) for (line, _, _), taken in file.forms.items() if line == number)

    def judge(self, text, floors):
        coverage.LIST.write_text(text)
        out = io.StringIO()
        before, coverage.FLOORS = coverage.FLOORS, {"src": floors}
        try:
            with contextlib.redirect_stdout(out):
                result = coverage.judge(self.files)
        finally:
            coverage.FLOORS = before
        return result, out.getvalue()

    def test_only_sources_that_are_judged_are_read(self):
        self.assertEqual(list(self.files), ["src/First.cpp", "src/Sign.h"])

    def test_a_header_counts_what_any_object_has_reached(self):
        # One object takes the first way, another the rest but one.
        self.assertEqual(self.branches("src/Sign.h", 4), [(2, 2)])
        self.assertEqual(self.branches("src/Sign.h", 6), [(1, 2)])
        self.assertTrue(all(self.files["src/Sign.h"].lines.values()))

    def test_instances_of_a_template_count_as_one(self):
        lines = self.files["src/Sign.h"].lines
        self.assertTrue(lines[11] and lines[13])
        self.assertEqual(self.branches("src/Sign.h", 11), [(1, 4)])

    def test_a_lambda_has_its_branches(self):
        self.assertEqual(self.branches("src/First.cpp", 16), [(4, 4)])

    def test_what_only_the_compiler_sees_is_left_out(self):
        for number in (13, 14, 15):
            self.assertEqual(self.branches("src/First.cpp", number), [], number)
        self.assertEqual(self.branches("src/First.cpp", 3), [(2, 2)])

    def test_what_never_ran_is_told(self):
        self.assertEqual([number for number, ran in self.files["src/First.cpp"].lines.items() if not ran], [7, 9])

    def test_the_list_has_to_be_true(self):
        entries = {"src/First.cpp": ["1  static int Start(int n) { return n > 1 ? 2 : 3; }"],
                   "src/Sign.h": ["1  return n < 0 ? -1 : 0;", "3  return n == 1 || n == 2;"]}
        text = "# Why.\n" + "".join(f"{name}\n" + "".join(f"    {entry}\n" for entry in lines)
                                     for name, lines in entries.items())
        result, out = self.judge(text, (80, 50))
        self.assertEqual((result, out.splitlines()[-1].split("; ")[-1]),
                         (0, "5 branches of src not reached, 0 of them not listed, 0 listed ones reached"), out)
        result, out = self.judge(text.replace("3  return", "2  return"), (80, 50))
        self.assertEqual(result, 1)
        self.assertIn("src/Sign.h\n    1  return n == 1 || n == 2;\n", out)
        result, out = self.judge(text.replace("3  return", "4  return"), (80, 50))
        self.assertEqual(result, 1)
        self.assertIn("1 listed ones reached", out)
        self.assertEqual(self.judge(text.replace("3  return", "2-4  return"), (80, 50))[0], 0)
        result, out = self.judge(text, (99, 50))
        self.assertEqual(result, 1)
        self.assertIn("(floor 99 % and 50 %)", out)
        with self.assertRaises(SystemExit):
            self.judge("no source\n", (80, 50))


if __name__ == "__main__":
    unittest.main()
