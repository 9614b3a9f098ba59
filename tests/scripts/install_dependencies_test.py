"""install-dependencies.sh installs missing packages, or ends with a message that names those it could not install.

Small programs replace Debian's own, and keep the installed packages in a file.
"""

import os
import pathlib
import re
import subprocess
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).parents[2] / "scripts" / "install-dependencies.sh"

DPKG_QUERY = """#!/bin/sh
for name; do :; done
if grep --quiet --line-regexp "$name" "$STATE/installed"; then echo installed; else exit 1; fi
"""
# Installs every package that it is given, unless there is no network.
APT_GET = """#!/bin/sh
echo "apt-get $*" >>"$STATE/calls"
case "$*" in
*update*) [ ! -e "$STATE/no-network" ] || { echo "W: Failed to fetch" >&2; exit 100; } ;;
*)
  [ ! -e "$STATE/no-network" ] || { echo "E: Unable to fetch some archives" >&2; exit 100; }
  for name; do echo "$name"; done | grep '^[a-z]' >>"$STATE/installed" ;;
esac
"""
SUDO = """#!/bin/sh
exec "$@"
"""
BUILD = re.search(r'\[build\]="([^"]*)"', SCRIPT.read_text(encoding="utf-8")).group(1).split()


class InstallDependencies(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory(prefix="with blanks ")
        self.addCleanup(temporary.cleanup)
        self.state = pathlib.Path(temporary.name)
        self.set_installed([])
        for name, text in {"dpkg-query": DPKG_QUERY, "apt-get": APT_GET, "sudo": SUDO}.items():
            path = self.state / "bin" / name
            path.parent.mkdir(exist_ok=True)
            path.write_text(text, encoding="utf-8")
            path.chmod(0o755)

    def set_installed(self, names):
        (self.state / "installed").write_text("".join(f"{name}\n" for name in names), encoding="utf-8")

    def calls(self):
        path = self.state / "calls"
        return path.read_text(encoding="utf-8").splitlines() if path.exists() else []

    def run_script(self, *groups):
        environment = {"PATH": f"{self.state}/bin:{os.environ['PATH']}", "STATE": str(self.state)}
        return subprocess.run([SCRIPT, *groups], env=environment, capture_output=True, text=True, check=False)

    def test_installs_nothing_if_nothing_is_missing(self):
        self.set_installed(BUILD)
        result = self.run_script("build")
        self.assertEqual((result.returncode, self.calls()), (0, []))

    def test_installs_missing_packages(self):
        self.set_installed(BUILD[1:])
        result = self.run_script("build")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertTrue(self.calls()[-1].endswith(f" {BUILD[0]}"), self.calls())

    def test_names_the_missing_packages_if_there_is_no_network(self):
        self.set_installed(BUILD[2:])
        (self.state / "no-network").touch()
        result = self.run_script("build")
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr.splitlines()[-1],
                         "Missing, because apt-get could not install it (is there a network?): " + " ".join(BUILD[:2]))

    def test_refuses_an_unknown_group(self):
        self.assertEqual(self.run_script("nothing").returncode, 2)


if __name__ == "__main__":
    unittest.main()
