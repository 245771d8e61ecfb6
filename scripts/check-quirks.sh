#!/usr/bin/env bash
# check-quirks.sh [TREE]: holds the places of each required oddity together.
#
# Each number of docs/quirks.md, Q- and the subsystem and two digits, stands there once, and in a public header, in the
# sources that the row names and in a test; the tests that the row names exist and open with the number. A number that
# is found anywhere else stands in the register.
set -euo pipefail
tree=${1:-$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)}
cd "$tree"
register=docs/quirks.md
faults=0

fault() {
    printf '%s\n' "$*" >&2
    faults=$((faults + 1))
}

# numbers_in PLACE...: every number that is mentioned there.
numbers_in() {
    grep -rhoE --include='*.cpp' --include='*.h' '\bQ-[0-9]+\b' "$@" | sort -u || true
}

# cell ROW N: the entries of the Nth cell of a table row, a line each, without blanks and code marks at their ends.
cell() {
    local cells entries entry
    IFS='|' read -ra cells <<<"$1"
    IFS=',' read -ra entries <<<"${cells[$2]:-}"
    for entry in "${entries[@]}"; do
        entry=${entry#"${entry%%[! \`]*}"}
        printf '%s\n' "${entry%"${entry##*[! \`]}"}"
    done
}

# check_test NUMBER TEST: SUITE.NAME, or NAME alone; the number stands in the first lines of its body.
check_test() {
    local number=$1 test=$2 name=${2##*.} suite="" head body
    [ "$name" = "$test" ] || suite=${test%.*}
    if [[ ! $name =~ ^[A-Za-z0-9_]+$ ]]; then
        fault "$number: \"$test\" is no name of a test"
        return
    fi
    head="^TEST(_F|_P)?\\(${suite:-[A-Za-z0-9_]+}, ${name}\\)"
    if ! body=$(grep -rhE -A 3 --include='*.cpp' -- "$head" tests); then
        fault "$number: there is no test \"$test\""
    elif ! grep -qE "// Required, .*\b$number\b" <<<"$body"; then
        fault "$number: the test \"$test\" does not open with \"// Required, $number\""
    fi
}

# check_source NUMBER SOURCE
check_source() {
    if [ ! -f "$2" ]; then
        fault "$1: there is no source \"$2\""
    elif ! grep -q -- "\b$1\b" "$2"; then
        fault "$1: does not stand in $2"
    fi
}

rows=$(grep -E '^\| *`?Q-' "$register" || true)
[ -n "$rows" ] || fault "$register: no rows"
numbers=$(while IFS= read -r row; do cell "$row" 1; done <<<"$rows")
while IFS= read -r number; do
    [[ $number =~ ^Q-[1-9][0-9]?[0-9][0-9]$ ]] || fault "$register: \"$number\" is no number"
done <<<"$numbers"
twice=$(sort <<<"$numbers" | uniq -d)
[ -z "$twice" ] || fault "$register: more than once: $twice"
[ "$numbers" = "$(sort -V <<<"$numbers")" ] || fault "$register: the rows are not sorted"

in_headers=$(numbers_in include)
while IFS= read -r row; do
    number=$(cell "$row" 1)
    grep -qx -- "$number" <<<"$in_headers" || fault "$number: stands in no public header"
    sources=$(cell "$row" 4)
    while IFS= read -r source; do
        check_source "$number" "$source"
    done <<<"$sources"
    tests=$(cell "$row" 5)
    while IFS= read -r test; do
        check_test "$number" "$test"
    done <<<"$tests"
done <<<"$rows"

for number in $(numbers_in include src tests); do
    grep -qx -- "$number" <<<"$numbers" || fault "$number: does not stand in $register"
done

if [ "$faults" -gt 0 ]; then
    exit 1
fi
printf '%s required oddities, each in all its places\n' "$(wc -l <<<"$numbers")"
