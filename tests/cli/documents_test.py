#!/usr/bin/env python3
"""Runs the commands in the documents and compares what they print.

usage: documents_test.py [--accept] COMMAND CATALOG-MAKER DOCUMENT...

In a document a block ```console holds commands, each behind "$ ", and below each what it prints, errors
included. The blocks of a document are run in their order in one new folder, which has in it what the documents
say that a maker has: picture.png, an icon; OldTheme.deb, a package in an old layout; and Maps.app and UIKit,
with the catalog that CATALOG-MAKER writes. A document without such a block fails, and so does one with a command
of velmoranth in a block of another kind, which nothing would run. --accept writes what is printed into the documents, to be read before it is kept."""

import os
import pathlib
import re
import struct
import subprocess
import sys
import tempfile
import zlib

SIDE = 180  # pixels of the icon


def picture(color):
    """A PNG of one colour."""
    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))
    rows = (b"\0" + bytes(color) * SIDE) * SIDE
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", SIDE, SIDE, 8, 2, 0, 0, 0)) +
            chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


def prepare(folder, environment, catalog_maker):
    """What a maker has before the first command."""
    (folder / "picture.png").write_bytes(picture((0xC8, 0x55, 0x3D)))
    old = folder / "OldTheme.theme"
    for name, color in (("com.apple.Maps@2x.png", (1, 2, 3)), ("com.apple.Maps@3x.png", (3, 2, 1)),
                        ("com.apple.mobilesafari@3x.png", (9, 9, 9))):
        (old / "IconBundles").mkdir(parents=True, exist_ok=True)
        (old / "IconBundles" / name).write_bytes(picture(color))
    (old / "Fonts").mkdir()
    (old / "Fonts/Old.ttf").write_bytes(b"font")
    subprocess.run(["velmoranth", "pack", "--no-lint", "OldTheme.theme", "-o", "OldTheme.deb", "--author", "A"], cwd=folder,
                   env=environment, check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["rm", "-r", "OldTheme.theme"], cwd=folder, check=True)
    for name in ("Maps.app", "UIKit"):
        (folder / name).mkdir()
        subprocess.run([catalog_maker, folder / name / "Assets.car"], env=environment, check=True)
    (folder / "Maps.app/Info.plist").write_text(
        "<plist><dict><key>CFBundleIdentifier</key><string>com.apple.Maps</string></dict></plist>")


BLOCK = re.compile(r"^```console\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def steps_of(text):
    """Each command, what it is to print, and where in the text that begins."""
    steps = []
    for block in BLOCK.finditer(text):
        for part in re.finditer(r"^\$ ((?:.*\\\n)*.*)\n((?:(?!\$ ).*\n)*)", block.group(1), re.MULTILINE):
            steps.append((part.group(1), part.group(2), block.start(1) + part.start(2)))
    return steps


FENCE = re.compile(r"^ *```(.*)\n((?:(?! *```).*\n)*) *```$", re.MULTILINE)


def not_run(text):
    """The first command of velmoranth that stands in a block of another kind, or None."""
    for fence in FENCE.finditer(text):
        if fence.group(1) != "console":
            for line in fence.group(2).splitlines():
                if re.match(r"(\$ )?(\S+/)?velmoranth ", line):
                    return line
    return None


def run_document(path, command, catalog_maker, accepts):
    text = path.read_text()
    line = not_run(text)
    if line is not None:
        print(f"{path}: no ```console block has this command, so that nothing runs it: {line}")
        return False
    steps = steps_of(text)
    printed = []
    if not steps:
        print(f"{path}: it has no ```console block")
        return False
    with tempfile.TemporaryDirectory() as name:
        top = pathlib.Path(name)
        (top / "bin").mkdir()
        (top / "bin/velmoranth").symlink_to(command)
        (top / "tmp").mkdir()
        work = top / "work"
        work.mkdir()
        environment = {"PATH": f"{top / 'bin'}:{os.environ['PATH']}", "TMPDIR": str(top / "tmp"),
                       "HOME": str(work), "LC_ALL": "C.UTF-8", "TZ": "UTC"}
        for variable in ("ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS"):
            if variable in os.environ:
                environment[variable] = os.environ[variable]
        prepare(work, environment, catalog_maker)
        for step, expected, _ in steps:
            done = subprocess.run(["sh", "-c", step], cwd=work, env=environment, text=True,
                                  stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                  stderr=subprocess.STDOUT, timeout=300, check=False)
            printed.append(done.stdout)
            if done.stdout != expected and not accepts:
                print(f"{path}: $ {step}\n--- expected\n{expected}--- printed (exit code "
                      f"{done.returncode})\n{done.stdout}")
                return False
    for (_, expected, start), output in reversed(list(zip(steps, printed))):
        text = text[:start] + output + text[start + len(expected):]
    if accepts:
        path.write_text(text)
    return True


def main():
    arguments = sys.argv[1:]
    accepts = arguments[:1] == ["--accept"]
    arguments = arguments[1:] if accepts else arguments
    command = pathlib.Path(arguments[0]).resolve()
    catalog_maker = pathlib.Path(arguments[1]).resolve()
    documents = [pathlib.Path(argument) for argument in arguments[2:]]
    if not documents:
        sys.exit("documents_test.py: no document is given")
    sys.exit(0 if all([run_document(document, command, catalog_maker, accepts) for document in documents]) else 1)


if __name__ == "__main__":
    main()
