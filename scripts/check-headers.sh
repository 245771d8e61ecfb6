#!/usr/bin/env bash
# check-headers.sh TREE HEADER...: what the public headers include.
#
# HEADER... is what gets installed. The folder must hold these headers and no others, each must be one of those that
# KelvoBase.h includes, and none may include anything but headers of the C++ standard library and of the library. The
# headers of the XML library, those of the folder xml in scripts/dependencies.allow, are the exception: KelvoBase.h must
# not include them, and they may include headers of Xerces-C.
set -euo pipefail
shopt -s nullglob
tree=$1
shift
folder=$tree/include/kelvobase
faults=0

fault() {
    printf '%s\n' "$*" >&2
    faults=$((faults + 1))
}

is_xml() {
    grep -q "^header $1 xml\$" "$tree/scripts/dependencies.allow"
}

installed=$(printf '%s\n' "$@" | sed 's|.*/||' | sort)
present=$(for header in "$folder"/*; do printf '%s\n' "${header##*/}"; done | sort)
[ -n "$present" ] || fault "$folder: no headers"
[ "$installed" = "$present" ] ||
    fault "Installed and present headers differ:" \
        "$(diff <(printf '%s\n' "$installed") <(printf '%s\n' "$present") || true)"

for header in "$folder"/*.h; do
    name=${header##*/}
    grep -q '^#pragma once$' "$header" || fault "$name: no #pragma once"
    if is_xml "$name"; then
        ! grep -q "^#include <kelvobase/$name>\$" "$folder/KelvoBase.h" || fault "KelvoBase.h includes $name"
    else
        [ "$name" = KelvoBase.h ] || grep -q "^#include <kelvobase/$name>\$" "$folder/KelvoBase.h" ||
            fault "KelvoBase.h does not include $name"
    fi
    while IFS= read -r line; do
        # Standard headers are the ones without folder and ending.
        if [[ $line =~ ^[[:space:]]*#[[:space:]]*include[[:space:]]*\<([a-z_0-9]+)\>[[:space:]]*(//.*)?$ ]]; then
            continue
        fi
        if [[ $line =~ ^#include\ \<kelvobase/([A-Za-z0-9]+\.h)\>$ ]] && [ -f "$folder/${BASH_REMATCH[1]}" ]; then
            continue
        fi
        if is_xml "$name" && [[ $line =~ ^#include\ \<xercesc/[A-Za-z/]+\.hpp\>$ ]]; then
            continue
        fi
        fault "$name: $line"
    done < <(grep -E '^[[:space:]]*#[[:space:]]*include' "$header" || true)
done

if [ "$faults" -gt 0 ]; then
    exit 1
fi
printf '%s public headers\n' "$(printf '%s\n' "$present" | wc -l)"
