#!/bin/sh
# Tries the project as somebody does who has an empty Debian 12 and the documents: trial.sh FOLDER
# Makes a root file system in FOLDER, or takes the one that an earlier trial made, and inside it builds, tests, installs,
# packs, uses and removes what HEAD holds. Needs root, debootstrap, git, a Debian mirror (MIRROR), 3 GB and half an hour.
# All mounts are in a name space of its own: FOLDER can be removed afterwards.
set -eu
cd "$(dirname "$0")/.."
status=0

check() {
  what=$1
  shift
  if "$@" >"$work/log" 2>&1; then echo "ok      $what"; else sed 's/^/  /' "$work/log"; echo "FAILED  $what"; status=1; fi
}

# code_of FILE LANGUAGE: what a document shows.
code_of() { sed -n "/^\`\`\`$2\$/,/^\`\`\`/{/^\`\`\`/!p;}" "$1"; }

install_from_source() {
  code_of README.md sh | sed -n '/^scripts\/install-deps/,/^ldconfig/p' >"$work/commands"
  cat "$work/commands"
  grep -q 'cmake --install' "$work/commands" && sh -e "$work/commands" && use_with_pkg_config && reedid --version
}
remove_from_source() {
  xargs rm <build/release/install_manifest.txt && find /usr/local -depth -name '*reedid*' -type d -empty -delete && ldconfig
}
pack() { code_of README.md sh | grep 'preset debian' >"$work/commands" && sh -e "$work/commands"; }

write_example() {
  { code_of README.md c; echo 'int main(void) { return set_address(NULL, 0, 0x1000, NULL, 0) != -1; }'; } >"$work/trial.c"
}
use_with_pkg_config() {
  write_example
  # shellcheck disable=SC2046
  cc "$work/trial.c" $(pkg-config --cflags --libs reedid) -o "$work/trial" && "$work/trial"
}
use_with_cmake() {
  write_example
  cat >"$work/CMakeLists.txt" <<'CMAKE'
cmake_minimum_required(VERSION 3.25)
project(trial LANGUAGES C)
find_package(reedid REQUIRED)
add_executable(trial trial.c)
target_link_libraries(trial reedid::reedid)
CMAKE
  cmake -G Ninja -S "$work" -B "$work/build" && cmake --build "$work/build" && "$work/build/trial"
}

read_man_page() {
  warnings=$(MANROFFSEQ='' MANWIDTH=80 man --warnings -E UTF-8 -l -Tutf8 -Z tools/reedid.1 2>&1 >/dev/null)
  echo "$warnings"
  [ -z "$warnings" ] && man -w reedid
}

# expect TEXT ANSWER
expect() { echo "$2" | grep -q -- "$1" || { echo "no '$1' in: $2"; return 1; }; }
complete_in_bash() {
  expect limit "$(bash -c '. /usr/share/bash-completion/bash_completion; _completion_loader reedid
    COMP_WORDS=(reedid li) COMP_CWORD=1; _reedid; echo "${COMPREPLY[*]}"')"
}
complete_in_fish() {
  expect '^limit' "$(fish -c 'complete -C "reedid li"')" && expect '^--quiet' "$(fish -c 'complete -C "reedid limit --q"')"
}
# zsh completes at its prompt only: it gets a terminal, a line and the tabulator.
complete_in_zsh() {
  expect 'limit --quiet ' "$(zsh -fc 'zmodload zsh/zpty; zpty shell zsh -f
    zpty -w shell "autoload -U compinit; compinit -u; PS1="; sleep 5; zpty -wn shell "reedid limit --q"$'"'\\t'"'; sleep 5
    while zpty -r -t shell part; do print -r -- "$part"; done')"
}

nothing_stays() {
  find / -xdev -path /root -prune -o -name '*reedid*' -print >"$work/left"
  cat "$work/left"
  [ ! -s "$work/left" ]
}

inside() {
  mount -t devpts -o ptmxmode=0666 devpts /dev/pts
  work=$(mktemp -d)
  export DEBIAN_FRONTEND=noninteractive
  check "the demo" scripts/demo.sh
  check "the tests" scripts/test.sh
  check "installing from the source" install_from_source
  check "removing that" remove_from_source
  check "packing" pack
  check "programs for the trial" apt-get install -y --no-install-recommends man-db groff bash-completion zsh fish lintian
  check "lintian" lintian --fail-on error,warning build/debian/*.deb
  check "installing the packages" apt-get install -y ./build/debian/*.deb
  check "the tool" reedid show sample:tv-4k120
  check "the README's program, pkg-config" use_with_pkg_config
  check "the README's program, CMake" use_with_cmake
  check "the man page" read_man_page
  for shell in bash fish zsh; do check "completion in $shell" "complete_in_$shell"; done
  check "removing the packages" apt-get purge -y reedid libreedid-dev libreedid0
  check "that nothing stays" nothing_stays
  rm -rf "$work"
  exit $status
}

case ${1:-} in
  inside) inside ;;
  /*) ;;
  *) echo "usage: $0 FOLDER (from /)" >&2; exit 2 ;;
esac
root=$1
[ -d "$root/etc" ] || debootstrap --variant=minbase bookworm "$root" ${MIRROR:+"$MIRROR"}
rm -rf "$root/root/source"
git archive --prefix=root/source/ HEAD | tar -x -C "$root"
exec unshare --mount --pid --fork --root "$root" --mount-proc \
  env -i HOME=/root PATH=/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin TERM=dumb LC_ALL=C.UTF-8 \
  /root/source/scripts/trial.sh inside
