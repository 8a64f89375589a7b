"""What each pointer of the slice for processors with pointer authentication has to be, found from the structures
that have it: lists of methods, classes, strings, blocks, vtables, type infos, the table of personalities. And what is
where, by the names of the library."""

import bisect
import functools

import macho
import mangled_names
from macho_slice import Target
from pointer_rules import number_of

CODE = 0x800004  # the attributes of sections of instructions
POINTER_SECTIONS = (6, 7)  # kinds: what calls and loads go through; the compiler signs what it loads there
CONSTRUCTORS = 9
STUB = ("__TEXT", "__stubs")
# Sections whose pointers the loader or the runtime reads by rules that no table here has.
REFUSED_SECTIONS = ("__thread_vars", "__thread_ptrs", "__interpose", "__mod_term_func", "__init_offsets",
                    "__eh_frame", "__auth_got", "__auth_ptr")
# What classes of the C++ library derive from, by the names in their type infos: that library has the rest.
FOREIGN_BASES = {"NSt3__119__shared_weak_countE": ["NSt3__114__shared_countE"],
                 "St12length_error": ["St11logic_error", "St9exception"],
                 "St12out_of_range": ["St11logic_error", "St9exception"],
                 "St13runtime_error": ["St9exception"]}
# What may be bound in data without a signature: objects, no functions.
OBJECTS = ("_OBJC_CLASS_$_", "_OBJC_METACLASS_$_", "__NSConcrete", "___CFConstantStringClassReference",
           "__objc_empty_cache", "__ZTI", "__ZTS")
TYPE_INFO_TABLES = ("__ZTVN10__cxxabiv1", "_objc_ehtype_vtable")
VTABLES = ("__ZTV", "__ZTC")
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


class Names:
    """What is where, by the symbols of the library that has them."""

    def __init__(self, library):
        self.library = library
        self.by_address, _ = library.symbols()
        self.addresses = sorted(self.by_address)

    def at(self, address):
        return self.by_address.get(address, [])

    def end_of(self, address):
        place = bisect.bisect_right(self.addresses, address)
        return self.addresses[place] if place < len(self.addresses) else None

    def start_of(self, address):
        """Of what has a name and holds the address, or None."""
        place = bisect.bisect_right(self.addresses, address) - 1
        start = self.addresses[place] if place >= 0 else None
        is_here = start is not None and self.section_of(start) == self.section_of(address)
        return start if is_here else None

    def section_of(self, address):
        return next((key for key, section in self.library.sections.items()
                     if section.address <= address < section.address + section.size), None)

    def near(self, address):
        """The symbol before it in its section, else that section, with the distance."""
        start, section = self.start_of(address), self.section_of(address)
        if start is not None:
            return f"{self.by_address[start][0]}+{address - start:#x}"
        if section is not None:
            return f"{','.join(section)}+{address - self.library.sections[section].address:#x}"
        return f"{address:#x}"

    def starting(self, prefix):
        return [(address, name[len(prefix):]) for address in self.addresses
                for name in self.by_address[address] if name.startswith(prefix)]


class Pointers:
    """What each pointer has to be, by where it lies."""

    def __init__(self, library, names):
        self.library, self.names = library, names
        self.kinds = {}  # by address
        self.unsigned = {}  # what those are that have to be there and are of no kind, by address
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
        self.find_classes()
        self.find_strings()
        self.find_blocks()
        self.find_personalities()
        for address, name in self.names.starting("__ZTV"):
            self.find_vtable(address, name)
        for address, _ in self.names.starting("__ZTI"):
            self.find_type_info(address)

    def need(self, address, what):
        self.unsigned[address] = what

    def may_have(self, address, what):
        """Where nothing may stand instead."""
        if self.library.word(address) or address in self.library.pointers:
            self.need(address, what)
        return self.inner(address)

    def inner(self, address):
        """Where a pointer within the library leads to, or 0."""
        target = self.target(address)
        return 0 if isinstance(target, Target) else target

    def find_classes(self):
        for cls in self.listed("__objc_classlist"):
            self.need(cls, "metaclass")
            self.find_class(cls)
            if self.inner(cls):
                self.find_class(self.inner(cls))
        for category in self.listed("__objc_catlist"):
            self.need(category, "category's name")
            self.need(category + 8, "category's class")
            self.find_method_list(category + 16)
            self.find_method_list(category + 24)
            self.may_have(category + 32, "list of protocols")
            self.find_properties(category + 40)

    def listed(self, name):
        """What the pointers of a section lead to."""
        section = self.library.sections.get(("__DATA", name))
        places = range(section.address, section.address + section.size // 8 * 8, 8) if section else ()
        return [target for target in map(self.inner, places) if target]

    def find_class(self, cls):
        self.may_have(cls, "class")
        self.may_have(cls + 8, "superclass")
        self.need(cls + 16, "class's cache")
        self.need(cls + 32, "class's data")
        data = self.inner(cls + 32) & ~7
        if data:
            self.need(data + 24, "class's name")
            self.find_method_list(data + 32)
            for place, what in ((16, "layout"), (40, "list of protocols"), (56, "layout")):
                self.may_have(data + place, what)
            variables = self.may_have(data + 48, "list of variables")
            for entry in self.entries(variables, 32):
                for place, what in ((0, "offset"), (8, "name"), (16, "type")):
                    self.need(entry + place, f"variable's {what}")
            self.find_properties(data + 64)

    def find_properties(self, place):
        for entry in self.entries(self.may_have(place, "list of properties"), 16):
            self.need(entry, "property's name")
            self.need(entry + 8, "property's attributes")

    def find_method_list(self, place):
        table = self.may_have(place, "list of methods")
        for entry in self.entries(table, 24):
            self.need(entry, "method's name")
            self.need(entry + 8, "method's type")
            self.kinds[entry + 16] = "method"

    def entries(self, table, wanted):
        """The addresses of what a list of the runtime has, 0 being none."""
        if not table:
            return range(0)
        size, count = self.library.unpack("<2I", self.library.offset_of(table))
        self.library.bytes(self.library.offset_of(table), 8 + count * wanted)
        if size != wanted:
            raise macho.BadFile(f"has a list in a form ({size:#x}, not {wanted:#x}) that iOS 12 does not know "
                                f"at {self.names.near(table)}")
        return range(table + 8, table + 8 + wanted * count, wanted)

    def find_strings(self):
        section = self.library.sections.get(("__DATA", "__cfstring"))
        if section:
            for address in range(section.address, section.address + section.size // 32 * 32, 32):
                self.need(address, "string's class")
                self.need(address + 16, "string's text")

    def find_blocks(self):
        for address, pointer in self.library.pointers.items():
            if isinstance(pointer.target, Target) and pointer.target.symbol == "__NSConcreteGlobalBlock" and (
                    not self.is_in_pointer_section(address)):
                self.kinds[address + 16] = "block function"
                self.need(address + 24, "block's descriptor")
                flags, = self.library.unpack("<I", self.library.offset_of(address + 8))
                if flags & HAS_HELPERS and self.inner(address + 24):
                    self.find_helpers(self.inner(address + 24))
        for address, _ in self.names.starting("___block_literal_global"):
            self.need(address, "block's class")
        for address, _ in self.names.starting("___block_descriptor_"):
            self.find_helpers(address)

    def find_helpers(self, descriptor):
        has_helpers = self.is_code(self.target(descriptor + 16))
        for address in (descriptor + 16, descriptor + 24) if has_helpers else ():
            self.kinds[address] = "block helper"
        self.need(descriptor + (32 if has_helpers else 16), "block's type")

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
            self.may_have(address, "vtable's type info")
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

    def find_type_info(self, address):
        self.kinds[address] = "type info"
        self.need(address + 8, "type's name")
        for base in self.bases_of(address):
            self.need(base, "type's base")

    def bases_of(self, info):
        """Where a type info has those of the classes that it derives from."""
        kind = self.target(info)
        symbol = kind.symbol if isinstance(kind, Target) else ""
        if "si_class" in symbol:
            return [info + 16]
        if "vmi_class" in symbol:
            count, = self.library.unpack("<I", self.library.offset_of(info + 20))
            return [info + 24 + 16 * index for index in range(min(count, 64))]
        return []

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
                todo += [self.target(base) for base in self.bases_of(info)]
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
            if pointer.target.symbol.startswith(VTABLES):
                return "vtable pointer"
            return None if pointer.target.symbol.startswith(OBJECTS) else "function"
        if self.is_in_vtable(pointer.target):
            return "vtable pointer"
        return "function" if self.is_code(pointer.target) else None

    def is_in_vtable(self, address):
        start = self.names.start_of(address)
        return start is not None and any(name.startswith(VTABLES) for name in self.names.at(start))
