"""The check of static objects accepts those that exist from the beginning, and reports those created later."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECK = pathlib.Path(__file__).parents[2] / "scripts" / "check-statics.py"
FOLDERS = {
    "ybase": "Foundation/YBase", "ysynch": "Foundation/YSynch", "ydatatype": "Foundation/YDataType",
    "yfilesystem": "Foundation/YFileSystem", "yresource": "Foundation/YResource", "ylog": "Log",
}
VALID = """
struct Lock { constexpr Lock() {} ~Lock(); };
constinit Lock gsLock;
constinit thread_local int gsCount = 0;
int GetNumber();
const int gsMadeAtLoad = GetNumber();
int* FindCount() { static constexpr int NUMBERS[] = {1, 2}; static int sCount = NUMBERS[0]; return &sCount; }
"""


def compile_object(build, library, source):
    path = build / FOLDERS[library] / "CMakeFiles" / f"{library}.dir" / "src" / "File.cpp.o"
    path.parent.mkdir(parents=True, exist_ok=True)
    compiler = os.environ.get("CXX", "c++")
    subprocess.run([compiler, "-std=c++20", "-x", "c++", "-c", "-", "-o", path], input=source, text=True, check=True)


def check(sources):
    """Runs the check on a build of these sources. Returns its exit status and its output."""
    with tempfile.TemporaryDirectory() as folder:
        for library, source in sources.items():
            compile_object(pathlib.Path(folder), library, source)
        result = subprocess.run([sys.executable, CHECK, folder], capture_output=True, text=True, check=False)
        return result.returncode, result.stdout + result.stderr


class CheckStatics(unittest.TestCase):
    def assert_refused(self, source, reason):
        status, output = check(dict.fromkeys(FOLDERS, VALID) | {"ydatatype": source})
        self.assertEqual(status, 1, output)
        self.assertIn(f"Foundation/YDataType/CMakeFiles/ydatatype.dir/src/File.cpp.o: {reason}", output)
        self.assertIn(" 6 object files, 1 violations.", output)

    def test_accepts_objects_that_are_constant_or_created_at_load(self):
        self.assertEqual(check(dict.fromkeys(FOLDERS, VALID)), (0, "Static objects: 6 object files, 0 violations.\n"))

    def test_refuses_a_static_object_of_a_function(self):
        self.assert_refused(
            "struct Lock { Lock(); }; Lock& Get() { static auto& lock = *new Lock; return lock; }",
            "Get()::lock is made at its first use")

    def test_refuses_a_static_object_of_an_inline_function(self):
        self.assert_refused(
            "struct Lock { Lock(); }; inline Lock& Get() { static Lock lock; return lock; } Lock& Use() { return Get(); }",
            "Get()::lock is made at its first use")

    def test_refuses_a_thread_local_object_that_is_created_at_its_first_use(self):
        self.assert_refused(
            "int Count(); thread_local int gsCount = Count(); int Get() { return gsCount; }",
            "a thread_local object is made at its first use (__tls_init)")

    def test_refuses_initialisation_by_pthread_once(self):
        self.assert_refused(
            "#include <pthread.h>\nvoid Make(); pthread_once_t gsOnce; void Use() { pthread_once(&gsOnce, Make); }",
            "something is made at its first use (pthread_once)")

    def test_reports_a_thread_local_object_with_a_destructor(self):
        source = "struct Lock { constexpr Lock() {} ~Lock(); }; thread_local Lock gsLock; Lock& Get() { return gsLock; }"
        status, output = check(dict.fromkeys(FOLDERS, VALID) | {"ylog": source})
        self.assertEqual(status, 1)
        self.assertIn("a thread_local object has a destructor (__cxa_thread_atexit)", output)

    def test_refuses_a_folder_that_lacks_a_library(self):
        status, output = check({library: VALID for library in FOLDERS if library != "yresource"})
        self.assertEqual(status, 1)
        self.assertIn("no object files of yresource", output)


if __name__ == "__main__":
    unittest.main()
