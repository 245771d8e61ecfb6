#!/usr/bin/env bash
# Builds everything for 32-bit Windows in build/windows (preset "windows") and runs all tests under Wine. Installs and builds
# what is missing first. Further arguments go to cmake. Ends with status 77 when everything was built, but there is no Wine
# to run it.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
# shellcheck source-path=SCRIPTDIR source=lib-windows.sh
. "$(dirname "${BASH_SOURCE[0]}")/lib-windows.sh"

bash "$top/scripts/windows-dependencies.sh"
folder=$top/build/windows
build_folder "$folder" --preset windows "$@"

if ! bash "$top/scripts/windows-wine.sh"; then
    say "SKIPPED: Wine for 32-bit programs cannot be had. Everything was built for Windows, but NOTHING WAS RUN."
    exit 77
fi

say "Running the tests under Wine"
trap stop_wine EXIT
keep_wine_running
status=0
ctest --test-dir "$folder" --output-on-failure --no-tests=error --parallel "$(jobs)" || status=$?
if [ "$status" -eq 0 ]; then
    say "All tests passed under Wine (log: $folder/Testing/Temporary/LastTest.log)"
else
    say "TESTS FAILED under Wine (list: $folder/Testing/Temporary/LastTestsFailed.log)"
fi
exit "$status"
