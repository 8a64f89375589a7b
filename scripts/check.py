#!/usr/bin/env python3
"""Checks what no compiler does: who includes whom, what the engine may not use, file sizes, and that
tables and documents agree. Prints a line a check, and below a failed one what is wrong. Exit code 1
when one failed."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
MAX_LINES = 500
CODE_SUFFIXES = {".h", ".cpp", ".mm"}
TEXT_SUFFIXES = CODE_SUFFIXES | {".py", ".md", ".txt", ".json", ".cmake", ".sh", ""}
TOP_FOLDERS = ["src", "record", "desktop", "simulator", "makers", "cli", "device", "tests", "benchmarks", "fuzz",
               "scripts", "docs", "cmake", "examples", "layout", ".ci"]

# Who may include whom. The longest prefix that fits a file is its layer; a layer may include itself
# and what is listed. Paths are those of includes: the engine leaves "src/" out. The link dependencies
# in CMake say the same folder by folder; here they are in one view, with files told apart where a
# folder holds two layers.
ENGINE_ROOTS = ["platform", "core", "theme", "imaging", "hooks", "sounds", "tools", "filemanager"]
SETTINGS = ["platform/", "core/"]  # The low part of core: the rest of it has rows of its own.
LOOKUPS = [*SETTINGS, "tools/", "theme/"]
EFFECTS = [*LOOKUPS, "imaging/", "sounds/", "filemanager/"]
ICON_HOOKS = ["theme/app_icon_hooks", "theme/icon_theming"]
HOOKS = [*EFFECTS, *ICON_HOOKS, "hooks/", "sounds/sound_hooks"]
LAYERS = {
    "platform/": [],
    "core/": ["platform/"],
    "tools/": SETTINGS,
    "tools/catalog_extraction": SETTINGS,
    "filemanager/": SETTINGS,
    "theme/": LOOKUPS,
    "sounds/": [*LOOKUPS, "sounds/sound_files"],
    "sounds/sound_files": [],
    "imaging/": LOOKUPS,
    # Replacements that stand with what they call.
    "theme/app_icon_hooks": [*EFFECTS, *ICON_HOOKS],
    "theme/icon_theming": EFFECTS,
    "hooks/": [*EFFECTS, "theme/icon_theming"],
    # What ties the rooms together.
    "sounds/sound_hooks": [*SETTINGS, "sounds/", "core/velmoranth"],
    "core/velmoranth": [*EFFECTS, "tools/catalog_extraction"],
    "core/theme_change": EFFECTS,
    "core/change_observers": [*SETTINGS, "core/theme_change"],
    "core/hook_table": [*HOOKS, "core/hook_rows"],
    "core/hook_rows": [*HOOKS, "core/hook_table"],
    "core/hook_replacements": [*HOOKS, "core/hook_rows", "core/hook_table"],
    "core/entry_points": [*SETTINGS, "core/change_observers", "core/hook_table", "core/library_classes"],
    "core/library_classes": ["platform/", "core/velmoranth", "sounds/", "filemanager/"],
    "core/load_time": [*SETTINGS, "core/entry_points"],
    # The house around the engine.
    "record/": ["platform/"],
    "desktop/": ["platform/", "record/"],
    "simulator/artwork/": [],
    "simulator/": [*SETTINGS, "desktop/", "simulator/artwork/"],
    "simulator/process/": ["platform/", "record/", "desktop/", "simulator/", "simulator/artwork/",
                           "core/hook_rows"],
    "makers/": ["platform/", "desktop/", "simulator/", "sounds/sound_files"],
    # Draws with the same pen as the simulated device.
    "makers/starter/": ["platform/", "desktop/", "makers/", "simulator/artwork/"],
    # Puts the shape of the device's icons and the base of its calendar into themes.
    "makers/skeleton/": ["platform/", "desktop/", "makers/", "simulator/", "simulator/artwork/"],
    # An added method is one of the C functions of the rows.
    "device/platform/": ["platform/", "device/hooks/"],
    "device/hooks/": ["platform/", "core/hook_table", "core/hook_rows", "device/platform/"],
    "device/classes/": [*EFFECTS, "core/velmoranth", "device/platform/", "device/hooks/", "device/startup"],
    "device/startup": ["core/entry_points", "device/platform/"],
    "cli/": [*SETTINGS, "core/entry_points", "core/hook_table", "filemanager/", "tools/catalog_extraction",
             "record/", "desktop/", "simulator/", "simulator/process/", "makers/", "makers/skeleton/",
             "makers/starter/"],
}

OUR_CODE = ["src", "record", "desktop", "simulator", "makers", "cli", "device"]
# The phone's frameworks and C library as we declare them: foreign headers by their names, not ours.
DECLARATIONS = ("device/frameworks/", "device/sysroot/", "device/cxx/")

# Headers that the phone's C++ library of 2018 cannot serve, or that the engine does without.
FORBIDDEN_IN_ENGINE = {
    "iostream", "istream", "ostream", "sstream", "fstream", "iomanip", "locale", "clocale", "codecvt",
    "regex", "filesystem", "format", "memory_resource", "print", "stacktrace", "syncstream",
    "spanstream", "barrier", "latch", "semaphore", "stop_token", "exception", "stdexcept",
}

STANDARD_HEADERS = set("""
algorithm any array atomic bit bitset cassert cctype cerrno cfenv cfloat charconv chrono cinttypes climits
clocale cmath codecvt compare complex concepts condition_variable csetjmp csignal cstdarg cstddef cstdint
cstdio cstdlib cstring ctime cuchar cwchar cwctype deque exception execution filesystem forward_list fstream
functional future initializer_list iomanip ios iosfwd iostream istream iterator limits list locale map memory
memory_resource mutex new numbers numeric optional ostream queue random ranges ratio regex scoped_allocator
set shared_mutex source_location span sstream stack stdexcept streambuf string string_view system_error
thread tuple type_traits typeindex typeinfo unordered_map unordered_set utility valarray variant vector
version
""".split())
# The operating system's own headers, which a header of ours may need for a type.
SYSTEM_HEADERS = re.compile(r"sys/\w+\.h|(fcntl|unistd|dirent|signal|time|poll)\.h")
# What CMake calls a library, and the Debian package that brings it ("" when it belongs to the compiler).
CMAKE_PACKAGES = {
    "PkgConfig": "pkgconf", "Threads": "", "GTest": "libgtest-dev", "benchmark": "libbenchmark-dev",
    "cairo": "libcairo2-dev", "pango": "libpango1.0-dev", "pangocairo": "libpango1.0-dev",
    "pangoft2": "libpango1.0-dev", "fontconfig": "libfontconfig-dev", "freetype2": "libfreetype-dev",
    "PNG": "libpng-dev", "libpng": "libpng-dev", "GIF": "libgif-dev", "TIFF": "libtiff-dev",
    "libdeflate": "libdeflate-dev", "libturbojpeg": "libturbojpeg0-dev", "EXPAT": "libexpat1-dev",
    "libarchive": "libarchive-dev", "libplist-2.0": "libplist-dev", "ICU": "libicu-dev", "icu-uc": "libicu-dev", "icu-i18n": "libicu-dev",
    "fmt": "libfmt-dev", "nlohmann_json": "nlohmann-json3-dev",
    "tl-expected": "libexpected-dev", "librsvg-2.0": "librsvg2-dev",
    "libavformat": "libavformat-dev", "libavcodec": "libavcodec-dev", "libswresample": "libswresample-dev",
    "libavutil": "libavutil-dev", "sdl2": "libsdl2-dev",
    "nettle": "nettle-dev", "VelMoranthCatalog": "",  # the latter is ours, as its users find it
    "Python3": "python3",
    "libheif": "",  # only asked for by who wants it (VELMORANTH_HEIF)
}
# The result type of everything outside the engine is an alias of this one.
THIRD_PARTY_IN_HEADERS = {("desktop/result/result.h", "tl/expected.hpp"),
    # One file's JSON, which several commands put into their own.
    ("cli/asked_file_json.h", "nlohmann/json_fwd.hpp"),
                          # The compiler's own, where it signs pointers.
                          ("device/platform/signed_pointers.h", "ptrauth.h"),
                          # FFmpeg's functions, for the sources beside it.
                          *(("desktop/audio/ffmpeg.h", name) for name in (
                              "libavcodec/avcodec.h", "libavformat/avformat.h", "libavutil/avutil.h",
                              "libavutil/log.h", "libavutil/opt.h", "libswresample/swresample.h"))}

INCLUDE = re.compile(r'^\s*#\s*(?:include|import)\s*([<"])([^>"]+)[>"]', re.MULTILINE)


def files(folders, suffixes):
    for folder in folders:
        for path in sorted((ROOT / folder).rglob("*")):
            if path.is_file() and path.suffix in suffixes and "__pycache__" not in path.parts:
                yield path


def relative(path):
    return path.relative_to(ROOT).as_posix()


def our_code(suffixes):
    return (path for path in files(OUR_CODE, suffixes) if not relative(path).startswith(DECLARATIONS))


def is_declared(include):
    """Whether it is a header of the phone's."""
    places = ("device/frameworks", "device/sysroot/usr/include")
    framework, _, header = include.partition("/")
    return any((ROOT / place / include).exists() for place in places) or (
        ROOT / f"device/sysroot/System/Library/Frameworks/{framework}.framework/Headers" / header).exists()


def includes(path):
    return INCLUDE.findall(path.read_text())


def is_ours(include):
    first = include.split("/")[0]
    return first in ENGINE_ROOTS or first in ("record", "desktop", "simulator", "makers", "cli", "device", "tests")


def layer_of(path):
    return max((prefix for prefix in LAYERS if path.startswith(prefix)), key=len, default=None)


def without_comments_and_literals(text):
    """The code with comments, strings and characters blanked; lines keep their numbers."""
    pattern = re.compile(r'//[^\n]*|/\*.*?\*/|R"(\w*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|'
                         r"(?<![0-9a-fA-F])'(?:\\.|[^'\\\n])*'", re.DOTALL)
    return pattern.sub(lambda match: re.sub(r"[^\n]", " ", match.group()), text)


def check_include_direction():
    problems = []
    for path in our_code(CODE_SUFFIXES):
        name = relative(path).removeprefix("src/")
        layer = layer_of(name)
        if layer is None:
            problems.append(f"{relative(path)}: its folder has no row in the table of layers")
            continue
        for kind, include in includes(path):
            if not is_ours(include):
                if kind == '"' and not (path.parent / include).exists():
                    problems.append(f'{relative(path)}: "{include}" is neither ours by path nor in <>')
                continue
            target = layer_of(include)
            if target is None or (target != layer and target not in LAYERS[layer]):
                problems.append(f"{relative(path)}: may not include {include}")
    return problems


def check_engine_restrictions():
    problems = []
    words = re.compile(r"\b(throw|try|catch)\b")
    conditionals = re.compile(r"^\s*#\s*(if|ifdef|ifndef|elif)\b", re.MULTILINE)
    for path in files(["src"], CODE_SUFFIXES):
        for kind, include in includes(path):
            if include in FORBIDDEN_IN_ENGINE:
                problems.append(f"{relative(path)}: <{include}> is not for the engine")
            elif kind == "<" and include not in STANDARD_HEADERS:
                problems.append(f"{relative(path)}: <{include}> is no header of the standard library")
        code = without_comments_and_literals(path.read_text())
        for pattern, what in ((words, "no exceptions in the engine"),
                              (conditionals, "no conditional compilation in the engine")):
            for match in pattern.finditer(code):
                line = code.count("\n", 0, match.start(1)) + 1
                problems.append(f"{relative(path)}:{line}: {match.group(1)}: {what}")
    return problems


def check_headers():
    problems = []
    for path in our_code({".h"}):
        text = path.read_text()
        if "#pragma once" not in text:
            problems.append(f"{relative(path)}: no #pragma once")
        if not text.startswith("//"):
            problems.append(f"{relative(path)}: does not open with what it is for")
        for kind, include in includes(path):
            if kind != "<" or include in STANDARD_HEADERS or SYSTEM_HEADERS.fullmatch(include):
                continue
            if relative(path).startswith("device/") and is_declared(include):
                continue
            if (relative(path), include) not in THIRD_PARTY_IN_HEADERS:
                problems.append(f"{relative(path)}: third-party <{include}> in a header of ours")
    return problems


def check_file_sizes():
    problems = []
    suffixes = CODE_SUFFIXES | {".py", ".cmake"}
    for path in files(TOP_FOLDERS, suffixes):
        lines = path.read_text().count("\n")
        if lines > MAX_LINES:
            problems.append(f"{relative(path)}: {lines} lines, more than {MAX_LINES}")
    return problems


def cmake_packages(text):
    text = re.sub(r"#[^\n]*", "", text)
    names = re.findall(r"find_package\(\s*([\w-]+)", text)
    options = {"REQUIRED", "QUIET", "IMPORTED_TARGET", "GLOBAL"}
    for call in re.findall(r"pkg_check_modules\(\s*\w+([^)]*)\)", text):
        names += [word for word in re.sub(r"[<>=]+[\d.]+", "", call).split() if word not in options]
    return names


def check_packages():
    listed = [line.split()[0] for line in (ROOT / "scripts/debian-packages.txt").read_text().splitlines()
              if line.strip() and not line.startswith(("#", "["))]
    explained = re.findall(r"^\| `([^`]+)` \|", (ROOT / "docs/developers/dependencies.md").read_text(), re.MULTILINE)
    problems = [f"{name}: listed more than once" for name in sorted(set(listed)) if listed.count(name) > 1]
    problems += [f"{name}: no row in docs/developers/dependencies.md" for name in listed if name not in explained]
    problems += [f"{name}: a row in docs/developers/dependencies.md, but not in scripts/debian-packages.txt"
                 for name in explained if name not in listed]
    # What the Debian package is built with are the libraries of the command's own set.
    control = (ROOT / "debian/control").read_text()
    build_depends = re.search(r"^Build-Depends:((?:.|\n )*)", control, re.MULTILINE).group(1)
    needed = {name.split()[0] for name in build_depends.split(",")}
    problems += [f"debian/control: {name} is not listed" for name in sorted(needed)
                 if name not in ["debhelper-compat", *listed]]
    problems += [f"debian/control: {name} is missing among the build dependencies"
                 for name in listed[:listed.index("python3")] if name.endswith("-dev") and name not in needed]
    for path in [ROOT / "CMakeLists.txt", *files(TOP_FOLDERS, {".txt", ".cmake"})]:
        if path.name != "CMakeLists.txt" and path.suffix != ".cmake":
            continue
        for name in cmake_packages(path.read_text()):
            if name not in CMAKE_PACKAGES:
                problems.append(f"{relative(path)}: {name} has no row in the table of CMake's packages")
            elif CMAKE_PACKAGES[name] not in ["", *listed]:
                problems.append(f"{relative(path)}: {CMAKE_PACKAGES[name]} is not listed")
    return problems


def check_links():
    problems = []
    documents = [*ROOT.glob("*.md"), *files(["docs", "examples", "tests"], {".md"})]
    for path in documents:
        for target in re.findall(r"\]\(([^)#\s]+)[^)]*\)", path.read_text()):
            if "://" not in target and not (path.parent / target).exists():
                problems.append(f"{relative(path)}: no {target}")
    return problems


def check_host_paths():
    """A path of the machine that a file was written on means nothing on another."""
    places = [re.escape(str(ROOT)) + r"\b", r"/home/\w+/"]
    if len(ROOT.parts) > 2:  # The checkout's own surroundings, unless it lies in /tmp and the like.
        surrounding = str(ROOT.parent)
        if surrounding not in ("/tmp", "/var/tmp", "/home", "/root", "/opt", "/srv", "/usr/src"):
            places.append(r"(?<![\w./-])" + re.escape(surrounding) + "/")
    pattern = re.compile("|".join(places))
    problems = []
    top = [path for path in ROOT.iterdir() if path.is_file() and path.suffix in TEXT_SUFFIXES]
    for path in [*top, *files(TOP_FOLDERS, TEXT_SUFFIXES)]:
        try:
            text = path.read_text()
        except UnicodeDecodeError:
            continue
        for match in pattern.finditer(text):
            line = text.count("\n", 0, match.start()) + 1
            problems.append(f"{relative(path)}:{line}: names {match.group()}")
    return problems


def check_what_signs_and_what_checks():
    """What makes the slice with signed pointers, and what checks it, would else be wrong in the same way."""
    folders = {name: sorted((ROOT / name).glob("*.py")) for name in ("scripts", "scripts/arm64e")}
    problems = []
    for name, other in (("scripts", "scripts/arm64e"), ("scripts/arm64e", "scripts")):
        foreign = {path.stem for path in folders[other]} | {pathlib.PurePath(other).name}
        for path in folders[name]:
            found = re.findall(r"^\s*(?:import|from)\s+(\w+)", path.read_text(), re.MULTILINE)
            problems += [f"{relative(path)}: may not import {each} of {other}" for each in found if each in foreign]
    return problems


CHECKS = [
    ("include direction", check_include_direction),
    ("engine's restrictions", check_engine_restrictions),
    ("headers", check_headers),
    ("file sizes", check_file_sizes),
    ("what signs and what checks", check_what_signs_and_what_checks),
    ("packages and their reasons", check_packages),
    ("links in documents", check_links),
    ("paths of one machine", check_host_paths),
]


def main():
    failed = False
    for name, check in CHECKS:
        problems = check()
        print(f"{name}: {'FAIL' if problems else 'OK'}")
        for problem in problems:
            print(f"    {problem}")
        failed = failed or bool(problems)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
