"""The check of the documents reports faults in links, maps and blocks, and C++ that does not compile.

The compiler is the first argument.
"""

import pathlib
import subprocess
import sys
import tempfile
import unittest

COMPILER = sys.argv.pop(1)
SCRIPT = pathlib.Path(__file__).parents[2] / "scripts" / "docs.py"

README = """# Title

Read [on](docs/architecture.md#there), `YLog/Logger.h`, <https://example.org>.

```cpp
struct Order { int number; };
```

<!-- inside: int Twice(const Order& order) -->
```cpp
return 2 * order.number + Logged();
```

<!-- file: examples/first.cpp -->
```cpp
int main() {}
```
"""

SOUND_TREE = {
    "README.md": README,
    "docs/architecture.md": "`YBase/Message.h`\n\n```sh\nmake\n```\n",
    "examples/first.cpp": "int main() {}\n",
    "Log/include/YLog/Logger.h": "",
    "Log/include/YLog/YLog.h": "inline int Logged() { return 1; }\n// `YLog/YLog.h`\n",
    "Foundation/YBase/include/YBase/Message.h": "",
}


class Docs(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.root = pathlib.Path(temporary.name)
        for name, text in SOUND_TREE.items():
            self.write(name, text)
        self.write("README.md", README.replace("`YLog/Logger.h`", "`YLog/Logger.h` `YLog/YLog.h`"))

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def append(self, name, text):
        self.write(name, (self.root / name).read_text(encoding="utf-8") + text)

    def run_docs(self, *arguments):
        command = [sys.executable, SCRIPT, "--root", self.root, *arguments]
        return subprocess.run(command, capture_output=True, text=True, check=False)

    def assert_fault(self, expected):
        result = self.run_docs("check")
        self.assertEqual(result.returncode, 1, result.stdout)
        self.assertIn(expected, result.stdout)
        self.assertIn(" 1 faults.", result.stdout)

    def compile_blocks(self):
        sources = self.run_docs("extract", str(self.root / "blocks")).stdout.splitlines()
        self.assertEqual([pathlib.Path(source).name for source in sources], ["README.cpp"])
        command = [COMPILER, "-std=c++20", "-fsyntax-only", "-I", self.root / "Log/include", *sources]
        return subprocess.run(command, capture_output=True, text=True, check=False)

    def test_accepts_valid_documents(self):
        result = self.run_docs("check")
        self.assertEqual((result.returncode, result.stdout), (0, "Documents: 2, 0 faults.\n"))

    def test_compiles_valid_blocks(self):
        result = self.compile_blocks()
        self.assertEqual((result.returncode, result.stderr), (0, ""))

    def test_reports_the_line_of_a_block_that_does_not_compile(self):
        self.append("README.md", "\n```cpp\nint Half(const Order& order) {\n  return order.nummer / 2;\n}\n```\n")
        line = (self.root / "README.md").read_text(encoding="utf-8").splitlines().index("  return order.nummer / 2;") + 1
        result = self.compile_blocks()
        self.assertNotEqual(result.returncode, 0)
        self.assertIn(f"README.md:{line}", result.stderr)

    def test_prints_the_blocks_of_one_language(self):
        self.append("README.md", "\n```sh\nmake a  # first\n```\n\n```cmake\nset(x)\n```\n\n```sh\nmake b\n```\n")
        result = self.run_docs("blocks", "sh", "README.md")
        self.assertEqual((result.returncode, result.stdout), (0, "make a  # first\nmake b\n"))

    def test_reports_a_broken_link(self):
        self.append("docs/architecture.md", "See [this](missing.md).\n")
        self.assert_fault("docs/architecture.md:6: the link to missing.md is broken")

    def test_reports_a_public_header_that_is_in_no_map(self):
        self.write("Foundation/YBase/include/YBase/New.h", "")
        self.assert_fault("docs/architecture.md:1: does not describe `YBase/New.h`")

    def test_reports_a_block_in_an_unknown_language(self):
        self.append("README.md", "\n```\nint hidden;\n```\n")
        self.assert_fault("a block must be one of cmake, cpp, json, sh, text, not ''")

    def test_reports_a_block_that_differs_from_its_file(self):
        self.write("examples/first.cpp", "int main() { return 1; }\n")
        self.assert_fault("differs from examples/first.cpp")

    def test_reports_a_block_whose_file_is_missing(self):
        (self.root / "examples/first.cpp").unlink()
        self.assert_fault("no file examples/first.cpp")

    def test_refuses_an_unterminated_block(self):
        self.append("README.md", "\n```cpp\nint open;\n")
        result = self.run_docs("check")
        self.assertEqual(result.returncode, 1)
        self.assertIn("the block does not end", result.stderr)


if __name__ == "__main__":
    unittest.main()
