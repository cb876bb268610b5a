# The commands from end to end: results, exit codes, and that nothing is lost when something fails.
# Usage: sh commands_test.sh path-of-reedid folder-of-the-examples
tool=$1 examples=$2
dir=$(mktemp -d) || exit 1
trap 'rm -rf "$dir"' EXIT
cd "$dir" || exit 1
failures=0

fail() {
  echo "FAILED: $*"
  failures=$((failures + 1))
}

# expect CODE ARGUMENTS...: runs the tool; its streams are in the files out and err.
expect() {
  code=$1
  shift
  "$tool" "$@" >out 2>err </dev/null
  got=$?
  [ $got -eq "$code" ] || fail "reedid $*: exit code $got instead of $code: $(cat err)"
}
has() { grep -q -- "$2" "$1" || fail "no '$2' in: $(cat "$1")"; }
same() { cmp -s "$1" "$2" || fail "$1 and $2 differ"; }
byte() { od -An -t u1 -j "$2" -N 1 "$1" | tr -d ' '; }
# poke FILE OFFSET OCTAL: changes one byte.
poke() { printf "\\$3" | dd of="$1" bs=1 seek="$2" conv=notrunc 2>/dev/null; }

# --- samples and what reads them
for name in tv-4k tv-4k120 dvi gaming-dp; do
  expect 0 sample $name -o $name.bin
  expect 0 check $name.bin
  has out "$name.bin: [23] notes"
  expect 0 show sample:$name
  [ -s err ] && fail "show sample:$name complained: $(cat err)"
done
expect 0 sample
has out '^gaming-dp '
expect 3 show sample:nothing
has err 'tv-4k, tv-4k120, dvi, gaming-dp'

# --- colours on a terminal only, lines as wide as it is
unset NO_COLOR COLUMNS
esc=$(printf '\033')
colored() { grep -q "$esc" "$1"; }
for command in 'show tv-4k.bin' 'check tv-4k.bin' 'timings tv-4k.bin' 'preferred tv-4k.bin' 'audio tv-4k.bin' 'timing vic 97'; do
  expect 0 $command
  colored out && fail "$command wrote colours into a file"
  expect 0 $command --color always
  colored out || fail "$command --color always wrote no colours"
  COLUMNS=60 expect 0 $command
  [ "$(wc -L <out)" -le 60 ] || fail "$command: COLUMNS=60 gave lines of $(wc -L <out)"
done
expect 0 show tv-4k.bin --color always --json
colored out && fail 'show coloured JSON'
COLUMNS=60x expect 0 show tv-4k.bin
[ "$(wc -L <out)" -gt 60 ] || fail 'COLUMNS that are no number were taken'
# terminal ENVIRONMENT...: what show writes to a terminal of 70 columns
terminal() { script -qec "stty cols 70; env -u NO_COLOR $* '$tool' show tv-4k.bin" /dev/null </dev/null >out; }
if command -v script >/dev/null; then
  terminal TERM=xterm COLUMNS=50
  colored out || fail 'show wrote no colours to a terminal'
  sed "s/$esc\\[[0-9;]*m//g" out | tr -d '\r' >plain
  [ "$(wc -L <plain)" -gt 60 ] && [ "$(wc -L <plain)" -le 70 ] || fail "a terminal of 70 had lines of $(wc -L <plain)"
  for setting in 'TERM=dumb' 'TERM=xterm NO_COLOR=1' '-u TERM'; do
    terminal "$setting"
    colored out && fail "show wrote colours with $setting"
  done
  terminal TERM=xterm NO_COLOR=
  colored out || fail 'an empty NO_COLOR took the colours away'
fi

# --- show: a maker's name from a file, and what identifies one unit is kept back
printf '# makers\nREDX\tnot this one\nRED\tReed \033 Displays\n' >pnp.ids
REEDID_PNP_IDS=pnp.ids expect 0 show tv-4k.bin
has out 'Manufacturer  *RED (Reed \\x1b Displays)$'
for file in '' missing.ids . /dev/zero; do
  REEDID_PNP_IDS=$file expect 0 show tv-4k.bin
  has out 'Manufacturer  *RED$'
done
cp tv-4k.bin wrong.bin
poke wrong.bin 127 001
expect 0 show wrong.bin
has out 'Checksum  *01, wrong (must be 23)'
has err 'wrong checksums'
expect 0 show wrong.bin --private --hex
has out 'Checksum  *wrong$'
has out 'Serial number  *hidden$'
has out 'Gamma  *78  '
grep -q 'must be' err && fail "show --private told the checksum: $(cat err)"
has out '! error block-checksum: hidden$'

# --- show: the data blocks in a list
expect 0 show --blocks tv-4k.bin
has out '    1 *[0-9]* *[0-9]*  Vendor-Specific Data Block (3), HDMI 1.4b  *address 1.0.0.0'
expect 0 show --blocks --json tv-4k.bin
has out '"kind": "Video Data Block (2)"'
expect 2 show --blocks --hex tv-4k.bin

# --- input that is none
printf 'no EDID here' >prose.txt
head -c 100 tv-4k.bin >cut.bin
head -c 256 /dev/zero >zero.bin
: >empty.bin
for input in prose.txt cut.bin zero.bin empty.bin missing.bin /dev/zero -; do
  expect 3 show "$input"
  has err "reedid: "
  [ -s out ] && fail "show $input wrote a result"
  expect 3 check "$input"
done
{ cat tv-4k.bin; printf x; } >longer.bin
expect 3 convert longer.bin --to raw -o new.bin
has err 'longer.bin: 257 bytes'
# 256 blocks would be counted as none
{ cat tv-4k.bin; head -c 32512 /dev/zero; } >blocks256.bin
expect 3 show blocks256.bin
has err 'at most 255'
# a DisplayID section with bytes behind it that belong to none
printf '\022\000\000\000\356' >section.bin
expect 0 show section.bin
has out 'DisplayID, 1 block'
printf '\022\000\000\000\356\001\002' >tail.bin
expect 3 convert tail.bin --to raw -o new.bin
has err '2 of 7 bytes'
[ -e new.bin ] && fail 'a refused input left an output'

# --- check
cp tv-4k.bin bad.bin
poke bad.bin 140 001
expect 1 check bad.bin
has out 'bad.bin: 1 error'
has out 'block-checksum  block 1, byte 127: '
[ -s err ] && fail "check left diagnostics on standard error: $(cat err)"
head -c 128 tv-4k.bin >half.bin
expect 1 check half.bin
has out 'extension-count *block 0, byte 126: 1 extensions, there are 0'
# a filter chooses what counts; warnings count when they are asked to
expect 0 check --no-rule block-checksum bad.bin
expect 0 check --rule extension-count bad.bin
has out 'bad.bin: no findings'
expect 2 check --rule no-such-rule bad.bin
has err "no rule 'no-such-rule'"
cp tv-4k.bin odd.bin
poke odd.bin 20 360
expect 0 fix odd.bin --rule block-checksum -q -o odd.bin
expect 0 check odd.bin
expect 1 check --strict odd.bin
expect 0 check --strict --severity error odd.bin
expect 1 check --json bad.bin
has out '"errors": 1'
has out '"rule": "block-checksum"'
for sample in $("$tool" sample | sed 's/ .*//'); do
  expect 0 check --strict "sample:$sample"
done
expect 0 explain block-checksum
has out '^block-checksum: error'
expect 2 explain no-such-rule

# --- what the examples write is free of errors and warnings
"$examples/write_edid" written.bin || fail 'the example write_edid'
for input in written.bin tv-4k.bin tv-4k120.bin dvi.bin gaming-dp.bin; do
  for example in 'limit_hdmi20 IN example.bin 0x1200' 'sdr_stereo IN example.bin' 'add_vendor_block IN example.bin 0x123456 1 0xFF'; do
    rm -f example.bin
    "$examples/"$(echo "$example" | sed "s/IN/$input/") >out 2>&1 || { has out 'no CTA\|not enough space'; continue; }
    expect 0 check --strict --severity warning example.bin
  done
done
expect 0 check --strict written.bin

# --- fix: what is safe by itself, the rest by name; a second run has nothing to do
expect 2 fix odd.bin
expect 0 fix odd.bin -o mended.bin
has out '^  video-input-reserved *block 0, byte 20: '
has out '^  serial-placeholder'
expect 0 check --strict mended.bin
expect 0 fix mended.bin -o again.bin
has out '^nothing to mend'
same mended.bin again.bin
expect 0 fix bad.bin --rule block-checksum -q -o mended.bin
[ -s out ] && fail "fix -q printed: $(cat out)"
expect 0 check mended.bin
expect 2 fix bad.bin --rule no-such-rule -o mended.bin
# diagnostics of the other commands are not part of their result, and are said once
expect 0 show bad.bin
[ "$(grep -c 'wrong checksums' err)" = 1 ] || fail "show bad.bin said: $(cat err)"
expect 0 phys bad.bin
[ "$(cat out)" = 1.0.0.0 ] || fail "phys printed: $(cat out)"

# --- several inputs, and folders: a broken one stops nothing, the worst exit code stands, links lead to no loop
mkdir -p many/b/c many/empty
cp tv-4k.bin many/z.bin
cp bad.bin many/b/bad.bin
cp prose.txt many/b/c/prose.txt
cp dvi.bin many/a.bin
ln -s .. many/b/c/up
ln -s ../a.bin many/b/link.bin
ln -s nowhere many/dangling
mkfifo many/pipe
expect 1 check many
[ "$(sed -n 's/^\([^ ].*\): .*/\1/p' out | tr '\n' ' ')" = \
  'many/a.bin many/b/bad.bin many/b/link.bin many/z.bin ' ] || fail "check many: $(cat out)"
[ "$(tail -n 1 out)" = '3 valid, 1 not valid, 0 no EDID' ] || fail "check many ended: $(tail -n 1 out)"
has out '^      4  note     serial-placeholder$'
[ "$(cat err)" = 'reedid: many: 1 file that is no EDID skipped' ] || fail "check many said: $(cat err)"
# one that was meant as an EDID is not passed over, and neither is one that is named
cp cut.bin many/b/c/cut.bin
expect 3 check many
has out 'many/b/c/cut.bin: no EDID'
rm many/b/c/cut.bin
expect 3 check many/a.bin many/b/c/prose.txt
has out "^  image  error: line 1: 'no' is not hexadecimal"
expect 3 check many/b/c
has err 'no EDID in this folder'
expect 1 check -q many/a.bin many/b/bad.bin
[ "$(grep -c '^many' out)" = 1 ] || fail "check -q: $(cat out)"
expect 0 check -q dvi.bin many/a.bin
[ -s out ] && fail "check -q of valid ones: $(cat out)"
expect 3 check many/empty many/a.bin
has err 'many/empty: no file'
has out '^1 valid'
expect 3 check missing many/a.bin
has out '^missing: no EDID'
expect 3 rates many missing
has out '^many/z.bin: 120.000, .* Hz$'
has err 'many/b/bad.bin: .*wrong checksums'
has err 'reedid: many: 1 file that is no EDID'
expect 0 show dvi.bin tv-4k.bin
"$tool" show tv-4k.bin >alone
tail -n "$(wc -l <alone)" out >last
same alone last
expect 3 show --json many cut.bin
[ "$(grep -c '^    "input": ' out)" = 5 ] || fail "show --json many: $(grep input out)"
[ "$(grep -c '^    "error": ' out)" = 1 ] || fail "show --json many: $(grep error out)"
[ "$(sed -n '1p;$p' out | tr -d '\n')" = '[]' ] || fail "show --json many is no array"
expect 1 preferred --json section.bin dvi.bin
has out '"error": "section.bin: no preferred timing"'

# a name may hold what a terminal would obey
odd=$(printf 'a\nb\033[31m.bin')
cp bad.bin "$odd"
expect 3 rates "$odd" "$odd-missing"
[ "$(cat out err | grep -c '^\(reedid: \)\?a\\x0ab\\x1b')" = 3 ] || fail "rates of an odd name: $(cat out err)"

odd=$(printf 'a\233\302\233\177.bin')
cp dvi.bin "$odd"
expect 0 show "$odd" dvi.bin
has out '^a\\x9b\\xc2\\x9b\\x7f.bin'
expect 0 show --json "$odd" dvi.bin
[ "$(LC_ALL=C tr -d '[:print:]\n' <out | wc -c)" = 0 ] || fail 'show --json wrote more than ASCII'

# --- a text with two EDIDs
{ "$tool" convert dvi.bin --to hex -o -; "$tool" convert tv-4k.bin --to hex -o -; } >both.txt
expect 0 rates both.txt
[ "$(sed 's/:.*//' out | tr '\n' ' ')" = 'both.txt#1 both.txt#2 ' ] || fail "rates of two: $(cat out)"
expect 3 phys both.txt
has err 'both.txt: a text with 2 EDIDs; name one of them, such as both.txt#1'
expect 0 convert both.txt#2 --to raw -o back.bin
same back.bin tv-4k.bin
expect 3 convert both.txt#3 --to raw -o back.bin
"$tool" show --json - <both.txt >out || fail 'show of two from a pipe'
[ "$(grep -c '^    "input": "-#' out)" = 2 ] || fail "show of two from a pipe: $(grep input out)"

# --- plot
expect 0 plot tv-4k.bin -o tv.svg
"$tool" plot tv-4k.bin -o - >piped.svg
same tv.svg piped.svg
cp dvi.bin keep.bin
expect 2 plot keep.bin -o ./keep.bin
same keep.bin dvi.bin

# --- phys
expect 0 phys tv-4k.bin 1.2.0.0 -o out.bin
expect 0 phys out.bin
[ "$(cat out)" = 1.2.0.0 ] || fail "phys printed: $(cat out)"
changed=$(cmp -l tv-4k.bin out.bin | wc -l)
[ "$changed" -eq 2 ] || fail "phys changed $changed bytes instead of one and the checksum"
expect 0 phys out.bin 0x3000 -o out.bin
expect 0 phys out.bin
[ "$(cat out)" = 3.0.0.0 ] || fail "phys in place printed: $(cat out)"
expect 0 phys out.bin --json
has out '"physicalAddress": "3.0.0.0"'
expect 1 phys dvi.bin --json
has out '"physicalAddress": null'
expect 2 phys dvi.bin 1.0.0.0 --json -o new.bin
expect 1 phys dvi.bin
has err 'to-hdmi'
expect 0 phys dvi.bin 1.2.0.0 -o out.bin
has err 'one of HDMI now'
expect 0 phys out.bin
[ "$(cat out)" = 1.2.0.0 ] || fail "phys of a display of DVI: $(cat out)"
cp dvi.bin analog.bin
poke analog.bin 20 016
expect 5 phys analog.bin 1.0.0.0 -o new.bin
has err 'analog'
expect 5 phys tv-4k.bin 1.0.2.0 -o new.bin
has err 'no port has this address.*--force'
expect 0 phys tv-4k.bin 1.0.2.0 --force -o out.bin
expect 0 phys out.bin
[ "$(cat out)" = 1.0.2.0 ] || fail "phys --force: $(cat out)"
# what stands behind the timings stays
cp tv-4k.bin behind.bin
poke behind.bin 250 101
expect 0 phys behind.bin 1.2.0.0 -o out.bin
[ "$(byte out.bin 250)" = "$(byte behind.bin 250)" ] || fail 'phys lost a byte behind the timings'
for address in 1.2.0 1.2.0.0.0 1.2.0.g 0x123 0x12345 1,2,0,0 12.0.0.0 1200 0x-123; do
  expect 2 phys tv-4k.bin "$address" -o new.bin
  has err 'like 1.2.0.0'
done

# --- to-hdmi
expect 0 to-hdmi dvi.bin --phys 2.1.0.0 -o hdmi.bin
expect 0 check hdmi.bin
expect 0 phys hdmi.bin
[ "$(cat out)" = 2.1.0.0 ] || fail "to-hdmi: phys printed: $(cat out)"
[ "$(byte hdmi.bin 126)" = 1 ] || fail 'to-hdmi: count byte'
expect 5 to-hdmi hdmi.bin -o new.bin
has err 'HDMI already'
head -c 128 gaming-dp.bin >dp.bin
tail -c 128 gaming-dp.bin >>dp.bin
expect 0 to-hdmi dp.bin -o new.bin
expect 0 phys new.bin
[ "$(byte new.bin 128) $(byte new.bin 256)" = '2 112' ] || fail 'to-hdmi: the CTA extension is not the first'
expect 5 to-hdmi section.bin -o new2.bin
[ -e new2.bin ] && fail 'a DisplayID structure became HDMI'

# --- convert: every form comes back
for name in tv-4k dvi gaming-dp; do
  for form in hex c raw; do
    expect 0 convert $name.bin --to $form -o text
    expect 0 convert text --to raw -o back.bin
    same $name.bin back.bin
  done
  "$tool" convert $name.bin --to hex -o - | "$tool" convert - --to raw -o - >back.bin
  same $name.bin back.bin
done
expect 2 convert dvi.bin --to png -o text
# block 0 is put right, and that is said
expect 0 convert half.bin --to raw -o back.bin
has err 'corrected .*block 0: count byte 1, but 0 follow'
expect 0 check --rule extension-count --rule block-checksum back.bin
[ "$(byte back.bin 126)" = 0 ] || fail 'convert: count byte'

# --- what is offered
expect 0 rates tv-4k.bin
[ "$(head -n 1 out)" = '120.000 Hz' ] || fail "rates: $(cat out)"
expect 0 rates tv-4k.bin --json
has out '59.94'
expect 0 timings gaming-dp.bin --sort rate
has out '^  1  2560x1440 164.958 Hz 699.500 MHz 16:9$'
has out '^  3  2560x1440 59.951 Hz 241.500 MHz, preferred$'
expect 2 timings gaming-dp.bin --sort size
expect 0 preferred tv-4k.bin
has out '3840x2160 60.000 Hz 594.000 MHz'
expect 0 audio tv-4k.bin
has out 'AC-3  *6 channels; 32, 44.1, 48 kHz; up to 640 kbit/s$'
for command in 'show tv-4k.bin' 'rates tv-4k.bin' 'timings tv-4k.bin' 'preferred tv-4k.bin' 'audio tv-4k.bin' \
  'timing vic 97' 'diff tv-4k.bin tv-4k.bin'; do
  expect 0 $command --json
  head -c 1 out | grep -q '{' || fail "$command --json printed: $(cat out)"
done

# --- timing: words, exit code, what the answer holds
while read -r code pattern words; do
  expect "$code" timing $words
  [ "$code" -eq 0 ] && has out "$pattern"
done <<END
0 3840x2160.60.000.*594.000 vic 97
0 4096x2160.120.000 vic 219
1 - vic 128
1 - vic 155
2 - vic 97x
2 - vic
0 1920x1080.60.000 dmt 0x52
1 - dmt 0x5A
0 586.586.MHz cvt 2560x1440@144 --rb2
0 274.285.MHz cvt 1920x1080@120 --rb2 --ntsc
0 497.750.MHz cvt 2560x1440@120 --rb1
0 173.000.MHz cvt 1920x1080@60
2 - cvt 1920x1080@60 --rb1 --rb2
1 - cvt 0x1080@60
1 - cvt 1x1@1
2 - cvt 1920x1080
0 DMT.*0x52 std 1920 16:9 60
2 - std 1920 17:9 60
0 VIC.5: find 1920x1080i@60
0 VIC.16: find 1920x1080@60
0 Near.*1920x1081.59 find 1920x1081@59
0 640x480.59.940 dmt 4
0 1680x1050.59.954 std 1680 16:10 60
0 1152x864.60.000 std 1152 4:3 60
1 - find 1921x90@17
2 - what 97
END

# --- limit and edit
expect 0 limit hdmi20 tv-4k120.bin -o limited.bin
has out '^lowered .* 604.250 MHz -> 2560x1440 120.001 Hz'
has out '^replaced  VIC  *118 .* -> 4:2:0 VIC 118'
expect 0 check limited.bin
expect 0 limit hdmi20 limited.bin -o twice.bin --quiet
[ -s out ] && fail "limit --quiet printed: $(cat out)"
same limited.bin twice.bin
expect 1 diff tv-4k120.bin limited.bin
grep -q '^kept' out && fail 'diff told what was kept'
expect 1 diff tv-4k120.bin limited.bin --all
has out '^kept '
expect 0 diff tv-4k120.bin tv-4k120.bin --json
has out '"same": true'
expect 0 limit hdmi20 tv-4k120.bin -o out.bin --json
has out '"version": 1'
has out '"above": \[\]'
same out.bin limited.bin
expect 0 limit hdmi20 tv-4k120.bin --rates 100,60 -o out.bin
has out '604.250 MHz -> 2560x1440 100.001 Hz 419.700 MHz$'
"$tool" limit hdmi20 tv-4k120.bin -o - >piped.bin 2>err
same limited.bin piped.bin
for rates in x 60,x 60, ,60 0 70000 -1; do
  expect 2 limit hdmi20 tv-4k120.bin "--rates=$rates" -o new2.bin
done
expect 2 limit hdmi30 tv-4k120.bin -o new2.bin
expect 2 edit tv-4k120.bin -o new2.bin
expect 2 edit tv-4k120.bin --phys 1.0.0 --limit sdr -o new2.bin
expect 5 edit analog.bin --phys 1.0.0.0 -o new2.bin
[ -e new2.bin ] && fail 'a refused edit left an output'
expect 0 edit tv-4k120.bin --limit hdmi14 --limit pcm2ch --limit sdr --phys 2.0.0.0 -o out.bin
has out 'Physical address  1.0.0.0 -> 2.0.0.0'
has out '^dropped .*HDR Static'
expect 0 check out.bin
expect 0 limit frl40g tv-4k120.bin -o out.bin
has out 'FRL rate  12 Gbit/s on 4 lanes -> 10 Gbit/s on 4 lanes'
# steps in their order; what hardware cannot do, in the words of people
expect 0 edit tv-4k120.bin --max 1920x1080@60 --max-clock 150 --dolby low-latency -o out.bin
expect 0 timings out.bin --json
grep -q '"hactive": *\(2560\|3840\)' out && fail 'a picture is larger than --max'
expect 0 edit tv-4k120.bin --max-frl 24 --max-rate 60 -o out.bin
has out 'FRL rate  12 Gbit/s on 4 lanes -> 6 Gbit/s on 4 lanes'
for wrong in '--max 1920' '--max 0x1080' '--max 1920x1080@' '--max-clock 0' '--max-rate fast' '--max-frl 41' '--dolby standard'; do
  # shellcheck disable=SC2086
  expect 2 edit tv-4k120.bin $wrong -o new2.bin
done
expect 3 edit tv-4k120.bin --common missing.bin -o new2.bin

# --- common and receiver
expect 0 common tv-4k120.bin tv-4k.bin -o common.bin
has out '^tv-4k.bin costs the others$'
has out '^dropped .* 2560x1440 '
has out '^tv-4k120.bin costs the others nothing'
expect 0 check common.bin
expect 0 edit tv-4k120.bin --common tv-4k.bin -q -o out.bin
same common.bin out.bin
expect 0 common tv-4k.bin tv-4k.bin tv-4k.bin -q -o out.bin
[ -s out ] && fail "common --quiet printed: $(cat out)"
same tv-4k.bin out.bin
expect 0 common tv-4k120.bin tv-4k.bin --json -o out.bin
has out '"costs":'
expect 2 common tv-4k.bin -o new2.bin
expect 0 limit pcm2ch tv-4k.bin -q -o avr.bin
expect 0 receiver --video tv-4k120.bin --audio avr.bin --phys 3.0.0.0 -o receiver.bin
has out 'Physical address  1.0.0.0 -> 3.0.0.0'
"$tool" audio receiver.bin | tail -n +2 >one && "$tool" audio avr.bin | tail -n +2 >two
same one two
expect 0 check receiver.bin
expect 0 receiver --video dvi.bin --audio avr.bin -o hdmi2.bin  # becomes a display of HDMI, which has an address
expect 0 check hdmi2.bin
expect 2 receiver --video tv-4k.bin -o new2.bin
# an extension of timings without data blocks is limited too: 3840x2160 at 650 MHz behind an empty base block
head -c 128 dvi.bin >bare.bin
poke bare.bin 126 001
{ printf '\002\003\004\000\350\375'; tail -c +57 tv-4k.bin | head -c 16; head -c 106 /dev/zero; } >>bare.bin
expect 0 limit hdmi20 bare.bin --rates 60,50 -o out.bin
has out '^dropped .* 650.000 MHz'
# letters that are none do not keep the base block from being limited
cp tv-4k120.bin odd.bin
poke odd.bin 8 000
expect 0 limit hdmi20 odd.bin -o out.bin
[ "$(byte out.bin 8)" = 0 ] || fail 'limit wrote the letters anew'
for limit in dvi 300mhz-420 capture-165mhz frl3 frl4 frl5 frl6; do
  expect 0 limit $limit tv-4k120.bin -o out.bin
  expect 0 check out.bin
done
# the tool speaks for itself: nothing that the library prints is told
[ "$(cat out err | grep -c '\[\(ERR\|WARN\|INFO\):')" = 0 ] || fail "a line of the library: $(cat err)"
expect 0 high-refresh gaming-dp.bin -o out.bin
has out '^rates after: *14[34]'
expect 0 check out.bin
expect 5 high-refresh tv-4k.bin -o new2.bin

# --- no output named
rm -f new.bin
for command in 'phys tv-4k.bin 1.2.0.0' 'limit hdmi20 tv-4k.bin' 'high-refresh gaming-dp.bin' 'to-hdmi dvi.bin' 'convert dvi.bin --to raw' 'sample dvi' 'plot dvi.bin'; do
  expect 2 $command
  has err ' -o '
  [ -s out ] && fail "$command without -o wrote a result"
done
expect 0 sample tv-4k -o again.bin
same tv-4k.bin again.bin
expect 2 phys tv-4k.bin -o new.bin
expect 2
has err '^Usage: reedid COMMAND'
while read -r word hint; do
  expect 2 $word dvi.bin
  has err "$hint"
done <<END
shwo did you mean 'show'
chek did you mean 'check'
conv did you mean 'convert'
frobnicate no command
dvi.bin reedid show dvi.bin
END
expect 0 --help
has out 'Exit codes'
"$tool" limit --help >alone
expect 0 help limit
same alone out
expect 0 help
has out 'Exit codes'
expect 2 help frobnicate
long=$(printf 'f%.0s' $(seq 100))
expect 2 $long dvi.bin
for words in "limit $long dvi.bin -o new.bin" "limit sdr dvi.bin -o new.bin --rates $long" "phys tv-4k.bin $long -o new.bin" \
  "check --severity $long dvi.bin" "check --rule $long dvi.bin" "show dvi.bin --$long" "timing vic $long" "explain $long"; do
  expect 2 $words
  has err "f\{35,37\}\.\.\."
  grep -q 'f\{41\}' err && fail "reedid $words repeats all of a bad word: $(cat err)"
done
expect 0 --version

# --- output that cannot be written: the old file stays, no temporary file does
cp dvi.bin old.bin
chmod 444 old.bin
expect 4 convert tv-4k.bin --to raw -o old.bin
has err 'write-protected'
same old.bin dvi.bin
chmod 644 old.bin
(
  trap '' XFSZ
  ulimit -f 0
  exec "$tool" convert tv-4k.bin --to raw -o old.bin 2>&1
) | grep -q 'not written' || fail 'a full disk was not reported'
same old.bin dvi.bin
for output in . missing/out.bin /dev/full /proc/out.bin; do
  expect 4 convert tv-4k.bin --to raw -o $output
  has err "$output"
done
"$tool" convert tv-4k.bin --to raw -o - >/dev/full 2>err && fail 'a full standard output was not noticed'
has err 'standard output'
"$tool" show tv-4k.bin >&- 2>err && fail 'a closed standard output was not noticed'
"$tool" limit hdmi20 tv-4k120.bin -o old.bin >&- 2>err && fail 'a closed standard output was not noticed'
same old.bin dvi.bin
# words that nobody can read take nothing away
"$tool" rates bad.bin missing dvi.bin >out 2>/dev/full
[ $? -eq 3 ] && [ "$(wc -l <out)" = 2 ] || fail "with a full standard error, rates printed: $(cat out)"
ls -A | grep -q '^\.reedid' && fail 'a temporary file was left'

# --- output that replaces: links and permissions stay
ln -s old.bin link.bin
chmod 640 old.bin
expect 0 convert tv-4k.bin --to raw -o link.bin
[ -L link.bin ] || fail 'the link was replaced'
same old.bin tv-4k.bin
case $(ls -l old.bin) in -rw-r-----*) ;; *) fail "permissions: $(ls -l old.bin)" ;; esac
ln -s new-name.bin dangling.bin
expect 0 convert tv-4k.bin --to raw -o dangling.bin
[ -L dangling.bin ] || fail 'the dangling link was replaced'
same new-name.bin tv-4k.bin
ln -s loop.bin loop.bin
expect 4 convert tv-4k.bin --to raw -o loop.bin
ln old.bin second-name.bin
expect 0 convert dvi.bin --to raw -o old.bin
has err '2 names'
same second-name.bin tv-4k.bin
if [ "$(id -u)" = 0 ]; then
  chown 12345:12346 old.bin
  chmod 6751 old.bin
  expect 0 convert tv-4k.bin --to raw -o old.bin
  [ "$(stat -c '%u:%g %a' old.bin)" = '12345:12346 2751' ] || fail "owner and mode: $(stat -c '%u:%g %a' old.bin)"
fi

# --- names of standard output, a reader that goes away, and signals
for output in /dev/stdout /dev/fd/1 /proc/self/fd/1; do
  "$tool" convert tv-4k.bin --to raw -o $output >piped.bin 2>err || fail "$output was refused"
  same piped.bin tv-4k.bin
done
rm -f out.bin
("$tool" limit hdmi20 tv-4k120.bin -o out.bin; echo $? >code) | true
[ "$(cat code)" = 0 ] && same out.bin limited.bin
{ sleep 1; cat tv-4k.bin; } | "$tool" convert - --to raw -o out.bin &
sleep 0.2
ls -A | grep -q '^\.reedid' && fail 'a temporary file stands before there is anything to write'
wait
for signal in INT TERM HUP PIPE; do
  for run in 1 2 3 4 5; do
    timeout -s $signal 0.00$run "$tool" convert tv-4k.bin --to raw -o out.bin 2>err
    ls -A | grep '^\.reedid' && fail "SIG$signal left a temporary file"
  done
done
same out.bin tv-4k.bin

# --- devices, as far as there need not be any: what is wrong is told before one is opened
cp dvi.bin broken.bin
poke broken.bin 127 000
while IFS='|' read -r code arguments message; do
  expect "$code" $arguments
  has err "$message"
done <<'END'
3|show connector:none-1|connector:none-1: .*connector
3|show i2c:/dev/none|modprobe i2c-dev
3|show override:HDMI-A-1|can be written only; read connector:
4|edit tv-4k.bin --limit sdr -o i2c:/dev/none|can be read only; write to v4l2:
3|show v4l2:/dev/null|name an HDMI or DisplayPort receiver
3|show v4l2:/dev/null,pad=x|the pad is a number
4|send dvi.bin -o v4l2:none --pad 1|v4l2:none,pad=1: not written: no such device
5|send broken.bin -o v4l2:none|finds errors in it .*--force
4|send broken.bin --force -o v4l2:none|no such device
5|plot tv-4k.bin -o v4l2:none|no EDID in raw bytes
4|send dvi.bin -o firmware:a,b|letters, digits
2|send dvi.bin -o out.bin|name a device
2|send --clear dvi.bin -o v4l2:none|name an input, or --clear
2|send -o v4l2:none|name an input, or --clear
2|rates dvi.bin --pad 1|--pad is for names such as v4l2
END
cp dvi.bin i2c:file
expect 0 check ./i2c:file

[ $failures -eq 0 ] || { echo "$failures failures"; exit 1; }
echo "all commands behave"
