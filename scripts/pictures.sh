#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Draws the pictures that the README shows into doc/pictures/, every one from
# a bundled example: the clock schematic of each example as
# `ipcoregen --schematic` saves it (labels and junction dots, the drawing
# only), the floorplan of the one-quad example with a shared PLL's tooltip
# showing, each sample protocol's dialog with a problem marked, and the
# SerDes page of the two-quad example. The windows are taken on a virtual X
# server with a real font; the examples are opened on copies.
#   scripts/pictures.sh [OUT_DIR]
set -euo pipefail
cd "$(dirname "$0")/.."
out=$(realpath -m "${1:-doc/pictures}")
mkdir -p "$out"

scripts/install-deps.sh --desktop
cmake -S . -B build-pictures -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build-pictures --target viewpictures ipcoregen protocol_customphy \
    protocol_ethernet10g protocol_bcdr serdes_toml_to_csr_880k -j2
bin=build-pictures/stage/bin

work=$(mktemp -d)
display=:$((90 + RANDOM % 100))
Xvfb "$display" -screen 0 1600x1200x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
trap 'kill "$xvfb" 2>/dev/null || true; rm -rf "$work"' EXIT
sleep 1

for tier in 880k 370k 90k; do
    mkdir -p "$work/$tier"
    cp examples/$tier/serdes.ipc "$work/$tier/"
    env -u QT_QPA_PLATFORM DISPLAY="$display" "$bin/ipcoregen" --open "$work/$tier/serdes.ipc" \
        --schematic "$out/schematic_$tier.png" >/dev/null
done

env -u QT_QPA_PLATFORM DISPLAY="$display" "$bin/viewpictures" "$out" examples

mkdir -p "$work/page"
cp examples/880k/serdes.ipc "$work/page/"
env -u QT_QPA_PLATFORM DISPLAY="$display" "$bin/ipcoregen" --open "$work/page/serdes.ipc" &
page=$!
sleep 8
DISPLAY="$display" import -window root -trim +repage "$out/page_880k.png"
kill "$page"
ls "$out"/*.png
