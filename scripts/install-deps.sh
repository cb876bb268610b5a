#!/bin/sh
# Installs Debian packages that are not there yet: install-deps.sh tool|tests|clang|lint|bench|cross|coverage|kernel|ci
# Needs root or sudo only when something is missing.
set -eu

build="g++ cmake ninja-build"
tool="$build pkg-config libcli11-dev libfmt-dev nlohmann-json3-dev"
tests="$tool libgtest-dev binutils dpkg-dev file doxygen python3-jsonschema"
clang="clang libclang-rt-14-dev"
lint="$tool clang-format clang-tidy"
bench="$build nlohmann-json3-dev binutils libbenchmark-dev"
kernel="$tool qemu-system-x86 busybox-static cpio"
cross="$build nlohmann-json3-dev binutils googletest qemu-user g++-powerpc-linux-gnu g++-aarch64-linux-gnu"
case "${1:-tool}" in
  tool) packages=$tool ;;
  tests) packages=$tests ;;
  clang) packages="$tests $clang" ;;
  lint) packages=$lint ;;
  bench) packages=$bench ;;
  cross) packages=$cross ;;
  coverage) packages="$tests gcovr" ;;
  kernel) packages=$kernel ;;
  ci) packages="$tests $clang $lint $bench $cross $kernel lintian" ;;
  *) echo "usage: $0 tool|tests|clang|lint|bench|cross|coverage|kernel|ci" >&2; exit 2 ;;
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
