#!/bin/sh
# Installs what is needed, builds everything and runs all tests: test.sh [PRESET]
set -eu
cd "$(dirname "$0")/.."
preset=${1:-dev}
scripts/install-deps.sh tests
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
ctest --preset "$preset" -j "$(nproc)"
