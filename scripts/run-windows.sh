#!/usr/bin/env bash
# run-windows.sh PROGRAM ARGUMENT...: runs a program for Windows under the Wine that windows-wine.sh has made ready. This is
# how the tests of the preset "windows" are started.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
# shellcheck source-path=SCRIPTDIR source=lib-windows.sh
. "$(dirname "${BASH_SOURCE[0]}")/lib-windows.sh"

[ -d "$wine_prefix" ] || die "no Wine in $wine_folder: scripts/windows-wine.sh makes it"
in_wine wine "$@"
