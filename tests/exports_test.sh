#!/bin/sh
# The shared library exports exactly the names of libreedid.exports, which are the names that the headers declare; it needs
# the C and the maths library only and has no writable data. No record is without its typed C++ getter, and no field of a
# public structure without a pinned place.
# usage: exports_test.sh SOURCE_DIR LIBREEDID_SO LIBREEDID_A SANITIZED
set -eu
source_dir=$1 shared=$2 static=$3 sanitized=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0
fail() { echo "FAILED: $1"; status=1; }

grep -E '^[A-Za-z]' "$source_dir/libreedid.exports" | sort >"$work/listed"
"${NM:-nm}" -D --defined-only "$shared" | awk '$2 != "A" { sub(/@.*/, "", $3); print $3 }' | sort >"$work/exported"
cat "$source_dir"/include/reedid/*.h | tr '\n' ' ' | grep -oE 'REEDID_API[^;{]*;' |
  sed -E 's/\(.*//; s/;//; s/.*[ *]//' | sort >"$work/declared"

[ -s "$work/listed" ] || fail "no names are listed"
diff "$work/listed" "$work/exported" || fail "exported names differ from libreedid.exports"
diff "$work/listed" "$work/declared" || fail "declared names differ from libreedid.exports"

# A getter from one block to one record stands in the table of the typed C++ getters; records with a buffer of the
# caller's do not.
cat "$source_dir"/include/reedid/*.h | tr '\n' ' ' | grep -oE 'REEDID_API[^;{]*;' |
  sed -nE 's/.* ([A-Za-z0-9]+_Get[A-Za-z0-9]+)\(const (CeaDataBlock|DispIdDataBlock|DtdSlot)\* [a-z]+, [A-Za-z0-9]+\* (record|limits)\);/\1/p' |
  grep -vE '^DispID(20)?_GetPIDB$|^CEA_GetTimingCode$' | sort >"$work/getters"
[ -s "$work/getters" ] || fail "no getters are declared"
while read -r getter; do
  grep -q "By($getter," "$source_dir/include/reedid/records.hpp" || fail "include/reedid/records.hpp does not have $getter"
done <"$work/getters"

# A codec can be written as text. The text form takes the fuller one where two read the same block, and reads lists of VICs itself.
grep -E '^(VESA|CEA|DispID|DispID20)_Set' "$source_dir/libreedid.exports" |
  grep -vxE 'CEA_Set(VDB|ADB|420VDB|420CMDB|H14bVSDB|HFVSDB|HFEEODB)|DispID_Set(VESATiming|CEATiming)|DispID20_SetCtaBlocks' >"$work/setters"
while read -r setter; do
  cat "$source_dir"/document/text/*_kinds.cpp | grep -qw "$setter" || fail "document/text has no kind with $setter"
done <"$work/setters"

# Every field of every public structure has its place pinned.
awk '/^typedef struct/ { name = $3; print name } /^}/ { name = "" }
     name && /^  (const )?[A-Za-z0-9_]+\*? [A-Za-z0-9_]+(\[[^;]*\])*;/ { field = $1 == "const" ? $3 : $2; sub(/[;[].*/, "", field); print name "." field }' \
  "$source_dir"/include/reedid/*.h | sort >"$work/fields"
find $(sed "s|^|$source_dir/|" "$source_dir/cmake/rooms") -name '*.cpp' -print0 | xargs -0 cat | tr '\n' ' ' |
  grep -oE '(PIN_FIELDS|PIN_SIZE)\([A-Z][^)]*\)' | sed -E 's/^PIN_SIZE\(([A-Za-z0-9]+).*/\1/' |
  awk -F '[(), ]+' '/^PIN/ { for (i = NF - 1; i > 0 && $i ~ /^[A-Za-z_]/ && $i != "kPointer"; --i) if (i > 2) print $2 "." $i }
                    !/^PIN/' | sort >"$work/pinned"
[ -s "$work/fields" ] || fail "no structures are declared"
diff "$work/fields" "$work/pinned" || fail "the sources (>) do not pin the structures of the headers (<)"

readelf -d "$shared" | grep -q 'SONAME.*libreedid\.so\.' || fail "no SONAME"
if [ -z "$sanitized" ]; then
  needed=$(readelf -d "$shared" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | grep -vE '^lib(c|m)\.so' || true)
  [ -z "$needed" ] || fail "the library needs $needed"
  data=$("${OBJDUMP:-objdump}" -h "$static" | awk '($2 ~ /^\.(data|bss)(\.|$)/ && $2 !~ /^\.data\.rel\.ro/ && $3 !~ /^0+$/) { print $2 }')
  [ -z "$data" ] || fail "writable data: $data"
fi
exit $status
