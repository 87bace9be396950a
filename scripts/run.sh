#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Installs what is missing, builds the product in build-release/ and starts
# the IP Core Generator from the installed tree. Without a display the
# generator says so and prints its catalogue. Arguments go to the generator
# (--list, --device ID).
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake -S . -B build-release -DCMAKE_BUILD_TYPE=Release -DSERDES_BUILD_TESTS=OFF >/dev/null
cmake --build build-release -j2
exec build-release/stage/bin/ipcoregen "$@"
