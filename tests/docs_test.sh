#!/bin/sh
# The documents tell the truth: docs/diagnostics.md has exactly the messages of the sources, the files and calls that
# docs/data-blocks.md and the other documents name exist, and the library calls nothing that docs/porting.md does not list.
# A sanitized library, or one for another machine, calls more: SPECIAL is then not empty.
# usage: docs_test.sh SOURCE_DIR LIBREEDID_A SPECIAL
set -eu
static=$2 special=$3
cd "$1"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0
fail() { echo "FAILED: $1"; status=1; }
rooms=$(cat cmake/rooms)
any_room=$(echo $rooms | tr ' ' '|')

# A message is the first text behind the level and the name of the reporting function.
find $rooms -name '*.cpp' -o -name '*.h' | xargs cat | grep -v '#define\|^ *//' | tr '\n' ' ' |
  grep -oE 'REEDID_(ERR|WARN|INFO|LOG_OPEN)(_AS)?\([^;]*;' |
  sed -E 's/^REEDID_LOG_OPEN\("[A-Z]+", *[^,]*, *//; s/^REEDID_[A-Z]+_AS\([^,]*, *//; s/^REEDID_[A-Z]+\( *//' |
  sed -n 's/^"\([^"]*\)".*/\1/p' | grep -vx '%s' >"$work/texts"
# A file that reports "%s" reports what its steps return.
grep -rlE 'REEDID_(ERR|WARN)\("%s"' $rooms | xargs -r grep -ohE 'return "[^"]*"' | sed 's/^return "//; s/"$//' >>"$work/texts"
sort -u "$work/texts" >"$work/printed"
sed -nE 's/^\| `([^`]*)` \|.*/\1/p' docs/diagnostics.md | sort >"$work/explained"
[ -s "$work/printed" ] || fail "no messages in the sources"
diff "$work/printed" "$work/explained" || fail "docs/diagnostics.md (>) differs from the messages of the sources (<)"

grep -ohE "\`($any_room|document|tests|scripts|cmake|include)/[A-Za-z0-9_/.-]+\`" docs/*.md |
  tr -d '`' | sort -u >"$work/files"
grep -ohE '\]\([^)#:]+\)' docs/*.md | sed -E 's|^\]\((.*)\)$|docs/\1|' | sort -u >>"$work/files"
while read -r file; do
  [ -e "$file" ] || fail "the documents name $file, which is not there"
done <"$work/files"
for source in vesa/*.cpp displayid/*.cpp cea/*.cpp; do
  grep -qx "$source" "$work/files" || fail "docs/data-blocks.md does not say what $source holds"
done
cat include/reedid/*.h | tr '\n' ' ' | grep -oE '_Get[A-Za-z0-9]+\(const (CeaDataBlock|DispIdDataBlock|DtdSlot)\* [a-z]+, +[A-Z][A-Za-z0-9]+\*' |
  sed 's/.* //; s/\*//' | sort -u >"$work/records"
[ -s "$work/records" ] || fail "no getters in the headers"
while read -r record; do
  grep -qE "\`$record(\[|\`)" docs/data-blocks.md || fail "docs/data-blocks.md does not say where a $record comes from"
done <"$work/records"

# Every block that the library reads is told by the account, but for questions of kind, and where another getter reads more.
grep -E '^(VESA|CEA|DispID|DispID20)_Get[A-Za-z0-9]*$' libreedid.exports |
  grep -vxE 'CEA_GetV(SDB|SVDB)Type|CEA_Get(ADB|H14bVSDB|HFVSDB)' >"$work/getters"
while read -r getter; do
  grep -rqw "$getter" document/account document/read || fail "no account in document/account calls $getter"
done <"$work/getters"

# Calls that the documents name are there.
grep -ohE '`(EDID|VESA|CEA|DispID|DispID20)_[A-Z][A-Za-z0-9]*[a-z][A-Za-z0-9]*`' docs/*.md README.md | tr -d '`' | sort -u >"$work/calls"
[ -s "$work/calls" ] || fail "no calls in the documents"
grep -vxFf libreedid.exports "$work/calls" >"$work/missing" || true
[ ! -s "$work/missing" ] || { cat "$work/missing"; fail "the documents name these calls, which are not there"; }

if [ -z "$special" ]; then
  nm --defined-only "$static" | awk 'NF == 3 { print $3 }' | sort -u >"$work/defined"
  sed -n '/^## What it needs/,/^## /p' docs/porting.md | grep -oE '`[a-z]+`' | tr -d '`' | sort -u >"$work/listed"
  nm -u "$static" | awk '$1 == "U" && $2 != "_GLOBAL_OFFSET_TABLE_" { print $2 }' | sort -u |
    comm -23 - "$work/defined" | comm -23 - "$work/listed" >"$work/missing"
  [ ! -s "$work/missing" ] || { cat "$work/missing"; fail "docs/porting.md does not list these names"; }
fi
exit $status
