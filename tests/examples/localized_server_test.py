"""localized_server shows its messages in each language, to the byte: its output is compared with golden files.

The folder of the programs is the first argument.
"""

import difflib
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

PROGRAM = pathlib.Path(sys.argv.pop(1)) / "localized_server"
CATALOGUES = pathlib.Path(__file__).parents[2] / "examples" / "localized_server"
GOLDEN = pathlib.Path(__file__).parent / "golden"
# What differs from run to run; the rest is compared byte for byte.
MASKS = [
    (re.compile(r"^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}(?:[+-]\d\d:\d\d)? \[HOST:[^]]+\]", re.M), "TIME [HOST:HOST]"),
    (re.compile(r"\[PID:\d+\]\[THR:\d+\]"), "[PID:PID][THR:THR]"),
    (re.compile(r" near \S.*/localized_server\.cpp\("), " near FOLDER/localized_server.cpp("),
]


def masked(content):
    text = content.decode("utf-8")
    for pattern, replacement in MASKS:
        text = pattern.sub(replacement, text)
    return text


def difference(content, golden_file):
    """How the output differs from its golden file, line by line; empty where it does not."""
    golden = golden_file.read_bytes().decode("utf-8")
    assert golden, f"{golden_file} is empty"
    lines = difflib.unified_diff(golden.splitlines(keepends=True), masked(content).splitlines(keepends=True),
                                 str(golden_file), "what the program wrote")
    return "".join(line if line.endswith("\n") else line + "<no line end>\n" for line in lines)


class InFolder(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)

    def run_program(self, *arguments):
        # The language of the environment must not matter: the program sets its own.
        environment = {**os.environ, "LC_ALL": "pt_BR.UTF-8"}
        return subprocess.run([PROGRAM, *arguments], cwd=self.folder, env=environment, capture_output=True,
                              timeout=100, check=False)


class LocalizedServer(InFolder):
    def test_writes_the_content_of_the_golden_files(self):
        result = self.run_program(CATALOGUES, "logs")
        self.assertEqual(result.returncode, 0, result.stderr)
        files = sorted((self.folder / "logs").iterdir())
        self.assertEqual([path.name for path in files], ["server.de.log", "server.pt-BR.log"])
        outputs = {path.name: path.read_bytes() for path in files}
        outputs |= {"standard_error.txt": result.stderr, "standard_output.txt": result.stdout}
        self.assertEqual(sorted(outputs), sorted(path.name for path in GOLDEN.iterdir()))
        differences = "".join(difference(outputs[name], GOLDEN / name) for name in outputs)
        if differences:
            self.fail("The output is not what it was:\n" + differences)

    def test_names_a_catalogue_with_a_fault(self):
        result = self.run_program("missing", "logs")
        self.assertEqual((result.returncode, result.stdout), (1, b""))
        self.assertIn(b"missing: cannot be read", result.stderr)

    def test_prints_its_usage_for_wrong_arguments(self):
        for arguments in ([], [CATALOGUES], [CATALOGUES, "logs", "more"]):
            result = self.run_program(*arguments)
            self.assertEqual(result.returncode, 2, arguments)
            self.assertIn(b"usage: localized_server", result.stderr)


class GoldenFiles(InFolder):
    """The comparison itself fails when it should."""

    def setUp(self):
        super().setUp()
        self.golden = self.folder / "golden.txt"
        self.golden.write_bytes("\ufeff# Log\nTIME [HOST:HOST][PID:PID][THR:THR] Grüße\n".encode())
        self.output = "\ufeff# Log\n2024-03-05 09:07:03.042+01:00 [HOST:web01][PID:8][THR:9] Grüße\n".encode()

    def test_match_an_output_that_differs_only_in_masked_fields(self):
        self.assertEqual(difference(self.output, self.golden), "")

    def test_differ_in_a_letter_a_blank_a_byte_order_mark_or_a_line_end(self):
        for found, put in (("Grüße", "Grusse"), ("] G", "]  G"), ("\ufeff", ""), ("\n", ""), ("\n", "\r\n"),
                           ("[PID:8]", "[PID:]"), (".042", "")):
            output = self.output.replace(found.encode(), put.encode())
            self.assertNotEqual(output, self.output)
            self.assertIn("+++ what the program wrote", difference(output, self.golden), (found, put))

    def test_differ_from_an_empty_output(self):
        self.assertIn("-\ufeff# Log", difference(b"", self.golden))

    def test_must_exist_and_not_be_empty(self):
        self.golden.write_bytes(b"")
        self.assertRaises(AssertionError, difference, b"", self.golden)
        self.golden.unlink()
        self.assertRaises(FileNotFoundError, difference, b"", self.golden)


if __name__ == "__main__":
    unittest.main()
