"""Has scripts/bench.py read what programs report: rows, bare costs, goals, limits, earlier runs."""

import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[3]
BENCH = ROOT / "scripts/bench.py"
PROGRAM = """#!/usr/bin/env python3
import sys
assert "--benchmark_format=json" in sys.argv, sys.argv
times = [word for word in sys.argv if "_min_time=" in word]
assert times == ["--benchmark_min_time=0.2", "--benchmark_min_time=3"][:2 if "--benchmark_min_time=3" in times else 1]
sys.stderr.write("***WARNING*** Library was built as DEBUG.")
print(%r)
"""
folder = tempfile.TemporaryDirectory()
problems = []


def entry(name, time, **more):
    return {"name": name, "real_time": time, "time_unit": "ns", **more}


def bench(*entries, options=()):
    program = pathlib.Path(folder.name, "some_benchmark")
    program.write_text(PROGRAM % json.dumps({"benchmarks": entries}))
    os.chmod(program, 0o755)
    run = subprocess.run([BENCH, *options, "--", program], capture_output=True, text=True)
    if "DEBUG" in run.stdout + run.stderr:
        problems.append("what is said of Google Benchmark's own build is shown")
    return run


def expect(run, code, *texts):
    for text in texts:
        # How wide a column is tells nothing, and a busy machine is told of.
        lines = [" ".join(line.split()) for line in (run.stdout + run.stderr).splitlines()]
        if run.returncode != code or text not in lines:
            problems.append(f"code {run.returncode}, not {code} with {text!r}:\n{run.stdout}{run.stderr}")


RECORDED = "recorded preview/iterations:20/manual_time"
expect(bench(entry(RECORDED, 5, ratio=1.29)), 0,
       "takes bare ratio", "some_benchmark", "recorded preview 5 ns 1.29 × goal at most 1.3 ×: kept",
       "1 rows, 0 not measured; of 1 goals 1 kept")
expect(bench(entry(RECORDED, 5, ratio=1.31)), 1,
       "recorded preview 5 ns 1.31 × goal at most 1.3 ×: OVER THE LIMIT", "bench: 1 over the limit",
       "1 rows, 0 not measured; of 1 goals 0 kept")
# A goal that is still to be reached fails nothing below its limit.
expect(bench(entry("overlay 180x180/10", 590), entry("overlay 180x180Bare/10", 100)), 0,
       "overlay 180x180/10 590 ns 100 ns 5.90 × goal at most 3.5 ×: not kept")
expect(bench(entry("overlay 180x180/10", 610), entry("overlay 180x180Bare/10", 100)), 1,
       "overlay 180x180/10 610 ns 100 ns 6.10 × goal at most 3.5 ×: OVER THE LIMIT")
# The more special name comes first; medians before means.
expect(bench(entry("image of a themed icon/icons:24/manual_time", 9, ratio=0.7, median_us=0.002, bare_us=3000)), 0,
       "image of a themed icon/icons:24 2 ns 3 ms 0.70 × goal at most 0.6 ×: not kept")
expect(bench(entry("image of a themed icon/icons:1/manual_time", 9e9, ratio=1.2)), 0,
       "image of a themed icon/icons:1 9 s 1.20 × goal at most 1.5 ×: kept")
# How long a row is measured for is the caller's, since of two words the last counts.
expect(bench(entry("alone", 7), options=["--benchmark_min_time=3"]), 0, "alone 7 ns")
# Two goals of one row, a figure of its own, one that is to be reached from below.
expect(bench(entry("start-up/--help", 4e6, peak_mb=9)), 0,
       "start-up/--help 4 ms goal at most 5 ms: kept; 9.00 MB, goal at most 8 MB: not kept")
expect(bench(entry("lzfseRealStreams", 4e3, of_inflate=1.05, least_of_inflate=1)), 0,
       "lzfseRealStreams 4 us 1.05 × inflate's speed, goal at least 1.1 × inflate's speed: not kept; "
       "1.00 × at the slowest, goal at least 1 × at the slowest: kept")
expect(bench(entry("lzfseRealStreams", 4e3, of_inflate=1.1, least_of_inflate=0.99)), 0,
       "lzfseRealStreams 4 us 1.10 × inflate's speed, goal at least 1.1 × inflate's speed: kept; "
       "0.99 × at the slowest, goal at least 1 × at the slowest: not kept")
# What could not be measured is said, and what has no goal.
expect(bench(entry("lzfseRealStreams", 0, error_occurred=True, error_message="no samples"), entry("alone", 7),
             entry("other", 5, ratio=100), entry("other_mean", 5, run_type="aggregate")), 0,
       "lzfseRealStreams not measured: no samples", "alone 7 ns", "other 5 ns 100.00 ×",
       "3 rows, 1 not measured; of 0 goals 0 kept")
expect(bench(entry("overlay 180x180", 5, ratio=7), entry("recorded preview", 5, ratio=2), entry("other", 1)), 1,
       "bench: 2 over the limit")

# An earlier run beside it.
first = pathlib.Path(folder.name, "first.json")
expect(bench(entry("recorded preview", 5, ratio=1), entry("alone", 8), options=["--json", first]), 0,
       "2 rows, 0 not measured; of 1 goals 1 kept")
report = json.loads(first.read_text())
del report["busy"]  # which is the machine's
goal = {"figure": "ratio", "goal": "at most 1.3 ×", "kept": True, "over": False}
rows = [{"program": "some_benchmark", "name": "recorded preview", "ms": 5e-6, "ratio": 1, "goals": [goal]},
        {"program": "some_benchmark", "name": "alone", "ms": 8e-6, "goals": []}]
if report != {"version": 1, "rows": rows}:
    problems.append(f"the report is {report}")
expect(bench(entry("recorded preview", 9, ratio=1.1), entry("alone", 6), entry("new", 6), options=["--compare", first]),
       0, "recorded preview 9 ns 1.10 × goal at most 1.3 ×: kept; 1.00 × before, +10 %",
       "alone 6 ns 8 ns before, -25 %", "new 6 ns not measured before")
first.write_text('{"version": 2}')
expect(bench(entry("alone", 6), options=["--compare", first]), 3,
       f"bench: {first}: cannot be compared with: its version is 2, not 1")
expect(bench(entry("alone", 6), options=["--compare"]), 2, "bench: --compare needs a file")

# Every goal is a benchmark's.
sys.path.insert(0, str(BENCH.parent))
from bench_goals import GOALS  # noqa: E402

sources = "".join(path.read_text() for path in sorted((ROOT / "benchmarks").rglob("*_benchmark.*")))
names = re.findall(r"BENCHMARK\((\w+)\)", sources)
names += [name.partition("/")[0] for name in re.findall(r'(?:->Name\(|add\()"([^"]*)"', sources)]
problems += [f"there is no benchmark {name!r}" for name in GOALS if name.partition("/")[0] not in names]

if problems:
    sys.exit("\n".join(problems))
