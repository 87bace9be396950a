#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Installs what is missing, builds everything with AddressSanitizer and
# UndefinedBehaviorSanitizer in build/, and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake -S . -B build -DSERDES_SANITIZE=ON -DSERDES_BUILD_TESTS=ON >/dev/null
cmake --build build -j2
cd build
QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j2
