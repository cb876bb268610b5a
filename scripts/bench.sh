#!/bin/sh
# Measures the library with the EDIDs of REEDID_CORPUS, or with built ones: bench.sh [OPTIONS OF THE BENCHMARK] | stack
# Time and heap as the table of the README; with "stack", the largest frames and how deep whole operations get.
set -eu
cd "$(dirname "$0")/.."
scripts/install-deps.sh bench
build() { # FOLDER OPTION...
  folder=$1
  shift
  cmake --preset release -B "$folder" -DREEDID_TOOL=OFF -DREEDID_BENCH=ON -DREEDID_WERROR=ON "$@" >/dev/null
  cmake --build "$folder" >"$folder/log" || { cat "$folder/log" >&2; exit 1; }
}
if [ "${1:-}" = stack ]; then
  build build/stack -DCMAKE_CXX_FLAGS=-fstack-usage
  echo "Largest frames, bytes:"
  find build/stack/cmake -name '*.su' -exec cat {} + | awk -F '\t' '{ print $2 "\t" $3 "\t" $1 }' | sort -rn | sed -n 1,5p
  echo
  build/stack/bench/reedid_stack 2>&1
else
  build build/bench
  build/bench/bench/reedid_bench "$@"
  strip -o build/bench/stripped.so build/bench/libreedid.so
  echo "Library, stripped: $(($(wc -c <build/bench/stripped.so) / 1024)) KiB."
fi
