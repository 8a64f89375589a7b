"""Checks of the slice for processors with pointer authentication: that each pointer is signed by its
kind's rule (docs/developers/pointer-authentication.md) and no other one is, and that no frame keeps its return address
unsigned. Each check gives what is wrong, a line each. scripts/check_macho.py carries them out."""

import bisect
import functools

import macho
import mangled_names
from macho_slice import PAGE, Target
from pointer_rules import OF_ITS_NAME, known_numbers, number_of

CODE = 0x800004  # the attributes of sections of instructions
POINTER_SECTIONS = (6, 7)  # kinds: what calls and loads go through; the compiler signs what it loads there
CONSTRUCTORS = 9
STUB = ("__TEXT", "__stubs")
# Sections whose pointers the loader or the runtime reads by rules that no table here has.
REFUSED_SECTIONS = ("__thread_vars", "__thread_ptrs", "__interpose", "__mod_term_func", "__init_offsets",
                    "__eh_frame", "__auth_got", "__auth_ptr")
# Sections of pointers and nothing else.
POINTERS_ALONE = ("__got", "__la_symbol_ptr", "__mod_init_func", "__objc_classlist", "__objc_nlclslist", "__objc_catlist",
                  "__objc_nlcatlist", "__objc_classrefs", "__objc_superrefs", "__objc_selrefs", "__objc_protorefs")
# What classes of the C++ library derive from, by the names in their type infos: that library has the rest.
FOREIGN_BASES = {"NSt3__119__shared_weak_countE": ["NSt3__114__shared_countE"],
                 "St12length_error": ["St11logic_error", "St9exception"],
                 "St12out_of_range": ["St11logic_error", "St9exception"],
                 "St13runtime_error": ["St9exception"]}
# What may be bound in data without a signature: objects, no functions.
OBJECTS = ("_OBJC_CLASS_$_", "_OBJC_METACLASS_$_", "__NSConcrete", "___CFConstantStringClassReference",
           "__objc_empty_cache", "__ZTI", "__ZTS")
TYPE_INFO_TABLES = ("__ZTVN10__cxxabiv1", "_objc_ehtype_vtable")
PURE_VIRTUAL = "___cxa_pure_virtual"
HAS_HELPERS = 1 << 25


@functools.cache
def method_of(symbol):
    """(what a member function is called in any class, its own number), or None."""
    try:
        return mangled_names.without_class(mangled_names.read_function(symbol)), number_of(symbol)
    except mangled_names.Unknown:
        return None


@functools.cache
def class_of(name):
    try:
        return mangled_names.read_class(name)
    except mangled_names.Unknown:
        return None


@functools.cache
def number_in(method, name):
    """That of a method in the class of that name."""
    return number_of(mangled_names.in_class(method, class_of(name)))


def text_of(rule):
    if rule is None:
        return "unsigned"
    number = "the number of its name" if rule.number is OF_ITS_NAME else rule.number
    return f"{rule.key}, {'address, ' if rule.address else ''}{number}"


class Names:
    """What is where, by the symbols of the library that has them."""

    def __init__(self, library):
        self.by_address, _ = library.symbols()
        self.addresses = sorted(self.by_address)

    def at(self, address):
        return self.by_address.get(address, [])

    def end_of(self, address):
        place = bisect.bisect_right(self.addresses, address)
        return self.addresses[place] if place < len(self.addresses) else None

    def near(self, address):
        place = bisect.bisect_right(self.addresses, address) - 1
        if place < 0:
            return f"{address:#x}"
        start = self.addresses[place]
        return f"{self.by_address[start][0]}+{address - start:#x}"

    def starting(self, prefix):
        return [(address, name[len(prefix):]) for address in self.addresses
                for name in self.by_address[address] if name.startswith(prefix)]


class Pointers:
    """What each pointer has to be, by where it lies."""

    def __init__(self, library, names):
        self.library, self.names = library, names
        self.kinds = {}  # by address
        self.numbers = {}  # of vtables' entries: those that fit, or None where no name says
        self.problems = []

    def is_code(self, target):
        return not isinstance(target, Target) and any(
            section.attributes & CODE and section.address <= target < section.address + section.size
            for section in self.library.sections.values())

    def target(self, address):
        """Of a pointer: an address here, a Target, or 0."""
        pointer = self.library.pointers.get(address)
        return pointer.target if pointer else 0

    def find_all(self):
        for key, section in self.library.sections.items():
            if section.kind == CONSTRUCTORS:
                for address in range(section.address, section.address + section.size, 8):
                    self.kinds[address] = "initialiser"
            if key[1] in REFUSED_SECTIONS:
                self.problems.append(f"has a section {key[1]}, whose pointers are not known here")
            if section.kind == 7:
                self.problems.append(f"has pointers that are bound later, in {key[1]}")
        self.find_methods()
        self.find_blocks()
        self.find_personalities()
        for address, name in self.names.starting("__ZTV"):
            self.find_vtable(address, name)

    def find_methods(self):
        for cls in self.library.words("__DATA", "__objc_classlist"):
            for half in (cls, self.library.word(cls)):
                if half:
                    self.find_method_list((self.library.word(half + 32) & ~7) + 32)
        for category in self.library.words("__DATA", "__objc_catlist"):
            for place in (category + 16, category + 24):
                self.find_method_list(place)

    def find_method_list(self, place):
        table = self.library.word(place)
        if table:
            size, count = self.library.unpack("<2I", self.library.offset_of(table))
            self.library.bytes(self.library.offset_of(table), 8 + count * 24)
            if size != 24:
                raise macho.BadFile(f"has methods in a form ({size:#x}) that iOS 12 does not know")
            for index in range(count):
                self.kinds[table + 24 + 24 * index] = "method"

    def find_blocks(self):
        for address, pointer in self.library.pointers.items():
            if isinstance(pointer.target, Target) and pointer.target.symbol == "__NSConcreteGlobalBlock" and (
                    not self.is_in_pointer_section(address)):
                self.kinds[address + 16] = "block function"
                flags, = self.library.unpack("<I", self.library.offset_of(address + 8))
                if flags & HAS_HELPERS:
                    self.find_helpers(self.library.word(address + 24))
        for address, _ in self.names.starting("___block_descriptor_"):
            self.find_helpers(address)

    def find_helpers(self, descriptor):
        for address in (descriptor + 16, descriptor + 24):
            if self.is_code(self.target(address)):
                self.kinds[address] = "block helper"

    def find_personalities(self):
        section = self.library.sections.get(("__TEXT", "__unwind_info"))
        if section:
            start, count = self.library.unpack("<2I", section.offset + 12)
            self.library.bytes(section.offset + start, 4 * count)
            for place in range(section.offset + start, section.offset + start + 4 * count, 4):
                slot = self.library.segments[0].address + self.library.unpack("<I", place)[0]
                self.kinds[slot] = "personality"

    def find_vtable(self, address, name):
        """Its groups: an offset, a type info, functions."""
        end = self.names.end_of(address) or address
        classes = None
        address += 8
        while address < end:
            info = self.target(address)
            classes = classes or (name, self.classes_of(info))
            address += 8
            while address < end and self.is_function(address):
                self.kinds[address] = "vtable entry"
                self.numbers[address] = self.numbers_of(self.target(address), classes[1])
                address += 8
            address += 8
            if address - 8 in self.library.pointers or not self.is_type_info(self.target(address)):
                return  # what lies behind the table has no name

    def is_function(self, address):
        target = self.target(address)
        return self.is_code(target) or isinstance(target, Target) and (
            target.symbol == PURE_VIRTUAL or target.symbol.startswith(("__ZN", "__ZTh")))

    def is_type_info(self, target):
        return isinstance(target, int) and any(name.startswith("__ZTI") for name in self.names.at(target))

    def classes_of(self, info):
        """The names of the class of a type info and of all that it derives from."""
        found, todo = [], [info]
        while todo:
            info = todo.pop()
            if isinstance(info, Target):
                name = info.symbol.removeprefix("__ZTI")
            elif self.is_type_info(info):
                offset = self.library.offset_of(self.library.word(info + 8) & (1 << 63) - 1)
                name = self.library.string(offset)
                kind = self.target(info)
                symbol = kind.symbol if isinstance(kind, Target) else ""
                if "si_class" in symbol:
                    todo.append(self.target(info + 16))
                elif "vmi_class" in symbol:
                    count, = self.library.unpack("<I", self.library.offset_of(info + 20))
                    todo += [self.target(info + 24 + 16 * index) for index in range(min(count, 64))]
            else:
                continue
            found += [each for each in (name, *FOREIGN_BASES.get(name, [])) if class_of(each)]
        return found

    def numbers_of(self, target, classes):
        """Those that a function may have: of its own name, and of the names of what it overrides."""
        symbols = [target.symbol] if isinstance(target, Target) else self.names.at(target)
        methods = {method_of(symbol[1:]) for symbol in symbols} - {None}
        # The same function may be that of many classes, whose own names say nothing of this one.
        found = {number_in(method, cls) for method in {method for method, _ in methods} for cls in classes}
        return found | {number for _, number in methods if len(methods) == 1} or None

    def is_in_pointer_section(self, address):
        return any(section.kind in POINTER_SECTIONS and section.address <= address < section.address + section.size
                   for section in self.library.sections.values())

    def kind_of(self, address, pointer):
        """None for what stays unsigned."""
        if address in self.kinds:
            return self.kinds[address]
        if isinstance(pointer.target, Target):
            if self.is_in_pointer_section(address):
                return None
            if pointer.target.symbol.startswith(TYPE_INFO_TABLES):
                return "type info"
            return None if pointer.target.symbol.startswith(OBJECTS) else "function"
        return "function" if self.is_code(pointer.target) else None


def check_pointers(library, named, rules):
    """`named` is the same library with its symbols."""
    pointers = Pointers(library, Names(named))
    pointers.find_all()
    problems = pointers.problems
    for address in sorted(set(pointers.kinds) - set(library.pointers)):
        problems.append(f"has no pointer for the {pointers.kinds[address]} at {pointers.names.near(address)}")
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
    problems += pure_virtual_problems(pointers)
    problems += unreached_problems(pointers)
    return problems


def unreached_problems(pointers):
    """What stands in the data as a pointer, and no chain leads to."""
    library, problems = pointers.library, []
    for (segment, name), section in library.sections.items():
        if segment != "__DATA" or section.kind in macho.ZERO_FILL:
            continue
        for address in range(section.address, section.address + section.size // 8 * 8, 8):
            if address in library.pointers:
                continue
            raw = library.word(address)
            # A signed pointer says in its lower half where it leads to.
            function = raw >> 62 == 2 and any(name.startswith("_") for name in pointers.names.at(raw & 0xFFFFFFFF))
            if raw and name in POINTERS_ALONE or function and pointers.is_code(raw & 0xFFFFFFFF):
                problems.append(f"has a pointer that no chain leads to at {pointers.names.near(address)}")
    return problems


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


def check_chains(library):
    return library.chain_problems


# Instructions.
SIGN_RETURN = 0xD503237F  # pacibsp
AUTHENTICATE_RETURN = (0xD50323FF, 0xD65F0FFF)  # autibsp, retab
RETURN = 0xD65F03C0


def touches_link(word, is_load):
    """Whether the return address (x30) goes to the stack, or comes from there."""
    bit = 1 << 22 if is_load else 0
    pair = word & 0xFE4003E0 == 0xA80003E0 | bit and 30 in (word & 31, word >> 10 & 31)
    plain = word & 0xFFC003FF == 0xF90003FE | bit
    before_or_after = word & 0xFFE003FF == 0xF80003FE | bit and word >> 10 & 3 in (1, 3)
    return pair or plain or before_or_after


def ends_path(word):
    """ret, br, b."""
    return word == RETURN or word & 0xFFFFFC1F == 0xD61F0000 or word & 0xFC000000 == 0x14000000


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


def check_code(library, named):
    names = Names(named)
    problems = []
    signing = 0
    for start, body in functions(library):
        is_signed = SIGN_RETURN in body
        signing += is_signed
        for index, word in enumerate(body):
            where = names.near(start + 4 * index)
            if touches_link(word, is_load=False) and not is_signed:
                problems.append(f"keeps its return address unsigned in {where}")
            if touches_link(word, is_load=True):
                after = next((each for each in body[index + 1:]
                              if each in AUTHENTICATE_RETURN or ends_path(each)), None)
                if after not in AUTHENTICATE_RETURN:
                    problems.append(f"returns to an address that nothing has authenticated in {where}")
            if word & 0xFFFFFC1F == 0xD63F0000:
                problems.append(f"calls a pointer that nothing has authenticated in {where}")
            if word & 0xFFFFFC1F == 0xD61F0000 and not is_switch(body[max(0, index - 12):index], word >> 5 & 31):
                problems.append(f"jumps to a pointer that nothing has authenticated in {where}")
    if not signing:
        problems.append("signs no return address")
    return problems


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
