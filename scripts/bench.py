#!/usr/bin/env python3
"""Runs benchmark programs and prints each time beside its bare cost: the ratio that a benchmark
reports itself, or else that to the benchmark of the same name with `Bare` after its first part
(`lookUpIcon/10` is compared with `lookUpIconBare/10`).

usage: bench.py [ARGUMENTS OF GOOGLE BENCHMARK] -- PROGRAM..."""

import json
import subprocess
import sys
import tempfile

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


def main():
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
            ratio = f"{time / bare:6.2f} × bare ({time_text(bare)})" if bare else ""
            if name in ratios:
                ratio = f"{ratios[name]:6.2f} ×"
            print(f"  {name:<48} {time_text(time):>10}  {ratio}".rstrip())
    return 0


if __name__ == "__main__":
    sys.exit(main())
