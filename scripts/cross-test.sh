#!/bin/sh
# Builds the library and all tests for other machines and runs them under user-mode emulation: cross-test.sh [TRIPLET...]
# Each triplet names a file of cmake/toolchains/.
set -eu
cd "$(dirname "$0")/.."
[ $# -gt 0 ] || set -- powerpc-linux-gnu aarch64-linux-gnu
scripts/install-deps.sh cross
for triplet in "$@"; do
  echo "== $triplet"
  build=build/cross-$triplet
  # Optimised as the preset dev: at -O3 gcc 12 warns about copies in the standard library's vectors.
  cmake -G Ninja -B "$build" --toolchain "cmake/toolchains/$triplet.cmake" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DREEDID_TOOL=OFF -DREEDID_TESTS=ON -DREEDID_WERROR=ON -DREEDID_GTEST_SOURCE=/usr/src/googletest >/dev/null
  cmake --build "$build"
  ctest --test-dir "$build" --output-on-failure -j "$(nproc)"
done
