"""The include check accepts a tree that follows the rules and reports each kind of violation."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECK = pathlib.Path(__file__).parents[2] / "scripts" / "check-includes.py"

VALID_TREE = {
    "Foundation/YBase/include/YBase/Text.h": "#include <string>\n",
    "Foundation/YBase/src/Tables.h": "",
    "Foundation/YBase/src/YBase/System.h": "#include <filesystem>\n",
    "Foundation/YBase/src/Text.cpp": '#include <YBase/Text.h>\n#include "Tables.h"\n#include <utf8.h>\n',
    "Foundation/YSynch/src/Lock.cpp": "#include <YBase/System.h>\n",
    "Foundation/YSynch/include/YSynch/Lock.h": "#include <YBase/Text.h>\n",
    "Foundation/YResource/include/YResource/Bundle.h": "#include <YSynch/Lock.h>\n",
    "Log/include/YLog/Logger.h": "// Made by Logger_Impl.\n#include <YResource/Bundle.h>\n",
    "Log/ModuleMain.h": "#include <YLog/Logger.h>\n",
    "Log/Masking/Mask.h": "#include <YBase/Text.h>\n",
    "Log/Core/Logger_Impl.h": '#include "Masking/Mask.h"\n#include "ModuleMain.h"\n',
    "Log/Destinations/Disk.h": '#include "ModuleMain.h"\n',
    "Log/Module/Module.cpp": '#include "Core/Logger_Impl.h"\n#include "Destinations/Disk.h"\n',
    "examples/first.cpp": "#include <iostream>\n#include <YLog/Logger.h>\n",
}


def check(changes):
    """Runs the check on the valid tree with some files replaced or added. Returns its exit status and its output."""
    with tempfile.TemporaryDirectory() as folder:
        for name, text in (VALID_TREE | changes).items():
            path = pathlib.Path(folder, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        result = subprocess.run([sys.executable, CHECK, folder], capture_output=True, text=True, check=False)
        return result.returncode, result.stdout


class CheckIncludes(unittest.TestCase):
    def assert_refused(self, name, text, reason):
        status, output = check({name: text})
        self.assertEqual(status, 1, output)
        self.assertIn(f"{name}:1: {reason}", output)
        self.assertIn(" 1 violations.", output)

    def test_accepts_a_tree_that_follows_the_rules(self):
        status, output = check({})
        self.assertEqual(status, 0, output)
        self.assertIn(f"{len(VALID_TREE)} files, 0 violations.", output)

    def test_refuses_a_foundation_library_that_includes_a_higher_one(self):
        self.assert_refused(
            "Foundation/YBase/src/Up.cpp", "#include <YSynch/Lock.h>\n", "YBase must not include <YSynch/Lock.h>")

    def test_refuses_a_foundation_library_that_includes_one_of_its_layer(self):
        self.assert_refused(
            "Foundation/YResource/src/Side.cpp", "#include <YFileSystem/Path.h>\n",
            "YResource must not include <YFileSystem/Path.h>")

    def test_refuses_a_foundation_library_that_includes_the_logging_library(self):
        self.assert_refused(
            "Foundation/YSynch/src/Up.cpp", "#include <YLog/Logger.h>\n", "YSynch must not include <YLog/Logger.h>")

    def test_refuses_an_internal_header_of_another_foundation_library(self):
        self.assert_refused(
            "Foundation/YSynch/src/Deep.cpp", '#include "Tables.h"\n', '"Tables.h" is not a file that this one may include')

    def test_refuses_a_subsystem_that_includes_another_one(self):
        self.assert_refused(
            "Log/Core/Router.cpp", '#include "Destinations/Disk.h"\n', 'Core must not include "Destinations/Disk.h"')

    def test_refuses_a_subsystem_that_includes_the_module(self):
        changes = {"Log/Module/Module.h": "", "Log/Core/Router.cpp": '#include "Module/Module.h"\n'}
        status, output = check(changes)
        self.assertEqual(status, 1)
        self.assertIn('Core must not include "Module/Module.h"', output)

    def test_refuses_masking_that_includes_the_interface_of_the_module(self):
        self.assert_refused(
            "Log/Masking/Mask.cpp", '#include "ModuleMain.h"\n', 'Masking must not include "ModuleMain.h"')

    def test_refuses_an_interface_of_the_module_that_includes_a_subsystem(self):
        status, output = check({"Log/ModuleMain.h": '#include "Destinations/Disk.h"\n'})
        self.assertEqual(status, 1)
        self.assertIn('ModuleMain.h must not include "Destinations/Disk.h"', output)

    def test_refuses_a_public_header_that_includes_an_internal_one(self):
        self.assert_refused(
            "Log/include/YLog/Router.h", '#include "Core/Logger_Impl.h"\n',
            'a public header includes "Core/Logger_Impl.h"')

    def test_refuses_a_public_header_that_includes_one_that_is_not_installed(self):
        for name in ("Log/include/YLog/Router.h", "Foundation/YBase/include/YBase/Message.h"):
            self.assert_refused(name, "#include <YBase/System.h>\n", "<YBase/System.h> is not installed")

    def test_refuses_a_public_header_that_names_an_implementation(self):
        self.assert_refused(
            "Log/include/YLog/Router.h", "class Router_Impl;\n", "a public header of YLog names 'Router_Impl'")

    def test_refuses_heavy_headers_in_every_public_header(self):
        for header in ("iostream", "regex", "filesystem", "boost/any.hpp", "unicode/uloc.h", "json/json.h"):
            self.assert_refused(
                "Foundation/YBase/include/YBase/Heavy.h", f"#include <{header}>\n",
                f"a public header includes <{header}>")

    def test_refuses_an_example_that_includes_a_header_that_is_not_installed(self):
        self.assert_refused(
            "examples/deep.cpp", "#include <YBase/System.h>\n", "<YBase/System.h> is not installed")

    def test_refuses_an_example_that_includes_an_internal_header(self):
        self.assert_refused(
            "examples/deep.cpp", '#include "Core/Logger_Impl.h"\n',
            '"Core/Logger_Impl.h" is not a file that this one may include')

    def test_refuses_a_circle_through_a_header_that_is_not_installed(self):
        status, output = check({"Foundation/YBase/src/YBase/System.h": "#include <YBase/System.h>\n"})
        self.assertEqual(status, 1)
        self.assertIn("Foundation/YBase/src/YBase/System.h > Foundation/YBase/src/YBase/System.h", output)

    def test_refuses_files_that_include_each_other(self):
        status, output = check({"Log/Core/A.h": '#include "Core/B.h"\n', "Log/Core/B.h": '#include "Core/A.h"\n'})
        self.assertEqual(status, 1)
        self.assertIn("Log/Core/A.h > Log/Core/B.h > Log/Core/A.h", output)

    def test_refuses_a_folder_without_a_rule(self):
        self.assert_refused("Log/Misc/Thing.cpp", "", "there is no rule for the folder 'Misc'")

    def test_refuses_a_tree_without_sources(self):
        with tempfile.TemporaryDirectory() as folder:
            result = subprocess.run([sys.executable, CHECK, folder], capture_output=True, text=True, check=False)
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("no sources found", result.stderr)


if __name__ == "__main__":
    unittest.main()
