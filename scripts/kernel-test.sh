#!/usr/bin/env bash
# The tool against a real kernel: Debian's, with a capture card (vivid), an I2C bus (i2c-stub) and a monitor (bochs) that it
# simulates, in a machine that QEMU emulates. What is checked there stands in tests/kernel/init.sh; the recipes of
# docs/devices.md are run, too. Nothing of it is installed but the emulator and busybox.
# usage: kernel-test.sh [PRESET [COMMAND...]]: a command runs in the machine instead of the checks
set -euo pipefail
cd "$(dirname "$0")/.."
[ "$(dpkg --print-architecture)" = amd64 ] || { echo "$0: on amd64 machines only; skipped"; exit 0; }
scripts/install-deps.sh kernel
preset=${1:-dev}
[ $# -eq 0 ] || shift
work=$PWD/build/kernel

# --- the tool in one file
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" --target reedid_tool_static

# --- the kernel, unpacked
kernel=$(apt-cache depends linux-image-amd64 | sed -n 's/^ *Depends: \(linux-image-[0-9].*\)$/\1/p' | head -n 1)
[ -n "$kernel" ] || { echo "$0: apt knows no kernel; run apt-get update" >&2; exit 1; }
if [ ! -e "$work/$kernel" ]; then
  rm -rf "$work"/linux-image-*
  mkdir -p "$work/$kernel.new"
  (
    cd "$work/$kernel.new"
    apt-get download -qq "$kernel" || { apt-get update -qq && apt-get download -qq "$kernel"; }
    dpkg-deb -x ./*.deb .
    rm ./*.deb
    busybox depmod -b . "$(basename lib/modules/*)"
  )
  mv "$work/$kernel.new" "$work/$kernel"
fi
release=$(basename "$work/$kernel"/lib/modules/*)
modules=lib/modules/$release

# --- its initial file system
root=$work/root
rm -rf "$root"
mkdir -p "$root"/{bin,dev,proc,sys,tmp,lib/firmware,recipes,"$modules"}
cp /bin/busybox "$root/bin/"
cp "build/$preset/tools/reedid/reedid-static" "$root/bin/reedid"
strip "$root/bin/reedid"
cc -Wall -Wextra -Werror -static -o "$root/bin/fill_memory" tests/kernel/fill_memory.c
install -m 755 tests/kernel/init.sh "$root/init"
[ $# -eq 0 ] || printf '%s\n' "$*" >"$root/command"
wanted='vivid|i2c-stub|i2c-dev|bochs'
list=$work/$kernel/$modules/modules.dep
sed -nE "s,^(.*/($wanted)\.ko): *(.*),\1 \3,p" "$list" | tr ' ' '\n' | sort -u | grep . >"$work/modules"
(cd "$work/$kernel/$modules" && sed "s,^/*$modules/,," "$work/modules" | cpio -pdm --quiet "$root/$modules")
cp "$list" "$root/$modules/"
# The documents name an HDMI connector and a bus that an emulated machine has by other names.
awk -v folder="$root/recipes" '/^```sh/ { n++; on = 1; next } /^```/ { on = 0 } on { print >(folder "/" n ".sh") }' docs/devices.md
sed -i 's/HDMI-A-1/Virtual-1/g; s,/dev/i2c-4,/dev/i2c-0,g' "$root"/recipes/*.sh
(cd "$root" && find . | cpio -o -H newc --quiet | gzip -1 >"$work/initramfs")

# --- run: what it prints on its serial line ends with the number of checks
run=(timeout 300 qemu-system-x86_64 -accel tcg -m 512 -nographic -no-reboot -nic none
  -vga none -device bochs-display,edid=on
  -kernel "$work/$kernel/boot/vmlinuz-$release" -initrd "$work/initramfs"
  -append "console=ttyS0 quiet loglevel=1 panic=-1 no_timer_check")
"${run[@]}" </dev/null | tr -d '\r' | tee "$work/log"
[ $# -gt 0 ] || grep -Eq '^kernel test: [1-9][0-9]* checks, 0 failed$' "$work/log" ||
  { echo "$0: failed; all that was printed is in $work/log" >&2; exit 1; }
