#!/usr/bin/env python3
"""Runs benchmark programs and prints what each row takes, beside its bare cost, its goal, and what it took before.
The ratio is the one that a benchmark reports itself, or else that to the benchmark of the same name with `Bare` after
its first part (`lookUpIcon/10` is compared with `lookUpIconBare/10`). Exit code 1 when a figure is over its limit.

usage: bench.py [--json FILE] [--compare FILE] [ARGUMENTS OF GOOGLE BENCHMARK] -- PROGRAM...

--json FILE      what was measured, for --compare of a later run
--compare FILE   with what an earlier run measured beside it, and its change"""

import json
import pathlib
import re
import subprocess
import sys
import time

from bench_goals import GOALS, UNITS

UNIT_NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
# Of the two or more processors' time; the figures are too high then.
BUSY_SHARE = 0.1
VERSION = 1
# That a row is measured for, unless the caller says otherwise. All of them take two to three minutes then.
LEAST_SECONDS = 0.2


def busy_share():
    """What part of the processors' time goes to others, looked at for half a second."""
    def times():
        fields = pathlib.Path("/proc/stat").read_text().splitlines()[0].split()[1:]
        ticks = [int(field) for field in fields[:8]]
        return sum(ticks), ticks[3] + ticks[4]  # all, and idle or waiting for a disk

    before = times()
    time.sleep(0.5)
    after = times()
    return 1 - (after[1] - before[1]) / max(1, after[0] - before[0])


def measured(program, arguments):
    """The entries of a program's report. It goes to its standard output, where nothing is said of how Google
    Benchmark itself was built."""
    text = subprocess.run([program, f"--benchmark_min_time={LEAST_SECONDS}", *arguments, "--benchmark_format=json"], check=True, stdout=subprocess.PIPE,
                          stderr=subprocess.PIPE, text=True).stdout
    entries = json.loads(text)["benchmarks"] if text else []
    return [entry for entry in entries if entry.get("run_type") != "aggregate"]


def name_of(entry):
    """Without what it says of how it is measured."""
    return re.sub(r"/(iterations:\d+|manual_time|real_time|process_time)(?=/|$)", "", entry["name"])


def rows_of(program, entries):
    """A row for each benchmark but the bare ones, whose time stands in the others' rows."""
    times = {name_of(entry): entry["real_time"] * UNIT_NANOSECONDS[entry["time_unit"]]
             for entry in entries if not entry.get("error_occurred")}
    rows = []
    for entry in entries:
        name = name_of(entry)
        first, slash, rest = name.partition("/")
        if first.endswith("Bare"):
            continue
        row = {"program": program, "name": name}
        rows.append(row)
        if entry.get("error_occurred"):
            row["skipped"] = entry.get("error_message", "")
            continue
        taken = entry["median_us"] * 1e3 if "median_us" in entry else times[name]
        bare = entry["bare_us"] * 1e3 if "bare_us" in entry else times.get(first + "Bare" + slash + rest)
        row["ms"] = taken / 1e6
        if bare:
            row["bare_ms"] = bare / 1e6
        if "ratio" in entry or bare:
            row["ratio"] = entry["ratio"] if "ratio" in entry else taken / bare
        row.update((key, entry[key]) for key in ("peak_mb", "of_inflate", "least_of_inflate") if key in entry)
        row["goals"] = [{"figure": goal.figure, "goal": str(goal), "kept": goal.is_kept(row[goal.figure]),
                         "over": goal.is_over(row[goal.figure])}
                        for goal in GOALS.get(name, GOALS.get(first, []))]
    return rows


def milliseconds(value):
    for unit, size in (("s", 1e3), ("ms", 1), ("us", 1e-3)):
        if value >= size:
            return f"{value / size:.3g} {unit}"
    return f"{value * 1e6:.3g} ns"


def figure(row, name):
    return milliseconds(row["ms"]) if name == "ms" else f"{row[name]:.2f}{UNITS.get(name, '')}"


def line(row, before):
    """What, time, bare time, ratio, then goals, and what was before."""
    if "skipped" in row:
        return f"  {row['name']:<48} not measured: {row['skipped']}"
    bare = milliseconds(row["bare_ms"]) if "bare_ms" in row else ""
    ratio = figure(row, "ratio") if "ratio" in row else ""
    text = f"  {row['name']:<48} {milliseconds(row['ms']):>8} {bare:>8} {ratio:>9}"
    notes = []
    for goal in row["goals"]:
        word = "OVER THE LIMIT" if goal["over"] else "kept" if goal["kept"] else "not kept"
        own = "" if goal["figure"] in ("ms", "ratio") else f"{figure(row, goal['figure'])}, "
        notes.append(f"{own}goal {goal['goal']}: {word}")
    if before is not None:
        compared = next((name for name in ("ratio", "ms") if name in row and name in before), None)
        if compared:
            change = 100 * (row[compared] / before[compared] - 1) if before[compared] else 0
            notes.append(f"{figure(before, compared)} before, {change:+.0f} %")
        else:
            notes.append("not measured before")
    return f"{text}  {'; '.join(notes)}".rstrip()


def earlier(path):
    """{(program, name): row} of an earlier run, or None with a line on standard error."""
    try:
        report = json.loads(pathlib.Path(path).read_text())
        if report["version"] != VERSION:
            raise ValueError(f"its version is {report['version']}, not {VERSION}")
        return {(row["program"], row["name"]): row for row in report["rows"]}
    except (OSError, ValueError, KeyError, TypeError) as error:
        print(f"bench: {path}: cannot be compared with: {error}", file=sys.stderr)
        return None


def taken(options, name):
    """The value of an option, which is taken from them, or None."""
    if name not in options:
        return None
    at = options.index(name)
    _, value = options[at:at + 2] if at + 1 < len(options) else (None, None)
    if value is None:
        raise ValueError(f"bench: {name} needs a file")
    del options[at:at + 2]
    return value


def main():
    split = sys.argv.index("--")
    options, programs = sys.argv[1:split], sys.argv[split + 1:]
    try:
        report, compared = taken(options, "--json"), taken(options, "--compare")
    except ValueError as error:
        print(error, file=sys.stderr)
        return 2
    before = earlier(compared) if compared else {}
    if before is None:
        return 3
    busy = busy_share()
    if busy > BUSY_SHARE:
        print(f"bench: the machine is busy with other work ({100 * busy:.0f} % of its processors); times are too high",
              file=sys.stderr)
    rows = []
    print(f"{'':<50} {'takes':>8} {'bare':>8} {'ratio':>9}")
    for program in programs:
        name = pathlib.Path(program).name
        if sys.stderr.isatty():
            print(f"\rbench: {name}\033[K", end="", file=sys.stderr, flush=True)
        found = rows_of(name, measured(program, options))
        if sys.stderr.isatty():
            print("\r\033[K", end="", file=sys.stderr, flush=True)
        if found:
            print(name)
        for row in found:
            print(line(row, before.get((name, row["name"]), {}) if compared else None), flush=True)
        rows += found
    goals = [goal for row in rows for goal in row.get("goals", [])]
    over = sum(goal["over"] for goal in goals)
    print(f"{len(rows)} rows, {sum('skipped' in row for row in rows)} not measured; of {len(goals)} goals "
          f"{sum(goal['kept'] for goal in goals)} kept")
    if report:
        pathlib.Path(report).write_text(json.dumps({"version": VERSION, "busy": round(busy, 2), "rows": rows},
                                                   indent=1) + "\n")
    if over:
        print(f"bench: {over} over the limit", file=sys.stderr)
    return 1 if over else 0


if __name__ == "__main__":
    sys.exit(main())
