#!/usr/bin/env python3
"""Changes the sources one small step at a time and counts which changes the tests notice.

mutate.py [--share PERCENT] [--seed N] SOURCE... changes each of the sources, below Log/, in every place that
matches a rule of MUTATIONS, or in a random share of them. For each change it builds the tests of Log/ in
build/mutate and runs them until one fails. A change that does not compile does not count. It prints those that no
test notices, and leaves the sources as they were.
"""

import argparse
import pathlib
import random
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]
BUILD = ROOT / "build" / "mutate"
PROGRAMS = ["log_whitebox_tests", "log_tests", "initializer_tests", "system_log_call_tests", "masking_tests",
            "masking_internal_tests", "statistics_tests", "statistics_internal_tests"]
# Slow tests; other tests notice first what these notice.
SLOW = "EachFileCall"
BUILD_SECONDS = 300
TEST_SECONDS = 600

# What is replaced, and by what. Each match is one change.
MUTATIONS = [
    (r"(?<=\w|\)) == (?=\w|\(|')", " != "), (r"(?<=\w|\)) != (?=\w|\(|')", " == "),
    (r"(?<=\w|\)) < (?=\w|\()", " <= "), (r"(?<=\w|\)) > (?=\w|\()", " >= "),
    (r"(?<=\w|\)) <= (?=\w|\()", " < "), (r"(?<=\w|\)) >= (?=\w|\()", " > "),
    (r" && ", " || "), (r" \|\| ", " && "),
    (r"(?<=[(\s])!(?=[\w(])", ""), (r"\bif \((?!const |auto )(?=[\w!])", "if (!("),
    (r"\btrue\b", "false"), (r"\bfalse\b", "true"),
    (r" \+ 1\b", ""), (r" - 1\b", ""), (r"\+\+", "--"),
]
# A statement that is executed only for its effect.
CALL = re.compile(r"^\s+(?:[\w:]+(?:\(\))?(?:->|\.))*[\w:]+(?:<\w+>)?\(.*\);$|^\s+\w+(?:\.\w+)* = .*;$")
SKIPPED = re.compile(r"^\s*(//|#|assert|static_assert|\[\[|using|template|namespace)|static constexpr const char\*")


def mutations_of_line(line):
    if SKIPPED.match(line):
        return
    code = line.split(" //")[0]
    for pattern, replacement in MUTATIONS:
        for match in re.finditer(pattern, code):
            changed = code[:match.start()] + replacement + code[match.end():]
            if replacement == "if (!(":
                changed = close_condition(changed, match.start() + len(replacement))
            if changed is not None:
                yield changed + "\n"
    if CALL.match(code.rstrip()):
        yield re.sub(r"\S.*", ";", code.rstrip()) + "\n"


def close_condition(code, position):
    """Adds the parenthesis that a negated condition needs; None if the condition continues on the next line."""
    depth = 1
    for index in range(position, len(code)):
        depth += {"(": 1, ")": -1}.get(code[index], 0)
        if depth == 0:
            return code[:index] + ")" + code[index:]
    return None


def mutations_of(source):
    lines = source.read_text(encoding="utf-8").splitlines(keepends=True)
    for number, line in enumerate(lines):
        for changed in mutations_of_line(line):
            if changed.strip() != line.strip():
                yield number, line.strip(), changed.strip(), "".join(lines[:number] + [changed] + lines[number + 1:])


def run(command, seconds):
    try:
        return subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              timeout=seconds, check=False, text=True, errors="replace", cwd=ROOT)
    except subprocess.TimeoutExpired:
        return None


def build():
    result = run(["cmake", "--build", BUILD, "--target", *PROGRAMS], BUILD_SECONDS)
    return result is not None and result.returncode == 0


def tests_pass():
    result = run(["ctest", "--test-dir", BUILD / "tests" / "Log", "--parallel", "2", "--stop-on-failure", "--timeout", "60",
                  "--exclude-regex", SLOW], TEST_SECONDS)
    return result is not None and result.returncode == 0


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--share", type=float, default=100, help="percent of the changes to try")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("sources", nargs="+", type=pathlib.Path)
    arguments = parser.parse_args()

    configured = run(["cmake", "--preset", "dev", "-B", BUILD, "-D", "YLOG_WARNINGS_AS_ERRORS=OFF",
                      "-D", "CMAKE_CXX_FLAGS_DEBUG=", "-D", "CMAKE_LINK_DEPENDS_NO_SHARED=ON",
                      "-D", "CMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST"], BUILD_SECONDS)
    if configured is None or configured.returncode != 0 or not build():
        sys.exit("mutate.py: the unchanged sources do not build")
    if not tests_pass():
        sys.exit("mutate.py: the tests of the unchanged sources fail")

    chance = random.Random(arguments.seed)
    noticed = unnoticed = 0
    for source in arguments.sources:
        original = source.read_text(encoding="utf-8")
        try:
            for number, before, after, changed in mutations_of(source):
                if chance.random() * 100 >= arguments.share:
                    continue
                source.write_text(changed, encoding="utf-8")
                if not build():
                    continue
                if not tests_pass():
                    noticed += 1
                else:
                    unnoticed += 1
                    print(f"{source}:{number + 1}: {before}  ->  {after}", flush=True)
        finally:
            source.write_text(original, encoding="utf-8")
    print(f"Changes: {noticed + unnoticed}, noticed: {noticed}, unnoticed: {unnoticed}.")


if __name__ == "__main__":
    main()
