#!/usr/bin/env bash
# Installs what is missing, builds the library and its tests (preset dev) and runs every test.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-dependencies.sh build test
scripts/test-preset.sh dev "$@"
