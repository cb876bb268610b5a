#!/bin/sh
# Lines and branches of the library that the tests reach, and what they do not. Fails below 95 % of lines or 85 % of branches.
set -eu
cd "$(dirname "$0")/.."
scripts/install-deps.sh coverage
build=build/coverage
rm -rf $build  # notes of sources that are gone would stay
# Unoptimised, so that a branch of the report is a branch of the source; counted one by one, for the tests with threads.
cmake -G Ninja -B $build -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS="--coverage -fprofile-update=atomic -O0" \
      -DCMAKE_C_FLAGS="--coverage" \
      -DREEDID_TOOL=OFF -DREEDID_TESTS=ON >/dev/null
cmake --build $build >/dev/null
# Counters are writable data, and call names of their own: the tests of the library as a file do not allow that.
ctest --test-dir $build -j "$(nproc)" --output-on-failure -E '^(exports|docs|install|packages)$' >$build/tests.log ||
  { cat $build/tests.log; exit 1; }
report() {
  gcovr --root . --filter "($(paste -sd "|" cmake/rooms))/" --exclude-throw-branches \
        --exclude-unreachable-branches "$@" $build/cmake $build/tests
}
status=0
report --fail-under-line 95 || status=1
report --branches --fail-under-branch 85 || status=1
exit $status
