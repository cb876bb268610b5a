#!/bin/sh
# Tells how much stack the release build takes: the largest frames, and how deep whole operations get with the EDIDs of
# REEDID_CORPUS, or with built ones.
set -eu
cd "$(dirname "$0")/.."
scripts/install-deps.sh bench
cmake --preset release -B build/stack -DREEDID_TOOL=OFF -DREEDID_BENCH=ON \
      -DCMAKE_CXX_FLAGS=-fstack-usage >/dev/null
cmake --build build/stack --target reedid_stack >/dev/null
echo "Largest frames, bytes:"
find build/stack/cmake -name '*.su' -exec cat {} + | awk -F '\t' '{ print $2 "\t" $3 "\t" $1 }' | sort -rn | sed -n 1,5p
echo
build/stack/bench/reedid_stack 2>&1
