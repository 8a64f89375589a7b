#!/usr/bin/env python3
"""Counts the instructions that the library for the phone takes for two messages that the home screen sends all the
time, for arm64 and for processors that authenticate pointers, under emulation.

usage: device_cost.py BUILD-FOLDER ARM64-ROOT

BUILD-FOLDER/emulated/device_cost is what scripts/device-emulate builds. Exit code 1 when signed pointers make one
of them take more than 1.3 times as many, 3 when it cannot be counted."""

import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
MOST = 1.3
CALLS = 1000


def counter(folder):
    """What the emulator counts with, built for this machine."""
    source, library = ROOT / "tests/device/emulator/cost/instruction_counter.cpp", folder / "instruction_counter.so"
    subprocess.run(["clang++-19", "-std=c++20", "-O2", "-shared", "-fPIC", "-o", library, source], check=True)
    return library


def counts(build, root, plugin, library, keys):
    """{message: (instructions of the library, of all) a call}."""
    command = ["qemu-aarch64", "-plugin", plugin, "-L", root, build / "emulated/device_cost", str(CALLS)]
    environment = {**os.environ, "QEMU_CPU": "max", "VELMORANTH_LIBRARY": str(library), "VELMORANTH_KEYS": keys}
    result = subprocess.run(command, env=environment, capture_output=True, text=True, timeout=600, check=False)
    found = re.findall(r"^([\w:]+)\ninstructions (\d+) (\d+)$", result.stderr, re.MULTILINE)
    if result.returncode or len(found) != 2:
        raise OSError(f"{library}: cannot be counted: {result.stderr.strip() or result.returncode}")
    if any(int(own) == 0 for _, own, _ in found):
        raise OSError(f"{library}: counted nothing of the library's own")
    return {name: (int(own) / CALLS, int(everything) / CALLS) for name, own, everything in found}


def main():
    if len(sys.argv) != 3:
        print(__doc__.split("\n\n")[1], file=sys.stderr)
        return 2
    build, root = (pathlib.Path(argument) for argument in sys.argv[1:])
    device = build / "device"
    try:
        plugin = counter(build / "emulated")
        plain = counts(build, root, plugin, device / "VelMoranth.dylib", "all")
        signed = counts(build, root, plugin, device / "arm64e/VelMoranth.dylib", "all")
    except (OSError, subprocess.SubprocessError) as error:
        print(f"device_cost.py: {error}", file=sys.stderr)
        return 3
    failed = False
    for name, (own, everything) in plain.items():
        ratio = signed[name][0] / own
        failed |= ratio > MOST
        print(f"{name}: {own:.0f} instructions of the library for arm64, {signed[name][0]:.0f} with signed pointers, "
              f"{ratio:.2f} times; with what they call {everything:.0f} and {signed[name][1]:.0f}")
    if failed:
        print(f"device_cost.py: more than {MOST} times", file=sys.stderr)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
