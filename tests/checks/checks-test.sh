#!/usr/bin/env bash
# checks-test.sh SCRIPTS: every check of the tree finds the fault that it is there to find.
#
# A small tree without faults passes; then one fault is put in at a time, and the check must fail and name it.
set -euo pipefail
scripts=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failures=0
cases=0

# The numbers of this file are put together, so that they are not taken for the register's.
quirk() {
    printf 'Q-%s' "$1"
}

fresh_tree() {
    rm -rf "$scratch/tree"
    mkdir -p "$scratch/tree"/{docs,include/kelvobase,scripts,src/low,src/high,src/platform/posix,tests/low}
    cd "$scratch/tree"
    printf '#pragma once\n#include <string>\n// Required (%s): x\n' "$(quirk 101)" >include/kelvobase/Low.h
    printf '#pragma once\n#include <kelvobase/Low.h>\n' >include/kelvobase/High.h
    printf '#pragma once\n#include <kelvobase/High.h>\n#include <kelvobase/Low.h>\n' >include/kelvobase/KelvoBase.h
    printf '#include <kelvobase/Low.h>\n// %s: x\n' "$(quirk 101)" >src/low/Low.cpp
    printf '#include <kelvobase/High.h>\n' >src/high/High.cpp
    printf '#include <cstring>\nconst char* t() { return strerror(1); }\n' >src/platform/posix/Errors.cpp
    printf 'header Low.h low\nheader High.h high\nedge high low # because\n' >scripts/dependencies.allow
    printf '| number | what | where | source | test |\n| --- | --- | --- | --- | --- |\n' >docs/quirks.md
    # shellcheck disable=SC2016 # code marks
    printf '| %s | x | `f`, Low.h | `src/low/Low.cpp` | Low.IsOdd |\n' "$(quirk 101)" >>docs/quirks.md
    printf 'TEST(Low, IsOdd)\n{\n    // Required, %s\n}\n' "$(quirk 101)" >tests/low/LowTest.cpp
}

# expect passes|fails CHECK TEXT: what the check does on the tree, and what it says.
expect() {
    local outcome=$1 check=$2 text=$3 status=0 said
    local arguments=("$scratch/tree")
    if [ "$check" = headers ]; then
        arguments+=(Low.h High.h KelvoBase.h)
    fi
    cases=$((cases + 1))
    said=$(bash "$scripts/check-$check.sh" "${arguments[@]}" 2>&1) || status=$?
    if { [ "$status" -eq 0 ] && [ "$outcome" = passes ]; } || { [ "$status" -eq 1 ] && [ "$outcome" = fails ]; }; then
        if grep -qF -- "$text" <<<"$said"; then
            return
        fi
    fi
    printf 'line %s: check-%s %s, status %s, said:\n%s\n' "${BASH_LINENO[0]}" "$check" "$outcome?" "$status" "$said" >&2
    failures=$((failures + 1))
}

fresh_tree
expect passes headers "3 public headers"
expect passes dependencies "1 edges, 0 exceptions"
expect passes platform "5 sources outside"
expect passes quirks "1 required oddities"

# check-headers
for include in '<boost/any.hpp>' '<unistd.h>' '<sys/stat.h>' '"Low.h"' '<kelvobase/Missing.h>'; do
    fresh_tree
    printf '#include %s\n' "$include" >>include/kelvobase/Low.h
    expect fails headers "$include"
done
fresh_tree
touch include/kelvobase/Extra.h
expect fails headers "Extra.h"
fresh_tree
rm include/kelvobase/Low.h
expect fails headers "Low.h"
fresh_tree
sed -i '/Low/d' include/kelvobase/KelvoBase.h
expect fails headers "does not include Low.h"
fresh_tree
sed -i '/pragma/d' include/kelvobase/Low.h
expect fails headers "no #pragma once"

xml_tree() {
    fresh_tree
    printf '#pragma once\n#include <xercesc/util/XercesDefs.hpp>\n' >include/kelvobase/Low.h
    sed -i '/Low/d' include/kelvobase/KelvoBase.h
    sed -i 's/^header Low.h low$/header Low.h xml/' scripts/dependencies.allow
}
xml_tree
expect passes headers "3 public headers"
expect passes platform "5 sources outside"
xml_tree
printf '#include <xercesc/dom/DOM.h>\n' >>include/kelvobase/Low.h
expect fails headers "DOM.h"
xml_tree
printf '#include <xercesc/dom/DOM.hpp>\n' >>include/kelvobase/High.h
expect fails headers "High.h: #include <xercesc/dom/DOM.hpp>"
expect fails platform "include/kelvobase/High.h"
xml_tree
printf '#include <kelvobase/Low.h>\n' >>include/kelvobase/KelvoBase.h
expect fails headers "KelvoBase.h includes Low.h"

# check-dependencies
fresh_tree
printf '#include "high/Inner.h"\n' >>src/low/Low.cpp
expect fails dependencies "new dependency: low -> high"
fresh_tree
printf '#include <kelvobase/High.h>\n' >>src/low/Low.cpp
expect fails dependencies "new dependency: low -> high"
printf 'circle low high src/low/Low.cpp # because\n' >>scripts/dependencies.allow
expect passes dependencies "1 edges, 1 exceptions"
printf '#include <kelvobase/High.h>\n' >src/low/Other.cpp
expect fails dependencies "new dependency: low -> high (src/low/Other.cpp"
fresh_tree
printf '#include <kelvobase/High.h>\n' >>src/low/Low.cpp
printf 'edge low high\n' >>scripts/dependencies.allow
expect fails dependencies "form a circle"
fresh_tree
printf 'edge high platform\n' >>scripts/dependencies.allow
expect fails dependencies 'nothing uses "high platform"'
fresh_tree
printf '#include "Inner.h"\n' >>src/low/Low.cpp
expect fails dependencies "is not relative to src"
fresh_tree
printf '#include <kelvobase/KelvoBase.h>\n' >>src/high/High.cpp
expect fails dependencies "hides what it needs"
fresh_tree
printf '#pragma once\n' >include/kelvobase/Unknown.h
expect fails dependencies "stands in no folder"

# check-platform
for line in '#include <unistd.h>' '#include <sys/stat.h>' '#include <immintrin.h>' '#ifdef _WIN32' \
    'auto t = strerror(2);' 'auto t = std::system_category().message(1);'; do
    fresh_tree
    printf '%s\n' "$line" >>src/low/Low.cpp
    expect fails platform "$line"
done
fresh_tree
printf '#include <xercesc/dom/DOM.hpp>\n' >>src/low/Low.cpp
expect fails platform "src/low/Low.cpp:3:#include <xercesc/dom/DOM.hpp>"
fresh_tree
mkdir src/xml
printf '#include <xercesc/dom/DOM.hpp>\n' >src/xml/Xml.cpp
expect passes platform "6 sources outside"
fresh_tree
printf 'auto t = strerror(2);\n' >src/platform/posix/Files.cpp
expect fails platform "src/platform/posix/Files.cpp"
fresh_tree
printf '#include <unistd.h>\n#ifdef __linux__\n#endif\n' >src/platform/posix/Files.cpp
expect passes platform "5 sources outside"

# check-quirks
fresh_tree
sed -i 's/Q-/q/' include/kelvobase/Low.h
expect fails quirks "stands in no public header"
fresh_tree
sed -i 's/Q-/q/' src/low/Low.cpp
expect fails quirks "does not stand in src/low/Low.cpp"
fresh_tree
sed -i 's/Q-/q/' tests/low/LowTest.cpp
expect fails quirks "does not open with"
fresh_tree
sed -i 's/IsOdd/IsEven/' tests/low/LowTest.cpp
expect fails quirks 'there is no test "Low.IsOdd"'
fresh_tree
sed -i 's/Required, /see /' tests/low/LowTest.cpp
expect fails quirks "does not open with"
fresh_tree
rm src/low/Low.cpp
expect fails quirks "there is no source"
fresh_tree
# shellcheck disable=SC2016 # code marks
sed -i 's/Low.IsOdd/`Low.IsOdd`, `Low.IsMissing`/' docs/quirks.md
expect fails quirks 'there is no test "Low.IsMissing"'
fresh_tree
sed -i "\$p; \$s/$(quirk 101)/$(quirk 1101)/" docs/quirks.md
expect fails quirks "$(quirk 1101): stands in no public header"
fresh_tree
sed -i 's/ Q-/ Q-0/' docs/quirks.md
expect fails quirks "is no number"
fresh_tree
sed -i '$p' docs/quirks.md
expect fails quirks "more than once"
fresh_tree
printf '// %s\n' "$(quirk 999)" >>src/low/Low.cpp
expect fails quirks "does not stand in docs/quirks.md"
fresh_tree
sed -i '/Q-/d' docs/quirks.md
expect fails quirks "no rows"

if [ "$failures" -gt 0 ]; then
    printf '%s of %s cases failed\n' "$failures" "$cases" >&2
    exit 1
fi
printf '%s cases\n' "$cases"
