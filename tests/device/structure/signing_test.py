#!/usr/bin/env python3
"""Tests what makes the slice for processors with pointer authentication (scripts/arm64e), without a
compiler: assembly line by line, and chains in an image of the tests' own.

usage: signing_test.py [unittest arguments]"""

import itertools
import pathlib
import struct
import sys
import tempfile
import unittest

from samples import SCRIPTS, run
import chains
import image as reading
from image import Failure, Segment, Target
from payload import KEYS, Signature, bits_of, constant_for, split
from sign_assembly import Assembly, Unsigned

TEXT = "\t.section\t__TEXT,__text,regular,pure_instructions\n"
CONST = "\t.section\t__DATA,__const\n"
WORD = 1 << 64


def after_linking(signature, address):
    """What a linked pointer holds, whose symbol the linker has put at the address."""
    return (address + constant_for(signature)) % WORD


class Payload(unittest.TestCase):
    def test_bits_are_those_of_a_fixup(self):
        self.assertEqual(bits_of(Signature("ia", False, 0)), 1 << 63)
        self.assertEqual(bits_of(Signature("ib", False, 0)), 1 << 63 | 1 << 49)
        self.assertEqual(bits_of(Signature("da", False, 0)), 1 << 63 | 2 << 49)
        self.assertEqual(bits_of(Signature("db", False, 0)), 1 << 63 | 3 << 49)
        self.assertEqual(bits_of(Signature("ia", True, 0)), 1 << 63 | 1 << 48)
        self.assertEqual(bits_of(Signature("ia", False, 0xFFFF)), 1 << 63 | 0xFFFF << 32)

    def test_every_signature_comes_out_of_the_linked_sum(self):
        for key, address, number, target in itertools.product(KEYS, (False, True), (0, 1, 27434, 0xFFFF),
                                                              (0, 8, 0x4000, 0xFFFFFFF8)):
            signature = Signature(key, address, number)
            self.assertEqual(split(after_linking(signature, target)), (target, signature))

    def test_the_assembler_is_given_a_number_of_64_bits_with_a_sign(self):
        for signature in (Signature("ia", False, 0), Signature("db", True, 0xFFFF)):
            self.assertTrue(-(1 << 63) <= constant_for(signature) < 0)

    def test_names_of_type_infos_use_the_topmost_bit_for_themselves(self):
        self.assertEqual(split(0x5678 | 1 << 63), (0x5678 | 1 << 63, None))

    def test_small_numbers_of_either_sign_are_no_signature(self):
        for number in (0, 1, 8, -1, -8, -0x7FFFFFFF, 1 << 62, (1 << 62) - 1):
            self.assertEqual(split(number), (number % WORD, None))


class SignAssembly(unittest.TestCase):
    def signed(self, text):
        assembly = Assembly(text.splitlines(keepends=True))
        self.text = "".join(assembly.signed_lines())
        return dict(assembly.counts)

    def line_for(self, target, signature):
        return f"\t.quad\t{target}{constant_for(signature):+d}\n"

    def refused(self, text):
        with self.assertRaises(Unsigned) as caught:
            self.signed(text)
        return str(caught.exception)

    def test_what_the_compiler_signs(self):
        for target, written, signature in (
                ("_f@AUTH(ia,0)", "_f", Signature("ia", False, 0)),
                ("_f@AUTH(ia,51857,addr)", "_f", Signature("ia", True, 51857)),
                ("(__ZTV1A+16)@AUTH(da,0)", "__ZTV1A+16", Signature("da", False, 0)),
                ('"-[A b:]"@AUTH(ib,65535)', '"-[A b:]"', Signature("ib", False, 65535)),
                ('("f(x)"+8)@AUTH(db,1,addr)', '"f(x)"+8', Signature("db", True, 1))):
            with self.subTest(target):
                counts = self.signed(f"{CONST}_table:\n\t.quad\t{target} ; remark\n")
                self.assertEqual(self.text, f"{CONST}_table:\n{self.line_for(written, signature)}")
                self.assertEqual(counts, {"compiler's": 1})

    def test_methods_in_lists_and_nothing_else_of_them(self):
        for label in ("__OBJC_$_INSTANCE_METHODS_A", "__OBJC_$_CLASS_METHODS_A",
                      "__OBJC_$_CATEGORY_INSTANCE_METHODS_A_$_B", "__OBJC_$_CATEGORY_CLASS_METHODS_A_$_B"):
            names = "\t.quad\tl_NAME\n\t.quad\tl_TYPE\n"
            begin = f"{TEXT}\"-[A b]\":\n\tret\n\t.section\t__DATA,__objc_const\n{label}:\n\t.long\t24\n\t.long\t2\n"
            counts = self.signed(f'{begin}{names}\t.quad\t"-[A b]"\n{names}\t.quad\t"-[A b]"\n')
            line = self.line_for('"-[A b]"', Signature("ia", True, 0))
            self.assertEqual(self.text, begin + names + line + names + line)
            self.assertEqual(counts, {"methods": 2}, label)

    def test_lists_of_protocols_have_no_functions(self):
        text = ("\t.section\t__DATA,__objc_const\n__OBJC_$_PROTOCOL_INSTANCE_METHODS_P:\n\t.quad\tl_NAME\n"
                "\t.quad\tl_TYPE\n\t.quad\t0\n")
        self.assertEqual(self.signed(text), {})
        self.assertEqual(self.text, text)

    def test_initialisers(self):
        self.assertEqual(self.signed(f"{TEXT}_start:\n\tret\n\t.section\t__DATA,__mod_init_func,mod_init_funcs\n\t.quad\t_start\n"),
                         {"initialisers": 1})
        self.assertTrue(self.text.endswith(self.line_for("_start", Signature("ia", False, 0))))

    def test_blocks_in_data_and_the_helpers_of_all(self):
        block = Signature("ia", True, 0)
        self.assertEqual(self.signed(
            f"{TEXT}___f_block_invoke:\n\tret\n{CONST}___block_literal_global.3:\n\t.quad\t__NSConcreteGlobalBlock\n"
            "\t.long\t1342177280\n\t.long\t0\n\t.quad\t___f_block_invoke\n\t.quad\t_d\n"
            "_d:\n\t.quad\t0\n\t.quad\t40\n\t.quad\t___copy_helper_block_e8_32s\n\t.quad\t___destroy_helper_block_e8_32s\n"),
            {"global blocks": 1, "block helpers": 2})
        self.assertIn("\t.quad\t__NSConcreteGlobalBlock\n", self.text)
        self.assertIn("\t.quad\t_d\n", self.text)
        for name in ("___f_block_invoke", "___copy_helper_block_e8_32s", "___destroy_helper_block_e8_32s"):
            self.assertIn(self.line_for(name, block), self.text)

    def test_types_of_exceptions(self):
        self.assertEqual(self.signed(f"{CONST}_OBJC_EHTYPE_$_A:\n\t.quad\t_objc_ehtype_vtable+16\n\t.quad\tl_NAME\n"),
                         {"exception types": 1})
        self.assertIn(self.line_for("_objc_ehtype_vtable+16", Signature("da", False, 0)), self.text)

    def test_what_is_no_function_stays_as_it_is(self):
        text = (f"{CONST}_data:\n\t.quad\t_other\n\t.quad\t0\n\t.quad\t-8\n\t.quad\t__ZTS1A+9223372036854775808\n"
                "\t.quad\tLb-La\n\t.quad\t_other-8\n\t.long\t_f\n\t.quad\t_OBJC_CLASS_$_NSObject\n\t.quad\t_zeros\n"
                '\t.quad\t"_some zeros"\n\t.quad\t_shared\n_other:\n\t.quad\t1\n.zerofill __DATA,__bss,_zeros,48,3 ; @zeros\n'
                '.zerofill __DATA,__bss,"_some zeros",48,3\n\t.comm\t_shared,8,3\n')
        self.assertEqual(self.signed(text), {})
        self.assertEqual(self.text, text)

    def test_what_another_library_has_may_be_a_function(self):
        for name in ("_strlen", "__ZN1A1bEv", "__ZTV1A", "_table"):
            self.assertEqual(self.refused(f"{CONST}_data:\n\t.quad\t{name}\n"),
                             f"_data: a pointer to {name} of another source or library, which may be a function, "
                             "without a signature in __const")

    def test_notes_for_unwinders_are_taken_out(self):
        self.signed(f"{TEXT}_f:\n\t.cfi_startproc\n\t.cfi_b_key_frame\n\tpacibsp\n\t.cfi_negate_ra_state\n\tretab\n")
        self.assertEqual(self.text, f"{TEXT}_f:\n\t.cfi_startproc\n\tpacibsp\n\tretab\n")

    def test_the_frame_that_the_compiler_forgets(self):
        body = "\t.cfi_startproc\n\tstp\tx29, x30, [sp, #-16]!\n\tbl\t___cxa_begin_catch\n"
        self.signed(f"{TEXT}___clang_call_terminate:\n{body}_f:\n{body}")
        self.assertEqual(self.text, f"{TEXT}___clang_call_terminate:\n{body}_f:\n{body}".replace(
            "\tstp", "\tpacibsp\n\tstp", 1))

    def test_a_function_that_no_rule_signs(self):
        self.assertEqual(self.refused(f"{TEXT}_f:\n\tret\n{CONST}_table:\n\t.quad\t_f\n"),
                         "_table: a pointer to the function _f without a signature in __const")

    def test_a_block_on_the_stack(self):
        begin = f"{TEXT}_f:\n\tadrp\tx8, ___f_block_invoke@PAGE\n\tadd\tx8, x8, ___f_block_invoke@PAGEOFF\n"
        for code in ("\tret\n", "\tpacibsp\n\tretab\n", "\tadrp\tx9, ___f_block_invoke_2@PAGE\n\tpacia\tx8, x9\n"):
            self.assertEqual(self.refused(begin + code + "_g:\n\tpacia\tx8, x9\n"),
                             "_f: a block on the stack whose function nothing signs; give it to signedBlock")
        self.signed(begin + "\tpacia\tx8, x9\n\tret\n")
        # What signs another register, or with another key, signs something else.
        for code in ("\tpacia\tx10, x9\n", "\tpaciza\tx8\n", "\tpacib\tx8, x9\n"):
            self.refused(begin + code + "\tret\n")
        self.refused(begin + begin.removeprefix(f"{TEXT}_f:\n") + "\tpacia\tx8, x9\n")
        self.signed(begin.replace("add\tx8", "add\tx10") + "\tpacia\tx10, x9\n")

    def test_names_of_blocks_functions(self):
        for end in ("", "_2", ".12", "_2.12", ".llvm.123", ".cold.1", "_3.llvm.9"):
            for name in (f"___f_block_invoke{end}", f'"___-[A b]_block_invoke{end}"'):
                self.assertIn("a block on the stack", self.refused(
                    f"{TEXT}_f:\n\tadrp\tx8, {name}@PAGE\n\tadd\tx8, x8, {name}@PAGEOFF\n\tret\n"))
        self.signed(f"{TEXT}_f:\n\tadrp\tx8, _block_invoker@PAGE\n\tret\n")

    def test_variables_that_blocks_share(self):
        for name in ("___Block_byref_object_copy_", "___Block_byref_object_dispose_.4"):
            self.assertEqual(self.refused(f"{TEXT}_f:\n\tadrp\tx8, {name}@PAGE\n"),
                             "_f: a __block variable with helpers, which this compiler does not sign; do without it")

    def test_jumps_between_frames(self):
        for name in ("setjmp", "_setjmp", "sigsetjmp", "longjmp", "_longjmp", "siglongjmp"):
            self.assertEqual(self.refused(f"{TEXT}_f:\n\tbl\t_{name}\n"),
                             f"_f: {name}, whose saved addresses are not signed; do without it")
        self.signed(f"{TEXT}_f:\n\tbl\t_setjmper\n\tbl\t_my_setjmp\n")

    def test_sections_of_other_pointers(self):
        for name in ("__thread_vars", "__thread_ptrs", "__mod_term_func", "__init_offsets", "__interpose"):
            self.assertIn(f"({name}); do without it", self.refused(f"_f:\n\t.section\t__DATA,{name},regular\n"))

    def test_signed_pointers_of_other_forms(self):
        for target, reason in (("_f-8@AUTH(ia,0)", "a signed pointer to before its symbol: _f-8"),
                               ("(_f-8)@AUTH(ia,0)", "a signed pointer to before its symbol: (_f-8)"),
                               ("_f-_g@AUTH(ia,0)", "a signed pointer of an unknown form: _f-_g"),
                               ("_f@AUTH(ic,0)", "a pointer of an unknown form: _f@AUTH(ic,0)"),
                               ("_f@GOT", "a pointer of an unknown form: _f@GOT"),
                               ("_f@AUTH(ia,65536)", "a number of more than 16 bits: 65536")):
            self.assertEqual(self.refused(f"{CONST}_table:\n\t.quad\t{target}\n"), f"_table: {reason}")

    def test_what_goes_wrong_names_source_symbol_and_reason(self):
        folder = pathlib.Path(tempfile.mkdtemp())
        (folder / "device").mkdir()
        (folder / "device/a.mm.s").write_text(f"{TEXT}_f:\n\tbl\t_setjmp\n")
        (folder / "device/b.mm.s").write_text(f"{TEXT}_f:\n\tret\n")
        result = run(SCRIPTS / "arm64e/sign_assembly.py", folder, "device/a.mm", "device/b.mm")
        self.assertEqual((result.returncode, result.stderr),
                         (1, "sign_assembly.py: device/a.mm: _f: setjmp, whose saved addresses are not signed; do without it\n"))
        self.assertFalse((folder / "device/a.mm.signed.s").exists())
        self.assertEqual((folder / "device/b.mm.signed.s").read_text(), f"{TEXT}_f:\n\tret\n")
        result = run(SCRIPTS / "arm64e/sign_assembly.py", folder, "device/c.mm")
        self.assertEqual(result.returncode, 3)
        self.assertRegex(result.stderr, r"^sign_assembly.py: device/c.mm: .*No such file.*\n$")
        self.assertEqual(run(SCRIPTS / "arm64e/sign_assembly.py").returncode, 2)


class Memory(reading.Image):
    """Two segments for data and one for code, with nothing else of a library."""

    def __init__(self):  # pylint: disable=super-init-not-called
        self.data = bytearray(0x10000)
        self.segments = [Segment(0, "__TEXT", 0, 0x4000, 0, 0x4000, 5, []),
                         Segment(0, "__DATA", 0x4000, 0x4000, 0x4000, 0x4000, 3, []),
                         Segment(0, "__MORE", 0x8000, 0x4000, 0x8000, 0x4000, 3, [])]

    def symbol_before(self, address):
        return f"{address:#x}"

    def encoded(self, fixups):
        return chains.encode(self, {address: chains.Fixup(*fixup) for address, fixup in fixups.items()})


def target(name="_a", ordinal=1, flags=0, addend=0):
    return Target(ordinal, name, flags, addend)


NO_TARGETS = b"\xd0\x00"
IA = Signature("ia", False, 0)


class Chains(unittest.TestCase):
    def setUp(self):
        self.memory = Memory()

    def distance(self, address):
        return self.memory.word(address) >> 51 & 0x7FF

    def test_a_chain_leads_from_pointer_to_pointer_of_a_page(self):
        table = self.memory.encoded({0x4010: (0x1000, None), 0x4008: (0x2000, IA), 0x4FF8: (0x3000, None)})
        # One chain, which begins in segment 1 at 8.
        self.assertEqual(table, (NO_TARGETS + b"\x71\x08\xd1\x00").ljust(8, b"\0"))
        self.assertEqual(self.memory.word(0x4008), 1 << 63 | 1 << 51 | 0x2000)
        self.assertEqual(self.memory.word(0x4010), 0x1FD << 51 | 0x1000)
        self.assertEqual(self.memory.word(0x4FF8), 0x3000)

    def test_a_chain_ends_with_its_page(self):
        table = self.memory.encoded({0x4FF8: (1, None), 0x5000: (2, None), 0x6000: (3, None), 0x8000: (4, None)})
        self.assertEqual([self.distance(at) for at in (0x4FF8, 0x5000, 0x6000, 0x8000)], [0, 0, 0, 0])
        self.assertEqual(table, (NO_TARGETS + b"\x71\xf8\x1f\xd1\x71\x80\x20\xd1\x71\x80\x40\xd1\x72\x00\xd1\x00").ljust(24, b"\0"))

    def test_a_signed_pointer_is_a_distance_from_the_beginning(self):
        signature = Signature("da", True, 0xABCD)
        self.memory.encoded({0x4000: (0x1234, signature)})
        self.assertEqual(self.memory.word(0x4000), 1 << 63 | 2 << 49 | 1 << 48 | 0xABCD << 32 | 0x1234)

    def test_the_topmost_bits_of_other_pointers_are_kept(self):
        self.memory.encoded({0x4000: (0x80 << 56 | 0x1234, None), 0x4008: (0xFF << 56 | 1, None)})
        self.assertEqual(self.memory.word(0x4000) & (1 << 51) - 1, 0x80 << 43 | 0x1234)
        self.assertEqual(self.memory.word(0x4008), 0xFF << 43 | 1)

    def test_a_pointer_that_has_no_room(self):
        self.memory.encoded({0x4000: ((1 << 42) - 1, None)})
        for value in (1 << 42, 1 << 55):
            with self.assertRaisesRegex(Failure, "^0x4000: a pointer to 0x.*, which chains cannot hold$"):
                self.memory.encoded({0x4000: (value, None)})

    def test_symbols_are_counted_in_the_order_of_libraries_and_names(self):
        table = self.memory.encoded({0x4000: (target("_b", 2), None), 0x4008: (target("_a", 2), IA),
                                     0x4010: (target("_c", 1), None), 0x4018: (target("_b", 2), None)})
        self.assertEqual([self.memory.word(at) & 0xFFFF for at in range(0x4000, 0x4020, 8)], [2, 1, 0, 2])
        self.assertEqual([self.memory.word(at) >> 62 for at in range(0x4000, 0x4020, 8)], [1, 3, 1, 1])
        self.assertEqual(table[:len(table) - len(table) % 8].rstrip(b"\0"),
                         b"\xd0\x03\x11\x40_c\x00\x51\x90\x12\x40_a\x00\x90\x40_b\x00\x90\x71\x00\xd1")

    def test_addends_of_either_sign(self):
        table = self.memory.encoded({0x4000: (target(addend=-8), None), 0x4008: (target(addend=16), None),
                                     0x4010: (target(), None)})
        self.assertEqual([self.memory.word(at) & 0xFFFF for at in (0x4000, 0x4008, 0x4010)], [0, 2, 1])
        self.assertIn(b"\x11\x40_a\x00\x51\x60\x78\x90\x60\x00\x90\x60\x10\x90", table)

    def test_libraries_with_large_and_special_numbers(self):
        table = self.memory.encoded({0x4000: (target("_a", 16), None), 0x4008: (target("_b", -2), None),
                                     0x4010: (target("_c", 0), None), 0x4018: (target("_d", 300), None)})
        for part in (b"\x3e\x40_b\x00\x51\x90", b"\x30\x40_c\x00\x90", b"\x20\x10\x40_a\x00\x90", b"\x20\xac\x02\x40_d\x00\x90"):
            self.assertIn(part, table)

    def test_a_symbol_that_may_be_absent(self):
        self.assertIn(b"\x41_a\x00", self.memory.encoded({0x4000: (target(flags=1), None)}))
        with self.assertRaisesRegex(Failure, "^0x4000: a signed pointer to _a, which may be absent; do not import it weakly$"):
            self.memory.encoded({0x4000: (target(flags=1), IA)})

    def test_places_that_no_chain_reaches(self):
        for address, reason in ((0x4004, "is not aligned"), (0x1000, "in __TEXT, which is not for data")):
            with self.assertRaisesRegex(Failure, f"^{address:#x}: a pointer.*{reason}$"):
                self.memory.encoded({address: (1, None)})
        with self.assertRaisesRegex(Failure, "^0x20000: a pointer at 0x20000, outside of its segments$"):
            self.memory.encoded({0x20000: (1, None)})
        with self.assertRaisesRegex(Failure, "^0xbffc: a pointer at 0xbffc, where the file has nothing$"):
            self.memory.word(0xBFFC)

    def test_a_slot_of_a_personality_that_is_no_pointer(self):
        self.memory.section = lambda name: reading.Section(0, name, "__TEXT", 0x100, 0x40, 0x100, 0)
        struct.pack_into("<2I", self.memory.data, 0x10C, 0x20, 1)
        struct.pack_into("<I", self.memory.data, 0x120, 0x4010)
        with self.assertRaisesRegex(Failure, "^0x4010: a personality's slot that is no pointer$"):
            chains.sign_personalities(self.memory, {0x4008: chains.Fixup(0x1000, None)})
        fixups = {0x4010: chains.Fixup(0x1000, None)}
        chains.sign_personalities(self.memory, fixups)
        self.assertEqual(fixups[0x4010].signature, Signature("ia", True, 0))

    def test_what_is_wrong_knows_its_symbol(self):
        self.memory.symbol_before = lambda address: f"-[A b+c]+{address:#x}"
        self.assertEqual(self.memory.failure_at(8, "wrong").symbol, "-[A b+c]")
        self.assertIsNone(Memory().failure_at(8, "wrong").symbol)

    def test_more_symbols_than_can_be_counted(self):
        with self.assertRaisesRegex(Failure, "has 65536 symbols of other libraries"):
            chains.numbered({8 * index: chains.Fixup(target(f"_{index}"), None) for index in range(0x10000)})


class Tables(unittest.TestCase):
    """The linker's tables, as they are read."""

    def image(self, table, contents):
        image = Memory()
        image.table = lambda which: bytes(contents) if which == table else b""
        return image

    def rebases(self, *contents):
        return list(self.image(reading.REBASE, contents).rebases())

    def binds(self, *contents, table=reading.BIND):
        return list(self.image(table, contents).binds(table))

    def test_rebases_in_runs_and_with_gaps(self):
        self.assertEqual(self.rebases(0x11, 0x21, 0x08, 0x52, 0x41, 0x60, 0x02, 0x30, 0x10, 0x70, 0x08, 0x80, 0x02, 0x08, 0x00, 0x51),
                         [0x4008, 0x4010, 0x4020, 0x4028, 0x4040, 0x4050, 0x4060])

    def test_binds_with_all_that_they_have(self):
        name = b"_a\0"
        self.assertEqual(self.binds(0x11, 0x41, *name, 0x51, 0x60, 0x78, 0x71, 0x08, 0x90, 0xA0, 0x08, 0xB1, 0x3E, 0x80, 0x08, 0x60, 0x00,
                                    0xC0, 0x02, 0x08),
                         [(0x4008, target(flags=1, addend=-8)), (0x4010, target(flags=1, addend=-8)), (0x4020, target(flags=1, addend=-8)),
                          (0x4038, target(ordinal=-2, flags=1)), (0x4048, target(ordinal=-2, flags=1))])

    def test_a_zero_ends_one_table_and_an_entry_of_the_other(self):
        contents = (0x11, 0x40, *b"_a\0", 0x71, 0x00, 0x90, 0x00, 0x40, *b"_b\0", 0x90, 0x00)
        self.assertEqual(len(self.binds(*contents)), 1)
        self.assertEqual(len(self.binds(*contents, table=reading.LAZY_BIND)), 2)

    def test_what_does_not_fit(self):
        for work, reason in ((lambda: self.rebases(0x21), "rebases end within an entry"),
                             (lambda: self.rebases(0x12), "kind 2, which is no pointer's"),
                             (lambda: self.rebases(0xF0), "unknown operation 0xf0 among its rebases"),
                             (lambda: self.rebases(0x29, 0x00), "names a segment that there is not"),
                             (lambda: self.rebases(0x30, *[0x80] * 11), "more than 64 bits"),
                             (lambda: self.binds(0x40, *b"_a"), "binds end within a name"),
                             (lambda: self.binds(0x90), "without a symbol or a library"),
                             (lambda: self.binds(0xD0), "unknown operation 0xd0 among its binds")):
            with self.assertRaisesRegex(Failure, reason):
                work()

    def test_numbers_are_written_as_they_are_read(self):
        for value in (0, 1, 127, 128, 16383, 16384, 0xFFFFFFFF):
            self.assertEqual(reading.Reader(reading.number(value), "").number(), value)
        for value in (0, 1, 63, 64, -1, -64, -65, 8191, 8192, -8192, -8193, constant_for(IA)):
            self.assertEqual(reading.Reader(reading.signed_number(value), "").number(signed=True), value)
        self.assertEqual((reading.signed_number(-64), reading.signed_number(64)), (b"\x40", b"\xc0\x00"))


class LibrariesThatAreNone(unittest.TestCase):
    def failure(self, data):
        with self.assertRaises(Failure) as caught:
            reading.Image(data)
        return str(caught.exception)

    def test_each_is_one_line(self):
        header = struct.pack("<8I", 0xFEEDFACF, 0x0100000C, 0, 6, 0, 0, 0, 0)
        self.assertEqual(self.failure(b""), "is no Mach-O file")
        self.assertEqual(self.failure(bytes(64)), "is no Mach-O file for arm64")
        # Done already.
        self.assertEqual(self.failure(header[:8] + b"\2" + header[9:]), "is no Mach-O file for arm64")
        self.assertEqual(self.failure(header), "has no load command 0x2")
        with_command = bytearray(header + struct.pack("<2I", 0x80000034, 8))
        struct.pack_into("<2I", with_command, 16, 1, 8)
        self.assertEqual(self.failure(with_command), "has chained fix-ups; link it with -no_fixup_chains")
        struct.pack_into("<I", with_command, 36, 64)
        self.assertEqual(self.failure(with_command), "has a load command of a wrong length at 0x20")


if __name__ == "__main__":
    sys.exit(unittest.main())
