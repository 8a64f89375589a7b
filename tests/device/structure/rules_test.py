#!/usr/bin/env python3
"""Tests by what scripts/check_macho.py looks at signed pointers: the documents' tables, the numbers of names, and the
names; and the report of what was authenticated.

usage: rules_test.py [unittest arguments]"""

import os
import re
import sys
import tempfile
import pathlib
import shutil
import unittest

from samples import SCRIPTS, run
import mangled_names
import pointer_rules


class Rules(unittest.TestCase):
    """The checker goes by the documents' tables."""

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def document(self, before, after):
        text = pointer_rules.DOCUMENT.read_text()
        self.assertEqual(text.count(before), 1)
        path = self.folder / "rules.md"
        path.write_text(text.replace(before, after))
        return path

    def test_a_table_that_is_none_is_one_line(self):
        for before, after, reason in (("| `method` | `ia` |", "| `method` | `ic` |", "has a row that is no rule: method ic yes 0"),
                                      ("| `method` |", "| `methods` |", "has a row that is no rule: methods ia"),
                                      ("| Kind | Key |", "| Kind | Keys |", "has no table of Kind, Key"),
                                      ("of its name", "of a name", "has no such number: of a name")):
            result = run(SCRIPTS / "pointer_rules.py", "--header", self.document(before, after))
            self.assertEqual(result.returncode, 3)
            self.assertRegex(result.stderr, rf"^pointer_rules.py: \S*/rules.md: {reason}.*\n$")

    def test_a_kind_without_a_row(self):
        text = "| Kind | Key | Address | Number |\n| --- | --- | --- | --- |\n| `method` | `ia` | yes | 0 |\n"
        path = self.folder / "rules.md"
        path.write_text(text)
        with self.assertRaisesRegex(pointer_rules.BadTable, "^has no rule for initialiser, function"):
            pointer_rules.read_rules(path)

    def test_numbers_of_names_are_those_that_are_written_down(self):
        known = pointer_rules.known_numbers()
        self.assertEqual(len(known), 8)
        self.assertEqual({name: pointer_rules.number_of(name) for name in known}, known)

    def test_numbers_of_names_are_the_compiler_s(self):
        names = [*pointer_rules.known_numbers(), "", "a", "abcdefg", "abcdefgh", *pointer_rules.CALLED_BY_THE_LIBRARY]
        source = self.folder / "numbers.c"
        source.write_text("".join(f'unsigned long f{index}(void) {{ return __builtin_ptrauth_string_discriminator("{name}"); }}\n'
                                  for index, name in enumerate(names)))
        result = run("clang-19", "-target", "arm64-apple-ios12.0", "-mcpu=apple-a12", "-fptrauth-intrinsics", "-O1", "-S", source, "-o", "-")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual([int(number) for number in re.findall(r"mov\tw0, #(\d+)", result.stdout)],
                         [pointer_rules.number_of(name) for name in names])

    def test_siphash_is_the_published_one(self):
        # The first test vectors of its authors: key and message are bytes that count up.
        key = bytes(range(16))
        for size, wanted in ((0, 0x726FDB47DD0E0E31), (1, 0x74F839C593DC67FD), (8, 0x93F5F5799A932462), (15, 0xA129CA6149BE45E5)):
            self.assertEqual(pointer_rules.sip_hash(bytes(range(size)), key), wanted)

    def test_the_emulator_is_given_the_same_table(self):
        header = run(SCRIPTS / "pointer_rules.py", "--header").stdout
        for kind, rule in pointer_rules.read_rules().items():
            self.assertIn(f'{{"{kind}", Key::{rule.key}, {str(rule.address).lower()}, {rule.number or 0}}},', header)
        result = run(SCRIPTS / "pointer_rules.py", "--header", self.folder / "none.md")
        self.assertEqual(result.returncode, 3)
        self.assertEqual(run(SCRIPTS / "pointer_rules.py").returncode, 2)


class Authenticated(unittest.TestCase):
    """The report of what the emulator has authenticated."""

    def report(self, *lines, options=()):
        with tempfile.NamedTemporaryFile("w", suffix=".txt") as file:
            file.write("".join(f"{line}\n" for line in lines))
            file.flush()
            return run(SCRIPTS / "authenticated.py", *options, file.name)

    def test_processes_are_added_up_by_kind(self):
        result = self.report("1 2 3 4 5 6 7 8 9 0", "10 20 30 40 50 60 70 80 90 0")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        lines = result.stdout.splitlines()
        self.assertEqual(lines[0], "authenticated, in 2 processes:")
        self.assertEqual([line.split(maxsplit=1) for line in lines[1:]],
                         [[str(11 * (index + 1)), f"{kind}, in 2"] for index, kind in enumerate(pointer_rules.KINDS[:-1])])

    def test_a_kind_that_nothing_authenticates_is_told(self):
        result = self.report("1 0 3 4 5 6 7 8 0 0", "1 0 3 4 5 6 7 8 9 0")
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr, "authenticated.py: no initialiser was authenticated\n")
        self.assertIn("9 personality, in 1\n", result.stdout)

    def test_some_of_the_tests_authenticate_some_kinds(self):
        result = self.report("0 0 3 0 0 0 0 0 0 0", options=["--some"])
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        # Return addresses are the processor's.
        result = self.report("0 0 0 0 0 0 0 0 0 5", options=["--some"])
        self.assertEqual((result.returncode, result.stderr), (1, "authenticated.py: nothing was authenticated\n"))

    def test_processes_without_keys_authenticate_nothing(self):
        result = self.report("0 0 0 0 0 0 0 0 0 0", options=["--none"])
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        result = self.report("0 0 3 0 0 0 2 0 0 0", options=["--none"])
        self.assertEqual((result.returncode, result.stderr), (1, "authenticated.py: 5 pointers were authenticated without keys\n"))

    def test_no_process_at_all(self):
        for options in ([], ["--some"], ["--none"]):
            result = self.report(options=options)
            self.assertEqual((result.returncode, result.stderr), (1, "authenticated.py: no process has loaded the slice\n"))

    def test_no_report(self):
        for options in ([], ["--some"], ["--none"]):
            result = run(SCRIPTS / "authenticated.py", *options, "/none/report.txt")
            self.assertEqual((result.returncode, len(result.stderr.splitlines())), (3, 1))
        for arguments in ([], ["--some"], ["--all", "a"], ["a", "b"], ["--some", "--none", "a"]):
            self.assertEqual(run(SCRIPTS / "authenticated.py", *arguments).returncode, 2)

    def test_what_is_no_report(self):
        for line in ("1 2 3", "1 2 3 4 5 6 7 8 9 x"):
            result = self.report(line)
            self.assertEqual((result.returncode, len(result.stderr.splitlines())), (3, 1))


class Cost(unittest.TestCase):
    """The count of instructions, with an emulator that says what it is told to."""

    def count(self, *lines):
        folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, folder)
        (folder / "emulated").mkdir()
        said = "".join(f"{name}\\ninstructions {own} {everything}\\n" for name, own, everything in lines)
        for name, text in (("qemu-aarch64", f"printf '{said}' >&2"), ("clang++-19", "")):
            (folder / name).write_text(f"#!/bin/sh\n{text}\n")
            (folder / name).chmod(0o755)
        return run(SCRIPTS / "device_cost.py", folder, folder, env={**os.environ, "PATH": f"{folder}:{os.environ['PATH']}"})

    def test_each_message_is_compared(self):
        result = self.count(("alpha", 2000, 5000), ("image:", 1000, 1000))
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertIn("alpha: 2 instructions of the library for arm64, 2 with signed pointers, 1.00 times;", result.stdout)

    def test_nothing_counted_is_one_line(self):
        result = self.count(("alpha", 0, 5000), ("image:", 1000, 1000))
        self.assertEqual((result.returncode, result.stdout), (3, ""))
        self.assertRegex(result.stderr, r"^device_cost.py: \S+: counted nothing of the library's own\n$")


class Names(unittest.TestCase):
    def test_a_function_in_a_class_that_it_comes_from(self):
        for name, cls, wanted in (
                ("_ZN6sample4Both5otherERKNS_4BaseE", "N6sample5OtherE", "_ZN6sample5Other5otherERKNS_4BaseE"),
                ("_ZThn8_N6sample4BothD0Ev", "N6sample5OtherE", "_ZN6sample5OtherD0Ev"),
                ("_ZNK6sample4Both5valueEv", "N6sample4BaseE", "_ZNK6sample4Base5valueEv"),
                # What is abbreviated changes with what stands before it.
                ("_ZN1a1bINS_1cE1dE3setERKNS_1eE", "N1a1fE", "_ZN1a1f3setERKNS_1eE"),
                ("_ZN1a1b3addERKNSt3__16vectorIS0_NS1_9allocatorIS0_EEEE", "1g",
                 "_ZN1g3addERKNSt3__16vectorIN1a1bENS0_9allocatorIS3_EEEE"),
                ("_ZN1a1bD1Ev", "St9exception", "_ZNSt9exceptionD1Ev")):
            function, base = mangled_names.read_function(name), mangled_names.read_class(cls)
            self.assertEqual(mangled_names.in_class(mangled_names.without_class(function), base), wanted)

    def test_names_are_written_as_they_were(self):
        for name in ("_ZN1a1bINS_1cEE1dEPFvRKS1_iEM1ei", "_ZN1aILi3ELb1EE1bEv", "_ZN1a12_GLOBAL__N_11b1cENS0_1dE", "_ZN1a1bB3tagEA4_KcOPVj",
                     "_ZN1aIJicEE1bEDn", "_ZN1aclERKS_", "_ZZN1a1bEvENKUlvE_clEv",
                     "_ZNSt3__120__shared_ptr_emplaceIN10velmoranth6device9HandleForINS1_8platform11BitmapImageEEENS_9allocatorIS6_EEED0Ev"):
            mangled_names.read_function(name)  # which compares them

    def test_what_is_no_such_name(self):
        for name in ("main", "_Z", "_ZN", "_ZN1a", "_ZN1aS9_1bEv", "_ZN5aEv", "_ZTV1a", "_ZN1a1bEvX"):
            with self.assertRaises(mangled_names.Unknown, msg=name):
                mangled_names.read_function(name)
        for name in ("", "i", "N1a", "1a1b"):
            with self.assertRaises(mangled_names.Unknown, msg=name):
                mangled_names.read_class(name)


if __name__ == "__main__":
    sys.exit(unittest.main())
