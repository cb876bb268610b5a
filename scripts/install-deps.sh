#!/bin/sh
# Installs Debian packages that are not there yet: install-deps.sh tool|tests|ci|cross|fuzz|bench|lint|coverage|docs
# tool, tests and ci each hold the ones before; lint holds those of tool, the others stand alone. Needs root or sudo only when something is missing.
set -eu

packages="g++ cmake ninja-build pkg-config libcli11-dev libfmt-dev nlohmann-json3-dev"
case "${1:-tool}" in
  tool) ;;
  tests) packages="$packages libgtest-dev binutils dpkg-dev file" ;;
  ci) packages="$packages libgtest-dev binutils dpkg-dev file lintian clang clang-format" ;;
  cross) packages="nlohmann-json3-dev cmake ninja-build binutils googletest qemu-user g++-powerpc-linux-gnu g++-aarch64-linux-gnu" ;;
  fuzz) packages="nlohmann-json3-dev g++ cmake ninja-build libgtest-dev clang libclang-rt-14-dev" ;;
  bench) packages="g++ cmake ninja-build binutils libbenchmark-dev" ;;
  lint) packages="$packages clang-tidy" ;;
  coverage) packages="nlohmann-json3-dev g++ cmake ninja-build binutils libgtest-dev gcovr" ;;
  docs) packages="doxygen" ;;
  *) echo "usage: $0 tool|tests|ci|cross|fuzz|bench|lint|coverage|docs" >&2; exit 2 ;;
esac

missing=""
for package in $packages; do
  status=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$status" = installed ] || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

as_root=""
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "$0: run as root, or install sudo; missing:$missing" >&2; exit 1; }
  as_root="sudo"
fi
echo "Installing:$missing"
export DEBIAN_FRONTEND=noninteractive
$as_root apt-get update -qq
# shellcheck disable=SC2086
$as_root apt-get install -y -qq --no-install-recommends $missing >/dev/null
