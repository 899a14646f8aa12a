"""Tables of scripts/bench: what is written is read back, marks, and what the comparison with a table finds.

usage: bench_test.py SCRIPT
"""
import contextlib
import importlib.machinery
import importlib.util
import io
import pathlib
import sys
import tempfile
import unittest

loader = importlib.machinery.SourceFileLoader("bench", sys.argv.pop())
bench = importlib.util.module_from_spec(importlib.util.spec_from_loader("bench", loader))
sys.dont_write_bytecode = True
loader.exec_module(bench)

TOLD = {("zeliA/3x3", "96x96"): {"baseline": [2.0], "v3": [1.0]}, ("zeliB", "96x96"): {"baseline": [1.0], "v3": [1.06]}}


def changed(build, value):
    return {**TOLD, ("zeliA/3x3", "96x96"): {**TOLD["zeliA/3x3", "96x96"], build: [value]}}


class Tables(unittest.TestCase):
    def check(self, told, found):
        with contextlib.redirect_stdout(io.StringIO()) as said:
            return bench.check(told, found), said.getvalue()

    def test_a_written_table_is_read_back_and_replaced_below_its_text(self):
        with tempfile.NamedTemporaryFile("w+", suffix=".md") as file:
            file.write("# Title\n\ntext\n\n| old |\n")
            file.flush()
            bench.write(file.name, bench.markdown(bench.table(TOLD, ["instr/px"], [3])))
            self.assertEqual(bench.read(file.name), TOLD)
            text = pathlib.Path(file.name).read_text()
        self.assertTrue(text.startswith("# Title\n\ntext\n\n| function | size | baseline instr/px | v3 instr/px |\n"))
        self.assertIn("| `zeliA/3x3` | 96x96 | 2.000 | 1.000 |\n", text)
        self.assertIn("| `zeliB` | 96x96 | 1.000 | ! 1.060 |\n", text)

    def test_five_percent_more_is_a_fault_in_either_build(self):
        for build, least, most in (("baseline", 1.91, 2.09), ("v3", 0.96, 1.04)):
            for value in (least, most):
                self.assertEqual(self.check(TOLD, changed(build, value))[0], True)
            good, said = self.check(TOLD, changed(build, most + 0.02))
            self.assertFalse(good)
            self.assertIn(f"fault: zeliA/3x3 96x96, {build}: {most + 0.02:.3f}", said)
            self.assertIn(f"the table tells {TOLD['zeliA/3x3', '96x96'][build][0]:.3f}", said)
            good, said = self.check(TOLD, changed(build, least - 0.02))
            self.assertTrue(good)
            self.assertIn(f"better: zeliA/3x3 96x96, {build}: {least - 0.02:.3f}", said)

    def test_table_and_benchmarks_hold_the_same_functions(self):
        fewer = {("zeliB", "96x96"): TOLD["zeliB", "96x96"]}
        self.assertIn("fault: zeliA/3x3 96x96: not in the table", self.check(fewer, TOLD)[1])
        self.assertIn("fault: zeliA/3x3 96x96: in the table, and not measured", self.check(TOLD, fewer)[1])
        self.assertFalse(self.check(fewer, TOLD)[0] or self.check(TOLD, fewer)[0])


unittest.main()
