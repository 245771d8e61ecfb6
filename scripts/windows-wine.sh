#!/usr/bin/env bash
# Gets Wine for 32-bit programs into build/wine and makes a new drive C for it. The distribution's packages are unpacked there
# and not installed: neither they nor their architecture become a part of the system. Where that cannot be, a `wine` that is
# installed serves. Ends with status 1 where there is no Wine that runs a program.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
# shellcheck source-path=SCRIPTDIR source=lib-windows.sh
. "$(dirname "${BASH_SOURCE[0]}")/lib-windows.sh"

# The folder is Wine's when this file stands in it.
stamp=$wine_folder/unpacked

unpack_wine() {
    has_command dpkg-deb && has_command apt-get || return 1
    if ! has_command patchelf; then
        try_install patchelf || return 1
    fi
    rm -rf "$wine_folder"
    mkdir -p "$wine_root"
    say "Getting Wine"
    own_apt_update "$wine_folder/apt" i386
    own_apt "$wine_folder/apt" i386 apt-get install -qq -y --download-only wine32 >/dev/null || return 1
    local package
    for package in "$wine_folder"/apt/cache/archives/*.deb; do
        dpkg-deb --extract "$package" "$wine_root" || return 1
    done
    rm -rf "$wine_folder/apt" "$wine_root/usr/lib/i386-linux-gnu/wine/x86_64-windows"
    settle_wine || return 1
    : >"$stamp"
}

# Here Wine's programs are told where their loader is, and Wine where its server is, which is a choice of two in a full
# installation.
settle_wine() {
    local program
    for program in wine wineserver32; do
        patchelf --set-interpreter "$wine_root/lib/ld-linux.so.2" "$wine_root/usr/lib/wine/$program" || return 1
    done
    ln -sf wineserver32 "$wine_root/usr/lib/wine/wineserver"
}

new_drive() {
    # The folders of its user that Wine makes lie in the home that it finds.
    export HOME=$wine_folder/home
    if [ -d "$wine_prefix" ]; then
        in_wine timeout 30 wineserver -k || true
        rm -rf "$wine_prefix"
    fi
    mkdir -p "$wine_prefix/drive_c/windows/system32" "$HOME"
    # A library of other packages, which a full installation has in a place of its own.
    local zlib=$wine_root/usr/i686-w64-mingw32/lib/zlib1.dll
    if [ -f "$zlib" ]; then
        cp "$zlib" "$wine_prefix/drive_c/windows/system32"
    fi
    in_wine timeout 120 wine wineboot --init </dev/null >/dev/null 2>&1 || return 1
    local said
    said=$(in_wine timeout 60 wine cmd /c echo it runs </dev/null 2>/dev/null) || return 1
    [[ $said == "it runs"* ]] || return 1
    # What the registry says must hold for each user and each test alike, as it does on a real system.
    local folders='HKCU\Software\Microsoft\Windows\CurrentVersion\Explorer\User Shell Folders'
    in_wine timeout 60 wine reg add "$folders" /v AppData /t REG_EXPAND_SZ /d '%KELVOBASE_APPDATA%' /f \
        </dev/null >/dev/null 2>&1 || return 1
    # A share of this machine, as every Windows has it: tests of network paths ask for it.
    mkdir -p "$wine_prefix/dosdevices/unc/localhost"
    ln -sfn ../../../drive_c "$wine_prefix/dosdevices/unc/localhost/c\$"
}

if [ ! -f "$stamp" ] && ! unpack_wine; then
    rm -rf "$wine_folder"
    if ! has_command wine || ! has_command wineserver; then
        die "there is no Wine, and it cannot be had"
    fi
fi
new_drive || die "Wine does not run programs here"
say "Wine runs: $(in_wine wine --version 2>/dev/null || true)"
