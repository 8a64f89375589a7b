"""What a failed step of ./dev shows: the first error with what belongs to it."""
import pathlib
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[3]


def shown(output):
    """What ./dev prints of a step that fails after this output."""
    with tempfile.TemporaryDirectory() as folder:
        (pathlib.Path(folder) / "output").write_text(output)
        script = (f'set -euo pipefail; logs={folder}; source scripts/steps.sh; '
                  f'work() {{ cat "{folder}/output"; return 1; }}; step build work')
        ended = subprocess.run(["bash", "-c", script], cwd=ROOT, capture_output=True, text=True, check=False)
        assert ended.returncode != 0, ended
        return [line for line in ended.stderr.splitlines() if not line.startswith("build: ")]


class Steps(unittest.TestCase):
    def test_the_first_error_is_shown_with_what_follows(self):
        self.assertEqual(shown("[1/2] Building a.o\nFAILED: a.o \ng++ -Werror -c a.cpp\na.cpp:1:2: error: no such\n  1 | x\n"),
                         ["a.cpp:1:2: error: no such", "  1 | x"])

    def test_a_made_file_called_error_is_none(self):
        self.assertEqual(shown("[1/3] Generating share/Sounds/Error.caf\n[2/3] Linking b\nb.cpp:3:4: error: wrong\n"),
                         ["b.cpp:3:4: error: wrong"])

    def test_without_the_word_the_end_is_shown(self):
        lines = [f"line {i}" for i in range(40)]
        self.assertEqual(shown("\n".join(lines) + "\n"), lines[-15:])


if __name__ == "__main__":
    unittest.main()
