#!/usr/bin/env python3
"""Checks includes: the layers of the tree, what public headers may include, and that there are no cycles.

check-includes.py [ROOT] checks the tree that contains it, or ROOT. It prints each violation as
"file:line: reason" and then fails.
"""

import pathlib
import re
import sys
from dataclasses import dataclass

# What each unit may include besides itself. A foundation library is a unit, and so is each folder of Log/;
# "YLog" is the public headers of Log/, "ModuleMain.h" the interface of the module, which the subsystems share.
FOUNDATION = {
    "YBase": set(),
    "YSynch": {"YBase"},
    "YDataType": {"YBase", "YSynch"},
    "YFileSystem": {"YBase", "YSynch", "YDataType"},
    "YResource": {"YBase", "YSynch"},
}
PUBLIC_FACE = {"YLog"} | set(FOUNDATION)
ALLOWED = FOUNDATION | {"YLog": set(FOUNDATION), "ModuleMain.h": PUBLIC_FACE}
ALLOWED |= {unit: PUBLIC_FACE for unit in ("Masking", "Statistics")}
BELOW_SUBSYSTEMS = PUBLIC_FACE | {"ModuleMain.h", "Masking", "Statistics"}
SUBSYSTEMS = {"MessageModel", "Core", "Destinations"}
ALLOWED |= {unit: BELOW_SUBSYSTEMS for unit in SUBSYSTEMS}
ALLOWED["Module"] = BELOW_SUBSYSTEMS | SUBSYSTEMS
ALLOWED |= {"examples": PUBLIC_FACE}

HEAVY = re.compile(r"(iostream|regex|filesystem|boost/.*|unicode/.*|json/.*|nlohmann/.*|utf8.*)$")
INTERNAL_NAME = re.compile(r"\b\w+_Impl\b|\bModuleMain\b")
INCLUDE = re.compile(r'\s*#\s*include\s*(?:<([^>]+)>|"([^"]+)")')


@dataclass(frozen=True)
class File:
    path: pathlib.PurePath  # From the root of the tree.
    unit: str
    is_public: bool


def describe(path):
    """The file at a path from the root, or None if no rule applies to it."""
    parts = path.parts
    if parts[0] == "Foundation" and len(parts) > 3:
        return File(path, parts[1], parts[2] == "include")
    if parts[0] == "Log" and len(parts) > 3 and parts[1] == "include":
        return File(path, parts[2], True)
    if parts[0] == "Log" and len(parts) > 1:
        return File(path, parts[1], False)
    if parts[0] == "examples":
        return File(path, "examples", False)
    return None


def collect(root):
    files = {}
    for top in ("Foundation", "Log", "examples"):
        for path in sorted((root / top).rglob("*")):
            if path.suffix in (".h", ".cpp"):
                file = describe(path.relative_to(root))
                if file is not None:
                    files[file.path] = file
    return files


def named_headers(files):
    """By the name in angle brackets, such as "YBase/Message.h": public headers, and those in src/YBase/."""
    return {"/".join(path.parts[-2:]): file for path, file in files.items()
            if file.is_public or path.parts[2:-1] == ("src", file.unit)}


def find_quoted(file, name, files):
    """Internal headers are named from Log/ inside it, and from src/ inside a foundation library."""
    top = file.path.parts[:1] if file.path.parts[0] in ("Log", "examples") else file.path.parts[:3]
    path = pathlib.PurePath(*top, name)
    return path if path in files else None


def without_comment(line):
    return line.split("//")[0]


class Checker:
    def __init__(self, root):
        self.root = root
        self.files = collect(root)
        self.named = named_headers(self.files)
        self.violations = []
        self.edges = {path: [] for path in self.files}

    def run(self):
        for file in self.files.values():
            if file.unit not in ALLOWED:
                self.violations.append(f"{file.path}:1: there is no rule for the folder '{file.unit}'")
                continue
            self.check_file(file)
        self.check_cycles()
        return self.violations

    def check_file(self, file):
        text = (self.root / file.path).read_text(encoding="utf-8")
        for number, line in enumerate(text.splitlines(), 1):
            for reason in self.faults(file, line):
                self.violations.append(f"{file.path}:{number}: {reason}")

    def faults(self, file, line):
        include = INCLUDE.match(line)
        if include and include[1]:
            yield from self.angle_faults(file, include[1])
        elif include:
            yield from self.quoted_faults(file, include[2])
        elif file.is_public and file.unit == "YLog":
            for name in INTERNAL_NAME.findall(without_comment(line)):
                yield f"a public header of YLog names '{name}'"

    def angle_faults(self, file, name):
        if file.is_public and HEAVY.match(name):
            yield f"a public header includes <{name}>"
        unit = name.split("/")[0]
        if name in self.named:
            target = self.named[name]
            self.edges[file.path].append(target.path)
            if not target.is_public and (file.is_public or file.unit == "examples"):
                yield f"<{name}> is not installed"
        if unit in PUBLIC_FACE and unit != file.unit and unit not in ALLOWED[file.unit]:
            yield f"{file.unit} must not include <{name}>"

    def quoted_faults(self, file, name):
        if file.is_public:
            yield f'a public header includes "{name}"'
            return
        target = find_quoted(file, name, self.files)
        if target is None:
            yield f'"{name}" is not a file that this one may include'
            return
        self.edges[file.path].append(target)
        unit = self.files[target].unit
        if unit != file.unit and unit not in ALLOWED[file.unit]:
            yield f'{file.unit} must not include "{name}"'

    def check_cycles(self):
        done, chain = set(), []

        def visit(path):
            if path in chain:
                cycle = chain[chain.index(path):] + [path]
                self.violations.append(f"{path}:1: includes itself: {' > '.join(map(str, cycle))}")
            elif path not in done:
                chain.append(path)
                for target in self.edges[path]:
                    visit(target)
                done.add(chain.pop())

        for path in self.files:
            visit(path)


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parents[1]).resolve()
    checker = Checker(root)
    if not checker.files:
        sys.exit(f"{root}: no sources found")
    violations = checker.run()
    for violation in violations:
        print(violation)
    print(f"Includes: {len(checker.files)} files, {len(violations)} violations.")
    sys.exit(1 if violations else 0)


if __name__ == "__main__":
    main()
