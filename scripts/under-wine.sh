#!/usr/bin/env bash
# under-wine.sh PROGRAM ARGUMENT...: runs a program for Windows. Its arguments and the names of its files are in UTF-8, and
# what it writes has the line ends of this system. WINE names the command for it, run-windows.sh if it is not set.
set -euo pipefail

wine=${WINE:-$(dirname "${BASH_SOURCE[0]}")/run-windows.sh}
export LC_ALL=C.UTF-8 WINEDEBUG=${WINEDEBUG:--all}
{ "$wine" "$@" 2>&1 >&3 3>&- | tr -d '\r' >&2; } 3>&1 | tr -d '\r'
