#!/usr/bin/env python3
"""The command where `cmake --install` puts it: it finds its engine and its files there, away from the
build folder, and what it says about itself lies where a system looks for it.

usage: installed_test.py CMAKE BUILD-FOLDER SOURCE-FOLDER"""

import pathlib
import re
import struct
import subprocess
import sys
import tempfile


def run(*words, **more):
    done = subprocess.run([str(word) for word in words], capture_output=True, text=True, check=False, **more)
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, words))}: exit code {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


def expect(what, found, wanted):
    if found != wanted:
        sys.exit(f"{what}: {found!r} in place of {wanted!r}")


def main():
    cmake, build, source = sys.argv[1], *map(pathlib.Path, sys.argv[2:4])
    with tempfile.TemporaryDirectory() as name:
        place = pathlib.Path(name) / "usr"
        run(cmake, "--install", build, "--component", "command", "--prefix", place)
        command, share = place / "bin/velmoranth", place / "share"
        run(source / "scripts/write-documents", command, share)

        # Where only what is installed can be found.
        work = pathlib.Path(name) / "work"
        work.mkdir()
        theme = share / "velmoranth/themes/Kilnware.theme"
        run(command, "preview", theme, "-o", "home.png", cwd=work)
        expect("size of the picture", struct.unpack(">2I", (work / "home.png").read_bytes()[16:24]), (1125, 2436))
        run(command, "device", "init", "phone", cwd=work)
        sounds = "var/mobile/Library/VelMoranth/Sounds/success.aif"
        expect("a sound of the device", (work / "phone/private" / sounds).read_bytes(),
               (source / "layout" / sounds).read_bytes())
        expect("files of the theme", sorted(path.relative_to(theme) for path in theme.rglob("*")),
               sorted(path.relative_to(source / "examples/themes/Kilnware.theme")
                      for path in (source / "examples/themes/Kilnware.theme").rglob("*")))
        expect("beside the command", sorted(path.name for path in (place / "bin").iterdir()), ["velmoranth"])
        expect("beside the command's work", sorted(path.name for path in (place / "libexec/velmoranth").iterdir()),
               ["velmoranth-device"])
        expect("what is loaded", sorted(path.name for path in (place / "lib/velmoranth").iterdir()), ["VelMoranth.so"])

        # Help lists the commands; each has a page.
        listed = re.search(r"commands:\n((?:  .*\n)+)", run(command, "--help")).group(1)
        commands = re.findall(r"^  (\w+(?: \w+)?)  ", listed, re.MULTILINE)
        if len(commands) < 20:
            sys.exit(f"--help lists {commands}")
        pages = {f"velmoranth-{name.replace(' ', '-')}.1" for name in commands} | {"velmoranth.1"}
        expect("manual pages", {path.name for path in (share / "man/man1").iterdir()}, pages)
        for page in (share / "man/man1").iterdir():
            name = page.stem[len("velmoranth-"):]
            expect(page.name, page.read_text(), run(command, "man", *name.split("-")) if name else run(command, "man"))
        for shell, file in {"bash": "bash-completion/completions/velmoranth",
                            "zsh": "zsh/vendor-completions/_velmoranth",
                            "fish": "fish/vendor_completions.d/velmoranth.fish"}.items():
            expect(file, (share / file).read_text(), run(command, "completion", shell))


main()
