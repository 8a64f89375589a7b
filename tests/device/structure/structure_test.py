#!/usr/bin/env python3
"""Tests scripts/check_macho.py, scripts/device-join and scripts/make_deb.py on small libraries that are
built like the one for the phone, and on others with one thing wrong with each of them.

usage: structure_test.py FOLDER-FOR-THE-SAMPLES [unittest arguments]"""

import io
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import tarfile
import tempfile
import unittest

from samples import ROOT, SCRIPTS, failures, resigned, run
import check_macho
import macho

HERE = pathlib.Path(__file__).resolve().parent
EXPORTS = HERE / "sample/exports.txt"
TABLES = HERE / "sample/tables.txt"
# Load commands of the form of others, for which the checks do not look.
FUNCTION_STARTS = 0x26
NOTE = 0x31
SAMPLES = None



def check(library, unstripped=None, tables=TABLES):
    names = ["--unstripped", unstripped] if unstripped else []
    return run(SCRIPTS / "check_macho.py", *names, "--exports", EXPORTS, "--tables", tables,
               "--stubs", ROOT / "device/sysroot", "--stubs", SAMPLES / "stubs", library)


def check_sample(name, **options):
    return check(SAMPLES / f"{name}.dylib", SAMPLES / f"{name}-unstripped.dylib", **options)


class Samples(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        self.good = (SAMPLES / "good.dylib").read_bytes()

    def written(self, data, name="changed.dylib"):
        path = self.folder / name
        path.write_bytes(data)
        return path


class Structure(Samples):
    def test_good_library_passes_every_check(self):
        result = check_sample("good")
        self.assertEqual((result.returncode, result.stderr), (0, ""), result.stdout)
        self.assertRegex(result.stdout, r"^structure: OK \(")

    def test_missing_export_list(self):
        result = check_sample("all-exported")
        self.assertEqual((result.returncode, failures(result)), (1, ["exports"]))
        self.assertIn("export _otherLength should not be there", result.stdout)

    def test_swapped_constructors(self):
        result = check_sample("swapped")
        self.assertEqual((result.returncode, failures(result)), (1, ["constructors by name"]))

    def test_names_of_another_build_do_not_vouch_for_this_one(self):
        result = check(SAMPLES / "swapped.dylib", SAMPLES / "good-unstripped.dylib")
        self.assertEqual((result.returncode, failures(result)), (1, ["same code"]))

    def test_newer_system(self):
        self.assertIn("kind", failures(check_sample("newer-system")))

    def test_chained_fixups(self):
        self.assertIn("load commands", failures(check_sample("chained")))

    def test_other_install_name(self):
        self.assertEqual(failures(check_sample("other-name")), ["load commands"])

    def test_missing_signature(self):
        self.assertEqual(failures(check_sample("without-signature")), ["signature"])

    def test_import_that_no_library_has(self):
        result = check_sample("stray")
        self.assertIn("imports: FAIL", result.stdout)
        self.assertIn("_inNoLibrary", result.stdout)

    def test_stub_without_an_import(self):
        stubs = self.folder / "stubs"
        shutil.copytree(ROOT / "device/sysroot", stubs)
        path = stubs / "usr/lib/libSystem.tbd"
        path.write_text(path.read_text().replace(" _strlen,", ""))
        result = run(SCRIPTS / "check_macho.py", "--stubs", stubs, SAMPLES / "good.dylib")
        self.assertEqual(failures(result), ["imports"])
        self.assertIn("import _strlen is not in /usr/lib/libSystem.B.dylib", result.stdout)

    def test_library_that_is_asked_for_in_another_version(self):
        stubs = self.folder / "stubs"
        shutil.copytree(ROOT / "device/sysroot", stubs)
        path = stubs / "usr/lib/libSystem.tbd"
        path.write_text(path.read_text().replace("\nexports:", "\ncompatibility-version: 0\nexports:"))
        result = run(SCRIPTS / "check_macho.py", "--stubs", stubs, "--stubs", SAMPLES / "stubs",
                     SAMPLES / "good.dylib")
        self.assertEqual(failures(result), ["imports"])
        self.assertIn("asks for /usr/lib/libSystem.B.dylib 1.0.0, not 0.0.0", result.stdout)

    def test_other_version_in_the_load_command(self):
        library = macho.MachO(self.good)
        changed = bytearray(self.good)
        place = library.all_of(macho.LOAD_DYLIB)[0][0]
        changed[place + 20:place + 24] = (0x20304).to_bytes(4, "little")
        result = check(self.written(resigned(changed)))
        self.assertEqual(failures(result), ["imports"])
        self.assertIn(f"asks for {library.dylibs[0]} 2.3.4, not ", result.stdout)

    def test_tables_that_ask_for_more_or_less(self):
        text = TABLES.read_text()
        for changed, failed, message in (
                (text.replace("-play:\n", ""), "classes", "method -[Sample] play: should not be there"),
                (text.replace("-play:", "-play:\n-stop"), "classes", "method -[Sample] stop is missing"),
                (text.replace("+sharedSample", "-sharedSample"), "classes", "+[Sample] sharedSample"),
                (text.replace("+load\n", ""), "classes", "class with +load Sample should not"),
                (text.replace("class Sample", "class Other"), "classes", "class Other is missing"),
                (text.replace("layoutSampleOf:", "layoutOther"), "replaced methods", "layoutOther")):
            tables = self.folder / "tables.txt"
            tables.write_text(changed)
            result = check_sample("good", tables=tables)
            self.assertEqual(set(failures(result)), {failed}, changed)
            self.assertIn(message, result.stdout)

    def test_larger_than_allowed(self):
        library = macho.MachO(self.good + bytes(check_macho.MAX_SIZE))
        self.assertEqual(len(check_macho.check_size(library)), 1)
        self.assertEqual(check_macho.check_size(macho.MachO(self.good)), [])

    def test_any_flipped_byte_is_noticed(self):
        signed = macho.MachO(self.good)
        limit, = signed.unpack("<I", signed.the_one(macho.CODE_SIGNATURE)[0] + 8)
        numbers = random.Random(1)
        for place in [0, 40, limit - 1, *(numbers.randrange(limit) for _ in range(8))]:
            changed = bytearray(self.good)
            changed[place] ^= 0x10
            result = check(self.written(changed))
            self.assertIn(result.returncode, (1, 3), f"byte {place}")
            self.assertNotIn("Traceback", result.stderr, f"byte {place}")


class DamagedFiles(Samples):
    """Whatever a file holds, the reader says BadFile or reads on inside it."""

    def all_checks(self, data):
        try:
            library = macho.MachO(data)
        except macho.BadFile:
            return
        tables = check_macho.read_tables(TABLES)
        for one in (lambda: check_macho.check_kind(library),
                    lambda: check_macho.check_load_commands(library, check_macho.INSTALL_NAME),
                    lambda: check_macho.check_exports(library, []),
                    lambda: check_macho.check_imports(library, {}),
                    lambda: check_macho.check_constructors(library, check_macho.CONSTRUCTORS),
                    lambda: check_macho.check_classes(library, tables),
                    lambda: check_macho.check_rows(library, tables),
                    lambda: check_macho.check_signature(library),
                    lambda: check_macho.check_slice(library, [], {}, check_macho.INSTALL_NAME)):
            try:
                one()
            except macho.BadFile:
                pass

    def test_cut_off_anywhere(self):
        for size in [*range(0, 2048, 13), *range(2048, len(self.good), 1997)]:
            self.all_checks(self.good[:size])

    def test_bytes_changed_anywhere(self):
        numbers = random.Random(2)
        commands = 32 + macho.MachO(self.good).unpack("<I", 20)[0]
        linkedit = macho.MachO(self.good).segments[-1].offset
        for _ in range(300):
            changed = bytearray(self.good)
            for _ in range(numbers.randint(1, 4)):
                low, high = numbers.choice([(0, commands), (linkedit, len(changed)), (0, len(changed))])
                changed[numbers.randrange(low, high)] = numbers.choice([0, 1, 0x7F, 0x80, 0xFF])
            self.all_checks(bytes(changed))

    def test_no_file_and_no_library_are_one_line(self):
        for path, text in ((self.folder / "none.dylib", "No such file"),
                           (self.written(b"no library"), "is no Mach-O file"),
                           (self.written(b""), "is no Mach-O file")):
            result = check(path)
            self.assertEqual(result.returncode, 3)
            self.assertRegex(result.stderr, rf"^check_macho.py: .*{re.escape(path.name)}.*\n$")
            self.assertIn(text, result.stderr)


class Join(Samples):
    """A slice is the sample with its processor said to be another: what is joined is never run here."""

    def slice(self, subtype=2, source="good", replaced=(), name=""):
        data = bytearray((SAMPLES / f"{source}.dylib").read_bytes())
        data[8:12] = subtype.to_bytes(4, "little")
        for before, after in replaced:
            self.assertEqual((data.count(before), len(after)), (1, len(before)), before)
            data = data.replace(before, after)
        return self.written(resigned(data), f"{source}-{subtype:x}{name}.dylib")

    def with_command(self, command, other):
        """A slice with one of its load commands said to be another."""
        place, length = macho.MachO(self.good).the_one(command)
        before = self.good[place:place + length]
        return self.slice(replaced=[(before, other.to_bytes(4, "little") + before[4:])], name=f"-{other:x}")

    def changed_afterwards(self):
        data = bytearray(self.slice().read_bytes())
        data[macho.MachO(bytes(data)).sections["__TEXT", "__text"].offset] ^= 1
        return self.written(data, "changed-afterwards.dylib")

    def join(self, path):
        self.joined = self.folder / "joined/VelMoranth.dylib"
        return run(SCRIPTS / "device-join", SAMPLES / "good.dylib", path, self.joined, EXPORTS)

    def test_both_are_in_it_unchanged(self):
        path = self.slice()
        result = self.join(path)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertRegex(run("file", self.joined).stdout, r"2 architectures: .*64-bit arm64 .*64-bit arm64e ")
        for name, source in (("arm64", SAMPLES / "good.dylib"), ("arm64e", path)):
            part = self.folder / name
            self.assertEqual(run("llvm-lipo-19", "-thin", name, self.joined, "-output", part).returncode, 0)
            self.assertEqual(part.read_bytes(), source.read_bytes())

    def test_what_does_not_fit_is_one_line_with_the_file(self):
        object_file = SAMPLES / "objects/tests/device/structure/sample/startup.cpp.o"
        for path, message in ((self.slice(0), "is not arm64e"),
                              (self.slice(0x80000002), "has the arm64e of iOS 14"),
                              (self.slice(source="other-name"), "calls itself /usr/lib/other.dylib"),
                              (self.slice(source="all-exported"), "exports other symbols"),
                              (self.slice(source="newer-system"), "is not for iOS 12"),
                              (self.slice(source="chained"), "has DYLD_CHAINED_FIXUPS"),
                              (self.with_command(FUNCTION_STARTS, macho.EXPORTS_TRIE), "has DYLD_EXPORTS_TRIE"),
                              (self.with_command(macho.DYLD_INFO, NOTE), "has no DYLD_INFO_ONLY"),
                              (self.slice(source="without-signature"), "has no signature"),
                              (self.slice(replaced=[(b"libSystem.B", b"libSystem.X")], name="-system"),
                               "links /usr/lib/libSystem.X.dylib"),
                              (self.changed_afterwards(), "was changed after it was signed"),
                              (object_file, "is not arm64e"),
                              (self.written(b"text"), "is no Mach-O file"),
                              (self.folder / "none", "no such file")):
            with self.subTest(message):
                result = self.join(path)
                self.assertEqual(result.returncode, 1)
                self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)
                self.assertIn(f"{path}: {message}", result.stderr)
                self.assertFalse(self.joined.exists())

    def test_the_library_s_own_list_and_stubs_are_taken_unless_others_are_given(self):
        path = self.slice()
        result = run(SCRIPTS / "check_macho.py", "--arm64e", path)
        self.assertEqual(result.returncode, 1)
        self.assertIn("exports other symbols", result.stderr)
        result = run(SCRIPTS / "check_macho.py", "--arm64e", "--exports", EXPORTS, path)
        self.assertEqual((result.returncode, result.stderr), (0, ""))

    def test_several_architectures_are_refused(self):
        self.assertEqual(self.join(self.slice()).returncode, 0)
        result = self.join(shutil.copy(self.joined, self.folder / "fat.dylib"))
        self.assertEqual(result.returncode, 1)
        self.assertIn("fat.dylib: holds several architectures; take one with lipo", result.stderr)


class Reproducible(Samples):
    def test_a_library_built_in_another_checkout_is_the_same(self):
        other = self.folder / "another/checkout"
        for name in ("scripts", "device", "tests/device/structure"):
            shutil.copytree(ROOT / name, other / name)
        output = self.folder / "samples"
        output.mkdir()
        result = run(other / "tests/device/structure/build_samples", output)
        self.assertEqual(result.returncode, 0, result.stderr)
        for name in ("good.dylib", "good-unstripped.dylib"):
            self.assertEqual((output / name).read_bytes(), (SAMPLES / name).read_bytes(), name)


class Package(Samples):
    def library(self, *options):
        """That for all processors is the sample twice, once said to be for another."""
        if not options:
            return SAMPLES / "good.dylib"
        joined = self.folder / "joined.dylib"
        slice_ = self.written(resigned(self.good[:8] + bytes([macho.SUBTYPE_ARM64E]) + self.good[9:]), "slice.dylib")
        self.assertEqual(run(SCRIPTS / "device-join", SAMPLES / "good.dylib", slice_, joined, EXPORTS).returncode, 0)
        return joined

    def pack(self, root, library, *options, **environment):
        output = pathlib.Path(tempfile.mkdtemp(dir=self.folder))
        return output, run(root / "scripts/make_deb.py", *options, library, output, env={**os.environ, **environment})

    def make(self, root, *options, **environment):
        output, result = self.pack(root, self.library(*options), *options, **environment)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        return next(output.glob("*.deb"))

    def processors(self, package):
        raw = subprocess.run(["dpkg-deb", "--fsys-tarfile", str(package)], capture_output=True, check=True, timeout=60).stdout
        tar = tarfile.open(fileobj=io.BytesIO(raw))
        path = self.written(tar.extractfile("./Library/MobileSubstrate/DynamicLibraries/VelMoranth.dylib").read(), "packed.dylib")
        return run("llvm-lipo-19", "-archs", path).stdout.split()

    def test_each_package_holds_the_library_for_its_processors(self):
        self.assertEqual(self.processors(self.make(ROOT)), ["arm64"])
        self.assertEqual(self.processors(self.make(ROOT, "--arm64e")), ["arm64", "arm64e"])

    def test_a_library_for_other_processors_is_refused(self):
        joined, alone = self.library("--arm64e"), SAMPLES / "good.dylib"
        for library, options, found, wanted in ((joined, (), "arm64 and arm64e", "arm64"),
                                                (alone, ("--arm64e",), "arm64", "arm64 and arm64e"),
                                                (self.folder / "slice.dylib", (), "arm64e", "arm64"),
                                                (self.written(b"text"), (), "no processor", "arm64"),
                                                (self.written(joined.read_bytes()[:30], "cut"), ("--arm64e",), "arm64",
                                                 "arm64 and arm64e")):
            output, result = self.pack(ROOT, library, *options)
            self.assertEqual((result.returncode, result.stderr),
                             (1, f"make_deb.py: {library}: is for {found}, and the package for {wanted}; "
                                 "./dev device makes a library for each\n"))
            self.assertEqual(list(output.iterdir()), [])

    def test_another_checkout_gives_the_same_bytes(self):
        other = self.folder / "another/checkout"
        for name in ("scripts", "layout", "device/package"):
            shutil.copytree(ROOT / name, other / name)
        shutil.copy(ROOT / "CMakeLists.txt", other)
        for path in other.rglob("*"):
            os.utime(path, (1, 1))
            path.chmod(0o700)
        self.assertEqual(self.make(ROOT).read_bytes(), self.make(other).read_bytes())

    def test_the_time_is_the_one_that_is_asked_for(self):
        package = self.make(ROOT, SOURCE_DATE_EPOCH="1600000000", TZ="UTC")
        listing = run("dpkg-deb", "--contents", package, env={**os.environ, "TZ": "UTC"}).stdout
        self.assertEqual({line.split()[3] for line in listing.splitlines()}, {"2020-09-13"})

    def test_owners_modes_and_files(self):
        raw = subprocess.run(["dpkg-deb", "--fsys-tarfile", str(self.make(ROOT))], capture_output=True,
                             check=True, timeout=60).stdout
        tar = tarfile.open(fileobj=io.BytesIO(raw))
        entries = {info.name.removeprefix("./"): info for info in tar}
        library = entries["Library/MobileSubstrate/DynamicLibraries/VelMoranth.dylib"]
        self.assertEqual((library.mode, library.uid, library.gid), (0o755, 0, 0))
        self.assertEqual(tar.extractfile(library).read(), self.good)
        plist = entries["Library/MobileSubstrate/DynamicLibraries/VelMoranth.plist"]
        self.assertEqual((plist.mode, plist.uid), (0o644, 0))
        saved = entries["var/mobile/Library/VelMoranth/UserSettings"]
        self.assertEqual((saved.mode, saved.uid, saved.gid), (0o755, 501, 501))
        for path in (ROOT / "layout/var").rglob("*"):
            info = entries[path.relative_to(ROOT / "layout").as_posix()]
            if path.is_file():
                self.assertEqual((tar.extractfile(info).read(), info.mode), (path.read_bytes(), 0o644))

    def test_what_users_change_is_said_to_be_theirs(self):
        package = self.make(ROOT)
        settings = ROOT / "layout/var/mobile/Library/VelMoranth/UserSettings"
        wanted = sorted(f"/{path.relative_to(ROOT / 'layout').as_posix()}" for path in settings.iterdir())
        self.assertTrue(wanted)
        self.assertEqual(run("dpkg-deb", "--info", package, "conffiles").stdout.splitlines(), wanted)
        listing = run("dpkg-deb", "--contents", package).stdout
        for path in wanted:
            self.assertIn(f" .{path}\n", listing)

    def test_control_fields(self):
        package = self.make(ROOT)
        fields = self.fields(package)
        self.assertEqual((fields["Architecture"], fields["Section"]), ("iphoneos-arm", "Tweaks"))
        self.assertIn("mobilesubstrate", fields["Depends"])
        self.assertEqual(package.name, f"{fields['Package']}_{fields['Version']}_iphoneos-arm.deb")

    def fields(self, package):
        return dict(line.split(": ", 1) for line in run("dpkg-deb", "--field", package).stdout.splitlines()
                    if not line.startswith(" "))

    def test_that_for_processors_that_authenticate_is_another_package(self):
        package = self.make(ROOT, "--arm64e")
        ordinary, fields = self.fields(self.make(ROOT)), self.fields(package)
        self.assertEqual(package.name, f"{ordinary['Package']}_{fields['Version']}_arm64e_iphoneos-arm.deb")
        self.assertEqual((fields["Conflicts"], fields["Replaces"]), (ordinary["Package"],) * 2)
        self.assertEqual((ordinary["Conflicts"], ordinary["Replaces"]), (fields["Package"],) * 2)
        # What asks for the ordinary one is content with it.
        self.assertEqual((fields["Provides"], ordinary.get("Provides")), (ordinary["Package"], None))
        for name in ("Version", "Architecture", "Section", "Depends"):
            self.assertEqual(fields[name], ordinary[name])
        description = run("dpkg-deb", "--field", package, "Description").stdout
        self.assertIn("This one has never run on a phone", description.replace("\n ", " "))
        self.assertIn(f"dpkg -r {fields['Package']}\n", description)
        ordinary_text = run("dpkg-deb", "--field", self.make(ROOT), "Description").stdout.replace("\n ", " ")
        self.assertIn(f"the package {fields['Package']} is for those", ordinary_text)
        for text in (description, ordinary_text):
            self.assertIn("phones and iPads with an A12, A12X, A12Z or A13", text)

    def test_the_packages_have_the_same_files(self):
        packages = [self.make(ROOT), self.make(ROOT, "--arm64e")]
        library = "./Library/MobileSubstrate/DynamicLibraries/VelMoranth.dylib"
        contents = [[line.split() for line in run("dpkg-deb", "--contents", package).stdout.splitlines()] for package in packages]
        # Only the library's size is another.
        contents = [[line[:2] + line[3:] if line[-1] == library else line for line in lines] for lines in contents]
        self.assertEqual(contents[0], contents[1])
        conffiles = [run("dpkg-deb", "--info", package, "conffiles").stdout for package in packages]
        self.assertEqual(conffiles[0], conffiles[1])

    def test_one_package_takes_the_place_of_the_other(self):
        if os.geteuid() != 0:
            self.skipTest("only root gives files to another user")
        root = self.folder / "root"
        for name in ("info", "updates", "triggers"):
            (root / "var/lib/dpkg" / name).mkdir(parents=True)
        for name in ("status", "available"):
            (root / "var/lib/dpkg" / name).touch()
        packages = [self.make(ROOT), self.make(ROOT, "--arm64e")]
        settings = root / "var/mobile/Library/VelMoranth/UserSettings/Cal.plist"
        for package, other in (packages, packages[::-1]):
            result = run("dpkg", f"--root={root}", "--log=/dev/null", "--force-architecture", "--force-depends",
                         "--install", package, stdin=subprocess.DEVNULL)
            self.assertEqual(result.returncode, 0, result.stderr)
            states = {package: run("dpkg-query", f"--admindir={root}/var/lib/dpkg", "-W", "-f", "${db:Status-Status}",
                                   self.fields(package)["Package"]).stdout for package in packages}
            self.assertEqual(states[package], "installed")
            self.assertNotEqual(states[other], "installed")
            if other is packages[1]:
                settings.write_text(settings.read_text() + "changed")
            self.assertTrue(settings.read_text().endswith("changed"))

    def test_filter_is_a_property_list(self):
        result = run(sys.executable, "-c", "import plistlib, sys; print(plistlib.load(open(sys.argv[1], 'rb')))",
                     ROOT / "device/package/VelMoranth.plist")
        self.assertEqual(result.stdout.strip(), "{'Filter': {'Bundles': ['com.apple.UIKit']}}")


def main():
    global SAMPLES
    SAMPLES = pathlib.Path(sys.argv[1]).resolve()
    # Here once, for all cases.
    shutil.rmtree(SAMPLES, ignore_errors=True)
    SAMPLES.mkdir(parents=True)
    built = run(HERE / "build_samples", SAMPLES)
    if built.returncode != 0:
        print(built.stdout + built.stderr, file=sys.stderr)
        return 1
    return 0 if unittest.main(argv=[sys.argv[0], *sys.argv[2:]], exit=False).result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
