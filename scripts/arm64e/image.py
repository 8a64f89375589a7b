"""The linked library as the passes read and change it: segments, sections, symbols, and the tables of
fix-ups that the linker writes for the loader. What does not fit raises Failure."""

import collections
import struct

SEGMENT, SYMTAB, DYSYMTAB, DYLD_INFO = 0x19, 0x2, 0xB, 0x80000022
FUNCTION_STARTS, DATA_IN_CODE, CODE_SIGNATURE = 0x26, 0x29, 0x1D
CHAINED_FIXUPS, EXPORTS_TRIE = 0x80000034, 0x80000033
LAZY_POINTERS, POINTERS = 7, 6  # kinds of sections
REBASE, BIND, WEAK_BIND, LAZY_BIND, EXPORT = range(5)  # the tables' order
POINTER = 1  # the only kind of fix-up there is
WORD = 1 << 64

# A symbol of another library. The ordinal is the library's number, the flags are the table's.
Target = collections.namedtuple("Target", "ordinal name flags addend")
WEAK_IMPORT = 1  # a flag: the symbol may be absent

Segment = collections.namedtuple("Segment", "at name address size offset file_size protection sections")
Section = collections.namedtuple("Section", "at name segment address size offset flags")


class Failure(Exception):
    """The library cannot be made into the slice; the text says why, in one line."""

    def __init__(self, text, symbol=None):
        super().__init__(text)
        self.symbol = symbol  # of what is wrong, where that is known


class Reader:
    """Numbers and texts of one table, which end where it ends."""

    def __init__(self, data, what):
        self.data, self.what, self.place = data, what, 0

    def __bool__(self):
        return self.place < len(self.data)

    def byte(self):
        if not self:
            raise Failure(f"{self.what} end within an entry")
        self.place += 1
        return self.data[self.place - 1]

    def number(self, signed=False):
        value = shift = 0
        while True:
            byte = self.byte()
            value |= (byte & 0x7F) << shift
            shift += 7
            if not byte & 0x80:
                return value - (1 << shift) if signed and byte & 0x40 else value
            if shift >= 70:
                raise Failure(f"{self.what} have a number of more than 64 bits")

    def text(self):
        end = self.data.find(b"\0", self.place)
        if end < 0:
            raise Failure(f"{self.what} end within a name")
        text = self.data[self.place:end].decode("utf-8", "replace")
        self.place = end + 1
        return text


def number(value):
    """As the tables have numbers without a sign."""
    out = bytearray()
    while True:
        value, byte = value >> 7, value & 0x7F
        out.append(byte | (0x80 if value else 0))
        if not value:
            return bytes(out)


def signed_number(value):
    out = bytearray()
    while True:
        value, byte = value >> 7, value & 0x7F
        if value in (0, -1) and bool(byte & 0x40) == (value == -1):
            return bytes([*out, byte])
        out.append(byte | 0x80)


class Image:
    def __init__(self, data):
        self.data = bytearray(data)
        if len(data) < 32:
            raise Failure("is no Mach-O file")
        magic, processor, subtype, _, count, size = self.unpack("<6I", 0)
        if (magic, processor, subtype) != (0xFEEDFACF, 0x0100000C, 0):
            raise Failure("is no Mach-O file for arm64")
        self.segments, self.commands = [], {}
        at, end = 32, 32 + size
        for _ in range(count):
            command, length = self.unpack("<2I", at)
            if length < 8 or at + length > end:
                raise Failure(f"has a load command of a wrong length at {at:#x}")
            if command == SEGMENT:
                self.segments.append(self.segment(at))
            elif command in (CHAINED_FIXUPS, EXPORTS_TRIE):
                raise Failure("has chained fix-ups; link it with -no_fixup_chains")
            self.commands.setdefault(command, at)
            at += length
        for command in (SYMTAB, DYSYMTAB, DYLD_INFO, CODE_SIGNATURE):
            if command not in self.commands:
                raise Failure(f"has no load command {command:#x}")
        if not self.segments or self.segments[-1].name != "__LINKEDIT":
            raise Failure("does not end with __LINKEDIT")

    def unpack(self, form, at):
        try:
            return struct.unpack_from(form, self.data, at)
        except struct.error:
            raise Failure(f"ends before {at:#x}") from None

    def pack(self, form, at, *values):
        struct.pack_into(form, self.data, at, *values)

    def segment(self, at):
        def text(raw):
            return raw.rstrip(b"\0").decode("latin-1")

        name, address, size, offset, file_size, _, protection, count, _ = self.unpack("<16s4Q4I", at + 8)
        sections = []
        for place in range(at + 72, at + 72 + 80 * count, 80):
            title, owner, start, length, where, _, _, _, flags = self.unpack("<16s16s2Q5I", place)
            sections.append(Section(place, text(title), text(owner), start, length, where, flags))
        return Segment(at, text(name), address, size, offset, file_size, protection, sections)

    @property
    def base(self):
        return self.segments[0].address

    def sections(self):
        return [section for segment in self.segments for section in segment.sections]

    def section(self, name):
        return next((section for section in self.sections() if section.name == name), None)

    def segment_index(self, address):
        for index, segment in enumerate(self.segments):
            if segment.address <= address < segment.address + segment.size:
                return index
        raise self.failure_at(address, f"a pointer at {address:#x}, outside of its segments")

    def offset_of(self, address):
        segment = self.segments[self.segment_index(address)]
        if address + 8 - segment.address > segment.file_size:
            raise self.failure_at(address, f"a pointer at {address:#x}, where the file has nothing")
        return segment.offset + address - segment.address

    def word(self, address):
        return self.unpack("<Q", self.offset_of(address))[0]

    def set_word(self, address, value):
        self.pack("<Q", self.offset_of(address), value)

    def failure_at(self, address, reason):
        place = self.symbol_before(address)
        return Failure(f"{place}: {reason}", place.rpartition("+")[0] or None)

    def symbol_before(self, address):
        """The name of what lies at the address, for messages; where names are stripped, the address."""
        start, count, text, _ = self.unpack("<4I", self.commands[SYMTAB] + 8)
        best, name = -1, None
        for place in range(start, start + 16 * count, 16):
            offset, kind, _, _, value = self.unpack("<I2BHQ", place)
            if kind & 0x0E == 0x0E and not kind & 0xE0 and best < value <= address:
                best, name = value, offset
        if name is None:
            return f"{address:#x}"
        end = self.data.index(b"\0", text + name)
        return f"{self.data[text + name:end].decode('utf-8', 'replace')}+{address - best:#x}"

    # The tables.

    def table(self, which):
        offset, size = self.unpack("<2I", self.commands[DYLD_INFO] + 8 + 8 * which)
        if offset + size > len(self.data):
            raise Failure("ends before its tables of fix-ups")
        return bytes(self.data[offset:offset + size])

    def address_in(self, segment, offset):
        if segment >= len(self.segments):
            raise Failure("has a table of fix-ups that names a segment that there is not")
        return self.segments[segment].address + offset

    def rebases(self):
        """The addresses of pointers to the library itself."""
        reader, address = Reader(self.table(REBASE), "rebases"), 0
        while reader:
            operation = reader.byte()
            code, small = operation & 0xF0, operation & 0x0F
            times = skip = 0
            if code == 0x00:
                return
            if code == 0x10:
                self.expect_pointer(small)
            elif code == 0x20:
                address = self.address_in(small, reader.number())
            elif code == 0x30:
                address += reader.number()
            elif code == 0x40:
                address += small * 8
            elif code == 0x50:
                times = small
            elif code == 0x60:
                times = reader.number()
            elif code == 0x70:
                times, skip = 1, reader.number()
            elif code == 0x80:
                times, skip = reader.number(), reader.number()
            else:
                raise Failure(f"has an unknown operation {operation:#x} among its rebases")
            for _ in range(times):
                yield address % WORD
                address += 8 + skip

    def binds(self, which):
        """(address, Target) of pointers to other libraries."""
        reader, address = Reader(self.table(which), "binds"), 0
        target = Target(None, None, 0, 0)
        while reader:
            operation = reader.byte()
            code, small = operation & 0xF0, operation & 0x0F
            times = skip = 0
            if code == 0x00:
                if which == LAZY_BIND:  # where it ends each entry
                    continue
                return
            if code == 0x10:
                target = target._replace(ordinal=small)
            elif code == 0x20:
                target = target._replace(ordinal=reader.number())
            elif code == 0x30:
                target = target._replace(ordinal=small - 16 if small else 0)
            elif code == 0x40:
                target = target._replace(flags=small, name=reader.text())
            elif code == 0x50:
                self.expect_pointer(small)
            elif code == 0x60:
                target = target._replace(addend=reader.number(signed=True))
            elif code == 0x70:
                address = self.address_in(small, reader.number())
            elif code == 0x80:
                address += reader.number()
            elif code in (0x90, 0xA0, 0xB0):
                times = 1
                skip = reader.number() if code == 0xA0 else small * 8 if code == 0xB0 else 0
            elif code == 0xC0:
                times, skip = reader.number(), reader.number()
            else:
                raise Failure(f"has an unknown operation {operation:#x} among its binds")
            for _ in range(times):
                if None in target:
                    raise Failure("has a bind without a symbol or a library")
                yield address % WORD, target
                address += 8 + skip

    @staticmethod
    def expect_pointer(kind):
        if kind != POINTER:
            raise Failure(f"has a fix-up of kind {kind}, which is no pointer's")
