#!/usr/bin/env python3
"""Checks that every test is run: each source, script and folder below tests/ is named by a CMakeLists.txt.

check-tests-listed.py [ROOT] checks the tree that contains it, or ROOT. It begins with the CMakeLists.txt there and
continues with each folder that one of them names.
"""

import pathlib
import re
import sys

SOURCES = {".cpp", ".py", ".cmake"}
WORD = re.compile(r"[\w./+-]+")


def words(cmake_file):
    """The words of a CMakeLists.txt outside comments. Text after a variable, as in ${dir}/a.cpp, is a path."""
    text = cmake_file.read_text(encoding="utf-8")
    text = re.sub(r"#.*", "", text)
    text = re.sub(r"\$\{\w+\}/", "", text)
    return set(WORD.findall(text))


def find_named(top):
    """Every file and folder that is named, beginning at the top."""
    named, waiting = set(), [top]
    while waiting:
        folder = waiting.pop()
        if not (folder / "CMakeLists.txt").is_file():
            continue
        for word in words(folder / "CMakeLists.txt"):
            # A path is relative to its folder or, after ${PROJECT_SOURCE_DIR}, to the top.
            for path in {(folder / word).resolve(), (top / word).resolve()}:
                if path not in named and path != top and path.exists() and path.is_relative_to(top):
                    named.add(path)
                    if path.is_dir():
                        waiting.append(path)
    return named


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parents[1]).resolve()
    sources = [path for path in (root / "tests").rglob("*") if path.suffix in SOURCES and path.is_file()]
    if not sources:
        sys.exit(f"{root}: no tests found")
    named = find_named(root)
    forgotten = sorted(path for path in sources if path not in named)
    for path in forgotten:
        print(f"{path.relative_to(root)}: named by no CMakeLists.txt that is reached, so nothing runs it")
    print(f"Tests: {len(sources)} files, {len(forgotten)} forgotten.")
    sys.exit(1 if forgotten else 0)


if __name__ == "__main__":
    main()
