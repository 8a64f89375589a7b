#!/usr/bin/env python3
"""Puts pointer authentication into clang's assembly for the phone, so that it lasts through the object
file: what the compiler signs becomes a sum (see payload.py), and what clang 19 leaves unsigned is signed
here. docs/developers/pointer-authentication.md has the kinds of pointers.

usage: sign_assembly.py OBJECTS SOURCE...

Of each source OBJECTS/<source>.s becomes OBJECTS/<source>.signed.s. What goes wrong names the source, the
symbol and the reason. Exit code 1 when something cannot be signed, 3 when a file cannot be read or written."""

import collections
import re
import sys

from payload import Signature, constant_for

POINTER = re.compile(r"^(\s*\.quad\s+)(.+?)\s*(?:;.*)?$")
SIGNED = re.compile(r"^(.+)@AUTH\((ia|ib|da|db),(\d+)(,addr)?\)$")
LABEL = re.compile(r'^("(?:[^"\\]|\\.)*"|[^\s:;#"]+):')
# Of variables that begin as zeros.
ZEROS = re.compile(r'^\s*\.(?:zerofill\s+\w+,\w+,|l?comm\s+)("(?:[^"\\]|\\.)*"|[^\s,]+)')
ADDRESS_MADE = re.compile(r'^\s*adrp\s+(x\d+), ("(?:[^"\\]|\\.)*"|[^\s@]+)@PAGE')
ADDRESS_ADDED = re.compile(r'^\s*add\s+(x\d+), (x\d+), ("(?:[^"\\]|\\.)*"|[^\s@]+)@PAGEOFF')
ADDRESS_SIGNED = re.compile(r"^\s*pacia\s+(x\d+), x\d+")
SYMBOL = re.compile(r'^\(?("(?:[^"\\]|\\.)*"|[^\s()+-]+)(?:([+-])\d+)?\)?$')
SECTION = re.compile(r"^\s*\.section\s+(\w+),(\w+)(?:,([\w,]+))?")
# Unwinders of the phone know by the processor that return addresses are signed. With these lines the
# assembler would describe each frame in DWARF instead of in the compact form.
FRAME_NOTES = (".cfi_b_key_frame", ".cfi_negate_ra_state")

# The compiler makes this one by itself and forgets its return address, to which it never goes.
UNSIGNED_FRAME = "___clang_call_terminate"
SAVES_RETURN_ADDRESS = re.compile(r"^\s*stp\s+x29, x30, \[sp")
SIGN_RETURN_ADDRESS = "\tpacibsp\n"

# What the compiler puts into data without a signature, by the label that it stands behind and its place
# among the pointers there: (label, place, places until the next such one; 0: once).
METHOD = Signature("ia", True, 0)
BLOCK = Signature("ia", True, 0)
INITIALISER = Signature("ia", False, 0)
TYPE_INFO = Signature("da", False, 0)
METHOD_LISTS = re.compile(r"^__OBJC_\$_(CATEGORY_)?(INSTANCE|CLASS)_METHODS_")
GLOBAL_BLOCKS = re.compile(r"^___block_literal_global")
BLOCK_HELPER = re.compile(r"^___(copy|destroy)_helper_block_")
BLOCK_FUNCTION = re.compile(r"_block_invoke(_\d+)?(\.\w+)*$")
TYPE_INFO_TABLE = "_objc_ehtype_vtable"
LOCAL = ("L", "l_")  # names that no other source knows
# Of what other libraries and sources have, these are no functions.
OBJECTS = ("_OBJC_CLASS_$_", "_OBJC_METACLASS_$_", "_OBJC_EHTYPE_$_", "_OBJC_IVAR_$_", "__NSConcrete",
           "___CFConstantStringClassReference", "__objc_empty_", "__ZTI", "__ZTS")

# Sections whose pointers the loader reads by rules that are none of ours.
REFUSED_SECTIONS = {"__thread_vars": "a variable of each thread", "__thread_ptrs": "a variable of each thread",
                    "__mod_term_func": "a function for the end of the process",
                    "__init_offsets": "constructors in a form that iOS 12 does not know",
                    "__interpose": "a replaced function"}
REFUSED_SYMBOLS = {"___Block_byref_object_copy_": "a __block variable with helpers, which this compiler does not sign",
                   "___Block_byref_object_dispose_": "a __block variable with helpers, which this compiler does not sign",
                   **{f"_{name}": f"{name}, whose saved addresses are not signed"
                      for name in ("setjmp", "_setjmp", "sigsetjmp", "longjmp", "_longjmp", "siglongjmp")}}
REFUSED = re.compile(r'(?<![\w$])"?(' + "|".join(re.escape(name) for name in REFUSED_SYMBOLS)
                     + r')(?:\d*)"?(?![\w$])')


class Unsigned(Exception):
    """Something that would be left without a signature; the text says in which symbol, and what."""


def plain(name):
    return name.strip('"')


def code_labels(lines):
    """The symbols of functions that are defined here."""
    found, is_code = set(), True
    for line in lines:
        section = SECTION.match(line)
        if section:
            is_code = "pure_instructions" in (section[3] or "")
        label = LABEL.match(line)
        if label and is_code and not label[1].startswith(LOCAL):
            found.add(plain(label[1]))
    return found


def defined_here(lines):
    """The symbols of functions and data of this source."""
    found = set()
    for line in lines:
        label = LABEL.match(line) or ZEROS.match(line)
        if label:
            found.add(plain(label[1]))
    return found


class Assembly:
    """Goes through the lines once; `counts` says how many pointers of each kind were signed."""

    def __init__(self, lines):
        self.lines = lines
        self.functions = code_labels(lines)
        self.defined = defined_here(lines)
        self.counts = collections.Counter()
        self.section = self.symbol = ""
        self.place = 0  # among the pointers behind the symbol
        # In the function that is read: registers with the address of a block's function that nothing has signed.
        self.block_functions = set()

    def refuse(self, reason):
        raise Unsigned(f"{self.symbol or 'before the first symbol'}: {reason}")

    def signed_lines(self):
        for line in self.lines:
            self.enter(line)
            if line.strip() in FRAME_NOTES:
                continue
            if self.symbol == UNSIGNED_FRAME and SAVES_RETURN_ADDRESS.match(line):
                yield SIGN_RETURN_ADDRESS
            self.look_for_what_is_refused(line)
            pointer = POINTER.match(line)
            yield self.signed(pointer[1], pointer[2], line) if pointer else line
        self.leave_symbol()

    def enter(self, line):
        """Follows sections and symbols."""
        section = SECTION.match(line)
        if section:
            self.section = section[2]
            if self.section in REFUSED_SECTIONS:
                self.refuse(f"{REFUSED_SECTIONS[self.section]} ({self.section}); do without it")
        label = LABEL.match(line)
        if label and not label[1].startswith("L"):
            self.leave_symbol()
            self.symbol, self.place = plain(label[1]), 0

    def leave_symbol(self):
        if self.block_functions:
            self.refuse_block()
        self.block_functions = set()

    def refuse_block(self):
        self.refuse("a block on the stack whose function nothing signs; give it to signedBlock")

    def look_for_what_is_refused(self, line):
        code = line.split(";")[0]
        refused = REFUSED.search(code)
        if refused and not code.lstrip().startswith("."):
            self.refuse(f"{REFUSED_SYMBOLS[refused[1]]}; do without it")
        self.follow_block_functions(code)

    def follow_block_functions(self, code):
        made, added, signed = (form.match(code) for form in (ADDRESS_MADE, ADDRESS_ADDED, ADDRESS_SIGNED))
        if made:
            if made[1] in self.block_functions:
                self.refuse_block()
            if BLOCK_FUNCTION.search(plain(made[2])):
                self.block_functions.add(made[1])
        elif added and added[2] in self.block_functions:
            self.block_functions.remove(added[2])
            self.block_functions.add(added[1])
        elif signed:
            self.block_functions.discard(signed[1])

    def signed(self, before, target, line):
        self.place += 1
        by_compiler = SIGNED.match(target)
        if by_compiler:
            target = by_compiler[1]
            signature = Signature(by_compiler[2], bool(by_compiler[4]), int(by_compiler[3]))
            kind = "compiler's"
        elif "@" in target:
            self.refuse(f"a pointer of an unknown form: {target}")
        else:
            kind, signature = self.rule_for(target)
        if signature is None:
            return line
        if signature.discriminator > 0xFFFF:
            self.refuse(f"a number of more than 16 bits: {signature.discriminator}")
        symbol = SYMBOL.match(target)
        if symbol is None:
            self.refuse(f"a signed pointer of an unknown form: {target}")
        if symbol[2] == "-":
            # It would borrow from the bits that say how it is signed.
            self.refuse(f"a signed pointer to before its symbol: {target}")
        self.counts[kind] += 1
        return f"{before}{target.strip('()')}{constant_for(signature):+d}\n"

    def rule_for(self, target):
        """(what it is, its Signature); the latter is None for what stays as it is."""
        symbol = SYMBOL.match(target)
        name = plain(symbol[1]) if symbol else ""
        if not name or name[0].isdigit():
            return "number", None
        if self.section == "__mod_init_func":
            return "initialisers", INITIALISER
        if METHOD_LISTS.match(self.symbol) and self.place % 3 == 0:
            return "methods", METHOD
        if GLOBAL_BLOCKS.match(self.symbol) and self.place == 2:
            return "global blocks", BLOCK
        if BLOCK_HELPER.match(name):
            return "block helpers", BLOCK
        if name == TYPE_INFO_TABLE:
            return "exception types", TYPE_INFO
        if name in self.functions:
            self.refuse(f"a pointer to the function {name} without a signature in {self.section or 'its section'}")
        if name not in self.defined and not name.startswith((*OBJECTS, *LOCAL)):
            self.refuse(f"a pointer to {name} of another source or library, which may be a function, without a signature in "
                        f"{self.section or 'its section'}")
        return "data", None


def main():
    if len(sys.argv) < 3:
        print(__doc__.split("\n\n")[1], file=sys.stderr)
        return 2
    objects, *sources = sys.argv[1:]
    status = 0
    for source in sources:
        try:
            with open(f"{objects}/{source}.s", encoding="utf-8") as file:
                lines = file.readlines()
            signed = list(Assembly(lines).signed_lines())
            with open(f"{objects}/{source}.signed.s", "w", encoding="utf-8") as file:
                file.writelines(signed)
        except Unsigned as problem:
            print(f"sign_assembly.py: {source}: {problem}", file=sys.stderr)
            status = max(status, 1)
        except (OSError, UnicodeDecodeError) as error:
            print(f"sign_assembly.py: {source}: {error}", file=sys.stderr)
            status = 3
    return status


if __name__ == "__main__":
    sys.exit(main())
