#!/bin/sh
# Shows what seriesstat does, on the data beside this script. Fails where the program does not do what it should.
#
#     demo.sh BUILD_DIRECTORY
set -eu

if [ $# -ne 1 ] || [ ! -x "$1/examples/seriesstat/seriesstat" ]; then
    echo "usage: $0 BUILD_DIRECTORY (there is no program $1/examples/seriesstat/seriesstat)" >&2
    exit 2
fi
PATH=$(cd "$1/examples/seriesstat" && pwd):$PATH
export PATH
cd "$(dirname "$0")"
quantity='speed of light in air / (1000 km/s)'

title()
{
    printf '\n== %s ==\n' "$1"
}

# display COMMAND...: prints a command as it would be typed.
display()
{
    printf '$'
    for word in "$@"; do
        case $word in
        *' '*) printf " '%s'" "$word" ;;
        *) printf ' %s' "$word" ;;
        esac
    done
    printf '\n'
}

# show COMMAND...: prints a command and runs it; a failure ends the demonstration.
show()
{
    display "$@"
    "$@" 2>&1
}

# refused COMMAND...: prints and runs a command that has to end with status 1 and without output.
refused()
{
    display "$@"
    status=0
    output=$("$@") || status=$?
    if [ "$status" -ne 1 ] || [ -n "$output" ]; then
        echo "demo: this should have been refused (status $status)" >&2
        exit 1
    fi
}

# statistic NAME FILE: one number out of the report.
statistic()
{
    report=$(seriesstat -q "$quantity" --stats="$1" "$2")
    printf '%s\n' "$report" | sed -n '$s/.* //p'
}

compare()
{
    computed=$(statistic "$2" "$1")
    verdict=equal
    if [ "$computed" != "$3" ]; then
        verdict=DIFFERENT
        different=$((different + 1))
    fi
    printf '%-26s%-6s%-21s%-21s%s\n' "$1" "$2" "$computed" "$3" "$verdict"
}

title 'What it can do'
show seriesstat --help

title "Michelson's determinations of the speed of light"
show seriesstat -q "$quantity" data/michelson-1879.txt

title 'The same from a column of a table'
show seriesstat -q "$quantity" --csv --header --column=2 --stats=mean,sd data/michelson-1879.csv

title 'All series of a directory, and the trace of the work'
show seriesstat -q 'numerical accuracy' --stats=count,mean,sd,lag1 --trace-level verbose --trace-area Numerics data/numacc

title 'Against certified values, to the last of 15 digits'
printf '%-26s%-6s%-21s%-21s\n' file '' computed certified
different=0
compared=0
while IFS=, read -r file mean sd lag1; do
    case $file in
    '#'* | file) continue ;;
    esac
    compare "$file" mean "$mean"
    compare "$file" sd "$sd"
    compare "$file" lag1 "$lag1"
    compared=$((compared + 1))
done <certified.csv
if [ "$different" -ne 0 ] || [ "$compared" -ne 5 ]; then
    echo "demo: $different values differ, $compared of 5 sets compared" >&2
    exit 1
fi

title 'Bad input: one message, status 1, no result'
refused seriesstat -q "$quantity" data/michelson-1879.txt data/michelson-1879.csv 2>&1
refused seriesstat -q "$quantity" data/no-such-file.txt 2>&1
