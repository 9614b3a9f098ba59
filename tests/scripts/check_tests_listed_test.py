"""The check for forgotten tests reports a file that is not built, and a folder that is not added to the build."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECK = pathlib.Path(__file__).parents[2] / "scripts" / "check-tests-listed.py"

VALID_TREE = {
    "CMakeLists.txt": "add_subdirectory(tests)\n",
    "tests/CMakeLists.txt": "add_library(s support/Read.cpp)\nadd_subdirectory(Log)\n",
    "tests/support/Read.cpp": "",
    "tests/support/Count.cpp": "",
    "tests/Log/CMakeLists.txt":
        "add_executable(t\n  A_test.cpp\n  Core/B_test.cpp)\nadd_test(c ${CMAKE_CURRENT_SOURCE_DIR}/c.py)\n"
        "target_sources(t PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/Count.cpp)\n",
    "tests/Log/A_test.cpp": "",
    "tests/Log/Core/B_test.cpp": "",
    "tests/Log/c.py": "",
}


def check(changes):
    with tempfile.TemporaryDirectory() as folder:
        for name, text in (VALID_TREE | changes).items():
            path = pathlib.Path(folder, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        result = subprocess.run([sys.executable, CHECK, folder], capture_output=True, text=True, check=False)
        return result.returncode, result.stdout


class CheckTestsListed(unittest.TestCase):
    def test_accepts_a_tree_whose_files_are_all_listed(self):
        self.assertEqual(check({}), (0, "Tests: 5 files, 0 forgotten.\n"))

    def test_reports_a_file_that_is_not_listed(self):
        status, output = check({"tests/Log/Core/C_test.cpp": ""})
        self.assertEqual(status, 1)
        self.assertIn("tests/Log/Core/C_test.cpp: named by no CMakeLists.txt", output)

    def test_reports_a_file_that_is_commented_out(self):
        status, output = check({"tests/CMakeLists.txt": "add_subdirectory(Log)\n# support/Read.cpp\n"})
        self.assertEqual(status, 1)
        self.assertIn("tests/support/Read.cpp: ", output)

    def test_reports_the_files_of_a_folder_that_is_not_added(self):
        status, output = check({"tests/CMakeLists.txt": "add_library(s support/Read.cpp)\n"})
        self.assertEqual(status, 1)
        self.assertIn("4 forgotten", output)


if __name__ == "__main__":
    unittest.main()
