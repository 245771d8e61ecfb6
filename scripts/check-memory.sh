#!/usr/bin/env bash
# check-memory.sh FOLDER [NAME...]: runs the test programs of a build folder, or those named, under valgrind.
#
# Any invalid access, use of an uninitialised value or lost memory fails; nothing is suppressed. Tests that cannot work
# there stand in valgrind.skip, each with its reason.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

folder=$(cd "$1" && pwd)
shift
has_command valgrind || die "valgrind is not there"
names=("$@")
[ ${#names[@]} -gt 0 ] || names=('*Test')
programs=()
for name in "${names[@]}"; do
    while IFS= read -r program; do
        programs+=("$program")
    done < <(find "$folder/tests" -type f -name "$name" -perm -u+x | sort)
done
[ ${#programs[@]} -gt 0 ] || die "$folder: no test programs"

# run_one PROGRAM LOGS: prints the program's own and valgrind's texts only if something was found.
run_one() {
    local program=$1 log status=0
    log=$2/$(basename "$program")
    own_configuration "$log.configuration"
    cd "$(dirname "$program")"
    # Some programs replace operator new; without the synonym valgrind would put its own in their place.
    valgrind --quiet --error-exitcode=99 --soname-synonyms=somalloc=nouserintercepts \
        --leak-check=full --errors-for-leak-kinds=definite,indirect,possible \
        --num-callers=30 --child-silent-after-fork=yes --log-file="$log.valgrind" \
        "$program" >"$log.output" 2>&1 </dev/null || status=$?
    # A system call that valgrind does not know fails as on a system that has none; its five lines are no fault.
    sed -i '/ WARNING: unhandled [a-z0-9-]* syscall: /,+4d' "$log.valgrind"
    if [ "$status" -ne 0 ] || [ -s "$log.valgrind" ]; then
        printf '%s: status %s\n' "$(basename "$program")" "$status"
        cat "$log.valgrind"
        [ "$status" -eq 99 ] || tail -n 50 "$log.output"
        return 1
    fi
}
export -f run_one own_configuration

left_out=$(sed 's/[[:space:]]*#.*//; /^$/d' "$top/scripts/valgrind.skip" | paste -sd :)
export GTEST_FILTER="*${left_out:+-$left_out}"

logs=$folder/memory
rm -rf "$logs"
mkdir -p "$logs"
printf '%s\0' "${programs[@]}" |
    xargs -0 -I '{}' -P "$(jobs)" bash -c 'run_one "$@"' run_one '{}' "$logs"
printf '%s test programs\n' "${#programs[@]}"
