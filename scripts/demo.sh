#!/usr/bin/env bash
# Builds the library and the example in build/demo and shows the example at work. Installs what is missing first
# (Debian packages, as root or through sudo).
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=lib.sh
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

need_build_tools
install_missing

folder=$top/build/demo
build_folder "$folder" -DCMAKE_BUILD_TYPE=Release -DKELVOBASE_BUILD_TESTS=OFF

own_configuration "$folder/configuration"
say "The example seriesstat"
exec bash "$top/examples/seriesstat/demo.sh" "$folder"
