#!/usr/bin/env python3
"""Tests the slice for processors with pointer authentication: what scripts/arm64e makes of a small library, and
that scripts/check_macho.py fails for others that have one thing wrong with each of them.

usage: slice_test.py FOLDER-FOR-THE-SAMPLES [unittest arguments]"""

import pathlib
import re
import shutil
import struct
import sys
import tempfile
import unittest

from samples import ROOT, SCRIPTS, failures, resigned, run
import check_pointers
import macho
import pointer_rules
from macho_slice import Slice, Target
from pointer_rules import Rule

HERE = pathlib.Path(__file__).resolve().parent
SAMPLES = None


def check(library, unstripped, *more):
    return run(SCRIPTS / "check_macho.py", "--unstripped", unstripped, "--exports", HERE / "sample/exports.txt",
               "--tables", HERE / "sample/tables.txt", "--stubs", ROOT / "device/sysroot", "--stubs", SAMPLES / "stubs",
               *more, library)


class Slices(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        self.good = (SAMPLES / "slice.dylib").read_bytes()
        self.slice = Slice(self.good)
        self.named = Slice((SAMPLES / "slice-unstripped.dylib").read_bytes())

    def written(self, data, name="changed.dylib"):
        path = self.folder / name
        path.write_bytes(data)
        return path

    def make(self, library):
        output = self.folder / "made.dylib"
        result = run(SCRIPTS / "arm64e/make_slice.py", library, output)
        return result, output


class Making(Slices):
    def test_the_slice_passes_every_check(self):
        result = check(SAMPLES / "slice.dylib", SAMPLES / "slice-unstripped.dylib")
        self.assertEqual((result.returncode, result.stderr), (0, ""), result.stdout)
        for name in ("chains", "tables", "numbers of names", "signed pointers", "return addresses"):
            self.assertIn(name, result.stdout.splitlines()[0])

    def test_other_tools_know_what_it_is(self):
        self.assertRegex(run("file", SAMPLES / "slice.dylib").stdout, "arm64")
        self.assertEqual(run("llvm-lipo-19", "-archs", SAMPLES / "slice.dylib").stdout.split(), ["arm64e"])

    def test_every_kind_of_pointer_is_in_it(self):
        counts = check_pointers.count_pointers(self.slice, self.named)
        self.assertEqual(set(counts), {*pointer_rules.KINDS, "unsigned"} - {"vtable pointer", "return address"})
        # Two methods of the class and +load, and two of the category.
        self.assertEqual((counts["method"], counts["initialiser"], counts["block function"], counts["block helper"]),
                         (5, 2, 1, 2))
        self.assertGreaterEqual(counts["function"], 1200)

    def test_chains_go_from_page_to_page(self):
        self.assertGreaterEqual(len(self.slice.pages), 3)
        ends = [address for address in self.slice.pointers if address % 0x1000 == 0xFF8]
        self.assertTrue(any(address + 8 in self.slice.pointers for address in ends))
        self.assertEqual(self.slice.chain_problems, [])

    def test_what_may_be_absent_stays_so(self):
        target = next(target for target in self.slice.targets if target.symbol == "_sampleObject")
        self.assertEqual(target.flags & 1, 1)
        self.assertEqual([each.symbol for each in self.slice.targets if each.flags & 1], ["_sampleObject"])

    def test_nothing_but_the_tables_the_pointers_and_two_fields_differs(self):
        linked = macho.MachO((SAMPLES / "slice.dylib.linked").read_bytes())
        self.assertEqual(self.slice.exports(), linked.exports())
        self.assertEqual(self.slice.dylibs, linked.dylibs)
        for key, section in linked.sections.items():
            if key[0] == "__TEXT":
                self.assertEqual(self.slice.contents(*key), linked.contents(*key), key)
            self.assertEqual(self.slice.sections[key][:3], section[:3])
        self.assertEqual({bind.symbol for bind in self.slice.binds()},
                         {bind.symbol for bind in linked.binds()} - {"dyld_stub_binder"})
        self.assertEqual(self.slice.data[:8] + bytes([0, 0, 0, 0]) + self.slice.data[12:32], linked.data[:32])

    def test_again_and_elsewhere_it_is_the_same(self):
        result, output = self.make(SAMPLES / "slice.dylib.linked")
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))
        self.assertEqual(output.read_bytes(), self.good)

    def test_another_checkout_gives_the_same_bytes(self):
        other = self.folder / "another/checkout"
        for name in ("scripts", "device", "tests/device/structure"):
            shutil.copytree(ROOT / name, other / name)
        output = self.folder / "samples"
        output.mkdir()
        result = run(other / "tests/device/structure/build_slices", output, timeout=110)
        self.assertEqual(result.returncode, 0, result.stderr)
        for name in ("slice.dylib", "slice-unstripped.dylib"):
            self.assertEqual((output / name).read_bytes(), (SAMPLES / name).read_bytes(), name)

    def test_a_library_without_signed_pointers(self):
        result, output = self.make(SAMPLES / "plain.dylib")
        self.assertEqual(result.returncode, 0, result.stderr)
        made = Slice(output.read_bytes())
        self.assertEqual(made.chain_problems, [])
        # The linker makes the slots of personalities.
        signed = [(pointer.rule, pointer.target.symbol) for pointer in made.pointers.values() if pointer.rule]
        self.assertEqual(signed, [(Rule("ia", True, 0), "___objc_personality_v0")])
        plain, named = self.folder / "plain.dylib", self.folder / "named.dylib"
        shutil.copy(output, plain)
        shutil.copy(self.make(SAMPLES / "plain-unstripped.dylib")[1], named)
        self.assertEqual(failures(check(plain, named))[0], "signed pointers")

    def test_what_cannot_be_made_into_a_slice_is_one_line(self):
        for name, reason in (("absent-unstripped", r"__ZN6sample\S*10kFunctionsE\+0x2578: a signed pointer to _sampleAbsent, "
                                                   "which may be absent; do not import it weakly"),
                             ("without-signature", "has no load command 0x1d"),
                             ("chained", "has chained fix-ups; link it with -no_fixup_chains"),
                             ("slice", "is no Mach-O file for arm64")):
            result, output = self.make(SAMPLES / f"{name}.dylib")
            self.assertEqual(result.returncode, 1)
            self.assertRegex(result.stderr, rf"^make_slice.py: \S*/{name}.dylib: {reason}\n$")
            self.assertFalse(output.exists())
        result, _ = self.make(self.folder / "none.dylib")
        self.assertEqual(result.returncode, 3)
        self.assertRegex(result.stderr, r"^make_slice.py: .*none.dylib'\n$")

    def test_damaged_libraries_are_one_line(self):
        linked = (SAMPLES / "slice.dylib.linked").read_bytes()
        for size in [*range(0, 3000, 97), *range(3000, len(linked), 4999)]:
            result, _ = self.make(self.written(linked[:size]))
            self.assertEqual((result.returncode, len(result.stderr.splitlines())), (1, 1), size)


class Wrong(Slices):
    """Each has one thing wrong, in both the library and that with its names, and one check says so."""

    def checked(self, change):
        paths = []
        for source in (self.slice, self.named):
            data = bytearray(source.data)
            change(source, data)
            paths.append(self.written(resigned(data), f"changed-{len(paths)}.dylib"))
        return check(*paths)

    def fails(self, change, wanted, message):
        result = self.checked(change)
        self.assertEqual(set(failures(result)), {wanted}, result.stdout + result.stderr)
        self.assertEqual(result.returncode, 1)
        self.assertRegex(result.stdout, message)

    def first(self, library, kind):
        """The first pointer of a kind that has the most bits to get wrong."""
        pointers = check_pointers.Pointers(library, check_pointers.Names(self.named))
        pointers.find_all()
        return next(address for address, pointer in sorted(library.pointers.items())
                    if pointers.kind_of(address, pointer) == kind)

    def changed_pointer(self, kind, change):
        """Changes the bits of that pointer: `change` is given those of its fix-up."""
        def work(library, data):
            place = library.offset_of(self.first(library, kind))
            raw, = struct.unpack_from("<Q", data, place)
            struct.pack_into("<Q", data, place, change(raw))
        return work

    def unsigned(self, raw):
        bound, low = raw >> 62 & 1, raw & (0xFFFF if raw >> 62 & 1 else 0xFFFFFFFF)
        return raw & 0x7FF << 51 | bound << 62 | low

    def all_kinds(self, change, message):
        for kind in ("method", "initialiser", "function", "block function", "block helper", "vtable entry", "type info",
                     "personality"):
            with self.subTest(kind):
                self.fails(self.changed_pointer(kind, change), "signed pointers", f"has the {kind} at .* as {message}")

    def test_unsigned(self):
        self.all_kinds(self.unsigned, "unsigned, not (ia|da), ")

    def test_another_key(self):
        self.all_kinds(lambda raw: raw ^ 1 << 49, "(ib|db), .*, not (ia|da), ")
        self.all_kinds(lambda raw: raw ^ 2 << 49, "(ia|da), .*, not (ia|da), ")

    def test_with_and_without_the_address(self):
        self.all_kinds(lambda raw: raw ^ 1 << 48, "(ia|da), .*, not (ia|da), ")

    def test_another_number(self):
        for kind in ("method", "initialiser", "function", "block function", "block helper", "type info", "personality"):
            with self.subTest(kind):
                self.fails(self.changed_pointer(kind, lambda raw: raw ^ 1 << 33), "signed pointers",
                           f"has the {kind} at .*, 2, not")

    def test_the_number_of_another_function(self):
        # Of a function of the sample, but not of this one.
        numbers = sorted({pointer.rule.number for pointer in self.slice.pointers.values() if pointer.rule} - {0})
        self.assertGreater(len(numbers), 5)
        first = self.slice.pointers[self.first(self.slice, "vtable entry")].rule.number
        for number in numbers:
            if number != first:
                self.fails(self.changed_pointer("vtable entry", lambda raw, number=number: raw & ~(0xFFFF << 32) | number << 32),
                           "signed pointers", f"signed with {number}, which is no name's of it")

    def test_a_signed_pointer_to_data(self):
        def work(library, data):
            address = next(address for address, pointer in sorted(library.pointers.items())
                           if pointer.rule is None and isinstance(pointer.target, int))
            struct.pack_into("<Q", data, library.offset_of(address), library.word(address) | 1 << 63
                             | struct.unpack_from("<Q", data, library.offset_of(address))[0] & 0x7FF << 51)
        self.fails(work, "signed pointers", "has the pointer to data at .* as ia, 0, not unsigned")

    def test_a_signed_slot_of_calls(self):
        def work(library, data):
            section = library.sections[("__DATA", "__got")]
            address = next(address for address in range(section.address, section.address + section.size, 8)
                           if library.pointers[address].rule is None)
            place = library.offset_of(address)
            struct.pack_into("<Q", data, place, struct.unpack_from("<Q", data, place)[0] | 1 << 63)
        self.fails(work, "signed pointers", "has the pointer to data at .* as ia, 0, not unsigned")

    def test_a_function_that_may_be_absent_and_is_signed(self):
        def work(library, data):
            number = next(index for index, target in enumerate(library.targets) if target.flags & 1)
            address = next(address for address, pointer in library.pointers.items()
                           if isinstance(pointer.target, Target) and pointer.target.symbol == "_sampleGiven"
                           and pointer.rule)
            place = library.offset_of(address)
            raw, = struct.unpack_from("<Q", data, place)
            struct.pack_into("<Q", data, place, raw & ~0xFFFF | number)
        self.fails(work, "signed pointers", "signed, though _sampleObject may be absent")

    def with_distance(self, choose, distance):
        """Another distance to the next one, in one of the pointers that `choose` finds among their addresses."""
        def work(library, data):
            place = library.offset_of(choose(sorted(library.pointers)))
            raw, = struct.unpack_from("<Q", data, place)
            struct.pack_into("<Q", data, place, raw & ~(0x7FF << 51) | distance << 51)
        return work

    @staticmethod
    def last(addresses):
        return addresses[-1]

    @staticmethod
    def middle_of_a_full_page(addresses):
        """In the table of functions, which fills one."""
        end = next(address for address in addresses
                   if address % 0x1000 == 0xFF8 and all(address - step in addresses for step in range(0, 0x400, 8)))
        return end - 0x100

    def test_a_chain_that_leaves_its_page(self):
        self.fails(self.with_distance(self.last, 0x400), "chains", "leaves its page at 0x")

    def test_a_chain_that_ends_early(self):
        self.fails(self.with_distance(self.middle_of_a_full_page, 0), "signed pointers",
                   r"has a pointer that no chain leads to at \S+Functions\S*\+0x")

    def test_a_chain_that_leaves_pointers_out(self):
        self.fails(self.with_distance(self.middle_of_a_full_page, 3), "signed pointers",
                   r"has a pointer that no chain leads to at \S+Functions\S*\+0x")

    def test_a_pointer_to_a_symbol_that_there_is_not(self):
        def work(library, data):
            address = max(address for address, pointer in library.pointers.items()
                          if isinstance(pointer.target, Target) and pointer.rule is None)
            place = library.offset_of(address)
            raw, = struct.unpack_from("<Q", data, place)
            struct.pack_into("<Q", data, place, raw | 0xFFFF)
        result = self.checked(work)
        self.assertIn("chains", failures(result))
        self.assertRegex(result.stdout, r"to symbol 65535, of \d+;")

    def test_bits_without_a_meaning(self):
        self.fails(self.changed_pointer("type info", lambda raw: raw | 1 << 20), "chains", "has bits without a meaning")

    def with_table(self, change):
        """Changes the table of chains; it may become shorter."""
        def work(library, data):
            place, size = library.dyld_info()["bind"]
            table = change(data[place:place + size])
            self.assertLessEqual(len(table), size)
            data[place:place + size] = table.ljust(size, b"\0")
        return work

    def chain_starts(self, table):
        """Where each chain is begun in the table: from the operation for its place on."""
        return [(found.start(), found.end()) for found in re.finditer(rb"[\x71-\x73][\x80-\xff]*[\x00-\x7f]\xd1", table)]

    def test_two_chains_in_a_page(self):
        def change(table):
            start, end = self.chain_starts(table)[-1]
            return table[:end] + table[start:end]
        self.fails(self.with_table(lambda table: change(table.rstrip(b"\0"))), "chains", "has two chains in a page of __DATA")

    def test_chains_out_of_order(self):
        def change(table):
            (first, middle), (_, last) = self.chain_starts(table)[-2:]
            return table[:first] + table[middle:last] + table[first:middle]
        self.fails(self.with_table(lambda table: change(table.rstrip(b"\0"))), "chains", "out of order")

    def test_fewer_symbols_announced_than_there_are(self):
        self.fails(self.with_table(lambda table: table[:1] + b"\x01" + table[2:]), "chains", r"announces 1 symbols")

    def test_a_table_of_another_kind_beside(self):
        def work(library, data):
            command, _ = library.the_one(macho.DYLD_INFO)
            place, _ = library.dyld_info()["bind"]
            struct.pack_into("<2I", data, command + 8, place, 8)
        self.fails(work, "chains", "has a table of rebase fix-ups beside its chains")

    def test_an_operation_that_no_loader_knows(self):
        result = self.checked(self.with_table(lambda table: b"\xa0" + table[1:]))
        self.assertEqual(result.returncode, 3)
        self.assertIn("has an operation 0xa0 that no loader of arm64e knows", result.stderr)

    def test_capabilities_of_a_later_system(self):
        def work(library, data):
            data[11] = 0x80
        self.fails(work, "kind", "has the capabilities 0x80")

    def test_another_processor(self):
        def work(library, data):
            data[8] = 1
        self.assertIn("kind", failures(self.checked(work)))

    def renamed_section(self, before, after):
        def work(library, data):
            place = data.index(before.encode().ljust(16, b"\0"))
            data[place:place + 16] = after.encode().ljust(16, b"\0")
        return work

    def test_sections_that_may_not_occur(self):
        for name in ("__thread_vars", "__interpose", "__mod_term_func", "__eh_frame", "__auth_got"):
            with self.subTest(name):
                self.fails(self.renamed_section("__objc_imageinfo", name), "signed pointers", f"has a section {name}")

    def test_pointers_that_are_bound_later(self):
        def work(library, data):
            place = data.index(b"__la_symbol_ptr".ljust(16, b"\0"))
            flags, = struct.unpack_from("<I", data, place + 64)
            struct.pack_into("<I", data, place + 64, flags & ~0xFF | 7)
        self.fails(work, "signed pointers", "bound later, in __la_symbol_ptr")

    def with_instruction(self, is_wanted, word):
        """In place of the first instruction that is wanted."""
        def work(library, data):
            section = library.sections[("__TEXT", "__text")]
            for place in range(section.offset, section.offset + section.size, 4):
                found, = struct.unpack_from("<I", data, place)
                if is_wanted(found):
                    struct.pack_into("<I", data, place, word(found) if callable(word) else word)
                    return
            self.fail("no such instruction")
        return work

    def test_a_frame_that_is_not_signed(self):
        self.fails(self.with_instruction(lambda word: word == 0xD503237F, 0xD503201F), "return addresses",
                   r"keeps its return address unsigned in \S+\+0x")

    def test_a_return_that_is_not_authenticated(self):
        self.fails(self.with_instruction(lambda word: word == 0xD65F0FFF, 0xD65F03C0), "return addresses",
                   r"returns to an address that nothing has authenticated in \S+\+0x")

    def test_a_call_that_is_not_authenticated(self):
        self.fails(self.with_instruction(lambda word: word & 0xFFFFF800 == 0xD73F0800,
                                         lambda word: 0xD63F0000 | word & 0x3E0), "return addresses",
                   r"calls a pointer that nothing has authenticated in \S+\+0x")

    def test_a_jump_that_is_not_authenticated(self):
        self.fails(self.with_instruction(lambda word: word & 0xFFFFF800 == 0xD73F0800,
                                         lambda word: 0xD61F0000 | word & 0x3E0), "return addresses",
                   r"jumps to a pointer that nothing has authenticated in \S+\+0x")

    def test_a_signature_that_is_not_the_end(self):
        path = self.written(self.good + bytes(16))
        self.assertIn("tables", failures(check(path, SAMPLES / "slice-unstripped.dylib")))

    def test_a_page_that_does_not_fit_its_hash(self):
        data = bytearray(self.good)
        data[self.slice.sections[("__TEXT", "__text")].offset - 1] ^= 1
        self.assertEqual(failures(check(self.written(data), SAMPLES / "slice-unstripped.dylib")), ["signature"])

    def test_data_of_another_build(self):
        data = bytearray(self.good)
        self.changed_pointer("function", lambda raw: raw ^ 1 << 33)(self.slice, data)
        self.assertEqual(set(failures(check(self.written(resigned(data)), SAMPLES / "slice-unstripped.dylib"))),
                         {"same code", "signed pointers"})

    def test_larger_than_the_library_beside_it(self):
        small = self.written(macho.MachO(self.good).data[:0] + (SAMPLES / "plain.dylib").read_bytes())
        self.assertEqual(check(SAMPLES / "slice.dylib", SAMPLES / "slice-unstripped.dylib", "--beside", small).returncode, 0)
        library = macho.MachO(self.good)
        most = len(library.data) * 10 // 11
        self.assertEqual(check_pointers_size(library, bytes(most + 1)), [])
        self.assertEqual(check_pointers_size(library, bytes(most - 1)), [f"has {len(library.data)} bytes, more than {(most - 1) * 11 // 10}"])


def check_pointers_size(library, beside):
    import check_macho

    class Beside:
        data = beside
    return check_macho.check_size(library, Beside)


class ByTheDocument(Slices):
    def with_document(self, before, after):
        text = pointer_rules.DOCUMENT.read_text()
        self.assertEqual(text.count(before), 1)
        path = self.written(text.replace(before, after).encode(), "rules.md")
        return check(SAMPLES / "slice.dylib", SAMPLES / "slice-unstripped.dylib", "--rules", path)

    def test_each_rule_of_the_table_is_asked_for(self):
        for kind in set(pointer_rules.KINDS) - {"vtable pointer", "return address"}:
            key = pointer_rules.read_rules()[kind].key
            with self.subTest(kind):
                result = self.with_document(f"| `{kind}` | `{key}` |", f"| `{kind}` | `ib` |")
                self.assertEqual(failures(result)[0], "signed pointers")
                self.assertIn(f"has the {kind} at ", result.stdout)


def main():
    global SAMPLES
    SAMPLES = pathlib.Path(sys.argv[1]).resolve()
    # Here once, for all cases.
    shutil.rmtree(SAMPLES, ignore_errors=True)
    SAMPLES.mkdir(parents=True)
    built = run(HERE / "build_slices", SAMPLES, timeout=110)
    if built.returncode != 0:
        print(built.stdout + built.stderr, file=sys.stderr)
        return 1
    return 0 if unittest.main(argv=[sys.argv[0], *sys.argv[2:]], exit=False).result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
