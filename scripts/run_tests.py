#!/usr/bin/env python3
"""Runs the tests that CTest knows of a build folder, and says at the end how many passed, failed and
were skipped, and why.

Programs of cases (label "cases", tests/support/cases) run side by side and share the jobs; their cases
count one by one. Every other test is a command that counts as one. Exit code 1 when one failed or none
ran."""

import argparse
import collections
import itertools
import json
import os
import pathlib
import re
import select
import signal
import subprocess
import sys
import threading
import time

Result = collections.namedtuple("Result", "name outcome seconds text")


class Jobs:
    """Counts the jobs that may run; programs of cases take theirs from it too."""

    def __init__(self, count):
        self.free = os.eventfd(count, os.EFD_SEMAPHORE | os.EFD_NONBLOCK | os.EFD_CLOEXEC)

    def __enter__(self):
        while True:
            select.select([self.free], [], [])
            try:
                return os.eventfd_read(self.free)
            except BlockingIOError:  # Somebody else was faster.
                continue

    def __exit__(self, *_):
        os.eventfd_write(self.free, 1)


class Progress:
    """One line on a terminal that tells how far it is; elsewhere a line a tenth."""

    def __init__(self, total):
        self.total, self.done, self.start = total, 0, time.monotonic()
        self.terminal = sys.stderr.isatty()

    def step(self):
        self.done += 1
        if self.terminal:
            seconds = (time.monotonic() - self.start) / self.done * (self.total - self.done)
            self.show(f"test: {self.done} of {self.total}, {100 * self.done // self.total} %, "
                      f"{int(seconds // 60)}:{int(seconds % 60):02} left")
        elif self.done * 10 // self.total > (self.done - 1) * 10 // self.total:
            print(f"test: {self.done} of {self.total}", file=sys.stderr, flush=True)

    def show(self, text=""):
        if self.terminal:
            print(f"\r\033[K{text}", end="", file=sys.stderr, flush=True)


class Run:
    def __init__(self, options):
        self.options = options
        self.jobs = Jobs(options.jobs)
        self.results = []
        self.lock = threading.Lock()
        self.running = set()
        self.progress = None
        self.ending = False

    def known_tests(self):
        listed = subprocess.run(["ctest", "--test-dir", self.options.build, "--show-only=json-v1"],
                                capture_output=True, text=True, check=True)
        programs, commands = [], []
        for test in json.loads(listed.stdout)["tests"]:
            test["properties"] = {entry["name"]: entry["value"] for entry in test.get("properties", [])}
            labels = test["properties"].get("LABELS", [])
            chosen = self.options.program
            if ("phone" in labels) != self.options.phone or (
                    chosen and not any(re.search(one, test["name"]) for one in chosen)):
                continue
            if "command" not in test:  # CTest drops it where the program is not built
                raise SystemExit(f"test: {test['name']} is not built")
            if "cases" in labels:
                # Less the jobs, which CTest gives a program that runs alone; an emulator may stand before it.
                programs.append(list(itertools.takewhile(lambda word: word != "--jobs", test["command"])))
            else:
                commands.append(test)
        wanted = [test for test in commands if self.is_wanted(test["name"])]
        needed = {fixture for test in wanted for fixture in test["properties"].get("FIXTURES_REQUIRED", [])}
        return programs, [test for test in commands if test in wanted or
                          needed.intersection(test["properties"].get("FIXTURES_SETUP", []))]

    def is_wanted(self, name):
        return ((not self.options.only or any(re.search(one, name) for one in self.options.only))
                and not any(re.search(one, name) for one in self.options.skip))

    def filters(self):
        return [word for option in ("only", "skip") for value in getattr(self.options, option)
                for word in (f"--{option}", value)]

    def start(self, command, **more):
        # Not of this group: what a terminal sends goes to us, and we end them.
        with self.lock:
            process = subprocess.Popen(command, stdin=subprocess.DEVNULL, start_new_session=True, **more)
            self.running.add(process)
        return process

    def add(self, result):
        with self.lock:
            self.results.append(result)
            self.progress.step()

    def run_program(self, command):
        limit = ["--time-limit", str(self.options.time_limit)]
        process = self.start([*command, "--report", "--tokens", str(self.jobs.free), *limit, *self.filters()],
                             stdout=subprocess.PIPE, pass_fds=[self.jobs.free])
        for line in process.stdout:
            outcome, seconds, size, name = line.decode(errors="replace").rstrip("\n").split(" ", 3)
            text = process.stdout.read(int(size)).decode(errors="replace")
            self.add(Result(name, outcome, float(seconds), text))
        if process.wait() not in (0, 1) and not self.ending:
            # The jobs that it had are gone with it; a few more than there were do no harm.
            os.eventfd_write(self.jobs.free, self.options.jobs)
            self.add(Result(pathlib.Path(command[-1]).name, "failed", 0,
                            f"the program itself ended with {process.returncode}\n"))

    def run_command(self, test):
        properties = test["properties"]
        environment = dict(entry.split("=", 1) for entry in properties.get("ENVIRONMENT", []))
        with self.jobs:
            begin = time.monotonic()
            process = self.start(test["command"], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                 cwd=properties.get("WORKING_DIRECTORY"),
                                 env={**os.environ, **environment})
            try:
                text = process.communicate(timeout=properties.get("TIMEOUT", self.options.time_limit))[0]
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                text = process.communicate()[0] + b"\nended: it took too long\n"
            seconds = time.monotonic() - begin
        text = text.decode(errors="replace")
        passed = (process.returncode == 0) != properties.get("WILL_FAIL", False) and process.returncode >= 0
        skipped = process.returncode == properties.get("SKIP_RETURN_CODE", -1)
        outcome = "skipped" if skipped else "passed" if passed else "failed"
        if not self.ending:
            self.add(Result(test["name"], outcome, seconds, text))

    def run_commands_in_turn(self, commands):
        """Those that others need, before these."""
        for command in commands:
            self.run_command(command)

    def all(self):
        programs, commands = self.known_tests()
        cases = [subprocess.run([*program, "--list", *self.filters()], capture_output=True, text=True,
                                check=True).stdout.splitlines() for program in programs]
        names = [name for listed in cases for name in listed] + [test["name"] for test in commands]
        if self.options.list:
            print("\n".join(names))
            return bool(names)
        self.progress = Progress(len(names))
        sets_up = [test for test in commands if "FIXTURES_SETUP" in test["properties"]]
        need_that = [test for test in commands if "FIXTURES_REQUIRED" in test["properties"]]
        threads = [threading.Thread(target=self.run_commands_in_turn, args=([*sets_up, *need_that],))]
        threads += [threading.Thread(target=self.run_command, args=(test,)) for test in commands
                    if test not in sets_up and test not in need_that]
        threads += [threading.Thread(target=self.run_program, args=(program,))
                    for program, listed in zip(programs, cases) if listed]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.progress.show()
        # By number: a parameter that is printed as its address has another name in every process.
        self.results += [Result(f"one of {len(names)}", "failed", 0, "it never ran")
                         for _ in range(len(names) - len(self.results))]
        return self.tell()

    def tell(self):
        for result in self.results:
            if result.outcome == "failed":
                print(f"== {result.name} ({result.seconds:.1f} s)\n{result.text.rstrip()}\n")
        if self.options.results:
            pathlib.Path(self.options.results).write_text("".join(
                f"{result.outcome} {result.seconds:.2f} {result.name}\n"
                for result in sorted(self.results, key=lambda result: -result.seconds)))
        reasons = collections.Counter(result.text.strip().splitlines()[0] if result.text.strip()
                                      else "no reason given"
                                      for result in self.results if result.outcome == "skipped")
        for reason, count in reasons.most_common():
            print(f"skipped {count}: {reason}")
        failed = [result.name for result in self.results if result.outcome == "failed"]
        for name in failed:
            print(f"failed: {name}")
        counts = collections.Counter(result.outcome for result in self.results)
        print(f"{counts['passed']} passed, {counts['failed']} failed, {counts['skipped']} skipped")
        return not failed and counts["passed"] > 0

    def end(self, *_):
        self.ending = True
        for process in list(self.running):
            if process.poll() is None:
                # A program of cases ends what it has started.
                os.killpg(process.pid, signal.SIGTERM)
        os._exit(130)  # The threads wait for what has ended.


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("build", help="the build folder")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), metavar="N")
    parser.add_argument("--only", action="append", default=[], metavar="REGEX",
                        help="the tests whose name has it (-R too)")
    parser.add_argument("-R", action="append", dest="only", metavar="REGEX", help=argparse.SUPPRESS)
    parser.add_argument("--skip", action="append", default=[], metavar="REGEX",
                        help="all but those whose name has it (-E too)")
    parser.add_argument("-E", action="append", dest="skip", metavar="REGEX", help=argparse.SUPPRESS)
    parser.add_argument("--phone", action="store_true", help="those of the phone's side, and no others")
    parser.add_argument("--program", action="append", metavar="REGEX",
                        help="those of the programs and commands whose name in CTest has it")
    parser.add_argument("--time-limit", type=int, default=120, metavar="SECONDS", help="of one test")
    parser.add_argument("--list", action="store_true", help="print their names and run none")
    parser.add_argument("--results", metavar="FILE", help="write there how each went, the slowest first")
    run = Run(parser.parse_args())
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, run.end)
    return 0 if run.all() else 1


if __name__ == "__main__":
    sys.exit(main())
