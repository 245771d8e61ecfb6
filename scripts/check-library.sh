#!/usr/bin/env bash
# check-library.sh LIBRARY HEADERS [xml]: what a shared library exports and what it needs.
#
# Exported may be only what a public header in the folder HEADERS names, needed only the C++ run-time and the system.
# With "xml" it is the XML library, which besides needs the other one and Xerces-C; without, it may not, and may not name
# anything of Xerces-C's.
set -euo pipefail
library=$1
headers=$2
kind=${3:-main}
faults=0

fault() {
    printf '%s\n' "$*" >&2
    faults=$((faults + 1))
}

declare -A is_word=()
while IFS= read -r word; do
    is_word[$word]=1
done < <(cat "$headers"/*.h | grep -oE '[A-Za-z_][A-Za-z_0-9]*' | sort -u)
symbols=$(nm -DC --defined-only "$library" | cut -d' ' -f3-)
count=$(printf '%s\n' "$symbols" | wc -l)

while IFS= read -r symbol; do
    if [ "$symbol" = handleSignal ]; then
        continue
    fi
    plain=$symbol
    for prefix in "typeinfo for " "typeinfo name for " "vtable for " "VTT for " \
        "virtual thunk to " "non-virtual thunk to "; do
        plain=${plain#"$prefix"}
    done
    name=${plain#KelvoBase::}
    name=${name%%[!A-Za-z_0-9]*}
    if [ "$name" = "" ] || [ "${plain#KelvoBase::}" = "$plain" ]; then
        fault "exported, but not of the library: $symbol"
    elif [ -z "${is_word[$name]:-}" ]; then
        fault "exported, but named by no public header: $symbol"
    fi
done <<<"$symbols"

if [ "$kind" = xml ]; then
    name=libkelvobase-xml
    wanted=("KelvoBase::XMLInitializer::msCount" "KelvoBase::XMLCreator::XMLCreator()"
        "KelvoBase::XMLParser::XMLParser(KelvoBase::ResourceLocation const&)")
else
    name=libkelvobase
    wanted=(handleSignal "KelvoBase::haveCerr" "KelvoBase::Application::mainImpl(int, char**)"
        "typeinfo for KelvoBase::ExceptionBase" "vtable for KelvoBase::ScalarAny<int>")
    ! grep -i xerces <<<"$(nm -DC "$library")" >&2 || fault "$library names Xerces-C"
fi
for one in "${wanted[@]}"; do
    grep -qxF -- "$one" <<<"$symbols" || fault "not exported: $one"
done

dynamic=$(readelf -dW "$library")
needed=$(sed -n 's/.*(NEEDED).*\[\(.*\)\]$/\1/p' <<<"$dynamic")
[ -n "$needed" ] || fault "$library needs nothing at all, which cannot be"
while IFS= read -r one; do
    case $one in
        libstdc++.so.6 | libgcc_s.so.1 | libc.so.6 | libm.so.6 | ld-linux*.so.*) ;;
        libkelvobase.so.* | libxerces-c-*.so) [ "$kind" = xml ] || fault "needed, but of the XML library only: $one" ;;
        *) fault "needed, but neither C++ run-time nor system: $one" ;;
    esac
done <<<"$needed"
grep -qE '\(SONAME\).*\['"$name"'\.so\.[0-9]+\]' <<<"$dynamic" || fault "no soname of the form $name.so.N"

if [ "$faults" -gt 0 ]; then
    exit 1
fi
printf '%s symbols exported; needs %s\n' "$count" "$(tr '\n' ' ' <<<"$needed")"
