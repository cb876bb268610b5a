#!/bin/sh
# All operations on separate handles from several threads, under the thread sanitizer.
set -eu
cd "$(dirname "$0")/.."
scripts/install-deps.sh tests
cmake --preset tsan >/dev/null
cmake --build --preset tsan -j "$(nproc)" --target reedid_tests
ctest --preset tsan -R InThreads
