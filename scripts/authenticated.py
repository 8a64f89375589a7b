#!/usr/bin/env python3
"""Adds up what processes of the emulator have authenticated, by kind, and says so.

usage: authenticated.py FILE

FILE has a line of numbers for each process that has loaded the slice for processors with pointer authentication, in
the order of the documents' table. Exit code 1 when a kind was never authenticated, or nothing was, 3 when the file
cannot be read."""

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


def main():
    if len(sys.argv) != 2:
        print(__doc__.split("\n\n")[1], file=sys.stderr)
        return 2
    try:
        processes, counts, places = added_up(pathlib.Path(sys.argv[1]).read_text())
    except (OSError, ValueError, pointer_rules.BadTable) as error:
        print(f"authenticated.py: {sys.argv[1]}: {error}", file=sys.stderr)
        return 3
    print(f"authenticated, in {processes} processes:")
    for kind, count in counts.items():
        if kind not in BY_THE_PROCESSOR:
            print(f"  {count:>9} {kind}, in {places[kind]}")
    missing = [kind for kind, count in counts.items() if not count and kind not in BY_THE_PROCESSOR]
    if missing:
        print(f"authenticated.py: no {', no '.join(missing)} was authenticated", file=sys.stderr)
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main())
