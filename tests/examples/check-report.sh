#!/usr/bin/env bash
# check-report.sh FILE: whether a report of seriesstat in HTML is what parsers expect.
#
# Ends with status 77, which counts as skipped, where xmllint (Debian: libxml2-utils) is missing.
set -euo pipefail
file=$1
faults=0

if ! command -v xmllint >/dev/null 2>&1; then
    printf 'SKIPPED: xmllint is not installed, so nobody has parsed %s\n' "$file" >&2
    exit 77
fi

# report TITLE: the lines of standard input, if any, are faults.
report() {
    local lines
    lines=$(cat)
    if [ -n "$lines" ]; then
        printf '%s\n%s\n' "$1" "$lines" >&2
        faults=1
    fi
}

# The parser knows HTML 4, so the elements of later versions are news to it, and nothing else is.
report "The parser of HTML complains:" < <(
    xmllint --html --noout "$file" 2>&1 | grep -E 'error|warning' |
        grep -vE 'Tag (figure|svg|desc|path|text|title) invalid' || true
)

# Pictures are XML of their own.
pictures=0
while IFS= read -r -d '' picture; do
    pictures=$((pictures + 1))
    report "Picture $pictures is not well-formed:" < <(xmllint --noout - <<<"$picture" 2>&1 || true)
done < <(awk '/^<svg/ { inside = 1 } inside { print } /^<\/svg>/ { inside = 0; printf "%c", 0 }' "$file")

# expect VALUE XPATH
expect() {
    local found
    found=$(xmllint --html --xpath "$2" "$file" 2>/dev/null) || found="nothing"
    if [ "$found" != "$1" ]; then
        printf '%s: %s instead of %s\n' "$2" "$found" "$1" >&2
        faults=1
    fi
}

expect 1 'count(/html/head/title)'
expect 1 'count(/html/body/h1)'
expect 4 'count(/html/body/h2)'
expect "$pictures" 'count(/html/body/h3)'
expect "$pictures" 'count(/html/body/figure/svg[@role = "img"])'
expect 0 'count(//a[@href and not(substring(@href, 2) = //@id)])'
expect 0 'count(//svg[not(starts-with(@aria-labelledby, title/@id))])'
expect 0 'count(//script | //link | //img | //iframe | //@onload | //@src)'
expect 0 'count(//table[count(thead/tr/*) != count(tbody/tr[1]/*)])'

if [ "$pictures" -eq 0 ]; then
    printf '%s: there are no pictures\n' "$file" >&2
    faults=1
fi
exit "$faults"
