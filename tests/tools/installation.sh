#!/bin/bash
# installation.sh CMAKE BUILD STAGE LIBDIR COMPILER FLAG: installs the build as a release, moves the
# prefix, and uses what is there. STAGE is where the build has what it installs at fixed places.
set -euo pipefail
export LC_ALL=C
cmake=$1 build=$2 stage=$3 lib=$4
export CXX=$5 CXXFLAGS=${6#-fsanitize=}
CXXFLAGS=${CXXFLAGS:+-fsanitize=$CXXFLAGS}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
faults=0
fault() { echo "$*"; faults=1; }
# same WHAT EXPECTED FOUND
same() { diff <(echo "$2") <(echo "$3") || fault "$1: see above"; }
files() { (cd "$1" && find . ! -type d | sort | sed 's|^\./||'); }

# A careful administrator's umask must not keep the users out of files and of the log.
umask 077
chmod 755 "$work"
DESTDIR=$work/root
install() { DESTDIR=$DESTDIR "$cmake" --install "$build" --config Release --prefix /opt/x "$@" >"$work/log"; }

# The tools alone need no right to write anywhere else.
install --component tools && install --component development
same "below the root" opt "$(ls "$DESTDIR")"
install
chmod 755 "$DESTDIR"
same "fixed places" "$(files "$stage" | grep -v '^usr/share/\|^var/\|Logs/')" "$(files "$DESTDIR$stage")"
mv "$DESTDIR/opt/x" "$work/moved"
same "other places" "" "$(files "$DESTDIR" | grep -vF "${stage#/}/")"
moved=$work/moved
same "below the prefix" "bin/embedded-browser-doctor
bin/embedded-browser-gateway
bin/embedded-browser-log
bin/embedded-browser-start
include/ebStarter.h
$lib/cmake/ebStarter/ebStarterConfig.cmake
$lib/cmake/ebStarter/ebStarterConfigVersion.cmake
$lib/libebStarter.a
$lib/pkgconfig/ebStarter.pc
share/applications/embedded-browser.desktop
share/bash-completion/completions/embedded-browser-doctor
share/bash-completion/completions/embedded-browser-gateway
share/bash-completion/completions/embedded-browser-log
share/bash-completion/completions/embedded-browser-start
share/doc/embedded-browser/README.md
share/doc/embedded-browser/examples/example.cpp
share/embedded-browser/embedded-browser.spdx.json
share/embedded-browser/gateway/scenario.schema.json
share/man/man1/embedded-browser-doctor.1
share/man/man1/embedded-browser-gateway.1
share/man/man1/embedded-browser-log.1
share/man/man1/embedded-browser-start.1" "$(files "$moved" | grep -v '/scenarios/\|/icons/\|/docs/')"
same "icons" 6 "$(files "$moved/share/icons" | wc -l)"
same "closed to others" "" "$(find "$moved" "$DESTDIR$stage" -type f ! -perm -o=r)"

log="$DESTDIR$stage/var/log/Corvane Secure/Logging"
same "log folder" "777 755" "$(stat -c %a "$log" "$log/.." | xargs)"
chmod 2775 "$log"
install
same "log folder of an administrator" 2775 "$(stat -c %a "$log")"

for program in "$moved"/bin/* "$DESTDIR$stage"/*/*/*/*/*/EmbeddedBrowser "$DESTDIR$stage"/*/*/*/*/Chromium*; do
  sections=$(readelf -SW "$program")
  [[ $sections == *.dynsym* && $sections != *.symtab* ]] || fault "not stripped: $program"
done
for tool in doctor gateway log start; do
  name=embedded-browser-$tool
  said=$("$moved/bin/$name" --version)
  [[ $said =~ ^$name\ [0-9.]+$ ]] || fault "$name: $said"
  grep -q 'B .*\\-\\-version' "$moved/share/man/man1/$name.1" || fault "$name.1: no --version"
  [[ $("$moved/bin/$name" --help) == *--version* ]] || fault "$name --help: no --version"
done

# Not the project's own.
find "$moved" -path '*/scenarios/*' ! -name saml-redirect.json -delete
[[ $("$moved/bin/embedded-browser-gateway" --list) == saml-redirect\ * ]] || fault "other scenarios"

# client PROGRAM: says how it wants to be used.
client() { [[ $("$1" 2>&1) == usage:* ]] || fault "does not run: $1"; }
cp "$moved/share/doc/embedded-browser/examples/example.cpp" "$work"
for option in --print-errors --define-prefix; do
  flags=$(PKG_CONFIG_LIBDIR=$moved/$lib/pkgconfig pkg-config "$option" --cflags --libs ebStarter)
  [[ $flags != */opt/x* && $flags == *"$moved"* ]] || fault "pkg-config $option: $flags"
done
"$CXX" $CXXFLAGS -std=c++17 -o "$work/client" "$work/example.cpp" $flags
client "$work/client"
cat >"$work/CMakeLists.txt" <<'TEXT'
cmake_minimum_required(VERSION 3.25)
project(client LANGUAGES CXX)
find_package(ebStarter 0.1 REQUIRED)
add_executable(client example.cpp)
target_link_libraries(client PRIVATE ebStarter::ebStarter)
TEXT
"$cmake" -S "$work" -B "$work/build" -D CMAKE_PREFIX_PATH="$moved" >"$work/log"
"$cmake" --build "$work/build" >"$work/log" || { cat "$work/log"; fault "cannot be built with CMake"; }
client "$work/build/client"
exit $faults
