#!/bin/sh
# Installs what is needed, builds the tool and runs the main job on a built-in EDID.
set -eu
cd "$(dirname "$0")/.."
scripts/install-deps.sh tool
echo "Building, which takes a minute or two."
cmake --preset release >/dev/null
cmake --build --preset release >/dev/null
bin=build/release/tools/reedid/reedid
echo '$ reedid limit hdmi20 sample:tv-4k120 -o limited.bin'
"$bin" limit hdmi20 sample:tv-4k120 -o build/limited.bin
echo '$ reedid preferred limited.bin'
"$bin" preferred build/limited.bin
