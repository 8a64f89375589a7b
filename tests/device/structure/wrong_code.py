"""Tests of what scripts/check_macho.py says of instructions: slices with one of them wrong, and bodies of functions."""

import struct

from slices import Changed
import check_instructions
import pointer_rules
from check_instructions import touches_link

NOTHING, RETURN = 0xD503201F, 0xD65F03C0
SIGN, SIGN_WITH_A = 0xD503237F, 0xD503233F  # pacibsp, paciasp
AUTHENTICATE, RETURN_TO, RETURN_TO_WITH_A = 0xD50323FF, 0xD65F0FFF, 0xD65F0BFF  # autibsp, retab, retaa
STORE, LOAD = 0xA9BF7BFD, 0xA8C17BFD  # stp x29, x30, [sp, #-16]!; ldp x29, x30, [sp], #16
JUMPS = (0xD61F0200, 0x14000010, 0xD61F0A1F, 0xD71F0A11, RETURN, RETURN_TO_WITH_A)  # br, b, braaz, braa, ret, retaa
UNSIGNED = "keeps its return address unsigned"
UNAUTHENTICATED = "returns to an address that nothing has authenticated"


def is_call(with_modifier):
    """Whether a word is blraa, or blraaz."""
    return lambda word: word & 0xFFFFFC00 == (0xD73F0800 if with_modifier else 0xD63F0800)


class Code(Changed):
    """Return addresses, calls and jumps, and what the code signs by itself."""

    def wrong(self, is_wanted, word, message):
        self.fails(self.with_instruction(is_wanted, word), "return addresses", message + r" in .+\+0x\w+;")

    def test_a_frame_that_is_not_signed(self):
        self.wrong(lambda word: word == SIGN, NOTHING, UNSIGNED)

    def test_a_frame_that_is_signed_with_another_key(self):
        self.wrong(lambda word: word == SIGN, SIGN_WITH_A, UNSIGNED)

    def test_a_frame_that_is_signed_too_late(self):
        def work(library, data):
            section = library.sections[("__TEXT", "__text")]
            words = list(struct.unpack_from(f"<{section.size // 4}I", data, section.offset))
            first = words.index(SIGN)
            store = next(index for index in range(first, len(words)) if touches_link(words[index], is_load=False))
            words[first:store + 1] = [*words[first + 1:store + 1], SIGN]
            struct.pack_into(f"<{len(words)}I", data, section.offset, *words)
        self.fails(work, "return addresses", UNSIGNED + r" in .+\+0x\w+;")

    def test_a_return_that_is_not_authenticated(self):
        for word in (RETURN, RETURN_TO_WITH_A):
            self.wrong(lambda found: found == RETURN_TO, word, UNAUTHENTICATED)

    def test_a_call_that_is_not_authenticated(self):
        self.wrong(is_call(True), lambda word: 0xD63F0000 | word & 0x3E0, "calls a pointer that nothing has authenticated")

    def test_a_jump_that_is_not_authenticated(self):
        self.wrong(is_call(True), lambda word: 0xD61F0000 | word & 0x3E0, "jumps to a pointer that nothing has authenticated")

    def test_calls_and_jumps_with_another_key(self):
        for with_modifier, text in ((True, "ib with a modifier"), (False, "ib")):
            self.wrong(is_call(with_modifier), lambda word: word | 0x400, f"authenticates what it calls with {text}")
            self.wrong(is_call(with_modifier), lambda word: (word | 0x400) & ~(1 << 21), f"authenticates what it calls with {text}")

    def test_addresses_that_the_code_does_not_sign(self):
        for name, wanted, text in (("block function", 0xDAC10000, "ia with a modifier"), ("function", 0xDAC123E0, "ia"),
                                   ("vtable pointer", 0xDAC12BE0, "da")):
            def is_wanted(word, wanted=wanted):
                return word & (0xFFFFFFE0 if wanted & 0x2000 else 0xFFFFFC00) == wanted
            with self.subTest(name):
                self.wrong(is_wanted, NOTHING, f"makes a {name} that is signed with nothing, not {text},")
                self.wrong(is_wanted, lambda word: word | 0x400, f"makes a {name} that is signed with (ib|db)( with a modifier)?, not {text},")

    def frame(self, *body):
        return list(check_instructions.frame_problems(list(body), check_instructions.FRAMES["ib"]))

    def test_frames_from_their_beginning_to_each_end(self):
        self.assertEqual(self.frame(SIGN, STORE, LOAD, RETURN_TO), [])
        self.assertEqual(self.frame(SIGN, STORE, LOAD, NOTHING, AUTHENTICATE, 0x14000010), [])
        self.assertEqual(self.frame(STORE, SIGN, LOAD, RETURN_TO), [(0, UNSIGNED)])
        # The end of another path does not serve.
        for jump in JUMPS:
            self.assertEqual(self.frame(SIGN, STORE, LOAD, jump, AUTHENTICATE, RETURN_TO), [(2, UNAUTHENTICATED)], hex(jump))

    def test_each_key_has_instructions_of_its_own(self):
        body = [SIGN_WITH_A, STORE, LOAD, RETURN_TO_WITH_A]
        self.assertEqual(list(check_instructions.frame_problems(body, check_instructions.FRAMES["ia"])), [])
        self.assertEqual(self.frame(*body), [(1, UNSIGNED), (2, UNAUTHENTICATED)])

    def test_addresses_are_followed_to_what_signs_them(self):
        rules = pointer_rules.read_rules()

        def unsigned(*body):
            return [(index, found) for index, _, found, _ in check_instructions.unsigned_address(
                0x4000, body, lambda address: {0x4100: "function", 0x5108: "vtable pointer"}.get(address), rules)]
        near = 0x10000808  # adr x8, 0x100 ahead
        page, rest = 0xB0000009, 0x91042128  # adrp x9, the next page; add x8, x9, #0x108
        self.assertEqual(unsigned(near, NOTHING, 0xDAC123E8), [])
        self.assertEqual(unsigned(near, 0xDAC123E9), [(0, None)])
        self.assertEqual(unsigned(near, 0xDAC127E8), [(0, ("ib", False))])
        self.assertEqual(unsigned(near, RETURN, 0xDAC123E8), [(0, None)])
        self.assertEqual(unsigned(near, near, 0xDAC123E8), [(0, None)])
        self.assertEqual(unsigned(page, NOTHING, rest, 0xDAC12BE8), [])
        self.assertEqual(unsigned(page, NOTHING, rest, 0xDAC123E8), [(2, ("ia", False))])
