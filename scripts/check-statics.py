#!/usr/bin/env python3
"""Checks that nothing in the library is constructed at its first use by code that the compiler guards.

check-statics.py [BUILD] checks the object files of the library in a build folder: build/dev unless another is
named. It prints each violation as "file: reason" and then fails.

If the construction of a static object of a function, or of a thread_local one, runs code, the first thread that needs
the object constructs it, and other threads wait for that thread. A child that is forked at that moment inherits the
object half constructed, and waits for a thread that it does not have: its first record hangs. So such objects are
`constinit`, or, if that is not possible, made under a lock of `YSynch`, for which a fork waits. A thread_local object
with a destructor is refused as well, because threads log until they have ended.
"""

import pathlib
import re
import subprocess
import sys

# Each library of the tree, and the folder that its object files are in.
LIBRARIES = {
    "ybase": "Foundation/YBase",
    "ysynch": "Foundation/YSynch",
    "ydatatype": "Foundation/YDataType",
    "yfilesystem": "Foundation/YFileSystem",
    "yresource": "Foundation/YResource",
    "ylog": "Log",
}
# The symbols that the compiler and the standard library leave in an object file if they guard a construction.
GUARD = re.compile(r"guard variable for (.*)")
SYMBOLS = {
    "__tls_init": "a thread_local object is made at its first use",
    "__cxa_thread_atexit": "a thread_local object has a destructor",
    "pthread_once": "something is made at its first use",
    "__once_proxy": "something is made at its first use",
}
# Objects that may be constructed at their first use nevertheless, by their full names, each with its reason.
ALLOWED = set()


def find_objects(build):
    for library, folder in LIBRARIES.items():
        objects = sorted((build / folder / "CMakeFiles" / f"{library}.dir").rglob("*.o"))
        if not objects:
            sys.exit(f"check-statics.py: no object files of {library} in {build}; build the library first")
        yield from objects


def find_violations(path):
    command = ["nm", "--demangle", "--format=just-symbols", path]
    for symbol in subprocess.run(command, capture_output=True, text=True, check=True).stdout.splitlines():
        guard = GUARD.fullmatch(symbol)
        if guard and guard[1] not in ALLOWED:
            yield f"{guard[1]} is made at its first use"
        elif symbol in SYMBOLS:
            yield f"{SYMBOLS[symbol]} ({symbol})"


def main():
    root = pathlib.Path(__file__).resolve().parents[1]
    build = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else root / "build" / "dev"
    objects = list(find_objects(build))
    violations = 0
    for path in objects:
        for reason in find_violations(path):
            print(f"{path.relative_to(build)}: {reason}")
            violations += 1
    print(f"Static objects: {len(objects)} object files, {violations} violations.")
    return 1 if violations else 0


if __name__ == "__main__":
    sys.exit(main())
