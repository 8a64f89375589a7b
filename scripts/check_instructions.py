"""Checks of the instructions of the slice for processors with pointer authentication: that no frame keeps its return
address unsigned, that calls and jumps authenticate with the right key, and that what the code makes itself, of functions
and of vtables, is signed. Each gives what is wrong, a line each. scripts/check_macho.py carries them out."""

import collections

import macho
from pointer_places import Names, Pointers

# By the key: what signs the return address, what authenticates it, and what returns to it as well.
Frame = collections.namedtuple("Frame", "sign authenticate return_to")
FRAMES = {"ia": Frame(0xD503233F, 0xD50323BF, 0xD65F0BFF),  # paciasp, autiasp, retaa
          "ib": Frame(0xD503237F, 0xD50323FF, 0xD65F0FFF)}  # pacibsp, autibsp, retab
RETURN = 0xD65F03C0
KEYS = ("ia", "ib", "da", "db")  # in the order in which instructions count them
ADDRESS_OF, PAGE_OF = 0x10000000, 0x90000000  # adr, adrp


def touches_link(word, is_load):
    """Whether the return address (x30) goes to the stack, or comes from there."""
    bit = 1 << 22 if is_load else 0
    pair = word & 0xFE4003E0 == 0xA80003E0 | bit and 30 in (word & 31, word >> 10 & 31)
    plain = word & 0xFFC003FF == 0xF90003FE | bit
    before_or_after = word & 0xFFE003FF == 0xF80003FE | bit and word >> 10 & 3 in (1, 3)
    return pair or plain or before_or_after


def ends_path(word):
    """ret, br, b, and those that authenticate."""
    return (word == RETURN or word & 0xFFFFFC1F == 0xD61F0000 or word & 0xFC000000 == 0x14000000
            or any(word == frame.return_to for frame in FRAMES.values()) or key_of_jump(word) is not None)


def key_of_call(word):
    """(the key that blraa, blrab, blraaz or blrabz authenticates with, whether it has a modifier), or None."""
    return key_of_branch(word, 0xD73F0800, 0xD63F081F)


def key_of_jump(word):
    """The same of braa, brab, braaz and brabz."""
    return key_of_branch(word, 0xD71F0800, 0xD61F081F)


def key_of_branch(word, with_modifier, without):
    if word & 0xFFFFF800 == with_modifier:
        return KEYS[word >> 10 & 1], True
    return (KEYS[word >> 10 & 1], False) if word & 0xFFFFFC1F in (without, without | 0x400) else None


def key_of_signing(word, register):
    """(the key that the register is signed with, whether there is a modifier), or None: pacia, paciza ..."""
    if word & 0xFFFFF01F == 0xDAC10000 | register:
        return KEYS[word >> 10 & 3], True
    return (KEYS[word >> 10 & 3], False) if word & 0xFFFFF3FF == 0xDAC123E0 | register else None


def is_switch(before, register):
    """Whether a jump goes where a switch's table says: it gives distances, which are added to an address of the code."""
    for index, word in enumerate(before):
        # add register, base, distance, lsl #2 and adr base
        if word & 0xFFE0FC1F == 0x8B000800 | register and any(
                each & 0x9F00001F == 0x10000000 | word >> 5 & 31 for each in before[:index]):
            return True
    return False


def functions(library):
    """(address, instructions) of each function."""
    text = library.sections[("__TEXT", "__text")]
    words = library.unpack(f"<{text.size // 4}I", text.offset)
    command, _ = library.the_one(macho.FUNCTION_STARTS)
    place, size = library.unpack("<2I", command + 8)
    end, address, starts = place + size, library.segments[0].address, []
    while place < end:
        step, place = library.uleb(place, end)
        if step == 0:
            break
        address += step
        if text.address <= address < text.address + text.size:
            starts.append(address)
    if not starts or starts[0] != text.address:
        raise macho.BadFile("has instructions before the first function")
    for start, after in zip(starts, [*starts[1:], text.address + text.size]):
        yield start, words[(start - text.address) // 4:(after - text.address) // 4]


def signed_value(bits, count):
    return bits - (1 << count) if bits >> count - 1 else bits


def distance_of(word):
    """That of adr in bytes, of adrp in pages."""
    return signed_value((word >> 5 & 0x7FFFF) << 2 | word >> 29 & 3, 21)


def addresses_made(start, body):
    """(index, register, address) of each that the code makes, by adr or by adrp and add."""
    pages = {}  # by register
    for index, word in enumerate(body):
        here, register = start + 4 * index, word & 31
        if word & 0x9F000000 == ADDRESS_OF:
            yield index, register, here + distance_of(word)
        elif word & 0x9F000000 == PAGE_OF:
            pages[register] = (here & ~0xFFF) + (distance_of(word) << 12)
        elif word & 0xFFC00000 == 0x91000000 and word >> 5 & 31 in pages:
            yield index, register, pages[word >> 5 & 31] + (word >> 10 & 0xFFF)


def unsigned_address(start, body, kind_of, rules):
    """(index, kind, what signs it or None, its Rule) of each address of a function or a vtable that the code makes and
    does not sign as its kind is."""
    for index, register, address in addresses_made(start, body):
        kind = kind_of(address)
        if kind is None:
            continue
        found = None
        for word in body[index + 1:]:
            found = key_of_signing(word, register)
            makes_another = word & 0x1F000000 == ADDRESS_OF & 0x1F000000 and word & 31 == register
            if found or makes_another or ends_path(word):
                break
        rule = rules[kind]
        if found != (rule.key, rule.address):
            yield index, kind, found, rule


def kinds_made(library, names, starts):
    """A function that gives the kind of what is at an address, None for what is not signed."""
    pointers = Pointers(library, names)

    def kind_of(address):
        if address in starts:
            is_block = any("_block_invoke" in name for name in names.at(address))
            return "block function" if is_block else "function"
        return "vtable pointer" if pointers.is_in_vtable(address) else None
    return kind_of


def text_of(key, has_modifier):
    return f"{key}{' with a modifier' if has_modifier else ''}"


def frame_problems(body, frame):
    """(index, what is wrong) of the return address."""
    for index, word in enumerate(body):
        if touches_link(word, is_load=False) and frame.sign not in body[:index]:
            yield index, "keeps its return address unsigned"
        if touches_link(word, is_load=True):
            after = next((each for each in body[index + 1:] if each == frame.authenticate or ends_path(each)), None)
            if after not in (frame.authenticate, frame.return_to):
                yield index, "returns to an address that nothing has authenticated"


def branch_problems(body, rules):
    """(index, what is wrong) of calls and jumps to pointers."""
    kinds = ("function", "block function", "vtable entry")
    right = {(rules[kind].key, rules[kind].address) for kind in kinds}
    for index, word in enumerate(body):
        if word & 0xFFFFFC1F == 0xD63F0000:
            yield index, "calls a pointer that nothing has authenticated"
        if word & 0xFFFFFC1F == 0xD61F0000 and not is_switch(body[max(0, index - 12):index], word >> 5 & 31):
            yield index, "jumps to a pointer that nothing has authenticated"
        found = key_of_call(word) or key_of_jump(word)
        if found and found not in right:
            yield index, f"authenticates what it calls with {text_of(*found)}"


def check_code(library, named, rules):
    names = Names(named)
    frame = FRAMES[rules["return address"].key]
    bodies = dict(functions(library))
    kind_of = kinds_made(library, names, bodies)
    problems = []
    for start, body in bodies.items():
        found = [*frame_problems(body, frame), *branch_problems(body, rules)]
        found += [(index, f"makes a {kind} that is signed with {text_of(*signing) if signing else 'nothing'}, "
                   f"not {text_of(rule.key, rule.address)},")
                  for index, kind, signing, rule in unsigned_address(start, body, kind_of, rules)]
        problems += [f"{what} in {names.near(start + 4 * index)}" for index, what in sorted(found)]
    if not any(frame.sign in body for body in bodies.values()):
        problems.append("signs no return address")
    return problems
