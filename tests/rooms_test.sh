#!/bin/sh
# Each room uses those before it only, as cmake/rooms and document/rooms list them; from document/ on everything uses the
# public headers; and the document library, which a browser has too, neither prints nor reads standard input.
# usage: rooms_test.sh SOURCE_DIR
set -eu
cd "$1"
status=0
# forbid WHAT PATTERN FOLDER...: no source below the folders includes what the pattern names.
forbid() {
  what=$1 pattern=$2
  shift 2
  found=$(grep -rnE "^#include $pattern" "$@" --include='*.h' --include='*.cpp') || return 0
  echo "FAILED: $what"
  echo "$found"
  status=1
}

# check_order PREFIX ROOM...: no room includes one behind it.
check_order() {
  prefix=$1
  shift
  while [ $# -gt 1 ]; do
    room=$1
    shift
    forbid "$prefix$room uses a later room" "\"$prefix($(echo "$*" | tr ' ' '|'))/" "$prefix$room"
  done
}
rooms=$(cat cmake/rooms)
# shellcheck disable=SC2046,SC2086
check_order "" $rooms document tools
# shellcheck disable=SC2046
check_order document/ $(cat document/rooms)
forbid "only the public headers are for document and tools" "\"($(echo $rooms | tr ' ' '|'))/" document tools
forbid "the document library has streams" '<(iostream|cstdio|stdio\.h|print|unistd\.h)>' document
exit $status
