"""The installation is complete, contains nothing internal, and exports only what the public headers need.

Arguments: the source tree, the prefix of the installation, the version.
"""

import pathlib
import re
import subprocess
import sys
import unittest

SOURCES, PREFIX, VERSION = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3]
del sys.argv[1:]
# Until 1.0, each minor version may change the binary interface.
MAJOR, MINOR, _ = VERSION.split(".")
SONAME = f"libYLog.so.0.{MINOR}" if MAJOR == "0" else f"libYLog.so.{MAJOR}"

NAMES = {"YBase", "YDataType", "YFileSystem", "YLog", "YResource", "YSynch"}
# What clients use of the foundation beside what the headers of YLog include.
FOR_CLIENTS = {
    "YBase/FormatMessage.h", "YBase/Localizer.h", "YBase/ModuleMainPtr.h", "YFileSystem/Directory.h",
    "YFileSystem/File.h", "YFileSystem/Path.h", "YResource/FolderBundle.h", "YResource/Language.h",
    "YResource/Localizer.h", "YResource/MemoryBundle.h"}
# A vtable, type information and so on belong to the class that they describe.
PREFIXES = r"(?:(?:vtable|VTT|typeinfo|typeinfo name|construction vtable|virtual thunk|non-virtual thunk|guard variable)" \
           r" (?:for|to) )?"
OURS = re.compile(PREFIXES + r"(?:[\w:<>*&, ]+ )?(?:" + "|".join(sorted(NAMES)) + r")::")
# Every shared object exports its instances of the standard library's templates weakly. The mangled name identifies
# them: it begins with the namespace, even where the demangled name begins with a return type.
STANDARD = re.compile(r"_Z(?:T[VTISC]|GV|Z)?N?[VK]*(?:S[absiodt]|9__gnu_cxx)")


def output_of(*command):
    return subprocess.run([*map(str, command)], capture_output=True, text=True, check=True).stdout


def library():
    return next(PREFIX.rglob("libYLog.so"))


def exported_symbols():
    """The demangled names of the exported symbols, without weak ones of the standard library."""
    lines = output_of("nm", "--dynamic", "--defined-only", library()).splitlines()
    symbols = [line.split()[1:] for line in lines]
    own = [name for kind, name in symbols if not (kind in "WVu" and STANDARD.match(name))]
    return output_of("c++filt", *own).replace("[abi:cxx11]", "").splitlines()


def public_headers():
    folders = [*(SOURCES / "Foundation").glob("*/include"), SOURCES / "Log" / "include"]
    return {path.relative_to(folder) for folder in folders for path in folder.rglob("*.h")}


def includes(header):
    """The names of our own headers that an installed one includes."""
    text = (PREFIX / "include" / header).read_text(encoding="utf-8")
    return {name for name in re.findall(r"#include <([^>]+)>", text) if name.split("/")[0] in NAMES}


def with_all_includes(headers):
    found, pending = set(), list(headers)
    while pending:
        header = pending.pop()
        if header not in found:
            found.add(header)
            pending += includes(header)
    return found


class Content(unittest.TestCase):
    def test_installs_exactly_the_public_headers_and_the_export_headers(self):
        exports = {pathlib.Path(name, "Export.h") for name in NAMES}
        include = PREFIX / "include"
        installed = {path.relative_to(include) for path in include.rglob("*") if path.is_file()}
        self.assertEqual({path.parts[0] for path in installed}, NAMES)
        self.assertEqual(installed, public_headers() | exports)

    def test_installs_no_header_of_the_foundation_that_clients_do_not_use(self):
        include = PREFIX / "include"
        installed = {path.relative_to(include).as_posix() for path in include.rglob("*.h")}
        used = with_all_includes({name for name in installed if name.startswith("YLog/")} | FOR_CLIENTS)
        self.assertEqual(installed - used, {f"{name}/{name}.h" for name in NAMES - {"YLog"}})

    def test_includes_all_headers_of_a_folder_by_the_one_of_its_name(self):
        for name in NAMES:
            installed = {f"{name}/{path.name}" for path in (PREFIX / "include" / name).iterdir()}
            self.assertLessEqual(installed, with_all_includes({f"{name}/{name}.h"}))

    def test_installs_the_command_and_its_manual_page(self):
        self.assertEqual([path.name for path in (PREFIX / "bin").iterdir()], ["ylog-check-catalogues"])
        self.assertEqual([path.name for path in PREFIX.rglob("share/man/man1/*")], ["ylog-check-catalogues.1"])

    def test_installs_one_library_whose_soname_changes_with_the_binary_interface(self):
        libraries = {path.name for path in library().parent.glob("*") if path.is_file()}
        self.assertEqual(libraries, {"libYLog.so", SONAME, f"libYLog.so.{VERSION}"})
        dynamic = output_of("readelf", "--dynamic", "--wide", library())
        self.assertIn(f"soname: [{SONAME}]", dynamic)
        self.assertRegex(dynamic, r"runpath: \[\$ORIGIN\]")

    def test_needs_only_the_listed_libraries_and_those_of_compiler_and_system(self):
        dynamic = output_of("readelf", "--dynamic", "--wide", library())
        needed = set(re.findall(r"Shared library: \[([\w+-]+)\.so", dynamic))
        system = {"libc", "libm", "libstdc++", "libgcc_s", "ld-linux-x86-64", "ld-linux-aarch64"}
        self.assertLessEqual(needed - system, {"libjsoncpp", "libicuuc", "libicudata"})

    def test_text_files_contain_no_path_of_the_source_tree(self):
        for path in [*PREFIX.rglob("*.cmake"), *PREFIX.rglob("*.pc")]:
            self.assertNotIn(str(SOURCES), path.read_text(encoding="utf-8"), path)


class Symbols(unittest.TestCase):
    def test_exports_the_public_classes_and_functions(self):
        names = {name.split("(")[0] for name in exported_symbols()}
        expected = {"YLog::CreateRouter", "YLog::Initializer::Initializer", "YBase::WideCharToUTF8",
                    "typeinfo for YLog::Exception", "vtable for YLog::Destination"}
        self.assertLessEqual(expected, names)

    def test_exports_nothing_outside_its_namespaces(self):
        self.assertEqual([name for name in exported_symbols() if not OURS.match(name)], [])

    def test_exports_no_implementation(self):
        self.assertEqual([name for name in exported_symbols() if re.search(r"\w_Impl\b", name)], [])


if __name__ == "__main__":
    unittest.main()
