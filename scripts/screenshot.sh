#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Takes a picture of a program's window as a person would see it: the program
# runs under a virtual X server with a real font, and the whole screen is
# saved as PNG once it has settled.
#   scripts/screenshot.sh OUT.png SECONDS PROGRAM [ARGUMENT...]
set -euo pipefail
[[ $# -ge 3 ]] || { echo "usage: $0 OUT.png SECONDS PROGRAM [ARGUMENT...]" >&2; exit 2; }
out=$1 wait=$2
shift 2
"$(dirname "$0")/install-deps.sh" --desktop

display=:$((90 + RANDOM % 100))
Xvfb "$display" -screen 0 1400x900x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
trap 'kill "$program" "$xvfb" 2>/dev/null || true' EXIT
sleep 1
env -u QT_QPA_PLATFORM DISPLAY="$display" "$@" &
program=$!
sleep "$wait"
DISPLAY="$display" import -window root "$out"
echo "$out"
