"""The command that checks catalogues says what is wrong, and fails then and only then.

Arguments: the command, the folder of the examples.
"""

import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

COMMAND, EXAMPLES = sys.argv[1], pathlib.Path(sys.argv[2])
del sys.argv[1:]


def check(*arguments, **options):
    return subprocess.run([COMMAND, *map(str, arguments)], stdout=options.get("stdout", subprocess.PIPE),
                          stderr=subprocess.PIPE, text=True, timeout=60, check=False)


class CheckCatalogues(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name) / "catalogues"
        shutil.copytree(EXAMPLES / "catalogues", self.folder)

    def test_is_silent_about_sound_catalogues(self):
        result = check(self.folder, EXAMPLES / "catalogues")
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))

    def test_prints_each_fault_with_its_file_and_line(self):
        german = self.folder / "orders.de.json"
        german.write_text(german.read_text(encoding="utf-8").replace("%2", "%3").replace('"2"', '"02"'), encoding="utf-8")
        austrian = self.folder / "orders.de-AT.json"
        austrian.write_text(austrian.read_text(encoding="utf-8")[:-8], encoding="utf-8")
        result = check(self.folder)
        self.assertEqual(result.returncode, 1)
        lines = result.stdout.splitlines()
        self.assertTrue(lines[0].startswith(f"{austrian}:"), lines)
        self.assertEqual(lines[1:], [f"{german}:6: '02' is not an ID from 1 to 4294967295, decimal or after 0x"])

    def test_compares_places_once_the_files_are_sound(self):
        german = self.folder / "orders.de.json"
        german.write_text(german.read_text(encoding="utf-8").replace("%2", "%3"), encoding="utf-8")
        result = check(self.folder)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stdout, f"{german}:5: the text of ID 1 has the places %1 %3, "
                                        f"that in {self.folder / 'orders.json'} %1 %2\n")

    def test_goes_on_to_the_next_folder_after_a_fault(self):
        missing = self.folder / "missing"
        (self.folder / "orders.de.json").write_text("{", encoding="utf-8")
        result = check(missing, self.folder)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stdout.count("\n"), 2)
        self.assertTrue(result.stdout.startswith(f"{missing}: cannot be read: "), result.stdout)

    def test_says_how_it_is_called(self):
        for arguments in ([], ["--help"]):
            result = check(*arguments)
            self.assertEqual((result.returncode, result.stdout), (2, ""))
            self.assertTrue(result.stderr.startswith("usage: ylog-check-catalogues FOLDER..."), result.stderr)

    def test_fails_when_its_report_is_lost(self):
        with open("/dev/full", "w", encoding="utf-8") as full:
            self.assertEqual(check(self.folder / "missing", stdout=full).returncode, 2)


if __name__ == "__main__":
    unittest.main()
