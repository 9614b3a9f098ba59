"""The command that checks catalogues reports what is wrong, and fails only if something is.

Arguments: the command, the folder of the examples, the manual page, the version.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

COMMAND, EXAMPLES, MANUAL_PAGE, VERSION = sys.argv[1], pathlib.Path(sys.argv[2]), sys.argv[3], sys.argv[4]
del sys.argv[1:]


def check(*arguments, **options):
    options = {"stdout": subprocess.PIPE, "text": True} | options
    return subprocess.run([COMMAND, *map(os.fspath, arguments)], stderr=subprocess.PIPE, timeout=60, check=False,
                          **options)


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

    def test_compares_placeholders_once_the_files_are_sound(self):
        german = self.folder / "orders.de.json"
        german.write_text(german.read_text(encoding="utf-8").replace("%2", "%3"), encoding="utf-8")
        result = check(self.folder)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stdout, f"{german}:5: the text of ID 1 has the places %1 %3, "
                                        f"that in {self.folder / 'orders.json'} %1 %2\n")

    def test_continues_with_the_next_folder_after_a_fault(self):
        missing = self.folder / "missing"
        (self.folder / "orders.de.json").write_text("{", encoding="utf-8")
        result = check(missing, self.folder)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stdout.count("\n"), 2)
        self.assertTrue(result.stdout.startswith(f"{missing}: cannot be read: "), result.stdout)

    def test_prints_a_fault_as_one_line_whatever_the_file_contains(self):
        (self.folder / "orders.de.json").write_text('{"x\\n\\u001b[2Jorders.json:1: ": 1', encoding="utf-8")
        lines = check(self.folder).stdout.split("\n")
        self.assertEqual(lines[0], f"{self.folder}/orders.de.json:1: unknown member "
                                   "'x\\u000A\\u001B[2Jorders.json:1: '")
        self.assertEqual((lines[1].count("syntax error"), lines[2:]), (1, [""]))

    def test_checks_a_folder_whose_name_is_not_utf_8(self):
        name = os.fsencode(self.folder.parent) + b"/gr\xfc\xdf"
        shutil.copytree(os.fsencode(self.folder), name)
        self.assertEqual(check(name).returncode, 0)
        pathlib.Path(os.fsdecode(name), "orders.json").write_text("[]", encoding="utf-8")
        self.assertEqual(check(name, text=False).stdout,
                         name.replace(b"\xfc\xdf", rb"\xFC\xDF") + b"/orders.json:1: is not an object\n")

    def test_prints_its_usage_and_version_on_standard_output(self):
        usage = check("--help")
        self.assertEqual((usage.returncode, usage.stderr), (0, ""))
        self.assertTrue(usage.stdout.startswith("usage: ylog-check-catalogues FOLDER...\n"), usage.stdout)
        version = check(self.folder / "missing", "--version")
        self.assertEqual((version.returncode, version.stdout, version.stderr),
                         (0, f"ylog-check-catalogues {VERSION}\n", ""))

    def test_refuses_to_be_called_without_a_folder_or_with_an_unknown_option(self):
        for arguments in ([], ["--"], ["--quiet", self.folder], [self.folder / "missing", "-q"]):
            result = check(*arguments)
            self.assertEqual((result.returncode, result.stdout), (2, ""), arguments)
            self.assertIn("usage: ylog-check-catalogues FOLDER...\n", result.stderr)
        self.assertIn("--quiet", check("--quiet").stderr)

    def test_treats_arguments_after_two_dashes_as_folders(self):
        shutil.copytree(self.folder, self.folder.parent / "--help")
        result = check("--", "--help", "--version", cwd=self.folder.parent)
        self.assertEqual((result.returncode, result.stderr), (1, ""))
        self.assertTrue(result.stdout.startswith("--version: cannot be read: "), result.stdout)

    def test_fails_when_its_report_is_lost(self):
        with open("/dev/full", "w", encoding="utf-8") as full:
            self.assertEqual(check(self.folder / "missing", stdout=full).returncode, 2)
            self.assertEqual(check("--help", stdout=full).returncode, 2)


class ManualPage(unittest.TestCase):
    def test_is_free_of_mistakes(self):
        result = subprocess.run(["groff", "-man", "-Tutf8", "-ww", "-b", "-z", MANUAL_PAGE], capture_output=True,
                                text=True, check=False)
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))

    def test_names_the_options_that_the_command_names(self):
        page = subprocess.run(["groff", "-man", "-Tascii", "-P-cbou", MANUAL_PAGE], capture_output=True, text=True,
                              check=True).stdout
        options = set(re.findall(r"--[a-z]+", check("--help").stdout))
        self.assertEqual(options, {"--help", "--version"})
        self.assertEqual(set(re.findall(r"--[a-z]+", page)), options)


if __name__ == "__main__":
    unittest.main()
