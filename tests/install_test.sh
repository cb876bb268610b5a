#!/bin/sh
# Installs the build into an empty prefix, moves it, and builds a C99 and a C++20 program against it in each way that we
# promise: CMake package and pkg-config, shared and static library. A sanitized build is not for others to link.
# usage: install_test.sh SOURCE_DIR BUILD_DIR CC CXX
set -eu
source_dir=$1 build_dir=$2 cc=$3 cxx=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$build_dir" --prefix "$work/first" >/dev/null
mkdir "$work/new"
mv "$work/first" "$work/new/prefix"  # nothing may remember where it was installed
prefix=$work/new/prefix
libdir=$(dirname "$(find "$prefix" -name libreedid.a)")

cat >"$work/c.c" <<'END'
#include <reedid/reedid.h>
#include <stdio.h>
int main(void) {
  uint8_t bytes[4] = {1, 2, 3, 0};
  return puts(reedid_version()) < 0 || GetChecksum(bytes, 4) != 250;
}
END
cat >"$work/cpp.cpp" <<'END'
#include <reedid/reedid.hpp>
#include <cstdio>
int main() {
  const uint8_t header[128] = {0, 255, 255, 255, 255, 255, 255, 0};
  const reedid::Image image{reedid::ByteView(header)};
  return std::puts(reedid_version()) < 0 || image.Blocks().size() != 1;
}
END

# expect_version PROGRAM SHARED: it runs, tells its version and needs the shared library exactly when it should.
version=$(sed -n 's/^#define REEDID_VERSION_STRING "\(.*\)"/\1/p' "$prefix/include/reedid/version.h")
expect_version() {
  told=$(LD_LIBRARY_PATH=$libdir "$1")
  [ "$told" = "$version" ] || { echo "FAILED: $1 tells version '$told', not '$version'"; exit 1; }
  needed=no
  if readelf -d "$1" | grep -q 'NEEDED.*libreedid'; then needed=yes; fi
  [ "$needed" = "$2" ] || { echo "FAILED: $1 needs libreedid.so: $needed"; exit 1; }
}

# CMake: each language in a project of its own, because a C project has no C++ compiler.
for language in C CXX; do
  [ $language = C ] && file=c.c || file=cpp.cpp
  mkdir "$work/$language"
  cp "$work/$file" "$work/$language"
  cat >"$work/$language/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.25)
project(consumer LANGUAGES $language)
set(CMAKE_C_STANDARD 99)
set(CMAKE_CXX_STANDARD 20)
find_package(reedid $version REQUIRED)
add_executable(shared $file)
target_link_libraries(shared reedid::reedid)
add_executable(static $file)
target_link_libraries(static reedid::reedid_static)
END
  CC=$cc CXX=$cxx cmake -S "$work/$language" -B "$work/$language/build" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
  cmake --build "$work/$language/build" >/dev/null
  expect_version "$work/$language/build/shared" yes
  expect_version "$work/$language/build/static" no
done

# Any other minor version may be another interface before 1.0, a lower patch version is none.
mkdir "$work/version"
cat >"$work/version/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.25)
project(consumer LANGUAGES NONE)
find_package(reedid \${wanted} QUIET)
message(STATUS "found: \${reedid_FOUND}")
END
major=${version%%.*} rest=${version#*.}
minor=${rest%%.*} patch=${rest#*.}
# expect_found ANSWER VERSION
expect_found() {
  found=$(cmake -S "$work/version" -B "$work/version/build" -DCMAKE_PREFIX_PATH="$prefix" -Dwanted="$2" | sed -n 's/^-- found: //p')
  [ "$found" = "$1" ] || { echo "FAILED: a project that wants version $2 finds $version: $found"; exit 1; }
}
expect_found 1 "$major.$minor"
expect_found 1 "$version"
expect_found 0 "$major.$minor.$((patch + 1))"
expect_found 0 "$major.$((minor + 1))"
expect_found 0 "$((major + 1))"
if [ "$minor" -gt 0 ]; then expect_found 0 "$major.$((minor - 1))"; fi

# A project that takes the sources in gets the library alone: nothing that wants more than a compiler, and no tests.
mkdir "$work/embedder"
cat >"$work/embedder/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.25)
project(embedder LANGUAGES C CXX)
add_subdirectory($source_dir reedid)
foreach(target reedid_document reedid_tool reedid_tests)
  if(TARGET \${target})
    message(FATAL_ERROR "\${target} is there")
  endif()
endforeach()
add_executable(program $work/c.c)
target_link_libraries(program reedid::reedid_static)
END
for package in GTest fmt nlohmann_json CLI11; do none="${none:-} -DCMAKE_DISABLE_FIND_PACKAGE_$package=ON"; done
# shellcheck disable=SC2086
CC=$cc CXX=$cxx cmake -S "$work/embedder" -B "$work/embedder/build" $none >/dev/null

# pkg-config: the static library by its name, because both stand in one folder.
export PKG_CONFIG_PATH="$libdir/pkgconfig"
flags() { pkg-config "$@" reedid; }
static_libs=$(flags --static --libs | sed 's/-lreedid/-l:libreedid.a/')
# shellcheck disable=SC2046,SC2086
{
  $cc -std=c99 $(flags --cflags) "$work/c.c" -o "$work/c-shared" $(flags --libs)
  $cc -std=c99 $(flags --cflags) "$work/c.c" -o "$work/c-static" $static_libs
  $cxx -std=c++20 $(flags --cflags) "$work/cpp.cpp" -o "$work/cpp-shared" $(flags --libs)
  $cxx -std=c++20 $(flags --cflags) "$work/cpp.cpp" -o "$work/cpp-static" $static_libs
}
for language in c cpp; do
  expect_version "$work/$language-shared" yes
  expect_version "$work/$language-static" no
done
# The code of the documents, as somebody pastes it. The image has a base block and a CTA-861 extension with VICs 4 and 16,
# and the steps mark the second one native.
code() { sed -n "/^\`\`\`$2\$/,/^\`\`\`/{/^\`\`\`/!p;}" "$source_dir/$1"; }
{ code README.md c; echo 'int main(void) { return set_address(NULL, 0, 0x1000, NULL, 0) != -1; }'; } >"$work/readme.c"
{
  echo '#include <reedid/reedid.h>'
  echo 'int main(void) { const uint32_t size = 256;'
  echo 'const uint8_t bytes[256] = {0, 255, 255, 255, 255, 255, 255, 0, 0x52, 0x74, [126] = 1,'
  echo '                            [128] = 2, 3, 7, 0, 0x42, 4, 16};'
  code docs/ten-minutes.md c | grep -v '^#include'
  echo 'return !(written == 256 && out[133] == 4 && out[134] == 0x90 && address == 0xFFFF); }'
} >"$work/steps.c"
for program in readme steps; do
  # shellcheck disable=SC2046
  $cc -std=c99 $(flags --cflags) "$work/$program.c" -o "$work/$program" $(flags --libs)
  LD_LIBRARY_PATH=$libdir "$work/$program" || { echo "FAILED: the code of the documents, $program"; exit 1; }
done
{
  printf '#include <reedid/reedid.hpp>\nvoid use(const DtdTiming&);\nvoid steps(reedid::ByteView bytes) {\n'
  code docs/ten-minutes.md cpp
  echo '}'
} >"$work/steps.cpp"
# shellcheck disable=SC2046
$cxx -std=c++20 $(flags --cflags) -c "$work/steps.cpp" -o "$work/steps.o"

if grep -rI "$source_dir\|$work/first" "$prefix"; then echo "FAILED: paths of the build in installed files"; exit 1; fi
