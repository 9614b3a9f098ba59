#!/usr/bin/env bash
# Checks the shell scripts with shellcheck.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

echo "Checking shell scripts."
shellcheck scripts/*.sh .ci/run
