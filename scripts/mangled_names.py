"""Reads the mangled names of virtual functions, and writes those that the same function has in other
classes: the name of the class that a function overrides stands for the function's number
(pointer_rules.py), and the library's file names the class that overrides it.

A name becomes a tree of tuples, in which what the name abbreviates is spelled out. What this knows of the
mangling is what names of member functions and of classes consist of; other names are Unknown."""

import re

BUILT_IN = re.compile(r"[vwbcahstijlmxynofdegz]|D[nisuaf]")
NUMBERED = re.compile(r"[0-9]+")
# A source's own name: what gives it and what it is tagged with.
TAGS = re.compile(r"(?:B\d+\w*?(?=[A-Z0-9]|$))*")
OPERATOR = re.compile(r"nw|na|dl|da|ps|ng|ad|de|co|pl|mi|ml|dv|rm|an|or|eo|aS|pL|mI|mL|dV|eq|ne|lt|gt|le|ge|ss|nt|aa|oo|pp|mm|cm|pm|pt|cl|ix|ls|rs|lS|rS")
STD = ("std",)


class Unknown(Exception):
    """Not a name that this reads."""


class Reader:
    def __init__(self, text):
        self.text, self.place = text, 0
        self.known = []  # what may be abbreviated, in its order

    def next_is(self, text):
        return self.text.startswith(text, self.place)

    def take(self, text):
        if self.next_is(text):
            self.place += len(text)
            return True
        return False

    def expect(self, text):
        if not self.take(text):
            raise Unknown(self.text)

    def match(self, pattern):
        found = pattern.match(self.text, self.place)
        if found is None:
            return None
        self.place = found.end()
        return found[0]

    def keep(self, node):
        self.known.append(node)
        return node

    def until_end(self, read):
        items = []
        while not self.take("E"):
            items.append(read())
        return tuple(items)

    # Names.

    def function(self):
        """A name and the types of its arguments."""
        name = self.name(is_function=True)
        types = []
        while self.place < len(self.text) and not self.next_is("E"):
            types.append(self.type())
        return "function", name, tuple(types)

    def name(self, is_function=False):
        if self.take("N"):
            return self.nested(is_function)
        if self.take("Z"):
            outer = self.function()
            self.expect("E")
            inner = self.name()
            return "local", outer, inner, self.match(re.compile(r"_\d|__\d+_")) or ""
        if self.next_is("S") and not self.next_is("St"):
            node = self.abbreviation()
        else:
            parent = STD if self.take("St") else None
            node = ("name", parent, self.component(None))
            if self.next_is("I"):
                self.keep(node)
        if self.next_is("I"):
            node = ("template", node, self.arguments())
        return node

    def nested(self, is_function):
        qualifiers = self.match(re.compile(r"[rVK]*[RO]?"))
        node = None
        while not self.take("E"):
            is_new = True
            if self.next_is("St"):
                self.place += 2
                node, is_new = STD, False
            elif self.next_is("S"):
                node, is_new = self.abbreviation(), False
            elif self.next_is("I"):
                node = ("template", node, self.arguments())
            elif self.next_is("T"):
                node = self.parameter()
            else:
                node = ("name", node, self.component(node))
            # The whole name of a function is no candidate; that of a type is kept by type().
            if is_new and not self.next_is("E"):
                self.keep(node)
        return ("member", qualifiers, node) if qualifiers or is_function else node

    def component(self, parent):
        if self.next_is("L"):  # of one source alone
            self.place += 1
            return "L" + self.component(parent)
        for form in (r"[CD][0-5]", r"Ut\d*_"):
            found = self.match(re.compile(form))
            if found:
                return found
        if self.take("Ul"):
            types = self.until_end(self.type)
            return "lambda", types, self.match(re.compile(r"\d*_"))
        length = self.match(NUMBERED)
        if length is None:
            found = self.match(OPERATOR)
            if found is None:
                raise Unknown(self.text)
            return found
        text = self.text[self.place:self.place + int(length)]
        self.place += int(length)
        tags = ""
        while self.take("B"):
            size = self.match(NUMBERED)
            if size is None:
                raise Unknown(self.text)
            tags += "B" + size + self.text[self.place:self.place + int(size)]
            self.place += int(size)
        return f"{len(text)}{text}{tags}"

    def abbreviation(self):
        self.expect("S")
        found = self.match(re.compile(r"[0-9A-Z]*_"))
        if found is None:
            if self.match(re.compile(r"[abisod]")):
                return "standard", self.text[self.place - 2:self.place]
            raise Unknown(self.text)
        index = 0 if found == "_" else int(found[:-1], 36) + 1
        if index >= len(self.known):
            raise Unknown(self.text)
        return self.known[index]

    def parameter(self):
        return "parameter", self.match(re.compile(r"T\d*_")) or self.expect("T_")

    def arguments(self):
        self.expect("I")
        return self.until_end(self.argument)

    def argument(self):
        if self.take("J"):
            return "pack", self.until_end(self.argument)
        if self.take("L"):
            if self.take("_Z"):
                inner = self.function()
                self.expect("E")
                return "address", inner
            kind = self.type()
            value = self.match(re.compile(r"n?[0-9a-z]*"))
            self.expect("E")
            return "literal", kind, value
        if self.next_is("X"):
            raise Unknown(self.text)
        return self.type()

    # Types.

    def type(self):
        if self.next_is("S") and not self.next_is("St"):
            node = self.abbreviation()
            if self.next_is("I"):
                return self.keep(("template", node, self.arguments()))
            return node
        qualifiers = self.match(re.compile(r"r?V?K?"))
        if qualifiers:
            return self.keep(("qualified", qualifiers, self.type()))
        for mark in ("P", "R", "O", "Dp"):
            if self.take(mark):
                return self.keep(("of", mark, self.type()))
        if self.take("F"):
            return self.keep(("signature", self.until_end(self.type)))
        if self.take("M"):
            return self.keep(("pointer to member", self.type(), self.type()))
        if self.take("A"):
            size = self.match(NUMBERED) or ""
            self.expect("_")
            return self.keep(("array", size, self.type()))
        if self.next_is("T"):
            return self.keep(self.parameter())
        built_in = None if self.next_is("St") else self.match(BUILT_IN)
        return built_in if built_in else self.keep(self.name())


class Writer:
    def __init__(self):
        self.known = {}

    def abbreviated(self, node, write):
        """The node's abbreviation, or itself, after which it has one."""
        if node in self.known:
            return self.known[node]
        text = write()
        self.keep(node)
        return text

    def keep(self, node):
        count = len(self.known)
        digits = ""
        index = count - 1
        while count and (index or not digits):
            digits = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"[index % 36] + digits
            index //= 36
        self.known.setdefault(node, f"S{digits}_")

    def function(self, node):
        _, name, types = node
        return self.name(name) + "".join(map(self.type, types))

    def name(self, node):
        if node[0] == "member":
            return f"N{node[1]}{self.last(node[2])}E"
        if node[0] == "local":
            return f"Z{self.function(node[1])}E{self.name(node[2])}{node[3]}"
        if node[0] == "standard":
            return node[1]
        if node[0] == "template":
            inner = node[1]
            if self.is_nested(inner):
                return f"N{self.last(node)}E"
            prefix = inner[1] if inner[0] == "standard" else self.abbreviated(inner, lambda: self.name(inner))
            return prefix + self.arguments(node[2])
        if self.is_nested(node):
            return f"N{self.last(node)}E"
        return ("St" if node[1] == STD else "") + self.component(node[2])

    @staticmethod
    def is_nested(node):
        return node[0] == "name" and node[1] is not None and node[1] != STD

    def last(self, node):
        """The last part of a nested name, with what stands before it."""
        if node[0] == "template":
            return self.prefix(node[1]) + self.arguments(node[2])
        return self.prefix(node[1]) + self.component(node[2])

    def prefix(self, node):
        if node is None:
            return ""
        if node == STD:
            return "St"
        if node[0] == "standard":
            return node[1]
        return self.abbreviated(node, lambda: node[1] if node[0] == "parameter" else self.last(node))

    def component(self, node):
        if isinstance(node, str):
            return node
        return f"Ul{''.join(map(self.type, node[1]))}E{node[2]}"

    def arguments(self, arguments):
        return f"I{''.join(map(self.argument, arguments))}E"

    def argument(self, node):
        if node[0] == "pack":
            return f"J{''.join(map(self.argument, node[1]))}E"
        if node[0] == "address":
            return f"L_Z{self.function(node[1])}E"
        if node[0] == "literal":
            return f"L{self.type(node[1])}{node[2]}E"
        return self.type(node)

    def type(self, node):
        if isinstance(node, str):
            return node
        if node[0] == "standard":
            return node[1]
        return self.abbreviated(node, lambda: self.new_type(node))

    def new_type(self, node):
        kind, *rest = node
        if kind in ("qualified", "of"):
            return rest[0] + self.type(rest[1])
        if kind == "signature":
            return f"F{''.join(map(self.type, rest[0]))}E"
        if kind == "pointer to member":
            return "M" + self.type(rest[0]) + self.type(rest[1])
        if kind == "array":
            return f"A{rest[0]}_{self.type(rest[1])}"
        if kind == "parameter":
            return rest[0]
        return self.name(node)


def read_function(mangled):
    """The tree of a function's name; what leads to a function by another base counts as the function."""
    inner = re.sub(r"^_ZT(h|v\w*?_)n?\d+_", "_Z", mangled)
    if not inner.startswith("_Z"):
        raise Unknown(mangled)
    reader = Reader(inner[2:])
    node = reader.function()
    if reader.place != len(reader.text) or "_Z" + Writer().function(node) != inner:
        raise Unknown(mangled)
    return node


def read_class(name):
    """The tree of a class, by the name in its type info."""
    reader = Reader(name)
    node = reader.type()
    if reader.place != len(name) or isinstance(node, str):
        raise Unknown(name)
    return node


def without_class(function):
    """What a member function has in every class: qualifiers, its own name, the types of its arguments."""
    _, name, types = function
    if name[0] != "member" or name[2][0] != "name":
        raise Unknown(str(function))
    return name[1], name[2][2], types


def in_class(method, cls):
    """The mangled name of such a function in a class."""
    qualifiers, name, types = method
    return "_Z" + Writer().function(("function", ("member", qualifiers, ("name", cls, name)), types))
