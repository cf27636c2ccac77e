#!/usr/bin/env python3
"""What benchmarks/compare makes of reports, with invented figures."""
import os
import pathlib
import subprocess
import sys
import unittest

TOP = pathlib.Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
from load import load  # noqa: E402

compare = load("compare", TOP / "benchmarks/compare")


def items(name, *nanoseconds, label=""):
    """Runs of a benchmark at that time an item, and an aggregate, which isn't a run."""
    runs = [{"run_name": name, "run_type": "iteration", "items_per_second": 1e9 / time, "cpu_time": 1e6,
             "real_time": 2e6, "time_unit": "ns", "label": label} for time in nanoseconds]
    return runs + [{"run_name": name, "run_type": "aggregate", "items_per_second": 1, "cpu_time": 1}]


def judged(runs, gates, absent=()):
    return compare.judge("characters", compare.read_sides({"benchmarks": sum(runs, [])}),
                         compare.read_gates(gates), absent)


class Compare(unittest.TestCase):
    def test_ratio_is_that_of_the_fastest_runs(self):
        lines, failed, skipped = judged([items("upper/ostra/a", 3, 2, 2, 2.1), items("upper/icu/a", 9, 6.1, 6, 6)], "")
        self.assertEqual(lines[0].split(), ["upper", "a", "ostra", "2", "ns", "icu", "3.00x"])
        self.assertEqual((failed, skipped), ([], []))

    def test_gate_holds_when_just_reached_and_aim_is_told_apart(self):
        lines, failed, _ = judged([items("upper/ostra/a", 2), items("upper/icu/a", 6)],
                                  "Characters upper a icu 3 5")
        self.assertIn("gate icu 3 ok aim 5 -", lines[0])
        self.assertEqual(failed, [])
        lines, _, _ = judged([items("upper/ostra/a", 2), items("upper/icu/a", 10)], "Characters upper a icu 3 5")
        self.assertIn("gate icu 3 ok aim 5 ok", lines[0])

    def test_gate_below_fails_by_name(self):
        lines, failed, _ = judged([items("upper/ostra/a", 2), items("upper/icu/a", 5.8)],
                                  "# comment\n\nCharacters upper a icu 3 5 # why")
        self.assertIn("gate icu 3 FAILS", lines[0])
        self.assertEqual(failed, ["upper a icu: 2.900 instead of 3"])

    def test_star_is_every_input_but_the_one_for_growth(self):
        runs = [items("upper/ostra/a", 2), items("upper/icu/a", 1), items("upper/ostra/b", 2), items("upper/icu/b", 1),
                items("upper/ostra/b.tenth", 2), items("upper/icu/b.tenth", 1)]
        _, failed, _ = judged(runs, "Characters upper * icu 1 2")
        self.assertEqual([text.split(":")[0] for text in failed], ["upper a icu", "upper b icu"])

    def test_growth_compares_the_library_with_itself(self):
        lines, _, _ = judged([items("upper/ostra/b", 3), items("upper/icu/b", 6), items("upper/ostra/b.tenth", 1.5),
                              items("upper/icu/b.tenth", 6)], "")
        self.assertIn("icu 2.00x  tenth 0.50x", lines[0])
        self.assertNotIn("tenth 0", lines[1])

    def test_many_compares_the_library_with_itself_among_few(self):
        lines, _, _ = judged([items("add/ostra/b", 1.5), items("add/ostra/b.x10", 3), items("add/lmdb/b.x10", 6),
                              items("add/ostra/c.x10", 3)], "")
        self.assertNotIn("few", lines[0])
        self.assertIn("lmdb 2.00x  few 0.50x", lines[1])
        self.assertNotIn("few", lines[2])
        _, failed, _ = judged([items("add/ostra/b", 1.5), items("add/ostra/b.x10", 3)], "Characters add b.x10 few 0.8 1")
        self.assertEqual(failed, ["add b.x10 few: 0.500 instead of 0.8"])

    def test_growth_has_gates(self):
        runs = [items("append/ostra/b", 3), items("append/ostra/b.tenth", 1.5)]
        _, failed, _ = judged(runs, "Characters append b tenth 0.8 0.95")
        self.assertEqual(failed, ["append b tenth: 0.500 instead of 0.8"])
        _, failed, _ = judged(runs, "Characters append b tenth 0.5 0.95")
        self.assertEqual(failed, [])
        _, failed, _ = judged(runs[:1], "Characters append b tenth 0.5 0.95")
        self.assertEqual(failed, ["append b tenth: not measured"])

    def test_figures_are_what_the_lines_tell(self):
        figures = []
        compare.judge("characters", compare.read_sides({"benchmarks": sum(
            [items("upper/ostra/a", 2, 2, 2.3, label="generated"), items("upper/icu/a", 5)], [])}),
            compare.read_gates("Characters upper a icu 3 5"), (), figures)
        self.assertEqual(figures, [{
            "measure": "upper", "input": "a", "generated": True, "ostra": "2 ns",
            "gates": [{"peer": "icu", "gate": 3, "aim": 5, "holds": False}],
            "peers": {"icu": {"ratio": 2.5, "spreads": True}}}])

    def test_fastest_run_of_either_side_that_stands_alone_is_marked(self):
        lines, _, _ = judged([items("upper/ostra/a", 3, 2, 2, 2.3), items("upper/icu/a", 6)], "")
        self.assertIn("icu ~3.00x", lines[0])
        lines, _, _ = judged([items("upper/ostra/a", 2, 2, 2.1), items("upper/icu/a", 6, 6, 6.7)], "")
        self.assertIn("icu ~3.00x", lines[0])
        lines, _, _ = judged([items("upper/ostra/a", 9, 2, 2, 2.1), items("upper/icu/a", 8, 6, 7, 6, 6.5)], "")
        self.assertIn("icu 3.00x", lines[0])

    def test_passes_count_as_runs_of_one_report(self):
        reports = {}
        compare.add_runs(reports, "characters", {"benchmarks": items("upper/ostra/a", 2) + items("upper/icu/a", 9)})
        report = compare.add_runs(reports, "characters",
                                  {"benchmarks": items("upper/ostra/a", 3) + items("upper/icu/a", 6)})
        self.assertIs(reports["characters"], report)
        lines, _, _ = judged([report["benchmarks"]], "")
        self.assertIn("icu ~3.00x", lines[0])

    def test_gate_of_an_absent_peer_is_skipped(self):
        _, failed, skipped = judged([items("upper/ostra/a", 2)], "Characters upper a icu 3 5", {"icu": "libicu-dev"})
        self.assertEqual((failed, skipped), ([], ["upper a icu"]))

    def test_gate_of_what_is_not_measured_fails(self):
        _, failed, _ = judged([items("upper/ostra/a", 2), items("upper/icu/a", 9)],
                              "Characters uper a icu 3 5\nStrings upper b qt 1 1")
        self.assertEqual(failed, ["uper a icu: not measured"])

    def test_bytes_show_the_time_of_a_pass(self):
        def runs(name, rate):
            return [{"run_name": name, "run_type": "iteration", "bytes_per_second": rate, "cpu_time": 210,
                     "real_time": 420, "time_unit": "us"}]
        lines, _, _ = judged([runs("decode/ostra/a", 2e9), runs("decode/icu/a", 1e9)], "")
        self.assertEqual(lines[0].split(), ["decode", "a", "ostra", "210", "us", "icu", "2.00x"])
        lines, _, _ = judged([runs("decode/ostra/a/real_time", 2e9)], "")
        self.assertIn("ostra 420 us", lines[0])

    def test_generated_inputs_are_labelled(self):
        lines, _, _ = judged([items("upper/ostra/a", 2, label="generated")], "")
        self.assertIn("a (generated)", lines[0])

    def test_a_failed_benchmark_stops(self):
        run = {"run_name": "a/b/c", "run_type": "iteration", "error_occurred": True, "error_message": "no memory"}
        with self.assertRaisesRegex(ValueError, "no memory"):
            compare.read_sides({"benchmarks": [run]})

    def test_instructions_are_counted_an_item(self):
        text = ("desc: Trigger: Client Request: upper/ostra/a 100\n\nfn=x\n1 2\n\ntotals: 1200\n"
                "desc: Trigger: Client Request: upper/icu/a 100\nsummary: 3000\n")
        self.assertEqual(list(compare.read_counts(text)), [("upper/ostra/a", 12), ("upper/icu/a", 30)])

    def test_the_gates_of_the_tree_can_be_read(self):
        for gate in compare.read_gates((TOP / "benchmarks/gates.txt").read_text()):
            self.assertTrue(0 < gate.gate <= gate.aim, gate)
            self.assertTrue((TOP / f"benchmarks/{gate.job}.cpp").exists(), gate)

    def test_without_programs_it_says_how_to_build(self):
        done = subprocess.run([sys.executable, TOP / "benchmarks/compare", "--build", "/nowhere"],
                              capture_output=True, text=True)
        self.assertEqual(done.returncode, 1)
        self.assertIn("cmake --preset linux-benchmarks", done.stderr)

    def test_the_page_is_made_of_all_jobs_on_real_inputs(self):
        made_up = {name: value for name, value in os.environ.items() if name != "OSTRA_BENCHMARK_INPUTS"}
        for jobs, variables in (["Lines"], os.environ | {"OSTRA_BENCHMARK_INPUTS": "inputs"}), ([], made_up):
            done = subprocess.run([sys.executable, TOP / "benchmarks/compare", "--page", "--build", "/nowhere", *jobs],
                                  capture_output=True, text=True, env=variables)
            self.assertEqual(done.returncode, 2)
            self.assertIn("--page wants all jobs", done.stderr)

    def test_no_pass_at_all_is_refused(self):
        done = subprocess.run([sys.executable, TOP / "benchmarks/compare", "--passes", "0", "--build", "/nowhere"],
                              capture_output=True, text=True)
        self.assertEqual(done.returncode, 2)
        self.assertIn("--passes wants at least 1", done.stderr)


if __name__ == "__main__":
    unittest.main()
