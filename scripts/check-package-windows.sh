#!/usr/bin/env bash
# check-package-windows.sh [FOLDER]: unpacks what package-windows.sh has made in FOLDER, build/windows-package if none is
# given, and uses it under Wine as somebody with nothing else would: runs the example in several places, and builds and
# runs the project of tests/consumer with the cross compiler. Wine is that of windows-wine.sh, or, where they are set, the
# command WINE with the folder WINEPREFIX. Ends with status 77 where there is none.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
# shellcheck source-path=SCRIPTDIR source=lib-windows.sh
. "$(dirname "${BASH_SOURCE[0]}")/lib-windows.sh"

work=${1:-$top/build/windows-package}
work=$(cd "$work" && pwd)
name=kelvobase-$(project_version)-windows-i686
check=$work/check
toolchain=$top/cmake/windows-i686.cmake
triple=i686-w64-mingw32

rm -rf "$check"
mkdir -p "$check/a folder/with blanks" "$check/temporary files"
cd "$check/a folder/with blanks"
cmake -E tar xf "$work/$name.zip"
package=$PWD/$name
own_configuration "$check/configuration"

if [ -z "${WINE:-}" ]; then
    if [ ! -d "$wine_prefix" ] && ! bash "$top/scripts/windows-wine.sh"; then
        say "SKIPPED: Wine for 32-bit programs cannot be had. Of the package NOTHING WAS RUN."
        exit 77
    fi
    WINEPREFIX=$wine_prefix
    trap stop_wine EXIT
    keep_wine_running
fi
drive=$WINEPREFIX/drive_c
# Under Wine the folders of a user go by the user's name.
user='package-check'
# shellcheck disable=SC2031 # other functions have a USER of their own in a subshell
export LC_ALL=C.UTF-8 USER=$user
settings=$drive/users/$user/AppData/Roaming
rm -rf "$settings/dravo2" "$drive/pack"
# Programs find the DLLs of their own folder and those of Windows, no others.
unset WINEPATH

# windows_path FOLDER
windows_path() {
    printf 'Z:%s' "${1//\//\\}"
}

# run PROGRAM ARGUMENT...
run() {
    timeout 300 "$top/scripts/under-wine.sh" "$@"
}

# says TEXT PROGRAM ARGUMENT...: the output must have that line.
says() {
    local text=$1 said
    shift
    said=$(run "$@") || die "failed: $*"
    grep -qxF -- "$text" <<<"$said" || die "no line \"$text\" from $* but: $said"
}

contents() {
    local file imported dll
    if grep -rlF -e "$work" -e "$top" "$package" >&2; then
        die "these files of the package name a folder of the build"
    fi
    imported=$(for file in "$package"/bin/*; do
        "$triple-objdump" -p "$file" | sed -n 's/^\tDLL Name: //p'
    done)
    for file in "$package"/bin/*.dll; do
        dll=${file##*/}
        case $dll in
            libkelvobase.dll | libkelvobase-xml.dll) ;;
            *) grep -qxF "$dll" <<<"$imported" || die "nothing in the package needs $dll" ;;
        esac
    done
    for file in README.txt licenses/README.txt licenses/gcc.txt licenses/mingw-w64.txt licenses/xerces-c.txt; do
        [ -s "$package/$file" ] || die "$file is missing"
    done
    if grep -q '@' "$package/README.txt"; then
        die "README.txt was not filled in"
    fi
}

# The words of the files of golden, for runs that read nothing.
transcript() {
    sed -e '1d' -e '/^\[status 0\]$/d' "$top/examples/seriesstat/golden/$1.txt"
}

# What is always the same in the example's texts: all but the year.
without_years() {
    sed -E 's/\(c\) ([0-9]{4}-)?[0-9]{4} /(c) \1YEAR /'
}

texts() {
    local text
    for text in help version; do
        # By way of the command interpreter: Wine's own loader would tell the program its whole path.
        WINEPATH=$(windows_path "$package/bin") run cmd /c seriesstat "--$text" | without_years >"$check/$text.txt"
        transcript "$text" | without_years | diff - "$check/$text.txt" || die "seriesstat --$text says something else"
    done
}

# The demonstration of the example, with an installation that holds a program of this system in front of the real one.
demonstration() {
    local installation=$check/installation
    cp -R "$package" "$installation"
    # shellcheck disable=SC2016 # that is for the program
    printf '#!/bin/sh\nexec "%s" "$0.exe" "$@"\n' "$top/scripts/under-wine.sh" >"$installation/bin/seriesstat"
    chmod +x "$installation/bin/seriesstat"
    TMPDIR="$check/temporary files" sh "$top/examples/seriesstat/demo.sh" "$installation" "$settings" Z: \
        >"$check/demo.txt" 2>&1 || {
        tail -n 30 "$check/demo.txt" >&2
        die "the demonstration failed, all of it is in $check/demo.txt"
    }
    rm -rf "$settings/dravo2"
}

sample=(-q x --stats=mean --sample=michelson-1879.txt)
mean='  mean                   299.9'

# The program finds what lies beside its folder if the name of that begins with "bin", wherever it runs.
places() {
    local folder
    cp -R "$package" "$drive/pack"
    sed -i 's/^#* *digits *=.*$/digits = 4/' "$drive/pack/etc/seriesstat.ini"
    grep -q '^digits = 4$' "$drive/pack/etc/seriesstat.ini" || die "the example's configuration has no digits"
    mv "$drive/pack/bin" "$drive/pack/bin64"
    cp -R "$drive/pack/bin64" "$drive/pack/tools"
    cd "$check"
    says "$mean" 'C:\pack\bin64\seriesstat.exe' "${sample[@]}"
    says 'C:/pack/share/seriesstat/michelson-1879.txt' 'C:\pack\bin64\seriesstat.exe' "${sample[@]}"
    if run 'C:\pack\tools\seriesstat.exe' "${sample[@]}" >/dev/null 2>&1; then
        die "a program in C:\\pack\\tools finds what lies beside it"
    fi
    cd "$drive/pack"
    says "$mean" 'C:\pack\tools\seriesstat.exe' "${sample[@]}"
    cd "$check"
    mv "$drive/pack/bin64" "$drive/pack/bin"
    says "$mean" 'C:\pack\bin\seriesstat.exe' "${sample[@]}"
    says "$mean" 'c:/pack/bin/seriesstat.exe' "${sample[@]}"
    folder=$drive/pack/'Größe 測定'
    mkdir "$folder"
    mv "$drive"/pack/{bin,etc,share} "$folder"
    says "$mean" 'C:\pack\Größe 測定\bin\seriesstat.exe' "${sample[@]}"
    says 'C:/pack/Größe 測定/share/seriesstat/michelson-1879.txt' 'C:\pack\Größe 測定\bin\seriesstat.exe' "${sample[@]}"
}

# Paths of every spelling, on another drive, with letters that no code page but UTF-8 has all of.
inputs() {
    local other=$check/other input name='Messung Öl 水 №3.txt'
    mkdir -p "$other/my data/下"
    printf '1\r\n2\r\n6\r\n' >"$other/my data/three.txt"
    printf '3\n' | tee "$other/my data/$name" >"$other/my data/下/three.txt"
    ln -sfn "$other" "$WINEPREFIX/dosdevices/k:"
    cd "$other"
    for input in 'K:\my data\three.txt' 'K:/my data/three.txt' 'k:\my data/three.txt' 'my data\three.txt' \
        'my data/three.txt' '.\my data\three.txt' "K:\\my data\\$name" "my data/$name" 'K:\my data\下\three.txt' \
        'K:\my data' "K:\\my data\\" 'my data/下'; do
        says '  mean                   3.00000000000000' "$package/bin/seriesstat.exe" -q x --stats=mean "$input"
    done
    says "K:/my data/$name" "$package/bin/seriesstat.exe" -q x --stats=mean "K:\\my data\\$name"
    says "K:/my data/$name" "$package/bin/seriesstat.exe" -q x --stats=mean 'K:\my data'
    if run "$package/bin/seriesstat.exe" -q x 'K:\my data\four.txt' >"$check/refused.txt" 2>&1; then
        die "a missing file was read"
    fi
    grep -qxF 'Cannot find file "K:\my data\four.txt".' "$check/refused.txt" ||
        die "of a missing file: $(cat "$check/refused.txt")"
    rm "$WINEPREFIX/dosdevices/k:"
    cd "$check"
}

# consumer FOLDER PREFIX OPTION...: the consumer's project with what is in PREFIX and nothing else.
consumer() {
    local folder=$1 prefix=$2
    shift 2
    if cmake -S "$top/tests/consumer" -B "$folder" -DCMAKE_BUILD_TYPE=Debug --toolchain "$toolchain" \
        "-DKELVOBASE_WINDOWS_DEPENDENCIES=$prefix" "-DCMAKE_CROSSCOMPILING_EMULATOR=$top/scripts/under-wine.sh" "$@" &&
        cmake --build "$folder" --parallel "$(jobs)" &&
        WINEPATH=$(windows_path "$prefix/bin") ctest --test-dir "$folder" --output-on-failure --no-tests=error; then
        return
    fi >"$folder.log" 2>&1
    cat "$folder.log" >&2
    die "the consumer's project failed in $folder"
}

has_import() {
    grep -q "DLL Name: $2" <<<"$("$triple-objdump" -p "$1")"
}

# with_pkg_config PREFIX PACKAGE SOURCE ANSWER ARGUMENT...: the consumer without cmake.
with_pkg_config() {
    local prefix=$1 package_name=$2 source=$top/tests/consumer/$3 wanted=$4 program=$check/$2.exe flags=() said
    shift 4
    export PKG_CONFIG_LIBDIR=$prefix/lib/pkgconfig
    # What pkg-config prints is quoted for a shell.
    eval "flags=($(pkg-config --cflags --libs "$package_name"))"
    "$windows_compiler" -std=c++20 "$source" -o "$program" "${flags[@]}"
    said=$(WINEPATH=$(windows_path "$prefix/bin") run "$program" "$@")
    [ "$said" = "$wanted" ] || die "the consumer built by pkg-config said: $said"
}

static() {
    local prefix=$check/static-installed
    cmake -S "$top" -B "$check/static" --toolchain "$toolchain" -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF \
        -DKELVOBASE_BUILD_XML=OFF -DKELVOBASE_BUILD_TESTS=OFF -DKELVOBASE_BUILD_EXAMPLES=OFF \
        ${KELVOBASE_WINDOWS_DEPENDENCIES:+"-DKELVOBASE_WINDOWS_DEPENDENCIES=$KELVOBASE_WINDOWS_DEPENDENCIES"} >/dev/null
    cmake --build "$check/static" --parallel "$(jobs)" >/dev/null
    cmake --install "$check/static" --prefix "$prefix" >/dev/null
    mkdir -p "$prefix/bin"
    cp "$package"/bin/{libgcc_s_dw2-1,libstdc++-6,libwinpthread-1}.dll "$prefix/bin"
    consumer "$check/static-consumer" "$prefix"
    if has_import "$check/static-consumer/consumer.exe" libkelvobase; then
        die "the consumer of the static library uses the DLL"
    fi
    if has_command pkg-config; then
        with_pkg_config "$prefix" kelvobase main.cpp "$answer" "${arguments[@]}"
    fi
}

answer="scale 2.5, 2 names, suffix txt, 1st of 1, all well"
arguments=(--scale=2.5 '--names=a,b' 'C:\data\run.txt')

say "Contents"
contents
say "The example: texts"
texts
say "The example: demonstration"
demonstration
say "The example: places"
places
say "The example: inputs"
inputs
say "find_package"
consumer "$check/consumer" "$package"
consumer "$check/xml-consumer" "$package" -DCONSUMER_XML=ON
has_import "$check/consumer/consumer.exe" libkelvobase.dll || die "the consumer does not use the DLL"
if has_import "$check/xml-consumer/consumer.exe" libxerces; then
    die "the consumer without XML loads Xerces-C"
fi
if has_command pkg-config; then
    say "pkg-config"
    with_pkg_config "$package" kelvobase main.cpp "$answer" "${arguments[@]}"
    with_pkg_config "$package" kelvobase-xml xml.cpp "count 5, all well"
fi
say "A static library"
static
say "The package works under Wine"
