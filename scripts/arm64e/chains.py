"""The fix-ups of the slice in the form of its loaders: the places of a page are a chain, each with what
the pointer is to become, and the distance to the next."""

import collections

from image import BIND, LAZY_BIND, REBASE, WEAK_BIND, WEAK_IMPORT, Failure, Target, number, signed_number
from payload import Signature, bits_of, split

PAGE = 0x1000
BOUND = 1 << 62
DISTANCE_SHIFT = 51
# Where the value of a pointer that is not signed is kept: 43 bits, and the topmost 8 above them.
VALUE_BITS = 43
TOP = 0xFF << 56
TOP_SHIFT = 56 - VALUE_BITS
TARGETS_MOST = 0xFFFF
# What the tables say to the loaders.
SET_ORDINAL, SET_LONG_ORDINAL, SET_SPECIAL = 0x10, 0x20, 0x30
SET_SYMBOL, SET_POINTER, SET_ADDEND, SET_PLACE, ADD_TARGET = 0x40, 0x51, 0x60, 0x70, 0x90
TARGETS, CHAIN = 0xD0, 0xD1
DONE = 0x00

PERSONALITY = Signature("ia", True, 0)
LAZY_BINDER = "dyld_stub_binder"

# What a pointer becomes: an address of the library or a Target; its Signature, or None.
Fixup = collections.namedtuple("Fixup", "target signature")


def collect(image):
    """{address: Fixup}, from the linker's tables and the marks in the pointers."""
    fixups = {}
    lazy = image.section("__la_symbol_ptr")
    if image.table(WEAK_BIND):
        raise Failure("has symbols that another library may replace")
    for address in image.rebases():
        # That of a lazy pointer leads to a piece of code that nothing needs: all is bound at once.
        if lazy is None or not lazy.address <= address < lazy.address + lazy.size:
            fixups[address] = Fixup(*split(image.word(address)))
    for table in (BIND, LAZY_BIND):
        for address, target in image.binds(table):
            if target.name == LAZY_BINDER:
                image.set_word(address, 0)
                continue
            addend, signature = split(target.addend)
            fixups[address] = Fixup(target if signature is None else target._replace(addend=addend), signature)
    sign_personalities(image, fixups)
    return fixups


def sign_personalities(image, fixups):
    """The slots through which unwinders find the functions that know a function's handlers. The linker
    makes them, so that the assembly has none."""
    section = image.section("__unwind_info")
    if section is None:
        return
    start, count = image.unpack("<2I", section.offset + 12)
    for place in range(section.offset + start, section.offset + start + 4 * count, 4):
        slot = image.base + image.unpack("<I", place)[0]
        if slot not in fixups:
            raise image.failure_at(slot, "a personality's slot that is no pointer")
        fixups[slot] = fixups[slot]._replace(signature=PERSONALITY)


def numbered(fixups):
    """{Target: its number}, in the order of libraries and names."""
    targets = {fixup.target for fixup in fixups.values() if isinstance(fixup.target, Target)}
    if len(targets) > TARGETS_MOST:
        raise Failure(f"has {len(targets)} symbols of other libraries, more than chains can count")
    ordered = sorted(targets, key=lambda target: (target.ordinal, target.name, target.addend, target.flags))
    return {target: index for index, target in enumerate(ordered)}


def table_of(numbers):
    """The targets as the loaders read them, in their order."""
    table = bytearray([TARGETS]) + number(len(numbers))
    last = Target(None, None, None, 0)
    for target in numbers:
        if target.ordinal != last.ordinal:
            if target.ordinal <= 0:
                table.append(SET_SPECIAL | target.ordinal & 0xF)
            elif target.ordinal <= 0xF:
                table.append(SET_ORDINAL | target.ordinal)
            else:
                table += bytes([SET_LONG_ORDINAL]) + number(target.ordinal)
        if (target.name, target.flags) != (last.name, last.flags):
            table += bytes([SET_SYMBOL | target.flags]) + target.name.encode() + b"\0"
        if last.name is None:
            table.append(SET_POINTER)
        if target.addend != last.addend:
            table += bytes([SET_ADDEND]) + signed_number(target.addend)
        table.append(ADD_TARGET)
        last = target
    return table


def value_of(image, address, fixup, numbers):
    """What stands at the address, but for the distance to the next."""
    target, signature = fixup
    bits = 0 if signature is None else bits_of(signature)
    if isinstance(target, Target):
        if signature is not None and target.flags & WEAK_IMPORT:
            # The loaders would sign what stands for an absent symbol, which is then no null pointer.
            raise image.failure_at(address, f"a signed pointer to {target.name}, which may be absent; "
                                            "do not import it weakly")
        return bits | BOUND | numbers[target]
    if signature is not None:
        return bits | target - image.base
    if (target & ~TOP) >> VALUE_BITS - 1:  # the topmost of them is a sign
        raise image.failure_at(address, f"a pointer to {target:#x}, which chains cannot hold")
    return (target & TOP) >> TOP_SHIFT | target & ~TOP


def encode(image, fixups):
    """Writes the chains into the image; gives the table for the loaders, as long as a multiple of 8."""
    numbers = numbered(fixups)
    table = table_of(numbers)
    addresses = sorted(fixups)
    page = None
    for address, following in zip(addresses, [*addresses[1:], None]):
        segment, here = place_of(image, address)
        if here != page:
            table += bytes([SET_PLACE | here[0]]) + number(address - segment.address) + bytes([CHAIN])
            page = here
        is_last = following is None or place_of(image, following)[1] != page
        distance = 0 if is_last else (following - address) // 8
        value = value_of(image, address, fixups[address], numbers)
        image.set_word(address, value | distance << DISTANCE_SHIFT)
    table.append(DONE)
    return bytes(table) + bytes(-len(table) % 8)


def place_of(image, address):
    """(its segment, (the segment's number, the page)) of a pointer that a chain can hold."""
    index = image.segment_index(address)
    segment = image.segments[index]
    if address % 8:
        raise image.failure_at(address, "a pointer that is not aligned")
    if segment.protection & 6 != 2:
        raise image.failure_at(address, f"a pointer in {segment.name}, which is not for data")
    return segment, (index, (address - segment.address) // PAGE)
