"""Runs a program whose cases end in every way, and holds what the runner tells of them against it."""

import subprocess
import sys

EXPECTED = {
    "Fails": "ended with code 1",
    "LeavesEarly": "ended with code 0 before its test did",
    "Crashes": "ended by signal 6 (Aborted)",
    "Hangs": "ended: it took too long",
}

run = subprocess.run([sys.argv[1], "--jobs", "2", "--time-limit", "2"], capture_output=True, text=True)
told = dict(part.split("\n", 1) for part in run.stdout.split("== Outcomes.")[1:])
problems = [f"{name}: {told.get(name)}" for name, end in EXPECTED.items() if end not in told.get(name, "")]
problems += [f"{name} has failed" for name in told if name not in EXPECTED]
if run.returncode != 1 or not run.stdout.endswith("1 passed, 4 failed, 1 skipped\n"):
    problems.append(f"code {run.returncode}: {run.stdout[-200:]}")
if "skipped Outcomes.Skips: why\n" not in run.stdout:
    problems.append("no reason of the skipped one")
print("\n".join(problems))
sys.exit(bool(problems))
