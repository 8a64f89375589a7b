"""Reads the slice for arm64e: as macho.py, with the pointers in chains, as the loaders of iOS 12 and 13
read them. A chain leads from a pointer of a page to the next; a pointer says in its bits what it becomes
and how it is signed."""

import collections

from macho import BadFile, MachO, Bind
from pointer_rules import KEYS, Rule

PAGE = 0x1000
DISTANCE = 51  # where a pointer has the distance to the next one, in words
# A symbol of another library; the ordinal is that library's.
Target = collections.namedtuple("Target", "ordinal symbol addend flags")
# `target` is an address here or a Target, `rule` what it is signed by, or None.
Pointer = collections.namedtuple("Pointer", "target rule")


class Slice(MachO):
    def __init__(self, data):
        super().__init__(data)
        self.chain_problems = []  # of (what is wrong, the address or None)
        self.targets = []
        self.pages = []  # of (segment, page), one for each chain
        self.pointers = {}  # by address
        self.read_chains()

    def word(self, address):
        pointer = self.pointers.get(address)
        if pointer is None:
            return super().word(address)
        return 0 if isinstance(pointer.target, Target) else pointer.target

    def binds(self):
        return [Bind(address, pointer.target.symbol, pointer.target.ordinal)
                for address, pointer in self.pointers.items() if isinstance(pointer.target, Target)]

    def wrong(self, text, address=None):
        self.chain_problems.append((text, address))

    def read_chains(self):
        info = self.dyld_info()
        for table in ("rebase", "weak", "lazy"):
            if info[table][1]:
                self.wrong(f"has a table of {table} fix-ups beside its chains")
        place, size = info["bind"]
        self.bytes(place, size)
        end = place + size
        ordinal = symbol = kind = announced = start = None
        addend = flags = 0
        while place < end:
            operation, small = self.data[place], self.data[place] & 0xF
            place += 1
            if operation == 0x00:
                break
            if operation & 0xF0 == 0x10:
                ordinal = small
            elif operation == 0x20:
                ordinal, place = self.uleb(place, end)
            elif operation & 0xF0 == 0x30:
                ordinal = small - 16 if small else 0
            elif operation & 0xF0 == 0x40:
                symbol, flags = self.string(place, end), small
                place += len(symbol) + 1
            elif operation & 0xF0 == 0x50:
                kind = small
            elif operation == 0x60:
                addend, place = self.sleb(place, end)
            elif operation & 0xF0 == 0x70:
                offset, place = self.uleb(place, end)
                start = small, offset
            elif operation == 0x90:
                if ordinal is None or symbol is None or kind != 1:
                    self.wrong("has a symbol of another library without its name, library or kind")
                self.targets.append(Target(ordinal or 0, symbol or "", addend, flags))
            elif operation == 0xD0:
                announced, place = self.uleb(place, end)
            elif operation == 0xD1:
                self.read_chain(start)
            else:
                raise BadFile(f"has an operation {operation:#x} that no loader of arm64e knows")
        if announced is None or not len(self.targets) <= announced <= 0xFFFF:
            self.wrong(f"announces {announced} symbols of other libraries, and has {len(self.targets)}")

    def sleb(self, place, end):
        value, after = self.uleb(place, end)
        bits = 7 * (after - place)
        return (value - (1 << bits) if bits < 64 and value >> bits - 1 & 1 else
                value - (1 << 64) if value >> 63 else value), after

    def read_chain(self, start):
        if start is None or start[0] >= len(self.segments):
            raise BadFile("has a chain that begins nowhere")
        segment, offset = self.segments[start[0]], start[1]
        page = start[0], offset // PAGE
        if segment.protection & 6 != 2:
            self.wrong(f"has a chain in {segment.name}, which is not for data")
        if page in self.pages:
            self.wrong(f"has two chains in a page of {segment.name}")
        elif self.pages and page < self.pages[-1]:
            self.wrong(f"has its chains in {segment.name} out of order")
        self.pages.append(page)
        last = segment.address + offset
        while True:
            if offset // PAGE != page[1] or offset % 8 or offset + 8 > segment.size:
                self.wrong("has a chain that leaves its page behind that", last)
                return
            last = segment.address + offset
            distance = self.read_pointer(last)
            if distance == 0:
                return
            offset += 8 * distance

    def read_pointer(self, address):
        """Gives the distance to the next one, in words."""
        raw = super().word(address)
        target, rule, fits = self.meaning(raw)
        if target is None:
            self.wrong(f"has a pointer to symbol {raw & 0xFFFF}, of {len(self.targets)},", address)
            return 0
        if not fits:
            self.wrong("has bits without a meaning in its pointer", address)
        self.pointers[address] = Pointer(target, rule)
        return raw >> DISTANCE & 0x7FF

    def meaning(self, raw):
        """(what a pointer of these bits becomes, how it is signed, whether all of its bits have a meaning). The first
        is None for a symbol that there is not."""
        is_signed, is_bound = raw >> 63, raw >> 62 & 1
        rule = Rule(KEYS[raw >> 49 & 3], bool(raw >> 48 & 1), raw >> 32 & 0xFFFF) if is_signed else None
        if is_bound:
            fits = not (raw >> 16 & 0xFFFF or not is_signed and raw >> 32 & 0x7FFFF)
            target = self.targets[raw & 0xFFFF] if raw & 0xFFFF < len(self.targets) else None
            return target, rule, fits and target is not None
        if is_signed:
            return self.segments[0].address + (raw & 0xFFFFFFFF), rule, True
        # The topmost 8 bits, and 43 with a sign.
        low = raw & (1 << 43) - 1
        return (raw >> 43 & 0xFF) << 56 | (low - (1 << 43) if low >> 42 else low) & (1 << 56) - 1, None, True
