#!/usr/bin/env python3
"""What benchmarks/plot makes of figures, with invented ones."""
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml

TOP = pathlib.Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
from load import load  # noqa: E402

SVG = "{http://www.w3.org/2000/svg}"
plot = load("plot", TOP / "benchmarks/plot")


def row(measure, source, gates=(), **peers):
    return {"measure": measure, "input": source, "generated": False, "ostra": "2 ns",
            "gates": [{"peer": peer, "gate": gate, "aim": gate, "holds": holds} for peer, gate, holds in gates],
            "peers": {peer: {"ratio": ratio, "spreads": ratio == 3.5} for peer, ratio in peers.items()}}


def figures(*rows):
    head = {"machine": "A machine, 2 CPUs, load 0.10, pinned to CPU 1", "compiler": "GNU 12", "commit": "abc",
            "inputs": "from packages", "runs": "5 runs"}
    return {"absent": {"qt": "qt6-base-dev"}, "jobs": {"Lines": {"head": head, "rows": list(rows)}}}


BELOW = figures(row("line", "a", getline=0.5), row("line", "b", getline=0.9, qt=0.996), row("line", "c", getline=0.99),
                row("line16", "a", qt=0.7, glib=0.8, posix=3))
REASONS = """# of invented figures
Lines line c getline open Not known.
Lines line * getline rule Pieces have 4,096 bytes.
"""


class Plot(unittest.TestCase):
    def test_the_table_has_a_line_a_row_under_what_all_have_in_common(self):
        text = plot.table(figures(row("line", "a", [("getline", 0.9, True), ("tenth", 0.8, False)], getline=1.25,
                                      posix=3.5, tenth=0.7), row("line16", "b", qt=123.4)))
        self.assertIn("A machine, 2 CPUs, pinned to CPU 1. GNU 12. Commit abc. Inputs from packages. 5 runs.\n", text)
        self.assertIn("1 of 2 gates hold.\n", text)
        self.assertIn("Not there: qt.\n", text)
        self.assertIn("| Lines | line | a | 2 ns | getline 1.25, posix ~3.50, tenth 0.70 | "
                      "getline 0.9 ok; tenth 0.8 **fails** |\n", text)
        self.assertIn("| Lines | line16 | b | 2 ns | qt 123 |  |\n", text)

    def test_only_what_lies_between_the_marks_is_replaced(self):
        begin, end = "<!-- below -->\n", "<!-- end of below -->\n"
        page = f"before\n{begin}old\n{end}after\n"
        self.assertEqual(plot.put_table(page, plot.BELOW, "new\n"), f"before\n{begin}new\n{end}after\n")
        for name in (plot.ALL, "without marks"):
            with self.assertRaises(ValueError):
                plot.put_table(page, name, "new\n")

    def test_each_reason_has_a_line_of_all_that_it_is_told_of(self):
        text = plot.below_table(BELOW, plot.read_reasons(REASONS))
        self.assertIn("5 of 7 comparisons lie below 1, in 4 of 4 rows.\n", text)
        self.assertIn("| Lines | line a, line b | getline 0.50, getline 0.90 | Pieces have 4,096 bytes. |\n", text)
        self.assertIn("| Lines | line c | getline 0.99 | **open**: Not known. |\n", text)
        self.assertIn("| Lines | line16 a | qt 0.70 | **open**: no reason is told. |\n", text)
        self.assertNotIn("1.00", text)

    def test_what_has_no_reason_is_named(self):
        self.assertEqual(plot.without_reason(BELOW, plot.read_reasons(REASONS)),
                         ["Lines line16 a qt: 0.70", "Lines line16 a glib: 0.80"])

    def test_a_job_without_gates_is_found_by_its_programs_name(self):
        reason, = plot.read_reasons("Lines line * getline rule Pieces have 4,096 bytes.")
        self.assertEqual(plot.reason_of([reason], "lines", {"measure": "line", "input": "a"}, "getline"), reason)

    def test_a_reason_has_a_known_kind(self):
        with self.assertRaises(ValueError):
            plot.read_reasons("Lines line * getline excuse It is slow.")

    def test_the_picture_tells_what_is_bound_from_what_is_open(self):
        root = xml.fromstring(plot.picture(BELOW, plot.read_reasons(REASONS)))
        kinds = [circle.get("class") for circle in root.iter(f"{SVG}circle")]
        self.assertEqual(kinds, ["slower", "faster", "slower", "slower", "faster"])
        bound = figures(row("line", "a", getline=0.5), row("line", "b", getline=1.5))
        self.assertIn('<circle class="bound"', plot.picture(bound, plot.read_reasons(REASONS)))

    def test_the_picture_has_a_line_a_measure_and_peer_of_its_inputs(self):
        root = xml.fromstring(plot.picture(figures(
            row("line", "a", getline=1.25, tenth=0.7), row("line", "b", getline=0.5, few=9), row("line", "c", getline=2),
            row("line", "a.tenth", getline=50), row("line<16>", "b", qt=4)), []))
        titles = [group.find(f"{SVG}title").text for group in root.iter(f"{SVG}g")]
        self.assertEqual(titles, ["line / getline: 0.50 to 2.00, median 1.25", "line<16> / qt: 4.00 to 4.00, median 4.00"])
        kinds = [circle.get("class") for circle in root.iter(f"{SVG}circle")]
        self.assertEqual(kinds, ["slower", "faster"])
        one = [line.get("x1") for line in root.iter(f"{SVG}line") if line.get("class") == "one"]
        self.assertEqual(one, [f"{plot.place(1):.1f}"])

    def test_the_scale_is_one_of_powers_with_ends(self):
        self.assertAlmostEqual(plot.place(10) - plot.place(1), plot.place(1) - plot.place(0.1))
        self.assertEqual(plot.place(0.001), plot.place(0.1))
        self.assertEqual(plot.place(1000), plot.place(100))

    def test_columns_keep_jobs_whole_and_in_order(self):
        jobs = [(str(number), [("line", [1], "faster")] * (number % 5 + 1)) for number in range(11)]
        columns = plot.columns_of(jobs)
        self.assertEqual(len(columns), plot.COLUMNS)
        self.assertEqual(sum(columns, []), jobs)
        self.assertEqual(plot.columns_of(jobs[:1]), [jobs[:1]])

    def test_the_program_writes_both(self):
        with tempfile.TemporaryDirectory() as folder:
            page, picture = pathlib.Path(folder, "page.md"), pathlib.Path(folder, "page.svg")
            page.write_text("".join(f"<!-- {name} -->\n<!-- end of {name} -->\n" for name in (plot.ALL, plot.BELOW)))
            done = subprocess.run([sys.executable, TOP / "benchmarks/plot", "-", "--page", page, "--svg", picture],
                                  input=json.dumps(figures(row("line", "a", getline=1.25, nobody=0.5))), text=True,
                                  stderr=subprocess.PIPE, check=True)
            self.assertIn("getline 1.25", page.read_text())
            self.assertIn("nobody 0.50 | **open**", page.read_text())
            self.assertEqual(done.stderr, "no reason is told: Lines line a nobody: 0.50\n")
            xml.parse(picture)

    def test_the_page_of_the_tree_has_the_marks(self):
        for name in (plot.ALL, plot.BELOW):
            plot.put_table((TOP / "docs/performance.md").read_text(), name, "")

    def test_the_reasons_of_the_tree_name_jobs_and_peers_that_there_are(self):
        sources = {path.stem: path.read_text() for path in (TOP / "benchmarks").glob("*.cpp")}
        for reason in plot.read_reasons((TOP / "benchmarks/reasons.txt").read_text()):
            self.assertIn(reason.job, sources)
            self.assertTrue(reason.text.endswith("."), reason.text)


if __name__ == "__main__":
    unittest.main()
