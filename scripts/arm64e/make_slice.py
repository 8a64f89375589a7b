#!/usr/bin/env python3
"""Makes the slice for processors with pointer authentication (arm64e of iOS 12 and 13) of the library as
the linker leaves it: for arm64, from assembly that sign_assembly.py has gone over.

usage: make_slice.py LIBRARY OUTPUT [OBJECT...]

It writes the fix-ups as chains, names the processor, and signs anew. Nothing else changes, and the same
library gives the same bytes. What goes wrong names the source of that OBJECT that has the symbol, where one has it,
else the library. Exit code 1 when the library does not fit, 3 when a file cannot be read or written."""

import hashlib
import pathlib
import shutil
import struct
import sys

import chains
import image as reading
from image import Failure, Image

ARM64E = 2
SIGNATURE_MAGIC, PAGE = 0xFADE0CC0, 0x1000
SEGMENT_PAGE = 0x4000


def directory_for(signature, contents):
    """The linker's signature with the hashes of other contents."""
    try:
        magic, _, count, kind, start = struct.unpack_from(">5I", signature)
        header = signature[start:]
        hashes, = struct.unpack_from(">I", header, 16)
    except struct.error:
        raise Failure("has a signature that ends early") from None
    if (magic, count, kind) != (SIGNATURE_MAGIC, 1, 0):
        raise Failure("has a signature that is not the linker's own")
    body = bytearray(header[:hashes])
    pages = range(0, len(contents), PAGE)
    for page in pages:
        body += hashlib.sha256(contents[page:page + PAGE]).digest()
    struct.pack_into(">I", body, 4, len(body))
    struct.pack_into(">2I", body, 28, len(pages), len(contents))
    return struct.pack(">5I", SIGNATURE_MAGIC, 20 + len(body), 1, 0, 20) + bytes(body)


class LinkEdit:
    """Writes the tables at the file's end anew, one behind the other."""

    def __init__(self, image):
        self.image = image
        self.start = image.segments[-1].offset

    def part(self, at, form="<2I"):
        offset, size = self.image.unpack(form, at)
        return bytes(self.image.data[offset:offset + size])

    def write(self, fixups):
        image = self.image
        info = image.commands[reading.DYLD_INFO] + 8
        symbols = image.commands[reading.SYMTAB] + 8
        indirect = image.commands[reading.DYSYMTAB] + 56
        signature = self.part(image.commands[reading.CODE_SIGNATURE] + 8)
        symbol_count, = image.unpack("<I", symbols + 4)
        indirect_count, = image.unpack("<I", indirect + 4)
        parts = [(info + 8, fixups), (info + 32, image.table(reading.EXPORT))]
        parts += [(image.commands[command] + 8, self.part(image.commands[command] + 8))
                  for command in (reading.FUNCTION_STARTS, reading.DATA_IN_CODE) if command in image.commands]
        start, = image.unpack("<I", symbols)
        table = bytes(image.data[start:start + 16 * symbol_count])
        start, = image.unpack("<I", indirect)
        indirects = bytes(image.data[start:start + 4 * indirect_count])
        strings = self.part(symbols + 8)

        del image.data[self.start:]
        for place in (info, info + 16, info + 24):  # no tables of other kinds
            image.pack("<2I", place, 0, 0)
        for place, contents in parts:
            image.pack("<2I", place, self.put(contents) if contents else 0, len(contents))
        image.pack("<I", symbols, self.put(table))
        image.pack("<I", indirect, self.put(indirects))
        image.pack("<I", symbols + 8, self.put(strings))
        self.sign(signature)

    def put(self, contents, alignment=8):
        self.image.data.extend(bytes(-len(self.image.data) % alignment))
        place = len(self.image.data)
        self.image.data.extend(contents)
        return place

    def sign(self, signature):
        """Last, over all that stands before it."""
        image = self.image
        limit = self.put(b"", 16)
        size = len(directory_for(signature, bytes(limit)))
        size += -size % 16
        image.pack("<2I", image.commands[reading.CODE_SIGNATURE] + 8, limit, size)
        file_size = limit + size - self.start
        linkedit = image.segments[-1].at
        image.pack("<Q", linkedit + 32, file_size + -file_size % SEGMENT_PAGE)
        image.pack("<Q", linkedit + 48, file_size)
        image.data.extend(directory_for(signature, bytes(image.data)).ljust(size, b"\0"))


def converted(data):
    """The slice, of a library's bytes."""
    image = Image(data)
    table = chains.encode(image, chains.collect(image))
    for section in image.sections():
        if section.flags & 0xFF == reading.LAZY_POINTERS:  # nothing is bound later
            image.pack("<I", section.at + 64, section.flags & ~0xFF | reading.POINTERS)
    image.pack("<I", 8, ARM64E)  # and no capabilities: those came with iOS 14
    LinkEdit(image).write(table)
    return bytes(image.data)


def source_of(symbol, objects):
    """The source of the object that defines the symbol, below the folder that this is called in; or None."""
    for path in objects if symbol else ():
        if path.is_file() and symbol in defined_in(path.read_bytes()):
            parts = path.with_suffix("").parts
            tails = (pathlib.Path(*parts[start:]) for start in range(1, len(parts)))
            return next((tail for tail in tails if tail.is_file()), path)
    return None


def defined_in(data):
    """The symbols that an object file defines; none where it is no such file."""
    found = set()
    try:
        count, = struct.unpack_from("<I", data, 16)
        place = 32
        for _ in range(count):
            command, size = struct.unpack_from("<2I", data, place)
            if command == reading.SYMTAB:
                symbols, number, names, _ = struct.unpack_from("<4I", data, place + 8)
                for entry in range(symbols, symbols + 16 * number, 16):
                    name, kind = struct.unpack_from("<IB", data, entry)
                    if kind & 0x0E == 0x0E:
                        start = names + name
                        found.add(data[start:data.index(b"\0", start)].decode("utf-8", "replace"))
            place += max(size, 8)
    except (struct.error, ValueError):
        return set()
    return found


def main():
    if len(sys.argv) < 3:
        print(__doc__.split("\n\n")[1], file=sys.stderr)
        return 2
    library, output, *objects = (pathlib.Path(argument) for argument in sys.argv[1:])
    try:
        output.write_bytes(converted(library.read_bytes()))
        shutil.copymode(library, output)
    except Failure as failure:
        print(f"make_slice.py: {source_of(failure.symbol, objects) or library}: {failure}", file=sys.stderr)
        return 1
    except (struct.error, IndexError, ValueError) as error:
        print(f"make_slice.py: {library}: is no library that a linker left: {error}", file=sys.stderr)
        return 1
    except OSError as error:
        print(f"make_slice.py: {error}", file=sys.stderr)
        return 3
    return 0


if __name__ == "__main__":
    sys.exit(main())
