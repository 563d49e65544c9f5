"""What bench_table.py makes of a benchmark report."""

import unittest

import bench_table


def run(name, time, unit="ns", **more):
    return {"name": name, "run_name": name, "real_time": time, "time_unit": unit, **more}


class BenchTable(unittest.TestCase):
    def lines(self, *runs):
        return bench_table.table(bench_table.read_times({"benchmarks": list(runs)}))

    def test_ratios_stand_in_aligned_columns(self):
        self.assertEqual(
            self.lines(
                run("next_day/velloro", 2.5),
                run("next_day/icu", 1.0, "us"),
                run("next_day/cctz", 31.25),
                run("walk/velloro/1000/real_time", 3, "ms"),
                run("walk/sqlite/1000/real_time", 1.5, "ms"),
                run("draw/cairo", 999.9, "us"),
            ),
            [
                "benchmark  velloro   icu   cctz  sqlite  cairo",
                "next_day    2.5 ns  400×  12.5×",
                "walk/1000     3 ms                0.50×",
                "draw             –                        1 ms",
            ],
        )

    def test_repeated_runs_count_by_their_median(self):
        aggregate = {"run_type": "aggregate"}
        lines = self.lines(
            run("a/velloro/repeats:2", 100),
            run("a/velloro/repeats:2", 900),
            run("a/velloro/repeats:2", 500, aggregate_name="mean", **aggregate),
            run("a/velloro/repeats:2", 200, aggregate_name="median", **aggregate),
            run("a/velloro/repeats:2", 400, aggregate_name="stddev", **aggregate),
        )
        self.assertEqual(lines[1], "a           200 ns")

    def test_what_cannot_be_compared_is_named(self):
        for bad in (run("lonely", 1), run("a/velloro", 1, error_occurred=True)):
            with self.assertRaisesRegex(ValueError, bad["name"]):
                self.lines(bad)


if __name__ == "__main__":
    unittest.main()
