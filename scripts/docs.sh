#!/bin/sh
# Makes the interface reference from the public headers: docs.sh [FOLDER]. An undocumented public name is an error.
set -eu
cd "$(dirname "$0")/.."
command -v doxygen >/dev/null || scripts/install-deps.sh tests
REEDID_DOCS=${1:-build/docs}
export REEDID_DOCS
mkdir -p "$REEDID_DOCS"
version=$(sed -n 's/^#define REEDID_VERSION_STRING "\(.*\)"/\1/p' include/reedid/version.h)
{ cat docs/Doxyfile; echo "PROJECT_NUMBER = $version"; } | doxygen -
echo "$REEDID_DOCS/html/index.html"
