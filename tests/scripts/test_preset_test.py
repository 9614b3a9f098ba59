"""test-preset.sh runs every test if it can. Otherwise it reports which it leaves out, why, and how to run them.

Small programs replace CMake, CTest and the probe, which have their own tests.
"""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).parents[2] / "scripts" / "test-preset.sh"

CMAKE = """#!/bin/sh
echo "Preset CMake variables: of no interest"
echo "a warning of CMake" >&2
"""
# Records its arguments; lists three tests.
CTEST = """#!/bin/sh
case "$*" in
*--show-only*--label-regex*) echo "Total Tests: 3" ;;
*) printf '%s\\n' "$*" >>ctest-arguments; exit "${CTEST_STATUS:-0}" ;;
esac
"""
PERMITTED = "#!/bin/sh\n"
REFUSED = """#!/bin/sh
echo "child process: a user namespace: Operation not permitted" >&2
exit 1
"""


class TestPreset(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory(prefix="with blanks ")
        self.addCleanup(temporary.cleanup)
        self.root = pathlib.Path(temporary.name)
        (self.root / "scripts").mkdir()
        shutil.copy(SCRIPT, self.root / "scripts")
        self.write("bin/cmake", CMAKE)
        self.write("bin/ctest", CTEST)

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
        path.chmod(0o755)

    def run_script(self, probe, *arguments, ctest_status=0):
        self.write("build/dev/tests/mount_probe", probe)
        environment = {**os.environ, "PATH": f"{self.root}/bin:{os.environ['PATH']}", "CTEST_STATUS": str(ctest_status)}
        return subprocess.run([self.root / "scripts" / SCRIPT.name, "dev", *arguments], env=environment,
                              capture_output=True, text=True, check=False)

    def ctest_arguments(self):
        return (self.root / "ctest-arguments").read_text(encoding="utf-8")

    def test_runs_every_test_if_mounts_are_permitted(self):
        result = self.run_script(PERMITTED, "-R", "DiskFile")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertNotIn("mounts", self.ctest_arguments())
        self.assertTrue(self.ctest_arguments().endswith(" -R DiskFile\n"), self.ctest_arguments())
        self.assertNotIn("left out", result.stdout)

    def test_reports_before_and_after_the_run_which_tests_it_leaves_out_and_why_and_how_to_run_them(self):
        result = self.run_script(REFUSED)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn(" --label-exclude ^mounts$", self.ctest_arguments())
        self.assertEqual(result.stdout.count("3 tests are left out: "), 2)
        self.assertIn("(a user namespace: Operation not permitted)", result.stdout)
        self.assertIn("sudo ctest --preset dev --label-regex mounts", result.stdout)

    def test_fails_if_a_test_fails_whether_or_not_it_leaves_any_out(self):
        for probe in (PERMITTED, REFUSED):
            self.assertEqual(self.run_script(probe, ctest_status=8).returncode, 8)

    def test_shows_warnings_of_cmake_but_not_the_variables_of_the_preset(self):
        self.write("bin/cmake", CMAKE.replace("echo", '[ "$1" = --build ] || echo'))
        result = self.run_script(PERMITTED)
        self.assertNotIn("Preset CMake variables", result.stdout)
        self.assertIn("a warning of CMake", result.stderr)


if __name__ == "__main__":
    unittest.main()
