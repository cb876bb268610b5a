#!/bin/busybox sh
# What scripts/kernel-test.sh runs as the first process of its machine: the tool on the kernel's own devices. The display of
# the bochs adapter stands behind the connector Virtual-1, vivid is a capture card with two HDMI inputs, and i2c-stub a
# memory at address 0x50 of an SMBus.
/bin/busybox --install -s /bin
mount -t proc none /proc
mount -t sysfs none /sys
mount -t devtmpfs none /dev
mkdir /etc
echo 'nobody:x:65534:65534::/:/bin/sh' >/etc/passwd
export NO_COLOR=1 TERM=dumb
checks=0 failures=0
fail() {
  echo "FAILED: $*"
  failures=$((failures + 1))
}
finish() {
  echo # behind what the firmware left on the line
  echo "kernel test: $checks checks, $failures failed"
  poweroff -f
}
modprobe vivid num_inputs=2 input_types=0xff && modprobe i2c-stub chip_addr=0x50 && modprobe i2c-dev && modprobe bochs ||
  fail 'a module could not be loaded'
cd /tmp || finish
if [ -e /command ]; then
  sh /command
  poweroff -f
fi

# expect CODE COMMAND...: its streams are in the files out and err.
expect() {
  checks=$((checks + 1))
  code=$1
  shift
  "$@" >out 2>err </dev/null
  got=$?
  [ $got -eq "$code" ] || fail "$*: exit code $got instead of $code: $(cat err)"
}
# has FILE TEXT...
has() {
  file=$1
  shift
  for text; do
    checks=$((checks + 1))
    grep -qF -- "$text" "$file" || fail "no '$text' in: $(cat "$file")"
  done
}
same() {
  checks=$((checks + 1))
  cmp -s "$1" "$2" || fail "$1 and $2 differ"
}
# keep INPUT FILE: the bytes of an input
keep() { expect 0 reedid convert "$1" --to raw -o "$2"; }
for name in tv-4k tv-4k120 dvi gaming-dp; do reedid sample $name -o $name.bin; done
edid=/sys/class/drm/card0-Virtual-1/edid status=/sys/class/drm/card0-Virtual-1/status card=v4l2:/dev/video0

# --- connectors
expect 0 reedid displays
has out 'card0-Virtual-1: connected' 'QEMU Monitor' '1280x800' $edid
expect 0 reedid displays --json
has out '"connector": "Virtual-1"' '"name": "QEMU Monitor"' '"status": "connected"'
for name in Virtual-1 card0-Virtual-1; do
  keep connector:$name read.bin
  same read.bin $edid
done
expect 3 reedid show connector:HDMI-A-9
has err 'there are card0-Virtual-1'
expect 4 reedid send dvi.bin -o connector:Virtual-1

# --- DDC, as far as an SMBus goes
fill() { fill_memory /dev/i2c-0 "$2" <"$1" || fail 'the memory cannot be filled'; } # FILE OFFSET
expect 3 reedid show i2c:/dev/i2c-0
has err 'no display'
fill tv-4k.bin 0
keep i2c:/dev/i2c-0 read.bin
same read.bin tv-4k.bin
fill gaming-dp.bin 0
expect 0 reedid show i2c:/dev/i2c-0
has err 'two of 3 blocks could be read'
printf U >wrong && fill wrong 200
expect 0 reedid show i2c:/dev/i2c-0
has err 'block 1: wrong checksum in 4 tries'
expect 3 reedid show i2c:/dev/i2c-9
has err 'no such device' 'modprobe i2c-dev'
expect 3 reedid show i2c:/dev/video0
has err 'no I2C bus'
expect 3 reedid show i2c:Virtual-1
has err 'names no bus'

# --- a capture card, whose driver writes its own physical address
expect 0 reedid edit tv-4k.bin --phys 3.0.0.0 -o $card
has err 'the driver wrote the physical address of its connector, 0.0.0.0 instead of 3.0.0.0' 'holds 2 blocks'
expect 1 reedid diff tv-4k.bin $card
has out 'Physical address  1.0.0.0 -> 0.0.0.0' '2 changed'
expect 0 reedid send dvi.bin -o $card --pad 1
keep $card,pad=1 read.bin
same read.bin dvi.bin
expect 4 reedid send gaming-dp.bin -o $card
has err '3 blocks, but the device holds 2 at most'
keep $card read.bin
same read.bin dvi.bin
head -c 127 dvi.bin >broken.bin
printf x >>broken.bin
expect 5 reedid send broken.bin -o $card
has err "'reedid check' finds errors in it (" 'with --force'
keep $card read.bin
same read.bin dvi.bin
expect 0 reedid send broken.bin -o $card --force
expect 1 reedid check $card
expect 5 reedid plot tv-4k.bin -o $card
expect 3 reedid show $card --pad 7
has err 'no EDID at pad 7'
expect 4 reedid send tv-4k.bin -o v4l2:/dev/video1
has err 'name '
expect 4 reedid send tv-4k.bin -o v4l2:/dev/null
has err 'name an HDMI or DisplayPort receiver'
expect 3 reedid show v4l2:/dev/video9
has err 'no such device'
expect 0 reedid send --clear -o $card
expect 3 reedid show $card
has err 'holds no EDID'
expect 3 su nobody -c "reedid show $card"
has err 'Permission denied; run as root'

# --- the recipes of docs/devices.md
for recipe in $(ls /recipes/*.sh | sort -t / -k 3 -n); do
  checks=$((checks + 1))
  sh -e "$recipe" >out 2>err || fail "recipe $(cat "$recipe")
$(cat err)"
done
umount /sys/kernel/debug

# --- an override, and its undoing
expect 4 reedid send tv-4k.bin -o override:Virtual-1
has err 'debugfs is not mounted; as root: mount -t debugfs none /sys/kernel/debug'
mount -t debugfs none /sys/kernel/debug
expect 0 reedid send tv-4k.bin -o override:Virtual-1
has err 'undo it with: reedid send --clear -o override:Virtual-1'
same $edid tv-4k.bin
expect 0 reedid displays
has out 'REED TV 4K' '3840x2160 60.000 Hz'
expect 5 reedid send broken.bin -o override:Virtual-1
same $edid tv-4k.bin
echo off >$status
expect 0 reedid send dvi.bin -o override:Virtual-1
has err 'nothing is plugged in'
has $status disconnected
echo detect >$status
same $edid dvi.bin
expect 0 reedid send --clear -o override:Virtual-1
has err 'own EDID counts again' 'the driver has not read it again'
[ ! -s /sys/kernel/debug/dri/0/Virtual-1/edid_override ] || fail 'the override stayed'
expect 4 su nobody -c 'reedid send dvi.bin -o override:Virtual-1'
has err 'run as root'

# --- firmware files
expect 0 reedid limit hdmi20 tv-4k120.bin -q -o firmware:tv
has err '/lib/firmware/edid/tv.bin is written' 'drm.edid_firmware=HDMI-A-1:edid/tv.bin'
expect 0 reedid limit hdmi20 tv-4k120.bin -q -o limited.bin
same limited.bin /lib/firmware/edid/tv.bin
expect 5 reedid send broken.bin -o firmware:tv
same limited.bin /lib/firmware/edid/tv.bin
expect 4 reedid send dvi.bin -o firmware:1920x1080
expect 0 reedid send --clear -o firmware:tv
expect 4 reedid send --clear -o firmware:tv
has err 'there is no /lib/firmware/edid/tv.bin'
finish
