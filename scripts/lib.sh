# shellcheck shell=bash
#
# Shared parts of the scripts beside this file; sourced by bash, never run.
#
# A script that sources it has left "set -euo pipefail" behind it, and gets `top`, the root of the source tree.

# shellcheck disable=SC2034 # read by the scripts that source this file
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

say() {
    printf '== %s\n' "$*"
}

die() {
    printf 'error: %s\n' "$*" >&2
    exit 1
}

has_command() {
    command -v "$1" >/dev/null 2>&1
}

project_version() {
    local version
    version=$(sed -nE 's/^ *VERSION ([0-9.]+)$/\1/p' "$top/CMakeLists.txt" | head -n 1)
    [ -n "$version" ] || die "CMakeLists.txt: no version"
    printf '%s\n' "$version"
}

# A C++ compiler of some name; cmake finds the same ones.
compiler() {
    local candidate
    for candidate in "${CXX:-}" c++ g++ clang++; do
        if [ -n "$candidate" ] && has_command "$candidate"; then
            printf '%s\n' "$candidate"
            return 0
        fi
    done
    return 1
}

has_compiler() {
    compiler >/dev/null
}

has_header() {
    local cxx
    cxx=$(compiler) || return 1
    printf '#include <%s>\n' "$1" | "$cxx" -x c++ -E - >/dev/null 2>&1
}

has_build_tool() {
    has_command ninja || has_command make
}

# need PACKAGE TEST...: the test says whether what the package is wanted for is there, wherever it came from.
missing_packages=()
needs=()
need() {
    local package=$1
    shift
    needs+=("$package $*")
    if ! "$@"; then
        missing_packages+=("$package")
    fi
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

# With a terminal sudo may ask for a password, without one it must do without.
can_become_root() {
    [ "$(id -u)" -eq 0 ] || { has_command sudo && { [ -t 0 ] || sudo -n true 2>/dev/null; }; }
}

# try_install PACKAGE...: false, with a message, when they cannot be had.
try_install() {
    if ! has_command apt-get; then
        printf 'error: needed, but not there: %s (Debian package names), and there is no apt-get to install them\n' "$*" >&2
        return 1
    fi
    if ! can_become_root; then
        printf 'error: these packages are needed and not installed: %s\n' "$*" >&2
        printf 'error: installing them takes root or sudo; as root: apt-get install --no-install-recommends %s\n' "$*" >&2
        return 1
    fi
    say "Installing: $*"
    as_root env DEBIAN_FRONTEND=noninteractive apt-get update -qq &&
        as_root env DEBIAN_FRONTEND=noninteractive apt-get install -qq -y --no-install-recommends \
            -o Dpkg::Use-Pty=0 "$@" </dev/null
}

# Installs what `need` found missing, nothing else, and ends the script when that fails.
install_missing() {
    if [ ${#missing_packages[@]} -eq 0 ]; then
        say "Everything that is needed is installed"
        return 0
    fi
    try_install "${missing_packages[@]}" || exit 1
    local entry
    for entry in "${needs[@]}"; do
        # shellcheck disable=SC2086 # package name and test are words
        set -- $entry
        local package=$1
        shift
        "$@" || die "$package is installed, but \"$*\" still fails"
    done
    missing_packages=()
}

# What building library and examples takes.
need_build_tools() {
    need g++ has_compiler
    need cmake has_command cmake
    need ninja-build has_build_tool
    need libboost-dev has_header boost/tokenizer.hpp
    need libxerces-c-dev has_header xercesc/parsers/XercesDOMParser.hpp
}

# What the tests take besides.
need_test_tools() {
    need_build_tools
    need libgtest-dev has_header gtest/gtest.h
}

# own_configuration FOLDER: from here on tools read and write what they keep for their user in FOLDER, not in the home
# of whoever runs the script, and know no installation.
own_configuration() {
    mkdir -p "$1"
    XDG_CONFIG_HOME=$(cd "$1" && pwd)
    export XDG_CONFIG_HOME
    unset DRAVO2_BASEDIR DRAVO2_INSTDIR
}

jobs() {
    nproc 2>/dev/null || getconf _NPROCESSORS_ONLN 2>/dev/null || echo 1
}

# build_folder FOLDER OPTION...: configures the folder if that has not been done with these options, and builds it.
# The folder belongs to the script that names it: one that was made for a tree in another place is made anew.
build_folder() {
    local folder=$1
    shift
    local stamp=$folder/configured-with wanted
    wanted=$(printf '%s\n' "$top" "$@")
    if [ -f "$stamp" ] && [ "$(cat "$stamp")" != "$wanted" ]; then
        rm -rf "$folder"
    fi
    if [ ! -f "$stamp" ]; then
        rm -rf "$folder"
        local generator="Unix Makefiles"
        if has_command ninja; then
            generator=Ninja
        fi
        say "Configuring $folder"
        cmake -S "$top" -B "$folder" -G "$generator" "$@"
        printf '%s\n' "$wanted" >"$stamp"
    fi
    say "Building $folder"
    cmake --build "$folder" --parallel "$(jobs)"
}
