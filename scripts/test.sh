#!/bin/sh
# Installs what is needed, builds everything and runs all tests: test.sh [PRESET]
# The presets are those of CMakePresets.json: dev, or debian, which packages are built with, asan, tsan (threads), powerpc and
# aarch64 (emulated).
set -eu
cd "$(dirname "$0")/.."
preset=${1:-dev}
case $preset in
  powerpc | aarch64) scripts/install-deps.sh cross ;;
  asan | tsan) scripts/install-deps.sh clang ;;
  *) scripts/install-deps.sh tests ;;
esac
cmake --preset "$preset" -DREEDID_TESTS=ON -DREEDID_WERROR=ON >/dev/null
cmake --build --preset "$preset"
ctest --preset "$preset" -j "$(nproc)"
