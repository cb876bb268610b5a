#!/bin/sh
# Texts of the tool: every export is valid by the schema, builds the same bytes, and the example of the documents is a sound EDID.
# Usage: sh text_test.sh SOURCE_DIR REEDID; needs Python's jsonschema. REEDID_CORPUS adds its EDIDs.
set -eu
source_dir=$1 reedid=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAILED: $1"; exit 1; }

number=0
for input in sample:tv-4k sample:tv-4k120 sample:dvi sample:gaming-dp "$work/minimal.bin" ${REEDID_CORPUS:+"$REEDID_CORPUS"/*0.bin}; do
  [ -e "$work/minimal.bin" ] || "$reedid" build "$source_dir/examples/minimal.json" -o "$work/minimal.bin"
  number=$((number + 1))
  "$reedid" export "$input" -o "$work/$number.json"
  "$reedid" export --all "$input" -o "$work/$number-all.json"
  "$reedid" convert "$input" --to raw -o "$work/right.bin" 2>/dev/null
  "$reedid" build "$work/$number.json" -o "$work/back.bin"
  "$reedid" build "$work/$number-all.json" -o - | cmp - "$work/back.bin" || fail "$input: --all builds something else"
  # What convert mends, such as a checksum, stays as it is here.
  "$reedid" convert "$work/back.bin" --to raw -o - 2>/dev/null | cmp - "$work/right.bin" || fail "$input does not come back"
done

[ "$("$reedid" check --severity warning "$work/minimal.bin" | wc -l)" = 1 ] || fail "examples/minimal.json is not sound"
tr -d ' \n' <"$source_dir/docs/text-form.md" >"$work/page"
grep -qF "$(tr -d ' \n' <"$source_dir/examples/minimal.json")" "$work/page" || fail "docs/text-form.md shows another minimal.json"

python=/usr/bin/python3  # which has Debian's packages, whatever stands before it in the path
[ -x $python ] || python=python3
$python - "$source_dir/docs/edid.schema.json" "$work"/*.json <<'END' || fail "an export is not valid by the schema"
import json, sys
from jsonschema import Draft202012Validator

schema = json.load(open(sys.argv[1]))
Draft202012Validator.check_schema(schema)
validator = Draft202012Validator(schema)
wrong = [f for f in sys.argv[2:] if not validator.is_valid(json.load(open(f)))]
print(*wrong, sep="\n")
broken = {"blocks": [{"kind": "cta", "dataBlocks": [{"kind": "colorimetry", "BT2020": True}]}]}
sys.exit(bool(wrong) or validator.is_valid(broken))
END
