#!/usr/bin/env bash
# Builds once, in build/windows-dependencies, what the library and its tests need for 32-bit Windows: Xerces-C and
# GoogleTest, both from the distribution's sources, and lays Boost's headers beside them. Installs what is missing for that
# (Debian packages, as root or through sudo). Ends with status 77 where the source of Xerces-C cannot be had.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
# shellcheck source-path=SCRIPTDIR source=lib-windows.sh
. "$(dirname "${BASH_SOURCE[0]}")/lib-windows.sh"

need g++-mingw-w64-i686-posix has_command "$windows_compiler"
need cmake has_command cmake
need ninja-build has_build_tool
need libboost-dev test -f /usr/include/boost/tokenizer.hpp
need googletest test -f /usr/src/googletest/CMakeLists.txt
need dpkg-dev has_command dpkg-source
need xz-utils has_command xz
install_missing

folder=$windows_dependencies
installed=$folder/installed
stamp=$folder/built-by
wanted=$(
    cat "${BASH_SOURCE[0]}" "$top/cmake/windows-i686.cmake"
    "$windows_compiler" -dumpfullversion
    dpkg-query -W googletest 2>/dev/null || true
)
if [ -f "$stamp" ] && [ "$(cat "$stamp")" = "$wanted" ]; then
    say "What is built with for Windows is there: $installed"
    exit 0
fi
rm -rf "$folder"
mkdir -p "$installed/include"
generator="Unix Makefiles"
if has_command ninja; then
    generator=Ninja
fi

# for_windows SOURCE BUILD TARGET OPTION...
for_windows() {
    local source=$1 build=$2 target=$3
    shift 3
    cmake -S "$source" -B "$build" -G "$generator" --toolchain "$top/cmake/windows-i686.cmake" \
        -DKELVOBASE_WINDOWS_DEPENDENCIES="$installed" -DCMAKE_INSTALL_PREFIX="$installed" -DCMAKE_BUILD_TYPE=Release "$@"
    cmake --build "$build" --parallel "$(jobs)" --target "$target"
} >>"$folder/log" 2>&1

# The build's own words are wanted when it fails.
trap '[ $? -eq 0 ] || tail -n 30 "$folder/log" >&2' EXIT

ln -s /usr/include/boost "$installed/include/boost"

say "GoogleTest for Windows"
for_windows /usr/src/googletest "$folder/googletest" install -DBUILD_GMOCK=OFF

say "Xerces-C for Windows"
own_apt_update "$folder/apt" "$(dpkg --print-architecture)"
mkdir "$folder/source"
(cd "$folder/source" && own_apt "$folder/apt" "$(dpkg --print-architecture)" apt-get source -qq xerces-c) >>"$folder/log" 2>&1 ||
    true
source=$(find "$folder/source" -mindepth 1 -maxdepth 1 -type d -name 'xerces-c-*')
if [ ! -d "$source" ]; then
    say "SKIPPED: the source of Xerces-C cannot be had. NOTHING WAS BUILT for Windows."
    exit 77
fi
# Nothing that is read comes from the network, and texts are those of the system. The names of its files, which stand in its
# messages, are told without the folder of this build.
CXXFLAGS="\"-ffile-prefix-map=$source=xerces-c\"" for_windows "$source" "$folder/xerces-c" xerces-c \
    -DBUILD_SHARED_LIBS=ON -Dnetwork=OFF -Dtranscoder=windows -Dmessage-loader=inmemory
cmake -P "$folder/xerces-c/src/cmake_install.cmake" >>"$folder/log"
# What a package that has it must tell of it.
mkdir -p "$installed/share/xerces-c"
cp "$source"/{LICENSE,NOTICE} "$installed/share/xerces-c"
sed -n 's/^Version: //p' "$folder"/source/xerces-c_*.dsc >"$installed/share/xerces-c/version"
rm -rf "$folder/apt" "$folder/source" "$folder/xerces-c" "$folder/googletest"

printf '%s\n' "$wanted" >"$stamp"
say "What is built with for Windows: $installed"
