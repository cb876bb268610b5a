#!/bin/sh
# Makes the Debian packages of a build and looks at what each holds and needs. Skipped (77) where they cannot be made.
# usage: packages_test.sh BUILD_DIR LIBDIR HAS_TOOL
set -eu
build_dir=$1 libdir=$2 tool=$3
for program in dpkg-deb dpkg-shlibdeps file; do command -v $program >/dev/null || exit 77; done
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0
(cd "$build_dir" && cpack -G DEB -B "$work" -D CPACK_PACKAGING_INSTALL_PREFIX=/usr >"$work/log" 2>&1) ||
  { cat "$work/log"; exit 1; }

# package_holds NAME PATTERN...: every pattern matches a file of the package, and no file matches none of them.
package_holds() {
  name=$1
  shift
  deb=$(ls "$work/${name}"_*.deb) || { status=1; return; }
  dpkg-deb --fsys-tarfile "$deb" | tar -t | sed -n 's|^\./usr/\(.*[^/]\)$|\1|p' >"$work/left"
  for pattern in "$@" "share/doc/$name/copyright" "share/doc/$name/changelog\.gz" "share/doc/$name/changelog\.Debian\.gz"; do
    grep -Eq "^$pattern\$" "$work/left" || { echo "FAILED: $name has no $pattern"; status=1; }
    grep -Ev "^$pattern\$" "$work/left" >"$work/rest" || true
    mv "$work/rest" "$work/left"
  done
  [ ! -s "$work/left" ] || { echo "FAILED: $name has also:"; cat "$work/left"; status=1; }
}
field_has() {
  dpkg-deb -f "$work/$1"_*.deb "$2" | grep -q "$3" || { echo "FAILED: $2 of $1 is not $3"; status=1; }
}
control_has() {
  dpkg-deb -I "$work/$1"_*.deb "$2" | grep -q "$3" || { echo "FAILED: $2 of $1 has no $3"; status=1; }
}

package_holds libreedid0 "$libdir/libreedid\.so\.0" "$libdir/libreedid\.so\.0\.[0-9.]+" share/lintian/overrides/libreedid0
package_holds libreedid-dev "include/reedid/reedid\.h" "include/reedid/reedid\.hpp" "include/reedid/[a-z_]*\.h(pp)?" \
  "$libdir/libreedid\.a" "$libdir/libreedid\.so" "$libdir/pkgconfig/reedid\.pc" "$libdir/cmake/reedid/reedid-[a-z-]*\.cmake"
field_has libreedid0 Depends libc6
version=$(dpkg-deb -f "$work/libreedid0"_*.deb Version)
field_has libreedid-dev Depends "^libreedid0 (= $version)\$"
control_has libreedid0 shlibs "^libreedid 0 libreedid0 (>= "
control_has libreedid0 triggers "^activate-noawait ldconfig\$"
if [ "$tool" = 1 ]; then
  package_holds reedid bin/reedid "share/man/man1/reedid\.1\.gz" share/bash-completion/completions/reedid \
    share/zsh/vendor-completions/_reedid "share/fish/vendor_completions\.d/reedid\.fish" \
    "share/reedid/edid\.schema\.json"
  field_has reedid Depends libc6
  field_has reedid Recommends hwdata
fi
if command -v lintian >/dev/null; then
  # A build for another prefix than /usr keeps its libraries and pkg-config file in plain lib.
  lintian --fail-on error,warning --suppress-tags pkg-config-unavailable-for-cross-compilation "$work"/*.deb 2>&1 ||
    { echo "FAILED: lintian"; status=1; }
fi
exit $status
