#!/bin/sh
# Checks the formatting of every C and C++ file; with --fix, mends it.
set -eu
cd "$(dirname "$0")/.."
mode="--dry-run --Werror"
[ "${1:-}" = --fix ] && mode="-i"
# shellcheck disable=SC2086
git ls-files '*.c' '*.h' '*.cpp' '*.hpp' | xargs clang-format $mode
