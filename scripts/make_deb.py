#!/usr/bin/env python3
"""Packs the library for the phone, its filter and what is installed beside it (layout/) as a .deb.

usage: make_deb.py [--arm64e] LIBRARY FOLDER

Writes FOLDER/<package>_<version>_iphoneos-arm.deb and prints what is in it; with --arm64e the package of a
library with a slice for processors with pointer authentication, which is one of its own
(..._arm64e_iphoneos-arm.deb). The same files give the
same package, byte for byte: names are sorted, every time is SOURCE_DATE_EPOCH or one that is fixed,
owners and modes do not come from this machine. That is also why dpkg-deb does not write it: not all
files belong to root. Exit code 1 when the library is not for the processors of that package, 3 when a file
cannot be read or written."""

import gzip
import io
import os
import pathlib
import re
import struct
import sys
import tarfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
PACKAGE = "com.qor.velmoranth"
LIBRARIES = "Library/MobileSubstrate/DynamicLibraries"
FIXED_TIME = 1577836800  # 2020-01-01
# Who owns what lies where; the longest prefix that fits counts. The settings panel, which writes saved
# preferences, runs as the phone's user.
OWNERS = {"": (0, "root"), "var/mobile": (501, "mobile")}
# What users change there stays theirs: an upgrade asks before it replaces it, a removal leaves it.
USERS_OWN = "var/mobile/Library/VelMoranth/UserSettings/"


FAT, THIN = b"\xca\xfe\xba\xbe", b"\xcf\xfa\xed\xfe"
PROCESSORS = {(0x0100000C, 0): "arm64", (0x0100000C, 2): "arm64e"}  # by type and subtype


class WrongLibrary(Exception):
    """The library is none for the package; the text says why."""


def processors_of(data):
    """The names of those that a library is for."""
    found = []
    if data[:4] == FAT and len(data) >= 8:
        count, = struct.unpack_from(">I", data, 4)
        ends = range(16, min(8 + 20 * count, len(data)) + 1, 20)
        found = [struct.unpack_from(">2I", data, end - 8) for end in ends]
    elif data[:4] == THIN and len(data) >= 12:
        found = [struct.unpack_from("<2I", data, 4)]
    return [PROCESSORS.get(each, "another processor") for each in found]


def expect_processors(library, data, wanted):
    found = processors_of(data)
    if found != wanted:
        raise WrongLibrary(f"{library}: is for {' and '.join(found) or 'no processor'}, and the package for "
                           f"{' and '.join(wanted)}; ./dev device makes a library for each")


def layout_files():
    folder = ROOT / "layout"
    return {path.relative_to(folder).as_posix(): path.read_bytes()
            for path in (folder / "var").rglob("*") if path.is_file()}


def version():
    found = re.search(r"^project\(velmoranth VERSION ([\d.]+)", (ROOT / "CMakeLists.txt").read_text(),
                      re.MULTILINE)
    if found is None:
        raise OSError("CMakeLists.txt: no version of the project in it")
    return found.group(1)


def parents_of(names):
    """Every folder on the way to the names."""
    return {parent.as_posix() for name in names for parent in pathlib.PurePosixPath(name).parents
            if parent.as_posix() != "."}


def entry(name, data, time):
    """A tar entry; `data` is None for a folder."""
    prefix = max((prefix for prefix in OWNERS if prefix in ("", name) or name.startswith(prefix + "/")),
                 key=len)
    info = tarfile.TarInfo("./" + name if name else "./")
    info.uid = info.gid = OWNERS[prefix][0]
    info.uname = info.gname = OWNERS[prefix][1]
    info.mtime = time
    info.type = tarfile.DIRTYPE if data is None else tarfile.REGTYPE
    info.mode = 0o755 if data is None or name.endswith(".dylib") else 0o644
    info.size = 0 if data is None else len(data)
    return info


def packed(files, time):
    """A gzipped tar file of the files, {name: bytes}, and all folders on the way; and its entries."""
    everything = {**dict.fromkeys(["", *parents_of(files)]), **files}
    entries = [entry(name, everything[name], time) for name in sorted(everything)]
    raw = io.BytesIO()
    with tarfile.open(fileobj=raw, mode="w", format=tarfile.USTAR_FORMAT) as tar:
        for info in entries:
            data = everything[info.name.removeprefix("./")]
            tar.addfile(info, None if data is None else io.BytesIO(data))
    return gzip.compress(raw.getvalue(), compresslevel=9, mtime=0), entries


def ar_member(name, data, time):
    header = f"{name:<16}{time:<12}{0:<6}{0:<6}{0o100644:<8o}{len(data):<10}`\n"
    return header.encode() + data + b"\n" * (len(data) % 2)


def make_package(library, folder, control_file, suffix):
    time = int(os.environ.get("SOURCE_DATE_EPOCH", FIXED_TIME))
    contents = pathlib.Path(library).read_bytes()
    expect_processors(library, contents, ["arm64", "arm64e"] if suffix else ["arm64"])
    source = ROOT / "device/package"
    files = {f"{LIBRARIES}/VelMoranth.dylib": contents,
             f"{LIBRARIES}/VelMoranth.plist": (source / "VelMoranth.plist").read_bytes(),
             **layout_files()}
    kilobytes = sum(-(-len(data) // 1024) for data in files.values())
    control = (source / control_file).read_text()
    control = control.replace("@VERSION@", version()).replace("@SIZE@", str(kilobytes))
    conffiles = "".join(f"/{name}\n" for name in sorted(files) if name.startswith(USERS_OWN))
    data, entries = packed(files, time)
    package = b"!<arch>\n" + b"".join(ar_member(name, member, time) for name, member in (
        ("debian-binary", b"2.0\n"),
        ("control.tar.gz", packed({"control": control.encode(), "conffiles": conffiles.encode()}, time)[0]),
        ("data.tar.gz", data)))
    fields = dict(re.findall(r"^([\w-]+): (.*)$", control, re.MULTILINE))
    path = pathlib.Path(folder) / f"{PACKAGE}_{fields['Version']}{suffix}_{fields['Architecture']}.deb"
    path.write_bytes(package)
    return path, entries


def main():
    arguments = sys.argv[1:]
    control_file, suffix = "control.in", ""
    if arguments[:1] == ["--arm64e"]:
        arguments, control_file, suffix = arguments[1:], "control-arm64e.in", "_arm64e"
    if len(arguments) != 2:
        print(__doc__.split("\n\n")[1], file=sys.stderr)
        return 2
    try:
        path, entries = make_package(*arguments, control_file, suffix)
    except WrongLibrary as wrong:
        print(f"make_deb.py: {wrong}", file=sys.stderr)
        return 1
    except (OSError, ValueError) as error:
        print(f"make_deb.py: {error}", file=sys.stderr)
        return 3
    print(f"{path}: {path.stat().st_size} bytes")
    for info in entries:
        if not info.isdir():
            print(f"  {info.mode:o} {info.uname:<6} {info.size:>7}  {info.name.removeprefix('.')}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
