#!/usr/bin/env bash
# Builds everything in build/test and runs all tests. Installs what is missing first (Debian packages, as root or
# through sudo). Further arguments go to cmake: scripts/test.sh -DKELVOBASE_WARNINGS_AS_ERRORS=ON
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

need_test_tools
install_missing

folder=$top/build/test
build_folder "$folder" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@"

say "Running the tests"
status=0
ctest --test-dir "$folder" --output-on-failure --no-tests=error --parallel "$(jobs)" || status=$?
if [ "$status" -eq 0 ]; then
    say "All tests passed (log: $folder/Testing/Temporary/LastTest.log)"
else
    say "TESTS FAILED (list: $folder/Testing/Temporary/LastTestsFailed.log)"
fi
exit "$status"
