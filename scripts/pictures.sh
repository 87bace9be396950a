#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Draws the pictures that the README shows into doc/pictures/: the quad
# floorplan with two instances on a two-quad device, the clock schematic of
# each device tier with the routes of a few instances, and the SerDes page as
# the generator shows it for the bundled two-quad example. They are taken from
# the real windows on a virtual X server with a real font.
#   scripts/pictures.sh [OUT_DIR]
set -euo pipefail
cd "$(dirname "$0")/.."
out=${1:-doc/pictures}

scripts/install-deps.sh --desktop
cmake -S . -B build-pictures -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build-pictures --target viewpictures ipcoregen protocol_customphy \
    protocol_ethernet10g protocol_bcdr serdes_toml_to_csr_880k -j2

# Large enough for the two-quad schematic at its own scale.
display=:$((90 + RANDOM % 100))
Xvfb "$display" -screen 0 1600x1600x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
trap 'kill "$xvfb" 2>/dev/null || true' EXIT
sleep 1
env -u QT_QPA_PLATFORM DISPLAY="$display" build-pictures/demo/viewpictures "$out"

# The page is opened on a copy, so that the example stays as it is.
example=$(mktemp -d)
cp -r examples/880k/. "$example"/
env -u QT_QPA_PLATFORM DISPLAY="$display" build-pictures/stage/bin/ipcoregen \
    --open "$example/serdes.ipc" &
page=$!
sleep 8
DISPLAY="$display" import -window root -trim +repage "$out/page_880k.png"
kill "$page"
rm -rf "$example"
ls "$out"/*.png
