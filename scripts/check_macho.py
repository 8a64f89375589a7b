#!/usr/bin/env python3
"""Checks the library for the phone, as far as its file tells whether it will load there and do its
work: what iOS 12 can load, what it exports and imports, constructors, classes, signature; of the slice
for processors with pointer authentication (arm64e) also how its pointers are signed.

usage: check_macho.py [--unstripped FILE] [--exports LIST] [--stubs FOLDER]... [--tables LIST]
                      [--beside FILE] [--rules DOCUMENT] [--install-name PATH] [--contents] LIBRARY
       check_macho.py --arm64e [--exports LIST] [--stubs FOLDER]... [--install-name PATH] SLICE

Prints a line for each thing that is wrong and where to mend it, or one that all is well; with --contents
then also what is in the library. A slice is compared with the library beside it, than which it may be a
tenth larger, and its rules are those of the documents unless given. --arm64e looks at a slice that is
to be joined, wherever it was built, and prints one line when it does not fit; LIST and FOLDER are those of device/
there unless given. Exit code 1 when something is wrong, 3 when a file cannot be read."""

import argparse
import collections
import pathlib
import re
import struct
import sys

import check_instructions
import check_pointers
import macho
import pointer_rules
from macho import BadFile, MachO
from macho_slice import Slice

DEVICE = pathlib.Path(__file__).resolve().parent.parent / "device"
MAX_SIZE = 400_000
PAGE = 0x4000
INSTALL_NAME = "/Library/MobileSubstrate/DynamicLibraries/VelMoranth.dylib"
CONSTRUCTORS = ["installHooks", "startSettings"]
# Its stub is made by what builds the library, and is in no folder of the sources.
CXX_LIBRARY = "/usr/lib/libc++.1.dylib"
AD_HOC = 0x2
# How an instance comes and goes; the tables list what others send to it.
LIFETIME = {"init", "dealloc", ".cxx_construct", ".cxx_destruct"}

Tables = collections.namedtuple("Tables", "classes rows")
Stub = collections.namedtuple("Stub", "symbols compatibility")


def read_tables(path):
    """What velmoranth_library_tables prints: {class: ({class selectors}, {selectors})} and the rows."""
    classes, rows, current = {}, [], None
    for line in pathlib.Path(path).read_text().splitlines():
        if line.startswith("class "):
            current = classes.setdefault(line.removeprefix("class "), (set(), set()))
        elif line.startswith("row "):
            rows.append(tuple(line.split(" ")[1:]))
        elif line[:1] in "+-" and current is not None:
            current[line[0] == "-"].add(line[1:])
        else:
            raise BadFile(f"has a line that is no row of a table: {line}")
    if not classes or not rows:
        raise BadFile("has no tables in it")
    return Tables(classes, rows)


def read_stubs(folders):
    """{install name: Stub} of the text stubs below the folders."""
    libraries = {}
    for path in sorted(path for folder in folders for path in pathlib.Path(folder).rglob("*.tbd")):
        text = path.read_text()
        name = re.search(r"^install-name:\s*'([^']+)'", text, re.MULTILINE)
        if name is None:
            raise BadFile(f"has a stub without an install name: {path}")
        symbols = set()
        for key, names in re.findall(r"(symbols|objc-classes):\s*\[([^\]]*)\]", text):
            for symbol in re.findall(r"[^\s,']+", names):
                symbols.update([symbol] if key == "symbols" else
                               [f"_OBJC_CLASS_$_{symbol}", f"_OBJC_METACLASS_$_{symbol}"])
        # Without the line it is 1, as the linker has it.
        version = re.search(r"^compatibility-version:\s*([\d.]+)", text, re.MULTILINE)
        parts = (version.group(1) if version else "1").split(".")
        libraries[name.group(1)] = Stub(symbols, ".".join([*parts, "0", "0"][:3]))
    return libraries


def read_list(path):
    lines = pathlib.Path(path).read_text().splitlines()
    return sorted(line.strip() for line in lines if line.strip() and not line.startswith("#"))


def difference(what, found, wanted):
    return [*(f"{what} {name} is missing" for name in sorted(set(wanted) - set(found))),
            *(f"{what} {name} should not be there" for name in sorted(set(found) - set(wanted)))]


# The checks: each gives what is wrong, a line each.

def check_kind(library):
    problems = []
    if library.cpu != macho.CPU_ARM64 or library.subtype not in (macho.SUBTYPE_ALL, macho.SUBTYPE_ARM64E):
        problems.append(f"is for processor {library.cpu:#x}/{library.subtype}, not arm64")
    if library.capabilities:  # of iOS 14
        problems.append(f"has the capabilities {library.capabilities:#x}, which iOS 12 and 13 do not load")
    if library.file_type != macho.TYPE_DYLIB:
        problems.append(f"is a file of type {library.file_type}, not a dynamic library")
    platform, *version = library.platform_and_minimum()
    if platform != macho.PLATFORM_IOS or version != [12, 0]:
        problems.append(f"is for platform {platform}, {version[0]}.{version[1]}, "
                        "not iOS 12.0")
    return problems


def check_load_commands(library, install_name):
    problems = []
    if not library.all_of(macho.DYLD_INFO):
        problems.append("has no classic fix-ups")
    for command in (macho.CHAINED_FIXUPS, macho.EXPORTS_TRIE):
        if library.all_of(command):
            problems.append(f"has {macho.COMMAND_NAMES[command]}, which iOS 12 does not know")
    if library.install_name() != install_name:
        problems.append(f"calls itself {library.install_name()}")
    end = 0
    for segment in library.segments:
        if segment.address % PAGE or segment.offset % PAGE or segment.address < end:
            problems.append(f"has its segment {segment.name} off a page or over another")
        if segment.file_size > segment.size:
            problems.append(f"has its segment {segment.name} larger in the file than in memory")
        end = segment.address + segment.size
    if not library.segments or library.segments[-1].name != "__LINKEDIT":
        problems.append("does not end with __LINKEDIT")
    return problems


def check_exports(library, wanted):
    return difference("export", library.exports(), wanted)


def check_imports(library, stubs):
    """Each import comes from the library whose stub has it, found by its name and that library's."""
    problems = [f"links {name} {kind}" for kind, name in library.other_dylibs]
    problems += [f"links {name}" for name in library.dylibs if name not in stubs]
    # The phone refuses a library that asks for more than the one it has.
    problems += [f"asks for {name} {version}, not {stubs[name].compatibility}"
                 for name, version in zip(library.dylibs, library.compatibility_versions)
                 if name in stubs and version != stubs[name].compatibility]
    if library.dyld_info()["weak"][1]:
        problems.append("has symbols that another library may replace")
    _, undefined = library.symbols()
    wanted = {*undefined, *((bind.symbol, bind.ordinal) for bind in library.binds())}
    if not wanted:
        problems.append("imports nothing")
    for symbol, ordinal in sorted(wanted):
        if not 1 <= ordinal <= len(library.dylibs):
            problems.append(f"import {symbol} names no library")
        elif symbol not in stubs.get(library.dylibs[ordinal - 1], Stub((), "")).symbols:
            problems.append(f"import {symbol} is not in {library.dylibs[ordinal - 1]}")
    return problems


def check_constructors(library, names):
    """`names` is a list, or the number of them where names are stripped."""
    calls = library.words("__DATA", "__mod_init_func")
    problems = []
    if ("__TEXT", "__init_offsets") in library.sections:
        problems.append("has constructors in a form that iOS 12 does not know")
    if isinstance(names, int):
        if len(calls) != names:
            problems.append(f"has {len(calls)} constructors, not {names}")
        return problems
    defined, _ = library.symbols()
    found = [" or ".join(defined.get(call, ["one without a name"])) for call in calls]
    # A C++ function's name stands in its symbol behind its length.
    if len(found) != len(names) or any(f"{len(name)}{name}Ev" not in symbol
                                       for name, symbol in zip(names, found)):
        problems.append(f"has the constructors {', '.join(found) or 'none'}, "
                        f"not {', then '.join(names)}")
    return problems


def check_classes(library, tables):
    problems = difference("class", [cls.name for cls in library.classes()], tables.classes)
    for cls in library.classes():
        sides = zip("+-", (cls.class_methods, cls.methods), tables.classes.get(cls.name, ()))
        for side, found, wanted in sides:
            problems += difference(f"method {side}[{cls.name}]", set(found) - LIFETIME,
                                   set(wanted) - LIFETIME)
    loaded = [cls.name for cls in library.classes("__objc_nlclslist")]
    wanted = [name for name, (selectors, _) in tables.classes.items() if "load" in selectors]
    return problems + difference("class with +load", loaded, wanted)


def check_rows(library, tables):
    strings = library.strings()
    return [f"row {' '.join(row)}: {text} is not among the texts"
            for row in tables.rows for text in row if text not in strings]


def check_signature(library):
    signature = library.signature()
    problems = []
    if not signature.flags & AD_HOC:
        problems.append("has a signature that is not ad hoc")
    if not signature.sha256:
        problems.append("has hashes other than SHA-256")
    if not signature.covers_file:
        problems.append("has a signature that does not cover the file")
    if not signature.pages_match:
        problems.append("differs from the hashes in its signature")
    return problems


def check_size(library, beside=None):
    """`beside` is the library of which this one is a slice."""
    size = len(library.data)
    most = MAX_SIZE if beside is None else len(beside.data) * 11 // 10
    return [f"has {size} bytes, more than {most}"] if size > most else []


def check_same_code(library, unstripped):
    if not library.contents("__TEXT", "__text") or \
            library.contents("__TEXT", "__text") != unstripped.contents("__TEXT", "__text"):
        return ["has not the code of the library with names"]
    # Fix-ups stand in the data of a slice.
    return [f"has not the {key[1]} of the library with names" for key in sorted(unstripped.sections)
            if key[0] == "__DATA" and unstripped.sections[key].kind not in macho.ZERO_FILL
            and library.contents(*key) != unstripped.contents(*key)]


def check_slice(library, exports, stubs, install_name):
    """The first thing, if any, by which a slice for processors with pointer authentication could not be
    joined with ours, or would not be loaded."""
    return next(([problem] for is_wrong, problem in slice_problems(library, exports, stubs, install_name)
                 if is_wrong), [])


def slice_problems(library, exports, stubs, install_name):
    """(whether it is so, what is wrong): each may rely on those before it not being so."""
    yield ((library.cpu, library.subtype) != (macho.CPU_ARM64, macho.SUBTYPE_ARM64E),
           "is not arm64e; build it with -arch arm64e")
    yield (library.capabilities & 0x80,
           "has the arm64e of iOS 14, which iOS 12 and 13 do not load; build it with Xcode 11")
    yield library.file_type != macho.TYPE_DYLIB, "is not a dynamic library; link it with -dynamiclib"
    yield (library.install_name() != install_name,
           f"calls itself {library.install_name()}; link it with -install_name {install_name}")
    for command in (macho.CHAINED_FIXUPS, macho.EXPORTS_TRIE):
        yield (library.all_of(command),
               f"has {macho.COMMAND_NAMES[command]}, which iOS 12 does not know; build it with Xcode 11")
    yield (not library.all_of(macho.DYLD_INFO),
           f"has no {macho.COMMAND_NAMES[macho.DYLD_INFO]}; build it with Xcode 11")
    platform, major, _ = library.platform_and_minimum()
    yield (platform != macho.PLATFORM_IOS or major > 12,
           "is not for iOS 12; build it with -miphoneos-version-min=12.0")
    yield (library.exports() != exports,
           "exports other symbols; link it with -exported_symbols_list device/exports.txt")
    for name in library.dylibs:
        yield (name not in stubs and name != CXX_LIBRARY,
               f"links {name}, which has no stub in device/sysroot; do without it")
    yield not library.all_of(macho.CODE_SIGNATURE), "has no signature; sign it with ldid -S"
    signature = library.signature()
    yield (not signature.covers_file or signature.sha256 and not signature.pages_match,
           "was changed after it was signed; sign it again with ldid -S")


def print_contents(library):
    platform, major, minor = library.platform_and_minimum()
    names = [macho.COMMAND_NAMES.get(command, hex(command)) for command, _, _ in library.commands
             if command != macho.LOAD_DYLIB]
    processor = "arm64e" if isinstance(library, Slice) else "arm64"
    print(f"{len(library.data)} bytes, {processor}, iOS {major}.{minor}" if platform == macho.PLATFORM_IOS
          else f"{len(library.data)} bytes, platform {platform}")
    print("segments: " + ", ".join(f"{segment.name} {segment.file_size}" for segment in library.segments))
    print("load commands: " + " ".join(names))
    used = collections.Counter(library.dylibs[ordinal - 1] for _, ordinal in library.symbols()[1]
                               if 1 <= ordinal <= len(library.dylibs))
    for name in library.dylibs:
        print(f"links {name}: {used[name]} symbols")
    print("exports: " + " ".join(library.exports()))
    for cls in library.classes():
        print(f"class {cls.name}: {len(cls.class_methods)} class methods, {len(cls.methods)} others")


def print_pointers(library, named):
    counts = check_pointers.count_pointers(library, named)
    print(f"chains: {len(library.pages)}, to {len(library.pointers)} pointers, {len(library.targets)} symbols of other libraries")
    print("pointers: " + ", ".join(f"{count} {kind}" for kind, count in sorted(counts.items())))


def checks_of(library, arguments):
    """(what is checked, where to mend it, a function that says what is wrong) for each check that the
    arguments ask for."""
    linking = "see the flags in scripts/device-toolchain.sh"
    yield "kind", linking, lambda: check_kind(library)
    yield "load commands", linking, lambda: check_load_commands(library, arguments.install_name)
    if isinstance(library, Slice):
        # What follows pointers relies on them.
        named = open_library(arguments.unstripped) if arguments.unstripped else library
        yield "chains", "see scripts/arm64e/chains.py", lambda: check_pointers.check_chains(library, named)
    if arguments.exports:
        exports = read_list(arguments.exports)
        yield "exports", f"compare {arguments.exports}", lambda: check_exports(library, exports)
    if arguments.stubs:
        stubs = read_stubs(arguments.stubs)
        yield "imports", "see the stubs in device/sysroot", lambda: check_imports(library, stubs)
    only_two = "device/startup.cpp has them all, and is linked last"
    yield "constructors", only_two, lambda: check_constructors(library, len(CONSTRUCTORS))
    if arguments.unstripped:
        named = open_library(arguments.unstripped)
        yield "constructors by name", only_two, lambda: check_constructors(named, CONSTRUCTORS)
        yield "same code", "link both from the same objects", lambda: check_same_code(library, named)
    if isinstance(library, Slice):
        yield from slice_checks(library, arguments)
    if arguments.tables:
        tables = read_tables(arguments.tables)
        classes = "compare device/classes with src/core/library_classes.cpp"
        yield "classes", classes, lambda: check_classes(library, tables)
        yield "replaced methods", "compare src/core/hook_rows.h", lambda: check_rows(library, tables)
    yield "signature", "link again; nothing may change the file afterwards", lambda: check_signature(library)
    beside = open_library(arguments.beside) if arguments.beside else None
    yield "size", "see what grew with llvm-nm-19 --print-size --size-sort", lambda: check_size(library, beside)


def slice_checks(library, arguments):
    named = open_library(arguments.unstripped) if arguments.unstripped else library
    rules = pointer_rules.read_rules(arguments.rules)
    signing = "see scripts/arm64e/sign_assembly.py"
    yield "tables", "see scripts/arm64e/make_slice.py", lambda: check_pointers.check_tables(library)
    yield "numbers of names", "see scripts/pointer_rules.py", check_pointers.check_numbers
    yield "signed pointers", signing, lambda: check_pointers.check_pointers(library, named, rules)
    yield "return addresses", signing, lambda: check_instructions.check_code(library, named, rules)


def open_library(path):
    try:
        library = MachO(pathlib.Path(path).read_bytes())
        return Slice(library.data) if library.subtype == macho.SUBTYPE_ARM64E else library
    except BadFile as bad:
        raise BadFile(f"{path}: {bad}") from bad


def check_library(arguments):
    library = open_library(arguments.library)
    done, failed = [], False
    for name, hint, check in checks_of(library, arguments):
        try:
            problems = check()
        except BadFile as bad:
            problems = [str(bad)]
        for problem in problems:
            print(f"{name}: FAIL: {arguments.library}: {problem}; {hint}")
        failed = failed or bool(problems)
        done.append(name)
    if failed:
        return 1
    print(f"structure: OK ({', '.join(done)})")
    if arguments.contents:
        print_contents(library)
        if isinstance(library, Slice):
            print_pointers(library, open_library(arguments.unstripped or arguments.library))
    return 0


def check_arm64e(arguments):
    try:
        library = MachO(pathlib.Path(arguments.library).read_bytes())
        exports = read_list(arguments.exports or DEVICE / "exports.txt")
        stubs = read_stubs(arguments.stubs or [DEVICE / "sysroot"])
        problems = check_slice(library, exports, stubs, arguments.install_name)
    except BadFile as bad:
        hint = "; take one with lipo -thin arm64e" if "several" in str(bad) else ""
        problems = [f"{bad}{hint}"]
    for problem in problems:
        print(f"{arguments.library}: {problem}", file=sys.stderr)
    return 1 if problems else 0


def main():
    parser = argparse.ArgumentParser(usage=__doc__.split("usage: ")[1].split("\n\n")[0])
    parser.add_argument("--arm64e", action="store_true")
    parser.add_argument("--unstripped")
    parser.add_argument("--exports")
    parser.add_argument("--stubs", action="append", default=[])
    parser.add_argument("--tables")
    parser.add_argument("--beside")
    parser.add_argument("--rules", default=pointer_rules.DOCUMENT)
    parser.add_argument("--install-name", default=INSTALL_NAME)
    parser.add_argument("--contents", action="store_true")
    parser.add_argument("library")
    arguments = parser.parse_args()
    try:
        return check_arm64e(arguments) if arguments.arm64e else check_library(arguments)
    except (BadFile, pointer_rules.BadTable, OSError, struct.error, UnicodeDecodeError) as error:
        print(f"check_macho.py: {error}", file=sys.stderr)
        return 3


if __name__ == "__main__":
    sys.exit(main())
