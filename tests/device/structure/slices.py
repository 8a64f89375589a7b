"""What the tests of the slice for processors with pointer authentication share: the samples, and samples with one thing
changed."""

import pathlib
import shutil
import struct
import tempfile
import unittest

from samples import ROOT, SCRIPTS, failures, resigned, run
from macho_slice import Slice
from pointer_places import Names, Pointers

HERE = pathlib.Path(__file__).resolve().parent
# Where the samples are, once the tests have built them.
SAMPLES = pathlib.Path()


def build(folder):
    """Here once, for all cases. Gives what went wrong, if anything did."""
    global SAMPLES  # pylint: disable=global-statement
    SAMPLES = pathlib.Path(folder).resolve()
    shutil.rmtree(SAMPLES, ignore_errors=True)
    SAMPLES.mkdir(parents=True)
    built = run(HERE / "build_slices", SAMPLES, timeout=110)
    return built.stdout + built.stderr if built.returncode else ""


def check(library, unstripped, *more):
    return run(SCRIPTS / "check_macho.py", "--unstripped", unstripped, "--exports", HERE / "sample/exports.txt",
               "--tables", HERE / "sample/tables.txt", "--stubs", ROOT / "device/sysroot", "--stubs", SAMPLES / "stubs",
               *more, library)


class Slices(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        self.good = (SAMPLES / "slice.dylib").read_bytes()
        self.slice = Slice(self.good)
        self.named = Slice((SAMPLES / "slice-unstripped.dylib").read_bytes())

    def written(self, data, name="changed.dylib"):
        path = self.folder / name
        path.write_bytes(data)
        return path

    def make(self, library):
        output = self.folder / "made.dylib"
        result = run(SCRIPTS / "arm64e/make_slice.py", library, output)
        return result, output


class Changed(Slices):
    """Has libraries with one thing wrong, both the library and that with its names."""

    def checked(self, change):
        paths = []
        for source in (self.slice, self.named):
            data = bytearray(source.data)
            change(source, data)
            paths.append(self.written(resigned(data), f"changed-{len(paths)}.dylib"))
        return check(*paths)

    def fails(self, change, wanted, message):
        result = self.checked(change)
        self.assertEqual(set(failures(result)), {wanted}, result.stdout + result.stderr)
        self.assertEqual(result.returncode, 1)
        self.assertRegex(result.stdout, message)

    def first(self, library, kind):
        """The first pointer of a kind that has the most bits to get wrong."""
        pointers = Pointers(library, Names(self.named))
        pointers.find_all()
        return next(address for address, pointer in sorted(library.pointers.items())
                    if pointers.kind_of(address, pointer) == kind)

    def changed_pointer(self, kind, change):
        """Changes the bits of that pointer: `change` is given those of its fix-up."""
        def work(library, data):
            place = library.offset_of(self.first(library, kind))
            raw, = struct.unpack_from("<Q", data, place)
            struct.pack_into("<Q", data, place, change(raw))
        return work

    def unsigned(self, raw):
        bound, low = raw >> 62 & 1, raw & (0xFFFF if raw >> 62 & 1 else 0xFFFFFFFF)
        return raw & 0x7FF << 51 | bound << 62 | low

    def with_instruction(self, is_wanted, word):
        """In place of the first instruction that is wanted."""
        def work(library, data):
            section = library.sections[("__TEXT", "__text")]
            for place in range(section.offset, section.offset + section.size, 4):
                found, = struct.unpack_from("<I", data, place)
                if is_wanted(found):
                    struct.pack_into("<I", data, place, word(found) if callable(word) else word)
                    return
            self.fail("no such instruction")
        return work
