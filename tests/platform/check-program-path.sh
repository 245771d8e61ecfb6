#!/usr/bin/env bash
# check-program-path.sh PROGRAM EMULATOR...: runs programTool from folders whose paths are about as long as the buffer for
# the path of a program, which takes 260 bytes. The root of this system is drive Z there.
set -euo pipefail

program=$1
shift
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

for length in 200 259 260 261 262; do
    rest=$((length - 2 - ${#scratch} - 2 - 6)) # without drive, two separators and "/p.exe"
    folder=$scratch/$(printf "%$((rest / 2))s" '' | tr ' ' n)/$(printf "%$((rest - rest / 2))s" '' | tr ' ' n)
    mkdir -p "$folder"
    cp "$program" "$folder/p.exe"
    wanted=2
    if [ "$length" -gt 260 ]; then
        wanted=3
    fi
    status=0
    "$@" "$folder/p.exe" || status=$?
    if [ "$status" -ne "$wanted" ]; then
        printf 'a path of %s bytes: status %s, not %s\n' "$length" "$status" "$wanted" >&2
        exit 1
    fi
done
