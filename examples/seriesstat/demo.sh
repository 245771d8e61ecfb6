#!/bin/sh
# Shows what seriesstat does, on the data beside this script. Fails where the program does not do what it should.
#
#     demo.sh BUILD_DIRECTORY
#     demo.sh INSTALLATION [SETTINGS [DRIVE]]
#
# It installs the tool in a temporary directory, or copies an installation there. That directory also stands for the
# user's home. A tool of another system keeps what is the user's in SETTINGS instead, and shows absolute paths with DRIVE
# in front. Nothing else is touched, but for the last step: its report goes to the directory "report" of the given one,
# and stays there.
set -eu

if [ $# -lt 1 ] || { [ ! -x "$1/examples/seriesstat/bin/seriesstat" ] && [ ! -x "$1/bin/seriesstat" ]; }; then
    echo "usage: $0 BUILD_DIRECTORY, or $0 INSTALLATION [SETTINGS [DRIVE]] (no program seriesstat in '${1:-}')" >&2
    exit 2
fi
scratch=$(mktemp -d)
scratch=$(cd "$scratch" && pwd -P)
trap 'rm -rf "$scratch"' EXIT
trap 'exit 1' HUP INT TERM
HOME=$scratch/home
XDG_CONFIG_HOME=$HOME/.config
export HOME XDG_CONFIG_HOME
mkdir -p "$XDG_CONFIG_HOME"
unset DRAVO2_BASEDIR DRAVO2_INSTDIR HOMEDRIVE HOMEPATH
build=$(cd "$1" && pwd)
cd "$(dirname "$0")"
example=$(pwd)
lab=$scratch/lab
settings=${2:-$XDG_CONFIG_HOME}/dravo2/etc
drive=${3:-}
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

# expect LINE COMMAND...: as show, and the report has to have that line.
expect()
{
    line=$1
    shift
    display "$@"
    output=$("$@")
    printf '%s\n' "$output"
    if ! printf '%s\n' "$output" | grep -qxF -- "$line"; then
        echo "demo: there should have been the line '$line'" >&2
        exit 1
    fi
}

# configure FILE LINE...: writes a file and shows it.
configure()
{
    file=$1
    shift
    mkdir -p "$(dirname "$file")"
    printf '%s\n' "$@" >"$file"
    show cat "$file"
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

title 'An installation'
if [ -x "$build/examples/seriesstat/bin/seriesstat" ]; then
    cmake --install "$build" --prefix "$lab" >/dev/null
    show cmake --install "$build" --prefix "$lab" --component seriesstat
else
    show cp -R "$build" "$lab"
fi
PATH=$lab/bin:$PATH
export PATH

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

mkdir "$scratch/project"
cd "$scratch/project"
title 'Results in a file'
cp "$example/data/michelson-1879.txt" .
show seriesstat -q "$quantity" --stats=mean,sd --result=last.xml michelson-1879.txt
show cat last.xml

title 'What has changed since: nothing'
expect '  nothing changed' seriesstat -q "$quantity" --stats=mean,sd --compare=last.xml michelson-1879.txt

title 'What has changed since: the first value, 299.850 before'
sed '5s/299\.850/299.950/' "$example/data/michelson-1879.txt" >michelson-1879.txt
expect '  michelson-1879.txt: bytes changed, and statistics' \
    seriesstat -q "$quantity" --stats=mean,sd --compare=last.xml --result=last.xml michelson-1879.txt
rm michelson-1879.txt

title 'A damaged result: one message, status 1, no result'
sed '$d' last.xml >damaged.xml
refused seriesstat -q "$quantity" --compare=damaged.xml --sample=michelson-1879.txt 2>&1

title 'Data that come with the tool, from wherever it was installed'
expect "$drive$lab/share/seriesstat/michelson-1879.txt" \
    seriesstat -q "$quantity" --stats=mean,sd --sample=michelson-1879.txt

title 'Who wins: the installation'
configure "$lab/etc/seriesstat.ini" '[report]' 'digits = 6' 'stats = mean, sd'
expect '  mean                   299.852' seriesstat -q "$quantity" --sample=michelson-1879.txt

title 'Who wins: the working directory over the installation, key by key'
configure etc/seriesstat.ini '[report]' 'digits = 8'
expect '  mean                   299.85240' seriesstat -q "$quantity" --sample=michelson-1879.txt

title 'Who wins: the user over both'
configure "$settings/seriesstat.ini" '[report]' 'digits = 4   # enough for me'
expect '  mean                   299.9' seriesstat -q "$quantity" --sample=michelson-1879.txt

title 'Who wins: the command line over all of them'
expect '  median                 299.85000' \
    seriesstat -q "$quantity" --digits=8 --stats=median --sample=michelson-1879.txt

title 'A mistake in a file: one message, status 1, no result'
configure etc/seriesstat.ini '[report]' 'digit = 8'
refused seriesstat -q "$quantity" --sample=michelson-1879.txt 2>&1
rm -r etc

title 'A report needs a quantity, and can remember it'
refused seriesstat --sample=michelson-1879.txt 2>&1
show seriesstat --remember -q "$quantity" --sample=michelson-1879.txt
show cat "$settings/seriesstat.ini"
expect "$quantity" seriesstat --sample=michelson-1879.txt

title 'Trace areas of the tool, and one of the user'
show seriesstat --trace-level=verbose --trace-area=SeriesSummary --sample=michelson-1879.txt
configure "$settings/TraceAreas.ini" '[TraceMainAreas]' Mine '[TraceSubAreas]' \
    'SeriesReading = Mine' 'SeriesSummary = Mine'
show seriesstat --trace-level=verbose --trace-area=Mine --sample=michelson-1879.txt

title 'The installation can be moved'
show mv "$lab" "$scratch/moved"
PATH=$scratch/moved/bin:$PATH
hash -r
expect "$drive$scratch/moved/share/seriesstat/michelson-1879.txt" seriesstat --sample=michelson-1879.txt

title 'A report with pictures'
cd "$example"
mkdir -p "$build/report"
for file in "$build/report/report.html" "$build/report/report.tex"; do
    show seriesstat -q "$quantity" --digits=7 --report="$file" data/michelson-1879.txt
    [ -s "$file" ] || exit 1
done
printf '\nThe report stays in %s and %s.\n' "$build/report/report.html" "$build/report/report.tex"
