"""Reads a Mach-O dynamic library: what scripts/check_macho.py looks at, and no more. The file is taken
as hostile: every offset, length and count is held against it before use, and what does not fit raises
BadFile with one line that says where."""

import collections
import hashlib
import struct

MAGIC_64 = 0xFEEDFACF
FAT_MAGICS = (b"\xca\xfe\xba\xbe", b"\xca\xfe\xba\xbf")
CPU_ARM64 = 0x0100000C
SUBTYPE_ALL = 0
SUBTYPE_ARM64E = 2
TYPE_DYLIB = 6
PLATFORM_IOS = 2

SEGMENT_64 = 0x19
SYMTAB = 0x2
ID_DYLIB = 0xD
LOAD_DYLIB = 0xC
OTHER_DYLIBS = {0x80000018: "weak", 0x8000001F: "re-exported", 0x20: "lazy", 0x80000023: "upward"}
DYLD_INFO = 0x80000022
CHAINED_FIXUPS = 0x80000034
EXPORTS_TRIE = 0x80000033
BUILD_VERSION = 0x32
VERSION_MIN_IOS = 0x25
CODE_SIGNATURE = 0x1D
FUNCTION_STARTS = 0x26
DATA_IN_CODE = 0x29
DYSYMTAB = 0xB

COMMAND_NAMES = {0x2: "SYMTAB", 0xB: "DYSYMTAB", 0xC: "LOAD_DYLIB", 0xD: "ID_DYLIB",
                 0x19: "SEGMENT_64", 0x1B: "UUID", 0x1D: "CODE_SIGNATURE", 0x26: "FUNCTION_STARTS",
                 0x29: "DATA_IN_CODE", 0x2A: "SOURCE_VERSION", 0x2C: "ENCRYPTION_INFO_64",
                 0x25: "VERSION_MIN_IPHONEOS", 0x32: "BUILD_VERSION", DYLD_INFO: "DYLD_INFO_ONLY",
                 CHAINED_FIXUPS: "DYLD_CHAINED_FIXUPS", EXPORTS_TRIE: "DYLD_EXPORTS_TRIE"}

Segment = collections.namedtuple("Segment", "name address size offset file_size protection")
Section = collections.namedtuple("Section", "address size offset kind attributes")
Class = collections.namedtuple("Class", "name methods class_methods")
Bind = collections.namedtuple("Bind", "address symbol ordinal")
Signature = collections.namedtuple("Signature", "flags identifier sha256 pages_match covers_file")

ZERO_FILL = (0x1, 0xC, 0x12)
WORD = 1 << 64


class BadFile(Exception):
    """The file is not what it should be; the text says what, in one line."""


def version_text(packed):
    return f"{packed >> 16}.{packed >> 8 & 0xFF}.{packed & 0xFF}"


class MachO:
    def __init__(self, data):
        self.data = data
        if data[:4] in FAT_MAGICS:
            raise BadFile("holds several architectures")
        if len(data) < 32 or self.unpack("<I", 0)[0] != MAGIC_64:
            raise BadFile("is no Mach-O file of 64 bits")
        _, self.cpu, subtype, self.file_type, count, size, self.flags, _ = self.unpack("<8I", 0)
        self.subtype = subtype & 0xFFFFFF
        self.capabilities = subtype >> 24
        self.segments, self.sections, self.dylibs, self.other_dylibs = [], {}, [], []
        self.compatibility_versions = []  # one for each of the dylibs
        self.commands = []
        self.read_commands(count, size)

    # The file's bytes.

    def bytes(self, offset, size):
        if offset < 0 or size < 0 or offset + size > len(self.data):
            raise BadFile(f"ends before {size} bytes at {offset:#x}")
        return self.data[offset:offset + size]

    def unpack(self, form, offset):
        return struct.unpack(form, self.bytes(offset, struct.calcsize(form)))

    def string(self, offset, end=None):
        end = len(self.data) if end is None else min(end, len(self.data))
        stop = self.data.find(b"\0", offset, end) if 0 <= offset < end else -1
        if stop < 0:
            raise BadFile(f"has a string without an end at {offset:#x}")
        # Names are ASCII; in this coding a character is a byte, whatever stands there.
        return self.data[offset:stop].decode("latin-1")

    def uleb(self, offset, end):
        value = shift = 0
        while offset < min(end, len(self.data)) and shift < 70:
            byte = self.data[offset]
            offset += 1
            value |= (byte & 0x7F) << shift
            shift += 7
            if byte < 0x80:
                return value % WORD, offset
        raise BadFile(f"has a number without an end at {offset:#x}")

    # Load commands.

    def read_commands(self, count, size):
        offset, end = 32, 32 + size
        self.bytes(32, size)
        for _ in range(count):
            if offset + 8 > end:
                raise BadFile("has more load commands than room for them")
            command, length = self.unpack("<2I", offset)
            if length < 8 or length % 8 or offset + length > end:
                raise BadFile(f"has a load command of a wrong length at {offset:#x}")
            self.commands.append((command, offset, length))
            if command == SEGMENT_64:
                self.read_segment(offset, length)
            elif command == LOAD_DYLIB or command in OTHER_DYLIBS:
                self.read_dylib(command, offset, length)
            offset += length

    def read_segment(self, offset, length):
        def text(raw):
            return raw.rstrip(b"\0").decode("latin-1")

        if length < 72:
            raise BadFile(f"has a segment without its fields at {offset:#x}")
        segment = Segment(text(self.bytes(offset + 8, 16)), *self.unpack("<4Q", offset + 24),
                          *self.unpack("<I", offset + 60))
        self.bytes(segment.offset, segment.file_size)
        self.segments.append(segment)
        count, = self.unpack("<I", offset + 64)
        if 72 + count * 80 > length:
            raise BadFile(f"has more sections than room for them in {segment.name}")
        for place in range(offset + 72, offset + 72 + count * 80, 80):
            key = text(self.bytes(place + 16, 16)), text(self.bytes(place, 16))
            address, size, start = self.unpack("<2QI", place + 32)
            flags, = self.unpack("<I", place + 64)
            kind = flags & 0xFF
            if kind not in ZERO_FILL:
                self.bytes(start, size)
            self.sections[key] = Section(address, size, start, kind, flags >> 8)

    def read_dylib(self, command, offset, length):
        if length < 24:
            raise BadFile(f"has a library without its fields at {offset:#x}")
        name = self.dylib_name(offset, length)
        self.dylibs.append(name)
        self.compatibility_versions.append(version_text(*self.unpack("<I", offset + 20)))
        if command in OTHER_DYLIBS:
            self.other_dylibs.append((OTHER_DYLIBS[command], name))

    def dylib_name(self, offset, length):
        start, = self.unpack("<I", offset + 8)
        return self.string(offset + start, offset + length)

    def all_of(self, command):
        return [(offset, length) for kind, offset, length in self.commands if kind == command]

    def the_one(self, command):
        found = self.all_of(command)
        if len(found) != 1:
            name = COMMAND_NAMES.get(command, hex(command))
            raise BadFile(f"has {len(found)} load commands {name}, not one")
        return found[0]

    def install_name(self):
        return self.dylib_name(*self.the_one(ID_DYLIB))

    def platform_and_minimum(self):
        """(platform, major, minor); iOS also from the older command that says no platform."""
        if self.all_of(VERSION_MIN_IOS):
            platform, version = PLATFORM_IOS, self.unpack("<I", self.the_one(VERSION_MIN_IOS)[0] + 8)[0]
        else:
            platform, version = self.unpack("<2I", self.the_one(BUILD_VERSION)[0] + 8)
        return platform, version >> 16, version >> 8 & 0xFF

    # Memory, as the file says it will be.

    def offset_of(self, address):
        for segment in self.segments:
            if segment.address <= address < segment.address + segment.file_size:
                return segment.offset + address - segment.address
        raise BadFile(f"points to {address:#x}, where it has nothing")

    def word(self, address):
        return self.unpack("<Q", self.offset_of(address))[0]

    def words(self, segment, section):
        """The pointers of a section, [] when there is none."""
        found = self.sections.get((segment, section))
        if found is None:
            return []
        return [self.word(address) for address in range(found.address, found.address + found.size // 8 * 8, 8)]

    def contents(self, segment, section):
        found = self.sections.get((segment, section))
        return b"" if found is None else self.bytes(found.offset, found.size)

    def strings(self):
        """The texts of the sections that hold C strings, selectors' names among them."""
        found = set()
        for section in self.sections.values():
            if section.kind == 2:
                raw = self.bytes(section.offset, section.size)
                found.update(part.decode("latin-1") for part in raw.split(b"\0"))
        return found

    # Symbols.

    def symbols(self):
        """(names by address of what is defined, (name, ordinal of its library) of what is not)."""
        offset, _ = self.the_one(SYMTAB)
        start, count, text, size = self.unpack("<4I", offset + 8)
        self.bytes(start, count * 16)
        self.bytes(text, size)
        defined, undefined = collections.defaultdict(list), []
        for place in range(start, start + count * 16, 16):
            name_offset, kind, _, description, value = self.unpack("<IBBHQ", place)
            name = self.string(text + name_offset, text + size)
            if kind & 0xE0:
                continue  # a debugger's
            if kind & 0x0E:
                defined[value].append(name)
            else:
                undefined.append((name, description >> 8))
        return defined, undefined

    def dyld_info(self):
        offset, _ = self.the_one(DYLD_INFO)
        fields = self.unpack("<10I", offset + 8)
        names = ("rebase", "bind", "weak", "lazy", "exports")
        return {name: (fields[2 * i], fields[2 * i + 1]) for i, name in enumerate(names)}

    def exports(self):
        start, size = self.dyld_info()["exports"]
        self.bytes(start, size)
        end, found, todo, seen = start + size, [], [(0, "")], set()
        while todo and size:
            node, prefix = todo.pop()
            if node in seen:
                raise BadFile("has a table of exports that leads in a circle")
            seen.add(node)
            terminal, place = self.uleb(start + node, end)
            if terminal:
                found.append(prefix)
            place += terminal
            if place >= end:
                raise BadFile("has a table of exports that ends early")
            children = self.data[place]
            place += 1
            for _ in range(children):
                edge = self.string(place, end)
                child, place = self.uleb(place + len(edge) + 1, end)
                todo.append((child, prefix + edge))
        return sorted(found)

    def binds(self):
        """What dyld fills in, at once and on first use."""
        info = self.dyld_info()
        return [*self.bind_table(*info["bind"]), *self.bind_table(*info["lazy"])]

    def bind_table(self, start, size):
        self.bytes(start, size)
        place, end, found = start, start + size, []
        ordinal, symbol, segment, offset = 0, "", 0, 0
        while place < end:
            operation, small = self.data[place] & 0xF0, self.data[place] & 0xF
            place += 1
            if operation == 0x10:
                ordinal = small
            elif operation == 0x20:
                ordinal, place = self.uleb(place, end)
            elif operation == 0x30:
                ordinal = small - 16 if small else 0
            elif operation == 0x40:
                symbol = self.string(place, end)
                place += len(symbol) + 1
            elif operation == 0x60:
                _, place = self.uleb(place, end)
            elif operation == 0x70:
                segment = small
                offset, place = self.uleb(place, end)
            elif operation == 0x80:
                step, place = self.uleb(place, end)
                offset = (offset + step) % WORD
            elif operation in (0x90, 0xA0, 0xB0, 0xC0):
                times, step = 1, 0
                if operation == 0xA0:
                    step, place = self.uleb(place, end)
                elif operation == 0xB0:
                    step = small * 8
                elif operation == 0xC0:
                    times, place = self.uleb(place, end)
                    step, place = self.uleb(place, end)
                if segment >= len(self.segments) or len(found) + times > len(self.data):
                    raise BadFile("has a table of imports that points nowhere")
                for _ in range(times):
                    found.append(Bind(self.segments[segment].address + offset, symbol, ordinal))
                    offset = (offset + 8 + step) % WORD
            elif operation not in (0x00, 0x50):
                raise BadFile(f"has an operation {operation:#x} among its imports, unknown to iOS 12")
        return found

    # Objective-C.

    def classes(self, section="__objc_classlist"):
        found = []
        for address in self.words("__DATA", section):
            name, methods = self.class_half(address)
            _, class_methods = self.class_half(self.word(address))
            found.append(Class(name, methods, class_methods))
        return found

    def class_half(self, address):
        """The name and the selectors of a class or a metaclass."""
        read_only = self.word(address + 32) & ~7
        name = self.string(self.offset_of(self.word(read_only + 24)))
        table = self.word(read_only + 32)
        if table == 0:
            return name, []
        entry_size, count = self.unpack("<2I", self.offset_of(table))
        if entry_size != 24:
            raise BadFile(f"has methods of {name} in a form ({entry_size:#x}) that iOS 12 does not know")
        self.bytes(self.offset_of(table), 8 + count * 24)
        return name, [self.string(self.offset_of(self.word(entry)))
                      for entry in range(table + 8, table + 8 + count * 24, 24)]

    # The signature.

    def signature(self):
        """Of the first code directory with SHA-256 hashes, or of one with others when there is none."""
        command, _ = self.the_one(CODE_SIGNATURE)
        start, size = self.unpack("<2I", command + 8)
        self.bytes(start, size)
        magic, _, count = self.unpack(">3I", start)
        if magic != 0xFADE0CC0:
            raise BadFile("has no signature where it says one is")
        found = None
        for index in range(min(count, size // 8)):
            _, offset = self.unpack(">2I", start + 12 + index * 8)
            if self.unpack(">I", start + offset)[0] == 0xFADE0C02:
                found = self.code_directory(start + offset, start)
                if found.sha256:
                    break
        if found is None:
            raise BadFile("has a signature without a code directory")
        return found

    def code_directory(self, start, signed_size):
        _, _, _, flags, hashes, identifier, _, pages, limit = self.unpack(">9I", start)
        hash_size, hash_kind, _, page_bits = self.unpack(">4B", start + 36)
        sha256 = hash_kind == 2 and hash_size == 32
        page = 1 << min(page_bits, 31)
        covers = limit == signed_size and pages == -(-limit // page)
        matches = sha256 and limit <= len(self.data)
        for index in range(pages if matches else 0):
            piece = self.data[index * page:min((index + 1) * page, limit)]
            kept = self.bytes(start + hashes + index * 32, 32)
            matches = matches and hashlib.sha256(piece).digest() == kept
        return Signature(flags, self.string(start + identifier), sha256, matches, covers)
