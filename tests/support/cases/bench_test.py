"""Has scripts/bench.py read what programs report that stay within their limits and that do not."""

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
out = next(word for word in sys.argv if word.startswith("--benchmark_out=")).partition("=")[2]
open(out, "w").write(%r)
"""


def bench(*entries):
    """The run of a program that reports these: (name, nanoseconds) or (name, nanoseconds, ratio)."""
    rows = [{"name": name, "real_time": time, "time_unit": "ns", **({"ratio": rest[0]} if rest else {})}
            for name, time, *rest in entries]
    with tempfile.TemporaryDirectory() as folder:
        program = pathlib.Path(folder, "some_benchmark")
        program.write_text(PROGRAM % json.dumps({"benchmarks": rows}))
        os.chmod(program, 0o755)
        return subprocess.run([BENCH, "--", program], capture_output=True, text=True)


problems = []


def expect(run, code, text):
    if run.returncode != code or text not in run.stdout:
        problems.append(f"code {run.returncode}, not {code} with {text!r}:\n{run.stdout}{run.stderr}")


expect(bench(("recorded preview/iterations:20/manual_time", 5, 1.29)), 0, "1.29 ×, limit 1.3")
expect(bench(("recorded preview/iterations:20/manual_time", 5, 1.31)), 1, "1.31 ×, OVER 1.3")
expect(bench(("overlay 180x180/10", 590), ("overlay 180x180Bare/10", 100)), 0, "5.90 × bare (100 ns), limit 6")
expect(bench(("overlay 180x180/10", 610), ("overlay 180x180Bare/10", 100)), 1, "6.10 × bare (100 ns), OVER 6")
expect(bench(("overlay 180x180/manual_time", 5, 7), ("other", 5, 100)), 1, "100.00 ×\n")
expect(bench(("other", 5, 100), ("alone", 7)), 0, "7 ns\n")
over = bench(("overlay 180x180", 5, 7), ("recorded preview", 5, 2), ("other", 1)).stderr
if over != "bench: 2 over the limit\n":
    problems.append(over)

# Every limit is a benchmark's.
sys.path.insert(0, str(BENCH.parent))
from bench import LIMITS  # noqa: E402

sources = "".join(path.read_text() for path in sorted((ROOT / "benchmarks").glob("*.cpp")))
names = {name.partition("/")[0]
         for name in re.findall(r'BENCHMARK\((\w+)\)', sources) + re.findall(r'->Name\("([^"]*)"\)', sources)}
problems += [f"there is no benchmark {name!r}" for name in LIMITS if name not in names]

if problems:
    sys.exit("\n".join(problems))
