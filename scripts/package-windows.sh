#!/usr/bin/env bash
# package-windows.sh [FOLDER]: builds library and example for 32-bit Windows and packs them, with all that they need on
# such a system, into FOLDER/kelvobase-VERSION-windows-i686.zip. FOLDER is build/windows-package if none is given.
# What the build needs for that system is made by windows-dependencies.sh, or lies in the folder that
# KELVOBASE_WINDOWS_DEPENDENCIES names.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
# shellcheck source-path=SCRIPTDIR source=lib-windows.sh
. "$(dirname "${BASH_SOURCE[0]}")/lib-windows.sh"

triple=i686-w64-mingw32
work=${1:-$top/build/windows-package}
mkdir -p "$work"
work=$(cd "$work" && pwd)
dependencies=${KELVOBASE_WINDOWS_DEPENDENCIES:-}
if [ -z "$dependencies" ]; then
    bash "$top/scripts/windows-dependencies.sh"
    dependencies=$windows_dependencies/installed
fi
version=$(project_version)
name=kelvobase-$version-windows-i686
stage=$work/stage/$name
texts=$top/packaging/windows

# What every Windows has. All else must be in the package.
system_dlls=(advapi32 kernel32 msvcrt shell32 user32 ws2_32)

# imports FILE: the DLLs that a program or a DLL is linked to.
imports() {
    "$triple-objdump" -p "$1" | sed -n 's/^\tDLL Name: //p'
}

# has_windows DLL
has_windows() {
    local known lower=${1,,}
    for known in "${system_dlls[@]}"; do
        [ "$lower" != "$known.dll" ] || return 0
    done
    return 1
}

# file_of DLL: where it lies, among the dependencies or with the compiler.
file_of() {
    local file
    for file in "$dependencies/bin/$1" "$("$windows_compiler" "-print-file-name=$1")"; do
        if [[ $file = /* && -f $file ]]; then
            printf '%s\n' "$file"
            return
        fi
    done
    die "$1, which the package needs, is not to be found"
}

# Brings in the DLLs that what is there needs, and those that they need in turn.
add_dlls() {
    local queue=("$stage"/bin/*.dll "$stage"/bin/*.exe) file dll
    while [ ${#queue[@]} -gt 0 ]; do
        file=${queue[0]}
        queue=("${queue[@]:1}")
        for dll in $(imports "$file"); do
            if ! has_windows "$dll" && [ ! -e "$stage/bin/$dll" ]; then
                "$triple-strip" --strip-unneeded -o "$stage/bin/$dll" "$(file_of "$dll")"
                queue+=("$stage/bin/$dll")
            fi
        done
    done
}

# Headers, import library and packages of Xerces-C: the headers of libkelvobase-xml speak of its classes.
add_xerces() {
    local xerces_version
    xerces_version=$(sed -nE 's/^set\(PACKAGE_VERSION "([0-9.]+)"\)$/\1/p' "$dependencies/cmake/XercesCConfigVersion.cmake")
    [ -n "$xerces_version" ] || die "$dependencies: no version of Xerces-C"
    cp -R "$dependencies/include/xercesc" "$stage/include/"
    cp "$dependencies/lib/libxerces-c.dll.a" "$stage/lib/"
    mkdir "$stage/cmake"
    cp "$dependencies"/cmake/XercesC*.cmake "$stage/cmake/"
    # Its own build makes none for this system.
    cat >"$stage/lib/pkgconfig/xerces-c.pc" <<END
prefix=\${pcfiledir}/../..
libdir=\${prefix}/lib
includedir=\${prefix}/include

Name: Xerces-C
Description: Validating XML parser
Version: $xerces_version
Libs: -L\${libdir} -lxerces-c
Cflags: -I\${includedir}
END
}

# text FILE FROM...: one text for Windows.
text() {
    local file=$1
    shift
    cat "$@" | sed 's/$/\r/' >"$file"
}

# add_texts: what the package says of itself, and the licences of what comes from elsewhere.
add_texts() {
    local documents=/usr/share/doc common=/usr/share/common-licenses licenses=$stage/licenses
    mkdir -p "$licenses"
    text "$licenses/README.txt" "$texts/licenses.txt"
    text "$licenses/gcc.txt" "$documents/gcc-mingw-w64-base/copyright"
    text "$licenses/mingw-w64.txt" "$documents/mingw-w64-common/copyright"
    text "$licenses/xerces-c.txt" "$dependencies"/share/xerces-c/{NOTICE,LICENSE}
    text "$licenses/GPL-3.txt" "$common/GPL-3"
    sed -e "s|@VERSION@|$version|" "$texts/README.txt" | text "$stage/README.txt" -
    # Whose sources they are.
    {
        dpkg-query --show --showformat '${Package} ${Version}, from the source package ${source:Package} ${source:Version}\n' \
            gcc-mingw-w64-i686-posix-runtime mingw-w64-i686-dev
        printf 'xerces-c, from the source package xerces-c %s\n' "$(cat "$dependencies/share/xerces-c/version")"
    } | text "$licenses/versions.txt" -
}

build_folder "$work/release" --toolchain "$top/cmake/windows-i686.cmake" -DCMAKE_BUILD_TYPE=Release \
    "-DKELVOBASE_WINDOWS_DEPENDENCIES=$dependencies" -DKELVOBASE_BUILD_XML=ON -DKELVOBASE_BUILD_TESTS=OFF \
    -DKELVOBASE_WARNINGS_AS_ERRORS=ON
say "Packing $name"
rm -rf "$work/stage"
cmake --install "$work/release" --prefix "$stage" --strip >/dev/null
cmake --install "$work/release" --prefix "$stage" --component seriesstat --strip >/dev/null
add_xerces
add_dlls
add_texts
cd "$work/stage"
rm -f "$work/$name.zip"
cmake -E tar cf "$work/$name.zip" --format=zip "$name"
say "$work/$name.zip"
