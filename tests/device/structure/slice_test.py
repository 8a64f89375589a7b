#!/usr/bin/env python3
"""Tests the slice for processors with pointer authentication: what scripts/arm64e makes of a small library, and
that scripts/check_macho.py fails for others that have one thing wrong with each of them.

usage: slice_test.py FOLDER-FOR-THE-SAMPLES [unittest arguments]"""

import re
import shutil
import struct
import sys
import unittest

from samples import ROOT, SCRIPTS, failures, resigned, run
import slices
from slices import Changed, Slices, check
from wrong_code import Code  # noqa: F401, for it to be run
import check_pointers
import macho
import pointer_rules
from macho import WORD
from macho_slice import Slice, Target
from pointer_rules import Rule


class Making(Slices):
    def test_the_slice_passes_every_check(self):
        result = check(slices.SAMPLES / "slice.dylib", slices.SAMPLES / "slice-unstripped.dylib")
        self.assertEqual((result.returncode, result.stderr), (0, ""), result.stdout)
        for name in ("chains", "tables", "numbers of names", "signed pointers", "return addresses"):
            self.assertIn(name, result.stdout.splitlines()[0])

    def test_other_tools_know_what_it_is(self):
        self.assertRegex(run("file", slices.SAMPLES / "slice.dylib").stdout, r"Mach-O 64-bit arm64e ")
        self.assertEqual(run("llvm-lipo-19", "-archs", slices.SAMPLES / "slice.dylib").stdout.split(), ["arm64e"])

    def test_every_kind_of_pointer_is_in_it(self):
        counts = check_pointers.count_pointers(self.slice, self.named)
        self.assertEqual(set(counts), {*pointer_rules.KINDS, "unsigned"} - {"return address"})
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
        linked = macho.MachO((slices.SAMPLES / "slice.dylib.linked").read_bytes())
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
        result, output = self.make(slices.SAMPLES / "slice.dylib.linked")
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
            self.assertEqual((output / name).read_bytes(), (slices.SAMPLES / name).read_bytes(), name)

    def test_a_library_without_signed_pointers(self):
        result, output = self.make(slices.SAMPLES / "plain.dylib")
        self.assertEqual(result.returncode, 0, result.stderr)
        made = Slice(output.read_bytes())
        self.assertEqual(made.chain_problems, [])
        # The linker makes the slots of personalities.
        signed = [(pointer.rule, pointer.target.symbol) for pointer in made.pointers.values() if pointer.rule]
        self.assertEqual(signed, [(Rule("ia", True, 0), "___objc_personality_v0")])
        plain, named = self.folder / "plain.dylib", self.folder / "named.dylib"
        shutil.copy(output, plain)
        shutil.copy(self.make(slices.SAMPLES / "plain-unstripped.dylib")[1], named)
        self.assertEqual(failures(check(plain, named))[0], "signed pointers")

    def test_what_cannot_be_made_into_a_slice_is_one_line(self):
        for name, reason in (("absent-unstripped", r"__ZN6sample\S*10kFunctionsE\+0x2578: a signed pointer to _sampleAbsent, "
                                                   "which may be absent; do not import it weakly"),
                             ("without-signature", "has no load command 0x1d"),
                             ("chained", "has chained fix-ups; link it with -no_fixup_chains"),
                             ("slice", "is no Mach-O file for arm64")):
            result, output = self.make(slices.SAMPLES / f"{name}.dylib")
            self.assertEqual(result.returncode, 1)
            self.assertRegex(result.stderr, rf"^make_slice.py: \S*/{name}.dylib: {reason}\n$")
            self.assertFalse(output.exists())
        result, _ = self.make(self.folder / "none.dylib")
        self.assertEqual(result.returncode, 3)
        self.assertRegex(result.stderr, r"^make_slice.py: .*none.dylib'\n$")

    def test_what_is_wrong_with_a_pointer_names_its_source(self):
        sources = [f"tests/device/structure/sample/{name}" for name in ("library.mm", "signed.mm", "startup.cpp")]
        objects = [slices.SAMPLES / f"absent/{source}.o" for source in sources]
        for given, name in ((objects, sources[1]), (objects[:1], r"\S*/absent-unstripped.dylib"), (["none"], r"\S*/absent-unstripped.dylib"),
                            ([self.written(b"text"), self.written(objects[1].read_bytes()[:3000], "cut"), *objects], sources[1])):
            result = run(SCRIPTS / "arm64e/make_slice.py", slices.SAMPLES / "absent-unstripped.dylib", self.folder / "made.dylib", *given,
                         cwd=ROOT)
            self.assertEqual(result.returncode, 1)
            self.assertRegex(result.stderr, rf"^make_slice.py: {name}: __ZN6sample\S*: a signed pointer to _sampleAbsent")

    def test_the_toolchain_gives_the_objects(self):
        result = run("bash", "-c", 'source scripts/device-toolchain.sh; link_slice_for_device "$@"', "link", self.folder / "made.dylib",
                     slices.SAMPLES / "stubs", "-lSample", "-exported_symbols_list", slices.HERE / "sample/exports.txt",
                     *(slices.SAMPLES / f"absent/tests/device/structure/sample/{name}.o" for name in ("library.mm", "signed.mm", "startup.cpp")),
                     cwd=ROOT)
        self.assertEqual(result.returncode, 1)
        self.assertRegex(result.stderr, r"^make_slice.py: tests/device/structure/sample/signed.mm: __ZN6sample")

    def test_damaged_libraries_are_one_line(self):
        linked = (slices.SAMPLES / "slice.dylib.linked").read_bytes()
        for size in [*range(0, 3000, 97), *range(3000, len(linked), 4999)]:
            result, _ = self.make(self.written(linked[:size]))
            self.assertEqual((result.returncode, len(result.stderr.splitlines())), (1, 1), size)


class Wrong(Changed):
    """Each has one thing wrong, in both the library and that with its names, and one check says so."""

    def all_kinds(self, change, message):
        for kind in ("method", "initialiser", "function", "block function", "block helper", "vtable pointer", "vtable entry",
                     "type info", "personality"):
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
        for kind in ("method", "initialiser", "function", "block function", "block helper", "vtable pointer", "type info",
                     "personality"):
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

    def chain_problems(self, change):
        """What is wrong with the chains once the library's bytes were changed."""
        data = bytearray(self.good)
        change(data)
        return check_pointers.check_chains(Slice(bytes(data)), self.named)

    def leave_out(self, data, address, raw=None):
        """The chain goes past a pointer, which may become what the linker has left there."""
        before = max((each for each in self.slice.pointers if each < address), default=0)
        values = [struct.unpack_from("<Q", data, self.slice.offset_of(each))[0] for each in (before, address)]
        distances = [value >> 51 & 0x7FF for value in values]
        if before // 0x1000 != address // 0x1000:
            return False
        distance = sum(distances) if distances[1] else 0
        struct.pack_into("<Q", data, self.slice.offset_of(before), values[0] & ~(0x7FF << 51) | distance << 51)
        if raw is not None:
            struct.pack_into("<Q", data, self.slice.offset_of(address), raw)
        return True

    def test_pointers_of_every_section_that_a_chain_leaves_out(self):
        names = check_pointers.Names(self.named)
        kinds = {}
        for address, pointer in self.slice.pointers.items():
            is_last = struct.unpack_from("<Q", self.good, self.slice.offset_of(address))[0] >> 51 & 0x7FF == 0
            kinds.setdefault((names.section_of(address)[1], isinstance(pointer.target, Target), pointer.rule is None, is_last),
                             []).append(address)
        tried = set()
        for kind, addresses in kinds.items():
            for address in addresses[:3]:
                changed = []
                problems = self.chain_problems(lambda data: changed.append(self.leave_out(data, address)))
                if changed[0]:
                    tried.add(kind[:3])
                    self.assertTrue(any(problem.endswith(f" at {names.near(address)}") for problem in problems), (kind, problems))
        self.assertLessEqual({("__const", True, False), ("__const", False, False), ("__cfstring", True, True), ("__const", False, True),
                              ("__cfstring", False, True), ("__objc_const", False, True), ("__objc_data", False, True)}, tried)

    def test_pointers_that_are_left_as_the_linker_has_them(self):
        names = check_pointers.Names(self.named)
        pointers = check_pointers.Pointers(self.slice, names)
        pointers.find_all()
        tried = set()
        for address, what in sorted({**pointers.unsigned, **pointers.kinds}.items()):
            target = self.slice.pointers[address].target
            if what in tried or what == "vtable entry":
                continue
            changed = []
            problems = self.chain_problems(lambda data: changed.append(
                self.leave_out(data, address, 0 if isinstance(target, Target) else target)))
            if changed[0] and not (what in ("superclass", "vtable's type info", "class") and isinstance(target, Target)):
                tried.add(what)
                self.assertRegex("\n".join(problems), rf"has no pointer for the [a-z' ]+ at {re.escape(names.near(address))}(\n|$)")
        self.assertLessEqual({"class's data", "class's name", "string's class", "string's text", "method's name", "method's type",
                              "category's class", "type's name", "type's base", "block's descriptor", "vtable's type info",
                              "type info", "method", "block helper"}, tried)

    def test_numbers_are_no_pointers(self):
        for raw in (0, 3, 0x9000, WORD - 1, WORD - 8, 0x4000000000000000, 0x4008000000000000, 0xC000000000000000,
                    struct.unpack("<Q", struct.pack("<d", 44.1))[0], 0x123456789ABCDEF0):
            self.assertFalse(check_pointers.leads_on(self.slice, min(self.slice.pointers), raw), hex(raw))

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
        self.fails(self.with_distance(self.last, 0x400), "chains", r"leaves its page behind that at \S+\+0x")

    def test_a_chain_that_ends_early(self):
        self.fails(self.with_distance(self.middle_of_a_full_page, 0), "chains",
                   r"has a pointer that no chain leads to at \S+Functions\S*\+0x")

    def test_a_chain_that_leaves_pointers_out(self):
        self.fails(self.with_distance(self.middle_of_a_full_page, 3), "chains",
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
        self.assertEqual(failures(result)[0], "chains")
        self.assertRegex(result.stdout, r"to symbol 65535, of \d+, at \S+\+0x\w+;")

    def test_bits_without_a_meaning(self):
        self.fails(self.changed_pointer("type info", lambda raw: raw | 1 << 20), "chains",
                   r"has bits without a meaning in its pointer at __ZTI\S+\+0x0;")

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
            (first, _), (start, end) = self.chain_starts(table)[-2:]
            return table[:first] + 2 * table[start:end]
        result = self.checked(self.with_table(lambda table: change(table.rstrip(b"\0"))))
        self.assertEqual(failures(result)[0], "chains")
        self.assertIn("has two chains in a page of __DATA", result.stdout)

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

    def test_a_signature_that_is_not_the_end(self):
        path = self.written(self.good + bytes(16))
        self.assertIn("tables", failures(check(path, slices.SAMPLES / "slice-unstripped.dylib")))

    def test_a_page_that_does_not_fit_its_hash(self):
        data = bytearray(self.good)
        data[self.slice.sections[("__TEXT", "__text")].offset - 1] ^= 1
        self.assertEqual(failures(check(self.written(data), slices.SAMPLES / "slice-unstripped.dylib")), ["signature"])

    def test_data_of_another_build(self):
        data = bytearray(self.good)
        self.changed_pointer("function", lambda raw: raw ^ 1 << 33)(self.slice, data)
        self.assertEqual(set(failures(check(self.written(resigned(data)), slices.SAMPLES / "slice-unstripped.dylib"))),
                         {"same code", "signed pointers"})

    def test_larger_than_the_library_beside_it(self):
        small = self.written(macho.MachO(self.good).data[:0] + (slices.SAMPLES / "plain.dylib").read_bytes())
        self.assertEqual(check(slices.SAMPLES / "slice.dylib", slices.SAMPLES / "slice-unstripped.dylib", "--beside", small).returncode, 0)
        library = macho.MachO(self.good)
        most = len(library.data) * 10 // 11
        self.assertEqual(check_pointers_size(library, bytes(most + 1)), [])
        self.assertEqual(check_pointers_size(library, bytes(most - 1)), [f"has {len(library.data)} bytes, more than {(most - 1) * 11 // 10}"])


def check_pointers_size(library, beside):
    import check_macho

    class Beside:
        data = beside
    return check_macho.check_size(library, Beside)


class PlacesByName(Slices):
    def test_what_has_no_name_in_its_section_is_named_by_the_section(self):
        names = check_pointers.Names(self.named)
        got = self.named.sections[("__DATA", "__got")].address
        self.assertEqual(names.near(got + 8), "__DATA,__got+0x8")
        self.assertEqual(names.near(1 << 40), hex(1 << 40))
        first = min(address for address in names.addresses if names.section_of(address) == ("__DATA", "__const"))
        self.assertEqual(names.near(first + 4), f"{names.at(first)[0]}+0x4")


class ByTheDocument(Slices):
    def with_document(self, before, after):
        text = pointer_rules.DOCUMENT.read_text()
        self.assertEqual(text.count(before), 1)
        path = self.written(text.replace(before, after).encode(), "rules.md")
        return check(slices.SAMPLES / "slice.dylib", slices.SAMPLES / "slice-unstripped.dylib", "--rules", path)

    def test_each_rule_of_the_table_is_asked_for(self):
        for kind in set(pointer_rules.KINDS) - {"return address"}:
            key = pointer_rules.read_rules()[kind].key
            with self.subTest(kind):
                result = self.with_document(f"| `{kind}` | `{key}` |", f"| `{kind}` | `ib` |")
                self.assertEqual(failures(result)[0], "signed pointers")
                self.assertIn(f"has the {kind} at ", result.stdout)

    def test_the_key_of_return_addresses_is_that_of_the_table(self):
        result = self.with_document("| `return address` | `ib` |", "| `return address` | `ia` |")
        self.assertEqual(set(failures(result)), {"return addresses"})
        self.assertIn("keeps its return address unsigned", result.stdout)
        self.assertIn("returns to an address that nothing has authenticated", result.stdout)
        result = self.with_document("| `return address` | `ib` |", "| `return address` | `da` |")
        self.assertEqual(result.returncode, 3)
        self.assertIn("signs return addresses with da, which is no key of instructions", result.stderr)

    def test_the_keys_of_calls_are_those_of_the_table(self):
        for kind, text in (("function", "makes a function that is signed with ia, not ib,"),
                           ("vtable pointer", "makes a vtable pointer that is signed with da, not ib,")):
            key = pointer_rules.read_rules()[kind].key
            result = self.with_document(f"| `{kind}` | `{key}` |", f"| `{kind}` | `ib` |")
            self.assertIn("return addresses", failures(result))
            self.assertIn(text, result.stdout)


def main():
    problem = slices.build(sys.argv[1])
    if problem:
        print(problem, file=sys.stderr)
        return 1
    return 0 if unittest.main(argv=[sys.argv[0], *sys.argv[2:]], exit=False).result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
