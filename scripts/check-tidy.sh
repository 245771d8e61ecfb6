#!/usr/bin/env bash
# check-tidy.sh FOLDER [FILE...]: clang-tidy over the library's sources and the examples, or over FILE... FOLDER is a
# build folder that was configured with clang++ (preset "clang"), so that clang's own warnings are among the findings.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

folder=$(cd "$1" && pwd)
shift
[ -f "$folder/compile_commands.json" ] || die "$folder: no compile_commands.json"
has_command clang-tidy || die "clang-tidy is not there"

cd "$top"
if [ $# -eq 0 ]; then
    # The port to Windows needs that system's headers, and clang-tidy the commands that it is compiled with.
    mapfile -t files < <(find src examples -name '*.cpp' -not -path 'src/platform/win32/*' | sort)
    set -- "${files[@]}"
fi
printf '%s\0' "$@" |
    xargs -0 -n 2 -P "$(jobs)" clang-tidy -p "$folder" --quiet --warnings-as-errors='*' \
        2> >(grep -vE '^[0-9]+ warnings?( and [0-9]+ errors?)? generated|^$' >&2)
printf '%s sources\n' "$#"
