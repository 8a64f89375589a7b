"""Checks of the slice for processors with pointer authentication: that its chains lead to all of its pointers, and that
each pointer is signed by its kind's rule (docs/developers/pointer-authentication.md) and no other one is. Each check
gives what is wrong, a line each. scripts/check_macho.py carries them out."""

import macho
from macho_slice import DISTANCE, PAGE, Target
from pointer_places import Names, Pointers
from pointer_rules import OF_ITS_NAME, known_numbers, number_of

# Sections of pointers and nothing else.
POINTERS_ALONE = ("__got", "__la_symbol_ptr", "__mod_init_func", "__objc_classlist", "__objc_nlclslist", "__objc_catlist",
                  "__objc_nlcatlist", "__objc_classrefs", "__objc_superrefs", "__objc_selrefs", "__objc_protorefs")


def text_of(rule):
    if rule is None:
        return "unsigned"
    number = "the number of its name" if rule.number is OF_ITS_NAME else rule.number
    return f"{rule.key}, {'address, ' if rule.address else ''}{number}"


def check_pointers(library, named, rules):
    """`named` is the same library with its symbols."""
    pointers = Pointers(library, Names(named))
    pointers.find_all()
    problems = pointers.problems
    for address, pointer in sorted(library.pointers.items()):
        kind = pointers.kind_of(address, pointer)
        rule = rules[kind] if kind else None
        where = f"{kind or 'pointer to data'} at {pointers.names.near(address)}"
        wanted = rule
        if rule is not None and rule.number is OF_ITS_NAME and pointer.rule is not None:
            fitting = pointers.numbers.get(address)
            if fitting is not None and pointer.rule.number not in fitting:
                problems.append(f"has the {where} signed with {pointer.rule.number}, which is no name's of it")
            wanted = rule._replace(number=pointer.rule.number)
        if pointer.rule != wanted:
            problems.append(f"has the {where} as {text_of(pointer.rule)}, not {text_of(rule)}")
        if pointer.rule and isinstance(pointer.target, Target) and pointer.target.flags & 1:
            problems.append(f"has the {where} signed, though {pointer.target.symbol} may be absent")
    return problems + pure_virtual_problems(pointers)


def check_chains(library, named):
    """What is wrong with the chains themselves, and what stands in the data as a pointer where no chain leads to."""
    names = Names(named)
    problems = [text if address is None else f"{text} at {names.near(address)}" for text, address in library.chain_problems]
    try:
        pointers = Pointers(library, names)
        pointers.find_all()
        wanted = {**pointers.unsigned, **pointers.kinds}
    except macho.BadFile:  # what leads to the places may itself be lost
        wanted = {}
    missing = set(wanted) - set(library.pointers)
    problems += [f"has no pointer for the {wanted[address]} at {names.near(address)}" for address in sorted(missing)]
    return problems + [f"has a pointer that no chain leads to at {names.near(address)}"
                       for address in unreached(library) if address not in missing]


def unreached(library):
    """The addresses of words that can be nothing but a chain's pointers, and are in none."""
    for (segment, name), section in library.sections.items():
        if segment != "__DATA" or section.kind in macho.ZERO_FILL:
            continue
        for address in range(section.address, section.address + section.size // 8 * 8, 8):
            if address in library.pointers:
                continue
            raw = library.word(address)
            if raw and name in POINTERS_ALONE or leads_on(library, address, raw):
                yield address


def leads_on(library, address, raw):
    """Whether a word is to another library's symbol or signed, or names the distance to a pointer. Numbers in the
    data are no such words; those that are small are told from pointers by where they stand alone."""
    if not is_fixup(library, raw):
        return False
    following = address + 8 * (raw >> DISTANCE & 0x7FF)
    if following == address:
        return raw >> 62 != 0
    return following // PAGE == address // PAGE and (
        following in library.pointers or is_fixup(library, library.word(following)))


def is_fixup(library, raw):
    if raw & (1 << DISTANCE) - 1 == 0:
        return False  # nothing, or a fraction such as 3.0
    target, _, fits = library.meaning(raw)
    return fits and (isinstance(target, Target) or any(
        section.address <= target < section.address + section.size for section in library.sections.values()))


def pure_virtual_problems(pointers):
    """A function that a class leaves to others has no name there: its number is that of the place in the
    tables of the classes that derive from it."""
    known = {library_pointer.rule.number for address, library_pointer in pointers.library.pointers.items()
             if pointers.numbers.get(address) is not None and library_pointer.rule}
    return [f"has the vtable entry at {pointers.names.near(address)} signed with {pointer.rule.number}, "
            "which no function of a derived class has"
            for address, pointer in sorted(pointers.library.pointers.items())
            if address in pointers.numbers and pointers.numbers[address] is None and pointer.rule
            and pointer.rule.number not in known]


def count_pointers(library, named):
    """How many of each kind there are."""
    pointers = Pointers(library, Names(named))
    pointers.find_all()
    counts = {}
    for address, pointer in library.pointers.items():
        kind = pointers.kind_of(address, pointer) or "unsigned"
        counts[kind] = counts.get(kind, 0) + 1
    return counts


def check_numbers():
    """The way from names to numbers, by those that the platform's own sources write down."""
    return [f"takes {number_of(name)} for the number of {name}, not {number}"
            for name, number in known_numbers().items() if number_of(name) != number]


def check_tables(library):
    """What lies in __LINKEDIT, in its order, and nothing behind the signature."""
    info = library.dyld_info()
    parts = [("chains", *info["bind"]), ("exports", *info["exports"])]
    for command, name in ((macho.FUNCTION_STARTS, "functions"), (macho.DATA_IN_CODE, "data in code")):
        parts += [(name, *library.unpack("<2I", place + 8)) for place, _ in library.all_of(command)]
    symbols, count, strings, size = library.unpack("<4I", library.the_one(macho.SYMTAB)[0] + 8)
    indirect, indirect_count = library.unpack("<2I", library.the_one(macho.DYSYMTAB)[0] + 56)
    signature = library.unpack("<2I", library.the_one(macho.CODE_SIGNATURE)[0] + 8)
    parts += [("symbols", symbols, 16 * count), ("indirect symbols", indirect, 4 * indirect_count),
              ("strings", strings, size), ("signature", *signature)]
    linkedit = library.segments[-1]
    end, problems = linkedit.offset, []
    for name, start, length in (part for part in parts if part[2]):
        if start < end:
            problems.append(f"has its {name} over what lies before them")
        if start % 8:
            problems.append(f"has its {name} off a word")
        end = start + length
    if end != len(library.data) or linkedit.offset + linkedit.file_size != end:
        problems.append("does not end with its signature")
    return problems
