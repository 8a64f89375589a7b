#!/usr/bin/env python3
"""Adds up what processes of the emulator have authenticated, by kind, and says so.

usage: authenticated.py [--some | --none] FILE

FILE has a line of numbers for each process that has loaded the slice for processors with pointer authentication, in
the order of the documents' table. Exit code 1 when a kind was never authenticated, with --some when nothing was, with
--none (of processes without keys) when something was; and 3 when the file cannot be read."""

import pathlib
import sys

import pointer_rules

# The processor's own, which nothing here sees.
BY_THE_PROCESSOR = {"return address"}


def added_up(text):
    """(processes, {kind: how often}, {kind: in how many processes})."""
    lines = [[int(number) for number in line.split()] for line in text.splitlines()]
    kinds = list(pointer_rules.read_rules())
    if any(len(line) != len(kinds) for line in lines):
        raise ValueError("has a line that is none of the emulator's")
    columns = list(zip(*lines)) or [()] * len(kinds)
    return (len(lines), {kind: sum(column) for kind, column in zip(kinds, columns)},
            {kind: sum(number > 0 for number in column) for kind, column in zip(kinds, columns)})


def wrong_of(counts, processes, wanted):
    """What is not as it is wanted, or None."""
    seen = {kind: count for kind, count in counts.items() if kind not in BY_THE_PROCESSOR}
    missing = [kind for kind, count in seen.items() if not count]
    if not processes:
        return "no process has loaded the slice"
    if wanted == "--none":
        return f"{sum(seen.values())} pointers were authenticated without keys" if any(seen.values()) else None
    if not any(seen.values()):
        return "nothing was authenticated"
    return f"no {', no '.join(missing)} was authenticated" if missing and wanted != "--some" else None


def main():
    *options, path = sys.argv[1:] or [""]
    if len(options) > 1 or not path or path.startswith("--") or not set(options) <= {"--some", "--none"}:
        print(__doc__.split("\n\n")[1], file=sys.stderr)
        return 2
    try:
        processes, counts, places = added_up(pathlib.Path(path).read_text())
    except (OSError, ValueError, pointer_rules.BadTable) as error:
        print(f"authenticated.py: {path}: {error}", file=sys.stderr)
        return 3
    print(f"authenticated, in {processes} processes:")
    for kind, count in counts.items():
        if kind not in BY_THE_PROCESSOR:
            print(f"  {count:>9} {kind}, in {places[kind]}")
    wrong = wrong_of(counts, processes, *options or [""])
    if wrong:
        print(f"authenticated.py: {wrong}", file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
