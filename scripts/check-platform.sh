#!/usr/bin/env bash
# check-platform.sh [TREE]: the library meets the system in one place.
#
# Outside src/platform no source includes a system header or tests a platform macro (Export.h apart, whose export marks
# depend on the object format), and the system is asked for an error text in one source of each port. The text for the
# errno that a stream leaves behind belongs to the C++ run-time and is the same question on every system. Nor does a
# source outside src/xml, or a public header of another folder, include a header of Xerces-C.
set -euo pipefail
shopt -s nullglob globstar
tree=${1:-$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)}
cd "$tree"
faults=0

# report TITLE: the lines of standard input, if any, are faults.
report() {
    local lines
    lines=$(cat)
    if [ -n "$lines" ]; then
        printf '%s\n%s\n' "$1" "$lines" >&2
        faults=$((faults + 1))
    fi
}

common=()
for source in src/**/*.cpp src/**/*.h include/kelvobase/*.h; do
    case $source in
        src/platform/*/* | include/kelvobase/Export.h) ;;
        *) common+=("$source") ;;
    esac
done
[ ${#common[@]} -gt 0 ] || {
    echo "$tree: no sources" >&2
    exit 1
}

# Headers of the C++ standard have neither folder nor ending; every header with one that is not named here is the system's.
# Instructions of the processor have headers of the compiler, for one source.
report "System headers outside src/platform:" < <(
    grep -nE '^[[:space:]]*#[[:space:]]*include[[:space:]]*<' "${common[@]}" /dev/null |
        grep -vE '<([a-z_0-9]+|kelvobase/[A-Za-z0-9]+\.h|(boost|xercesc)/[A-Za-z_0-9/]+\.hpp|cxxabi\.h)>' |
        grep -vE '^src/time/SHA1Instructions\.cpp:[0-9]+:#include <(cpuid|immintrin)\.h>' || true
)
without_xml=()
for source in "${common[@]}"; do
    case $source in
        src/xml/*) ;;
        include/kelvobase/*) grep -q "^header ${source##*/} xml\$" scripts/dependencies.allow || without_xml+=("$source") ;;
        *) without_xml+=("$source") ;;
    esac
done
report "Headers of Xerces-C outside src/xml:" < <(
    grep -nE '^[[:space:]]*#[[:space:]]*include[[:space:]]*<xercesc/' "${without_xml[@]}" /dev/null || true
)
report "Platform macros outside src/platform:" < <(
    grep -nE '\b(_WIN32|_WIN64|WIN32|__linux__|__unix__|__APPLE__|__MINGW32__|_MSC_VER|_POSIX_VERSION)\b' \
        "${common[@]}" /dev/null || true
)
report "Asks the system for an error text outside src/platform/*/Errors.cpp:" < <(
    grep -nE '\b(strerror(_r|_s|desc_np)?|perror|FormatMessage[AW]?|(system|generic)_category)[[:space:]]*\(' \
        "${common[@]}" src/platform/*/*.cpp /dev/null |
        grep -vE '^src/platform/[a-z0-9]+/Errors\.cpp:|^src/config/ConfigFileText\.cpp:.*std::strerror\(error\)' || true
)

if [ "$faults" -gt 0 ]; then
    exit 1
fi
printf '%s sources outside the ports\n' "${#common[@]}"
