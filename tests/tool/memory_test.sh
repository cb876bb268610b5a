#!/bin/sh
# Without memory each command ends with its exit code for that, and writes nothing; or it does what it does otherwise.
# usage: memory_test.sh REEDID FAILING_ALLOCATION_LIBRARY [STEP]
# Every STEP-th allocation of each command fails, alone and with all behind it. Status 77: the tool does not take the library.
set -eu
tool=$1 library=$2 step=${3:-97}
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
cd "$dir"
status=0
fail() { echo "FAILED: $*: $(head -c 300 err)"; status=1; }

# run ARGUMENTS...: its exit code is in `code`, its streams in the files out and err, what it writes in the file new.
run() {
  rm -f new
  code=0
  LD_PRELOAD=$library "$tool" "$@" >out 2>err </dev/null || code=$?
}

for sample in tv-4k tv-4k120 dvi gaming-dp; do "$tool" sample $sample -o $sample.bin; done
mkdir folder
cp tv-4k.bin dvi.bin folder
echo notes >folder/notes.txt
"$tool" convert dvi.bin --to hex -o dvi.txt
printf 'RED\tReed Displays\n' >pnp.ids
export REEDID_PNP_IDS=pnp.ids
ALLOCATIONS=count run show dvi.bin
[ -s count ] || { echo "skipped: the tool runs without $library"; exit 77; }

first=1  # each command begins elsewhere, so that together they meet more
while read -r words; do
  # shellcheck disable=SC2086
  ALLOCATIONS=count run $words
  right=$code allocations=$(cat count)
  cp out right-out
  if [ -e new ]; then cp new right-new; else rm -f right-new; fi
  first=$(((first + 31) % step + 1))
  for behind in '' ' and all behind it'; do
    at=$first
    while [ "$at" -le "$allocations" ]; do
      export FAIL_ALLOCATION="$at"
      if [ -n "$behind" ]; then export FAIL_ALL_BEHIND=1; fi
      # shellcheck disable=SC2086
      run $words
      unset FAIL_ALLOCATION FAIL_ALL_BEHIND
      what="reedid $words, allocation $at of $allocations$behind"
      if [ $code -eq 6 ]; then
        [ ! -e new ] || fail "$what: written all the same"
      elif [ $code -ne "$right" ]; then
        fail "$what: exit code $code"
      else
        cmp -s out right-out || fail "$what: another result"
        if [ -e right-new ]; then cmp -s new right-new || fail "$what: another file"; fi
      fi
      at=$((at + step))
    done
  done
done <<END
show tv-4k.bin
show --json --hex gaming-dp.bin
check tv-4k120.bin dvi.txt
check --json folder
rates gaming-dp.bin
timings tv-4k120.bin --sort rate
preferred folder
audio tv-4k.bin
timing cvt 2560x1440@144 --rb2
timing find 1920x1080@60
plot tv-4k.bin -o new
diff tv-4k.bin tv-4k120.bin
explain hdmi-identity
phys tv-4k.bin
phys tv-4k.bin 1.2.0.0 -o new
limit hdmi14 tv-4k120.bin -o new
limit hdmi20 tv-4k120.bin -q -o -
edit tv-4k120.bin --limit frl3 --limit pcm2ch --limit sdr --phys 2.0.0.0 -o new
to-hdmi dvi.txt -o new
high-refresh gaming-dp.bin -o new
fix tv-4k.bin --rule serial-placeholder -o new
convert dvi.txt --to c -o new
sample tv-4k -o new
show missing.bin
limit --help
END
[ -z "$(find . -name '.reedid*')" ] || fail 'a temporary file was left'
exit $status
