#!/bin/sh
# Measures the library with the EDIDs of REEDID_CORPUS, or with built ones, and prints the table of the README.
set -eu
cd "$(dirname "$0")/.."
scripts/install-deps.sh bench
cmake --preset release -B build/bench -DREEDID_TOOL=OFF -DREEDID_BENCH=ON -DREEDID_WERROR=ON >/dev/null
cmake --build build/bench >/dev/null
build/bench/bench/reedid_bench "$@"
strip -o build/bench/stripped.so build/bench/libreedid.so
echo "Library, stripped: $(($(wc -c <build/bench/stripped.so) / 1024)) KiB."
