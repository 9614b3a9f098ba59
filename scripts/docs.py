#!/usr/bin/env python3
"""Checks the documents: that their C++ compiles, their links have targets, and their maps name every public header.

docs.py check          checks links, maps and the kinds of code blocks of every document
docs.py extract DIR    writes the C++ blocks of every document to sources in DIR, and prints their paths
docs.py blocks LANGUAGE FILE    prints the blocks of that language in one document

A block marked "cpp" is compiled. The blocks of one document make up one source, in their order, so that
later ones may use what earlier ones declare. A comment on the line above a block says what else it is:

<!-- inside: void Example(YLog::Router& router) -->    the body of such a function
<!-- file: examples/first_program.cpp -->              the text of this file, which is built on its own
"""

import pathlib
import re
import sys
from dataclasses import dataclass

ROOT = pathlib.Path(__file__).resolve().parents[1]
LANGUAGES = {"cpp", "cmake", "json", "sh", "text"}
FENCE = re.compile(r"^ {0,3}```\s*(.*)$")
MARK = re.compile(r"<!-- (inside|file): (.*) -->$")
LINK = re.compile(r"\[[^]]*\]\(([^)#]+)(?:#[^)]*)?\)")
# Where each public header is described in one sentence.
MAPS = {"README.md": ["Log/include"], "docs/architecture.md": ["Foundation/*/include"]}


@dataclass
class Block:
    line: int  # Where its text begins.
    language: str
    mark: tuple  # ("inside" or "file", its text), or ("", "").
    text: str


def documents(root):
    return sorted(root.glob("*.md")) + sorted((root / "docs").glob("*.md"))


def read_blocks(document):
    blocks, begin, previous = [], None, ""
    for number, line in enumerate(document.read_text(encoding="utf-8").splitlines(), 1):
        fence = FENCE.match(line)
        if begin is None and fence:
            mark = MARK.match(previous)
            begin = Block(number + 1, fence[1], mark.groups() if mark else ("", ""), "")
        elif fence:
            blocks.append(begin)
            begin = None
        elif begin is not None:
            begin.text += line + "\n"
        previous = line
    if begin is not None:
        sys.exit(f"{document}:{begin.line}: the block does not end")
    return blocks


def block_faults(root, document):
    for block in read_blocks(document):
        kind, name = block.mark
        if block.language not in LANGUAGES:
            yield block.line, f"a block must be one of {', '.join(sorted(LANGUAGES))}, not '{block.language}'"
        if kind == "file" and not (root / name).is_file():
            yield block.line, f"no file {name}"
        elif kind == "file" and (root / name).read_text(encoding="utf-8") != block.text:
            yield block.line, f"differs from {name}"


def link_faults(document):
    for number, line in enumerate(document.read_text(encoding="utf-8").splitlines(), 1):
        for target in LINK.findall(line):
            if "://" not in target and not (document.parent / target).exists():
                yield number, f"the link to {target} is broken"


def map_faults(root, document):
    text = document.read_text(encoding="utf-8")
    for pattern in MAPS.get(str(document.relative_to(root)), []):
        for folder in root.glob(pattern):
            for header in sorted(folder.rglob("*.h")):
                name = header.relative_to(folder).as_posix()
                if f"`{name}`" not in text:
                    yield 1, f"does not describe `{name}`"


def check(root):
    found = documents(root)
    faults = []
    for document in found:
        for number, reason in [*block_faults(root, document), *link_faults(document), *map_faults(root, document)]:
            faults.append(f"{document.relative_to(root)}:{number}: {reason}")
    faults += [f"{name}:1: is missing" for name in MAPS if not (root / name).is_file()]
    print("\n".join([*faults, f"Documents: {len(found)}, {len(faults)} faults."]))
    return 1 if faults else 0


def source_of(root, document):
    """The C++ of one document as one source, whose lines the compiler reports as the document's own."""
    parts = []
    for block in read_blocks(document):
        if block.language != "cpp" or block.mark[0] == "file":
            continue
        before, after = (block.mark[1] + " {\n", "}\n") if block.mark[0] == "inside" else ("", "")
        parts.append(f'{before}#line {block.line} "{document.relative_to(root)}"\n{block.text}{after}')
    return "#include <YLog/YLog.h>\n" + "".join(parts) if parts else ""


def extract(root, folder):
    folder.mkdir(parents=True, exist_ok=True)
    for document in documents(root):
        source = source_of(root, document)
        path = folder / (document.stem + ".cpp")
        if source:
            # An unchanged source keeps its time, so that it is not compiled again.
            if not path.exists() or path.read_text(encoding="utf-8") != source:
                path.write_text(source, encoding="utf-8")
            print(path)
    return 0


def print_blocks(document, language):
    print("".join(block.text for block in read_blocks(document) if block.language == language), end="")
    return 0


def main():
    arguments = sys.argv[1:]
    root = ROOT
    if arguments[:1] == ["--root"]:
        root, arguments = pathlib.Path(arguments[1]).resolve(), arguments[2:]
    if arguments == ["check"]:
        return check(root)
    if len(arguments) == 2 and arguments[0] == "extract":
        return extract(root, pathlib.Path(arguments[1]))
    if len(arguments) == 3 and arguments[0] == "blocks":
        return print_blocks(root / arguments[2], arguments[1])
    sys.exit(__doc__)


if __name__ == "__main__":
    sys.exit(main())
