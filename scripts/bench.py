#!/usr/bin/env python3
"""Runs benchmark programs and prints each time beside its bare cost: the ratio that a benchmark
reports itself, or else that to the benchmark of the same name with `Bare` after its first part
(`lookUpIcon/10` is compared with `lookUpIconBare/10`). Exit code 1 when a ratio is over its limit.

usage: bench.py [ARGUMENTS OF GOOGLE BENCHMARK] -- PROGRAM..."""

import json
import subprocess
import sys
import tempfile

# The most that a ratio may be, by the benchmark's name without its arguments. Those without a goal, and those
# that only a quiet machine shows (catalogs, a whole screen, a lint), are in no row.
LIMITS = {
    "search for an icon": 1.5,
    "image that no theme has": 1.5,
    "mask 180x180, bytes a mask pixel": 6,
    "overlay 180x180": 6,
    "recorded preview": 1.3,
    "what an unrecorded preview pays": 0.01,
    "convert of 10,000 pictures": 1.3,
}

UNITS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def run(program, arguments):
    with tempfile.NamedTemporaryFile(suffix=".json") as report:
        subprocess.run([program, *arguments, f"--benchmark_out={report.name}",
                        "--benchmark_out_format=json"], check=True, stdout=subprocess.DEVNULL)
        text = report.read()
    return json.loads(text)["benchmarks"] if text else []


def time_text(nanoseconds):
    for unit in ("s", "ms", "us"):
        if nanoseconds >= UNITS[unit]:
            return f"{nanoseconds / UNITS[unit]:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def ratio_text(first, ratio, compared):
    """The column's text, and whether the ratio is over the limit of its row."""
    limit = LIMITS.get(first)
    is_over = limit is not None and ratio > limit
    goal = "" if limit is None else f", {'OVER' if is_over else 'limit'} {limit}"
    return f"{ratio:6.2f} ×{compared}{goal}", is_over


def main():
    over = 0
    split = sys.argv.index("--")
    arguments, programs = sys.argv[1:split], sys.argv[split + 1:]
    for program in programs:
        entries = [entry for entry in run(program, arguments) if entry.get("run_type") != "aggregate"]
        times = {entry["name"]: entry["real_time"] * UNITS[entry["time_unit"]] for entry in entries}
        ratios = {entry["name"]: entry["ratio"] for entry in entries if "ratio" in entry}
        print(program.rsplit("/", 1)[-1])
        for name, time in times.items():
            first, slash, rest = name.partition("/")
            if first.endswith("Bare"):
                continue
            bare = times.get(first + "Bare" + slash + rest)
            text, is_over = "", False
            if name in ratios:
                text, is_over = ratio_text(first, ratios[name], "")
            elif bare:
                text, is_over = ratio_text(first, time / bare, f" bare ({time_text(bare)})")
            over += is_over
            print(f"  {name:<48} {time_text(time):>10}  {text}".rstrip())
    if over:
        print(f"bench: {over} over the limit", file=sys.stderr)
    return 1 if over else 0


if __name__ == "__main__":
    sys.exit(main())
