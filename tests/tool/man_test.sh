#!/bin/sh
# The man page tells of every command and option of the help and of the version, bash completes from the help, and the
# picture and the rules in the documents are new.
# usage: man_test.sh SOURCE_DIR REEDID
set -eu
source_dir=$1 reedid=$2
page=$source_dir/tools/reedid.1
status=0
fail() { echo "FAILED: $1"; status=1; }
plain=$(sed 's/\\-/-/g' "$page")
expect() { echo "$plain" | grep -Eq -- "$1" || fail "the man page has no $1"; }

version=$("$reedid" --version)
expect "\"$version\""
commands=$("$reedid" --help | sed -n '/^Examples:/q;s/^  \([a-z][a-z0-9-]*\)  .*/\1/p')
[ -n "$commands" ] || fail "the help lists no commands"
for command in $commands; do
  expect "^\\.B $command\$"
  for option in $("$reedid" "$command" --help | sed -n 's/^  \(-[^ ]*\).*/\1/p' | grep -oE -- '--[a-z0-9-]+'); do
    expect "^\\.B.*$option( |\$)"
  done
done

# The picture of the README is what the tool draws; its numbers may be rounded differently elsewhere.
shape() { tr -d '0-9.-'; }
[ "$("$reedid" plot sample:tv-4k -o - | shape)" = "$(shape <"$source_dir/docs/plot-tv-4k.svg")" ] ||
  fail "docs/plot-tv-4k.svg is old: reedid plot sample:tv-4k -o docs/plot-tv-4k.svg"

"$reedid" explain --markdown | diff - "$source_dir/docs/rules.md" >&2 ||
  fail "docs/rules.md is old: reedid explain --markdown >docs/rules.md"

"$reedid" export --schema | diff - "$source_dir/docs/edid.schema.json" >&2 ||
  fail "docs/edid.schema.json is old: reedid export --schema >docs/edid.schema.json"

if command -v bash >/dev/null; then
  completed=$(PATH="$(dirname "$reedid"):$PATH" bash -c '. "$1"; COMP_WORDS=(reedid ch) COMP_CWORD=1; _reedid
    echo "${COMPREPLY[*]}"; COMP_WORDS=(reedid convert --) COMP_CWORD=2; _reedid; echo "${COMPREPLY[*]}"' \
    bash "$source_dir/tools/completions/reedid.bash")
  # complete WORD...: what the last word may become
  complete() {
    PATH="$(dirname "$reedid"):$PATH" bash -c '. "$0"; COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)); _reedid; echo "${COMPREPLY[*]}"' \
      "$source_dir/tools/completions/reedid.bash" "$@"
  }
  while read -r right words; do
    [ "$(complete $words | tr ' ' ,)" = "$right" ] || fail "bash completes '$words' to $(complete $words)"
  done <<END
hdmi20,hdmi14 reedid limit hdmi
sdr reedid edit x.bin --limit sd
raw reedid convert x.bin --to r
dvi reedid sample d
tv-4k,tv-4k120 reedid show sample : tv
timings,timing reedid help tim
END
  echo "$completed" | grep -qx check || fail "bash does not complete 'ch' to check: $completed"
  echo "$completed" | grep -q -- '--to.*--output\|--output.*--to' || fail "bash misses options of convert: $completed"
fi
exit $status
