#!/usr/bin/env python3
"""How pointers are signed on processors that authenticate them, as the tables of the documents have it
(docs/developers/pointer-authentication.md), for the checker of the library and for the emulator.

usage: pointer_rules.py --header [DOCUMENT]

prints the rules for the emulator, as a header in C++. Exit code 3 when the document cannot be read."""

import collections
import pathlib
import re
import sys

DOCUMENT = pathlib.Path(__file__).resolve().parent.parent / "docs/developers/pointer-authentication.md"
KEYS = ("ia", "ib", "da", "db")  # in the order of their numbers
OF_ITS_NAME = None  # the number is that of the virtual function's name
KINDS = ("method", "initialiser", "function", "block function", "block helper", "vtable pointer",
         "vtable entry", "type info", "personality", "return address")

# `number` is 0, or OF_ITS_NAME; the stack pointer of a return address is no number of ours.
Rule = collections.namedtuple("Rule", "key address number")


class BadTable(Exception):
    """A table of the document is not what it should be; the text says what."""


def rows(text, *titles):
    """The cells of the table whose columns begin with these titles."""
    found = None
    for line in text.splitlines():
        cells = [cell.strip().strip("`") for cell in line.strip().strip("|").split("|")]
        if found is None:
            if line.startswith("|") and tuple(cells[:len(titles)]) == titles:
                found = []
        elif not line.startswith("|"):
            return found
        elif not set(cells[0]) <= set("-: "):
            found.append(cells[:len(titles)])
    if not found:
        raise BadTable(f"has no table of {', '.join(titles)}")
    return found


def read_rules(path=DOCUMENT):
    """{kind: Rule}, of every kind."""
    rules = {}
    for kind, key, address, number in rows(pathlib.Path(path).read_text(), "Kind", "Key", "Address", "Number"):
        if key not in KEYS or address not in ("yes", "no") or kind in rules or kind not in KINDS:
            raise BadTable(f"has a row that is no rule: {kind} {key} {address} {number}")
        if number not in ("0", "of its name", "stack pointer"):
            raise BadTable(f"has no such number: {number}")
        if kind == "return address" and key not in ("ia", "ib"):
            raise BadTable(f"signs return addresses with {key}, which is no key of instructions")
        rules[kind] = Rule(key, address == "yes", OF_ITS_NAME if number == "of its name" else 0)
    missing = [kind for kind in KINDS if kind not in rules]
    if missing:
        raise BadTable(f"has no rule for {', '.join(missing)}")
    return rules


def known_numbers(path=DOCUMENT):
    """{mangled name: number} of the virtual functions that the platform's own sources write down."""
    return {name: int(number) for name, number in rows(pathlib.Path(path).read_text(), "Virtual function", "Its number")}


def rotated(value, bits):
    return (value << bits | value >> 64 - bits) & (1 << 64) - 1


def sip_round(state):
    a, b, c, d = state
    a, c = (a + b) % (1 << 64), (c + d) % (1 << 64)
    b, d = rotated(b, 13) ^ a, rotated(d, 16) ^ c
    a, c = (rotated(a, 32) + d) % (1 << 64), (c + b) % (1 << 64)
    d, b = rotated(d, 21) ^ a, rotated(b, 17) ^ c
    return a, b, rotated(c, 32), d


def sip_hash(data, key):
    """SipHash-2-4, of 64 bits."""
    low, high = (int.from_bytes(key[start:start + 8], "little") for start in (0, 8))
    state = (low ^ 0x736F6D6570736575, high ^ 0x646F72616E646F6D, low ^ 0x6C7967656E657261, high ^ 0x7465646279746573)
    padded = data + bytes(-(len(data) + 1) % 8) + bytes([len(data) & 0xFF])
    for start in range(0, len(padded), 8):
        word = int.from_bytes(padded[start:start + 8], "little")
        a, b, c, d = state
        state = sip_round(sip_round((a, b, c, d ^ word)))
        state = (state[0] ^ word, *state[1:])
    state = (*state[:2], state[2] ^ 0xFF, state[3])
    for _ in range(4):
        state = sip_round(state)
    return state[0] ^ state[1] ^ state[2] ^ state[3]


# The key is every compiler's.
NUMBER_KEY = bytes.fromhex("b5d4c9eb79104a796fec8b1b428781d4")


def number_of(name):
    """The number that a virtual function's mangled name stands for: 1 to 65535."""
    return sip_hash(name.encode(), NUMBER_KEY) % 0xFFFF + 1


def camel_case(kind):
    first, *rest = kind.split(" ")
    return first + "".join(word.capitalize() for word in rest)


def header(rules, numbers):
    lines = ["// Made by scripts/pointer_rules.py from docs/developers/pointer-authentication.md.", "#pragma once", "",
             "#include <cstdint>", "", "namespace velmoranth::emulator::pac {", "",
             "enum class Key : std::uint8_t { " + ", ".join(KEYS) + " };", "",
             "// `number` is 0 where it is of the name of a virtual function.",
             "struct Rule {", "    const char* name;", "    Key key;", "    bool address;",
             "    std::uint16_t number;", "};", "",
             "enum class Kind : std::uint8_t { " + ", ".join(map(camel_case, rules)) + " };", "",
             f"inline constexpr Rule kRules[{len(rules)}] = {{"]
    lines += [f'    {{"{kind}", Key::{rule.key}, {str(rule.address).lower()}, {rule.number or 0}}},'
              for kind, rule in rules.items()]
    lines += ["};", "", "// Numbers of virtual functions' names.", "struct Number {", "    const char* name;",
              "    std::uint16_t number;", "};", "", f"inline constexpr Number kNumbers[{len(numbers)}] = {{"]
    lines += [f'    {{"{name}", {number_of(name)}}},' for name in numbers]
    return "\n".join([*lines, "};", "", "}  // namespace velmoranth::emulator::pac", ""])


# What the C++ library calls by itself: functions of our objects' vtables.
CALLED_BY_THE_LIBRARY = ("_ZNSt3__114__shared_count16__on_zero_sharedEv",
                         "_ZNSt3__119__shared_weak_count21__on_zero_shared_weakEv",
                         "_ZNKSt9exception4whatEv")


def main():
    if sys.argv[1:2] != ["--header"] or len(sys.argv) > 3:
        print(__doc__.split("\n\n")[1], file=sys.stderr)
        return 2
    path = sys.argv[2] if len(sys.argv) == 3 else DOCUMENT
    try:
        print(header(read_rules(path), CALLED_BY_THE_LIBRARY), end="")
    except (BadTable, OSError, ValueError) as error:
        print(f"pointer_rules.py: {path}: {error}", file=sys.stderr)
        return 3
    return 0


if __name__ == "__main__":
    sys.exit(main())
