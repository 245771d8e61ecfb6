#!/usr/bin/env bash
# check-dependencies.sh [--print] [TREE]: which folder of src includes headers of which.
#
# Compares the includes of all sources and public headers with scripts/dependencies.allow and fails on an edge that
# does not stand there, on one that stands there and is used no more, and when the edges that are not marked as
# exceptions form a circle. With --print it lists the edges that it found.
set -euo pipefail
shopt -s nullglob globstar
print=no
if [ "${1:-}" = --print ]; then
    print=yes
    shift
fi
tree=${1:-$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)}
cd "$tree"
faults=0

fault() {
    printf '%s\n' "$*" >&2
    faults=$((faults + 1))
}

# The allow-list: "header NAME FOLDER", "edge FROM TO...", "circle FROM TO FILE..."; "#" begins a comment.
declare -A folder_of=() edge=() circle=() used=()
while read -r kind first rest; do
    case $kind in
        "") ;;
        header) folder_of[$first]=$rest ;;
        edge) for to in $rest; do edge["$first $to"]=1; done ;;
        circle)
            read -r to files <<<"$rest"
            for file in $files; do circle["$first $to $file"]=1; done
            ;;
        *) fault "scripts/dependencies.allow: what is \"$kind\"?" ;;
    esac
done < <(sed 's/[[:space:]]*#.*//' scripts/dependencies.allow)

# folder FILE: the folder that a source or public header belongs to; "common" headers belong to none.
folder() {
    local file=$1
    case $file in
        src/*/*)
            file=${file#src/}
            printf '%s\n' "${file%%/*}"
            ;;
        include/kelvobase/*) printf '%s\n' "${folder_of[${file##*/}]:-}" ;;
    esac
}

sources=(src/**/*.cpp src/**/*.h include/kelvobase/*.h)
[ ${#sources[@]} -gt 0 ] || fault "$tree: no sources"
for file in "${sources[@]}"; do
    # The header that includes them all is for users.
    [ "$file" != include/kelvobase/KelvoBase.h ] || continue
    from=$(folder "$file")
    if [ -z "$from" ]; then
        fault "$file: stands in no folder of scripts/dependencies.allow"
        continue
    fi
    while IFS= read -r included; do
        case $included in
            kelvobase/KelvoBase.h)
                fault "$file: includes $included, which hides what it needs"
                continue
                ;;
            kelvobase/*) to=$(folder "include/$included") ;;
            */*) to=$(folder "src/$included") ;;
            *) to="" ;;
        esac
        if [ -z "$to" ]; then
            fault "$file: \"$included\" is not relative to src, or belongs to no folder"
        elif [ "$to" = "$from" ] || [ "$to" = common ]; then
            continue
        elif [ -n "${edge["$from $to"]:-}" ]; then
            used["$from $to"]=1
        elif [ -n "${circle["$from $to $file"]:-}" ]; then
            used["$from $to $file"]=1
        else
            fault "new dependency: $from -> $to ($file includes $included)"
        fi
        if [ "$print" = yes ]; then
            printf '%s -> %s\t%s\n' "$from" "$to" "$file"
        fi
    done < <(sed -nE 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*(<(kelvobase\/[^>]*)>|"([^"]*)").*/\2\3/p' "$file")
done

for key in "${!edge[@]}" "${!circle[@]}"; do
    [ -n "${used["$key"]:-}" ] || fault "scripts/dependencies.allow: nothing uses \"$key\" any more"
done
for header in "${!folder_of[@]}"; do
    [ -f "include/kelvobase/$header" ] || fault "scripts/dependencies.allow: there is no header $header"
done
if ! order=$(printf '%s\n' "${!edge[@]}" | tsort 2>&1); then
    fault "the edges of scripts/dependencies.allow form a circle: $(tr '\n' ' ' <<<"$order")"
fi

if [ "$faults" -gt 0 ]; then
    exit 1
fi
printf '%s edges, %s exceptions\n' "${#edge[@]}" "${#circle[@]}"
