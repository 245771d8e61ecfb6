#!/usr/bin/env bash
# check-package.sh [FOLDER]: installs the library, shared and static, and builds and runs the project of tests/consumer
# against it in each way that a project can use it, without XML, where Xerces-C cannot be found, and with it. Works in
# FOLDER, build/package if none is given.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

work=${1:-$top/build/package}
consumer=$top/tests/consumer
arguments=(--scale=2.5 '--names=a,b' 'C:\data\run.txt')
answer="scale 2.5, 2 names, suffix txt, 1st of 1, all well"
rm -rf "$work"
mkdir -p "$work"
own_configuration "$work/configuration"
generator="Unix Makefiles"
if has_command ninja; then
    generator=Ninja
fi

# in_project FOLDER OPTION...: configures, builds and runs the consumer's project.
in_project() {
    local folder=$1
    shift
    if cmake -S "$consumer" -B "$folder" -G "$generator" -DCMAKE_BUILD_TYPE=Debug "$@" &&
        cmake --build "$folder" --parallel "$(jobs)" &&
        ctest --test-dir "$folder" --output-on-failure --no-tests=error; then
        return
    fi >"$folder.log" 2>&1
    cat "$folder.log" >&2
    die "the consumer's project failed in $folder"
}

# The first block of README.md in a language.
readme_block() {
    sed -n "/^\`\`\`$1\$/,/^\`\`\`\$/p" "$top/README.md" | sed '1d; /^```$/,$d'
}

# readme_tool PREFIX: the tool of README.md is a whole program, and does what is said there.
readme_tool() {
    local folder=$work/readme said
    mkdir -p "$folder"
    readme_block cpp >"$folder/main.cpp"
    readme_block cmake >"$folder/CMakeLists.txt"
    cmake -S "$folder" -B "$folder/build" -G "$generator" "-DCMAKE_PREFIX_PATH=$1" >/dev/null
    cmake --build "$folder/build" --parallel "$(jobs)"
    printf 'short\nlong enough\n' >"$folder/lines.txt"
    said=$("$folder/build/linecounter" --length=10 "$folder/lines.txt")
    [ "$said" = 1 ] || die "the tool of README.md counted $said lines"
    said=$("$folder/build/linecounter" --length=many "$folder/lines.txt" 2>&1) && die "the tool of README.md took \"many\""
    grep -qxF -- "${said%%$'\n'*}" "$top/README.md" || die "README.md shows another text than: $said"
}

# with_pkg_config PREFIX PROGRAM PACKAGE SOURCE ANSWER ARGUMENT...: the consumer without cmake.
with_pkg_config() {
    local prefix=$1 program=$work/$2 package=$3 source=$consumer/$4 wanted=$5 flags=() said
    shift 5
    PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name kelvobase.pc)")
    export PKG_CONFIG_PATH
    [ "$(pkg-config --modversion "$package")" = "$version" ] || die "$package.pc does not give the version $version"
    # What pkg-config prints is quoted for a shell.
    eval "flags=($(pkg-config --cflags --libs "$package"))"
    "$(compiler)" -std=c++20 "$source" -o "$program" "${flags[@]}"
    said=$(LD_LIBRARY_PATH=$(dirname "$PKG_CONFIG_PATH") "$program" "$@")
    [ "$said" = "$wanted" ] || die "the consumer built by pkg-config said: $said"
}

# without_xerces PREFIX: who asks for XML where there is no Xerces-C, or for a library that was built without, is told.
without_xerces() {
    local folder=$work/without-xerces said
    said=$(cmake -S "$consumer" -B "$folder" -G "$generator" "-DCMAKE_PREFIX_PATH=$1" -DCONSUMER_XML=ON \
        -DCMAKE_DISABLE_FIND_PACKAGE_XercesC=TRUE 2>&1) && die "the component xml was found without Xerces-C"
    grep -qF "libxerces-c-dev" <<<"$said" || die "no word of what the component xml needs: $said"
    rm -rf "$folder"
    mv "$(find "$1" -name KelvoBaseXmlTargets.cmake)" "$work/KelvoBaseXmlTargets.cmake"
    said=$(cmake -S "$consumer" -B "$folder" -G "$generator" "-DCMAKE_PREFIX_PATH=$1" -DCONSUMER_XML=ON 2>&1) &&
        die "the component xml was found in a library without it"
    grep -qF "built without XML" <<<"$said" || die "no word of why there is no component xml: $said"
}

version=$(project_version)
kinds=(shared static)
for kind in "${kinds[@]}"; do
    shared=ON
    [ "$kind" = shared ] || shared=OFF
    say "Library, $kind"
    cmake -S "$top" -B "$work/$kind" -G "$generator" -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=$shared \
        -DKELVOBASE_BUILD_TESTS=OFF -DKELVOBASE_BUILD_EXAMPLES=OFF >/dev/null
    cmake --build "$work/$kind" --parallel "$(jobs)"
    cmake --install "$work/$kind" --prefix "$work/first-place" >/dev/null
    # What is installed must not know where it was installed to, nor where it came from.
    prefix=$work/$kind-installed
    mv "$work/first-place" "$prefix"
    if grep -rlF -e "$work" -e "$top" "$prefix" >&2; then
        die "these installed files name a folder of the build"
    fi
    say "find_package, $kind"
    in_project "$work/$kind-package" "-DCMAKE_PREFIX_PATH=$prefix" -DCMAKE_DISABLE_FIND_PACKAGE_XercesC=TRUE
    in_project "$work/$kind-xml-package" "-DCMAKE_PREFIX_PATH=$prefix" -DCONSUMER_XML=ON
    if has_command pkg-config; then
        say "pkg-config, $kind"
        with_pkg_config "$prefix" "$kind-pkg-config" kelvobase main.cpp "$answer" "${arguments[@]}"
        with_pkg_config "$prefix" "$kind-xml-pkg-config" kelvobase-xml xml.cpp "count 5, all well" "$work/results.xml"
    elif [ "${CI:-}" = true ]; then
        die "pkg-config is not there"
    else
        say "pkg-config is not there; skipped"
    fi
    if [ "$kind" = shared ]; then
        say "The tool of README.md"
        readme_tool "$prefix"
    fi
    say "add_subdirectory, $kind"
    in_project "$work/$kind-subdirectory" "-DKELVOBASE_SOURCE_DIR=$top" -DBUILD_SHARED_LIBS=$shared \
        -DKELVOBASE_BUILD_XML=OFF -DCMAKE_DISABLE_FIND_PACKAGE_XercesC=TRUE
    in_project "$work/$kind-xml-subdirectory" "-DKELVOBASE_SOURCE_DIR=$top" -DBUILD_SHARED_LIBS=$shared -DCONSUMER_XML=ON
    if [ "$kind" = shared ]; then
        without_xerces "$prefix"
    fi
done
grep -q 'NEEDED.*libkelvobase\.so\.' <<<"$(readelf -dW "$work/shared-package/consumer")" ||
    die "the consumer of the shared library does not use it"
if grep -q xerces <<<"$(readelf -dW "$work/shared-xml-package/consumer")"; then
    die "the consumer without XML loads Xerces-C"
fi
if grep -q libkelvobase <<<"$(readelf -dW "$work/static-package/consumer")"; then
    die "the consumer of the static library uses a shared one"
fi
say "The package works, shared and static"
