"""Runs a program whose cases end in every way, and holds what the runner tells of them against it; then
asks for a command that needs another's work."""

import pathlib
import subprocess
import sys
import tempfile

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

FIXTURE = """add_test([=[Makes]=] "true")
set_tests_properties([=[Makes]=] PROPERTIES FIXTURES_SETUP "made")
add_test([=[Needs]=] "true")
set_tests_properties([=[Needs]=] PROPERTIES FIXTURES_REQUIRED "made")
add_test([=[Other]=] "true")
"""
with tempfile.TemporaryDirectory() as folder:
    pathlib.Path(folder, "CTestTestfile.cmake").write_text(FIXTURE)
    chosen = subprocess.run([sys.executable, sys.argv[2], folder, "--only", "Needs", "--list"],
                            capture_output=True, text=True).stdout
if chosen != "Makes\nNeeds\n":
    problems.append(f"chosen: {chosen}")
print("\n".join(problems))
sys.exit(bool(problems))
