#!/bin/sh
# Installs what is needed, builds the tool and runs the main job on a built-in EDID.
set -eu
cd "$(dirname "$0")/.."
scripts/install-deps.sh tool
cmake --preset release -DREEDID_TESTS=OFF >/dev/null
cmake --build --preset release >/dev/null
bin=build/release/tools/reedid/reedid
echo '$ reedid to-hdmi sample:dvi --phys 1.2.0.0 -o hdmi.bin'
"$bin" to-hdmi sample:dvi --phys 1.2.0.0 -o build/hdmi.bin
echo '$ reedid show hdmi.bin'
"$bin" show build/hdmi.bin
