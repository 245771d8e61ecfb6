#!/usr/bin/env bash
# check-html.sh FILE: whether a parser of HTML reads the report as it was meant.
#
# Ends with status 77, which counts as skipped, where xmllint (Debian: libxml2-utils) is missing.
set -euo pipefail
file=$1
faults=0

if ! command -v xmllint >/dev/null 2>&1; then
    printf 'SKIPPED: xmllint is not installed, so nobody has parsed %s\n' "$file" >&2
    exit 77
fi

# The formatter escapes nothing, so the single "&" of the texts are the parser's to complain about, and nothing else is.
if ! complaints=$(xmllint --html --noout "$file" 2>&1); then
    printf 'xmllint gives up:\n%s\n' "$complaints" >&2
    exit 1
fi
others=$(grep -E 'error|warning' <<<"$complaints" | grep -vF 'htmlParseEntityRef: no name' || true)
if [ -n "$others" ]; then
    printf 'The parser complains:\n%s\n' "$others" >&2
    faults=1
fi

# expect VALUE XPATH
expect() {
    local found
    found=$(xmllint --html --xpath "$2" "$file" 2>/dev/null) || found="nothing"
    if [ "$found" != "$1" ]; then
        printf '%s: %s instead of %s\n' "$2" "$found" "$1" >&2
        faults=1
    fi
}

expect Survey 'string(/html/head/title)'
expect '#FFFFFF' 'string(/html/body/@bgcolor)'
expect 'Survey of rain_fall & wind_speed' 'string(/html/body/h1)'
expect 1 'count(//h1)'
expect 2 'count(//h2)'
expect 2 'count(//h3 | //h4)'
expect 3 'count(/html/body/ul/li)'
expect 2 'count(/html/body/ul/li/ol/li)'
expect 2 'count(/html/body/ol/li)'
expect 'left out' 'string(//b/u)'
expect '2 1' 'concat(count(//a[starts-with(@href, "#")]), " ", count(//a[contains(@href, ":/")]))'
expect 0 'count(//a[starts-with(@href, "#") and not(substring(@href, 2) = //a/@name)])'
expect "A. Berg, O. P. Vale, ''Sums & Products of a_n'', J. Num. Meth. 2004 , 7 , 1-9." \
    'normalize-space(/html/body/ol/li[1])'

exit "$faults"
