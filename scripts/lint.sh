#!/bin/sh
# Static checks: lint.sh [library | format [--fix]]. Any finding fails.
# clang-tidy with .clang-tidy of the library, the document library and the tool, gcc's analyzer of the library; with "library"
# of that alone; with "format" only the formatting of every C and C++ file, which --fix mends.
set -eu
cd "$(dirname "$0")/.."
case ${1:-} in
  "" | library | format) ;;
  *) sed -n 's/^# //p' "$0" >&2; exit 2 ;;
esac
if [ "${1:-}" = format ]; then
  mode="--dry-run --Werror"
  [ "${2:-}" = --fix ] && mode="-i"
  # shellcheck disable=SC2086
  git ls-files '*.c' '*.h' '*.cpp' '*.hpp' | xargs clang-format $mode
  exit
fi
scripts/install-deps.sh lint
cmake -G Ninja -B build/lint >/dev/null
sources=$(sed 's|$|/*.cpp|' cmake/rooms | xargs git ls-files)
status=0
echo "== clang-tidy"
headers="/($(paste -sd '|' cmake/rooms)|include/reedid|document/[a-z]*|tools/reedid)/[^/]*\.h\$"
tidy() { xargs -P "$(nproc)" -n 1 clang-tidy --quiet -p build/lint --header-filter="$headers" "$@" 2>/dev/null; }
echo "$sources" | tidy || status=1
# Its path-sensitive analysis takes a minute a file in the templates of fmt and nlohmann-json; sanitizers watch there.
if [ "${1:-}" != library ]; then
  git ls-files 'document/*.cpp' 'tools/reedid/*.cpp' | tidy --checks='-clang-analyzer-*' || status=1
fi
echo "== gcc -fanalyzer"
# gcc 12 does not model C++ owners and lambdas: it reports leaks of and reads from objects that it can only call
# "<unknown>". Those two questions are left to clang's analyzer and to the sanitizers.
echo "$sources" | xargs -P "$(nproc)" -n 1 g++ -std=c++20 -Iinclude -I. -O1 -fno-exceptions -fno-rtti -fanalyzer \
                        -Wno-analyzer-malloc-leak -Wno-analyzer-use-of-uninitialized-value -Wall -Wextra -Werror -c -o /dev/null || status=1
[ $status -eq 0 ] && echo "No findings."
exit $status
