#!/usr/bin/env bash
# check-format.sh [--fix]: whether clang-format would change a source; with --fix it does.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

# Versions differ in what they make of one style file; 14 is the one the tree is formatted with.
formatter=clang-format-14
has_command "$formatter" || formatter=clang-format
has_command "$formatter" || die "clang-format is not there"

mode=(--dry-run -Werror)
[ "${1:-}" != --fix ] || mode=(-i)
cd "$top"
find include src tests examples benchmarks \( -name '*.h' -o -name '*.cpp' \) -print0 |
    xargs -0 -r -n 20 -P "$(jobs)" "$formatter" --style=file "${mode[@]}"
