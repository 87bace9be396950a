#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Installs what is missing, builds the product in build-release/ and starts
# the IP Core Generator from the installed tree. Arguments go to the generator
# (--list, --device ID, --open FILE [--generate] [--report FILE] ...).
#
# Without arguments and without a display there is no window to open: the
# generator then regenerates the bundled two-instance example of a one-quad
# device in build-release/example/, as OK in its dialog would, and writes a
# report of the configuration and a picture of its clock network beside it.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake -S . -B build-release -DCMAKE_BUILD_TYPE=Release -DSERDES_BUILD_TESTS=OFF >/dev/null
cmake --build build-release -j2

generator="$PWD/build-release/stage/bin/ipcoregen"
if [ $# -eq 0 ] && [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    example=build-release/example
    rm -rf "$example"
    mkdir -p "$example"
    cp -r examples/370k/. "$example"/
    echo "No display is available: regenerating examples/370k in $example."
    cd "$example"
    "$generator" --open serdes.ipc --generate --report report.json --schematic clocks.svg
    echo "Files:"
    find . -type f ! -path './upar_arbiter/temp/*' | sort | sed 's/^\.\//  /'
    exit 0
fi
exec "$generator" "$@"
