#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Installs the Debian packages that building, testing and running need.
# Quiet and quick when everything is there already.
#   scripts/install-deps.sh            build, tests and run
#   scripts/install-deps.sh --desktop  also what screenshots under Xvfb need
set -euo pipefail

packages=(build-essential cmake qtbase5-dev libqt5svg5-dev libqt5webkit5-dev
          libtomlplusplus-dev libbenchmark-dev iverilog yosys ghdl)
if [[ "${1:-}" == "--desktop" ]]; then
    packages+=(xvfb xauth x11-apps imagemagick fonts-dejavu-core)
fi

missing=()
for p in "${packages[@]}"; do
    if [[ "$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null)" != "install ok installed" ]]; then
        missing+=("$p")
    fi
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

sudo=()
if [[ $(id -u) -ne 0 ]]; then
    command -v sudo >/dev/null || { echo "Installing ${missing[*]} needs root." >&2; exit 1; }
    sudo=(sudo)
fi
echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -qq
"${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
