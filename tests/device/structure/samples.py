"""What the tests of the library's file share: running the tools, and signing what was changed."""

import hashlib
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[3]
SCRIPTS = ROOT / "scripts"
sys.path[:0] = [str(SCRIPTS), str(SCRIPTS / "arm64e")]
import macho  # noqa: E402


def run(*command, timeout=60, **options):
    return subprocess.run([str(part) for part in command], capture_output=True, text=True, check=False,
                          timeout=timeout, **options)


def resigned(data):
    """With the hashes that its pages have now; as it is when it has no signature."""
    library = macho.MachO(bytes(data))
    for command, _ in library.all_of(macho.CODE_SIGNATURE):
        start, = library.unpack("<I", command + 8)
        start += library.unpack(">I", start + 16)[0]  # the code directory
        hashes, = library.unpack(">I", start + 16)
        pages, limit = library.unpack(">2I", start + 28)
        data = bytearray(data)
        for index in range(pages):
            place = start + hashes + index * 32
            piece = data[index * 4096:min((index + 1) * 4096, limit)]
            data[place:place + 32] = hashlib.sha256(piece).digest()
    return bytes(data)


def failures(result):
    """The names of the checks that failed."""
    return re.findall(r"^([\w ]+): FAIL: ", result.stdout, re.MULTILINE)
