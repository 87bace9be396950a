#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Draws the pictures of the protocol help pages with ImageMagick. The PNGs are
# kept beside this script; run it again after changing a drawing:
#   serdes/doc/pictures.sh
set -euo pipefail
cd "$(dirname "$0")"

INK='#37414d'
MUTED='#8a949e'
TX='#1f6fb2'
RX='#2e8b57'
AUX='#b5651d'
QUAD='#eef3f8'
FABRIC='#fbf1dc'
PARTNER='#f3f3f3'

W=0
H=0
args=()

start() { # width height
    W=$1 H=$2
    args=(-size "${W}x${H}" xc:white -font DejaVu-Sans -strokewidth 1.5)
}

box() { # x0 y0 x1 y1 fill
    args+=(-fill "$5" -stroke "$INK" -strokewidth 1.5 -draw "roundrectangle $1,$2 $3,$4 6,6")
}

text() { # centre-x centre-y size colour text [bold]
    local font=DejaVu-Sans
    [[ ${6:-} == bold ]] && font=DejaVu-Sans-Bold
    args+=(-stroke none -fill "$4" -font "$font" -pointsize "$3" -gravity center
           -annotate "$(printf '%+d%+d' $(($1 - W / 2)) $(($2 - H / 2)))" "$5"
           -gravity NorthWest)
}

line() { # x0 y0 x1 y1 colour [width]
    args+=(-stroke "$5" -strokewidth "${6:-2}" -draw "line $1,$2 $3,$4")
}

arrow() { # x0 y x1 colour: horizontal, the head at x1
    local dir=1
    (($3 < $1)) && dir=-1
    local neck=$(($3 - dir * 9))
    line "$1" "$2" "$neck" "$2" "$4"
    args+=(-stroke none -fill "$4" -draw "polygon $3,$2 $neck,$(($2 - 5)) $neck,$(($2 + 5))")
}

uparrow() { # x y0 y1 colour: vertical, the head at y1 above y0
    line "$1" "$2" "$1" "$(($3 + 9))" "$4"
    args+=(-stroke none -fill "$4" -draw "polygon $1,$3 $(($1 - 5)),$(($3 + 9)) $(($1 + 5)),$(($3 + 9))")
}

# A quad of four lanes at x 156..306, its PLL fed from below. `mode` says
# which lines the protocol takes: both, tx or rx.
quad() { # mode pll-label
    local mode=$1
    box 156 10 306 250 "$QUAD"
    text 231 25 12 "$INK" "Quad" bold
    local i y
    for i in 0 1 2 3; do
        y=$((40 + i * 42))
        box 176 "$y" 296 $((y + 32)) white
        text 206 $((y + 16)) 11 "$INK" "Lane $i"
        case $mode in
        tx) text 268 $((y + 24)) 9 "$MUTED" "RX free" ;;
        rx) text 268 $((y + 9)) 9 "$MUTED" "TX free" ;;
        esac
        line 166 $((y + 16)) 176 $((y + 16)) "$MUTED" 1.5
    done
    box 176 208 296 238 white
    text 236 223 11 "$INK" "$2"
    line 166 56 166 223 "$MUTED" 1.5
    line 166 223 176 223 "$MUTED" 1.5
    uparrow 236 264 238 "$INK"
}

# The fabric on the left, the device at the other end of the link on the
# right.
ends() {
    box 8 30 120 230 "$FABRIC"
    box 376 30 452 230 "$PARTNER"
}

# The AUX channel of DisplayPort between the boxes' feet, with heads at both
# ends: it is half duplex. HPD runs outside it, so that the two never cross.
aux() {
    line 72 290 414 290 "$AUX"
    uparrow 72 290 230 "$AUX"
    uparrow 414 290 230 "$AUX"
    text 243 282 10 "$AUX" "AUX channel: 1 Mb/s, both ways, general I/O"
}

finish() { # file
    convert "${args[@]}" -strip "$1"
    echo "$1"
}

# XAUI: four lanes each way between the fabric and a link partner.
start 460 296
ends
text 64 48 12 "$INK" "FPGA fabric" bold
text 64 100 11 "$INK" "10G Ethernet"
text 64 115 11 "$INK" "MAC"
text 64 148 10 "$INK" "XGMII"
text 64 162 10 "$INK" "64 + 8 bits"
text 64 176 10 "$INK" "156.25 MHz"
text 414 48 12 "$INK" "Partner" bold
text 414 122 10 "$INK" "XAUI PHY"
text 414 136 10 "$INK" "or switch"
quad both "QPLL0 or QPLL1"
arrow 120 95 156 "$TX"
arrow 156 170 120 "$RX"
text 138 84 9 "$TX" "TX"
text 138 159 9 "$RX" "RX"
for i in 0 1 2 3; do
    y=$((40 + i * 42))
    arrow 296 $((y + 10)) 376 "$TX"
    arrow 376 $((y + 22)) 296 "$RX"
done
text 341 214 10 "$INK" "3.125 Gb/s"
text 341 228 10 "$INK" "per lane"
text 336 264 10 "$INK" "reference clock 156.25 MHz"
text 64 262 10 "$TX" "TX: fabric to partner"
text 64 278 10 "$RX" "RX: partner to fabric"
finish serdes_xaui.png

# eDP with the FPGA as source: TX lines to a panel, AUX and HPD beside them.
start 460 332
ends
text 64 48 12 "$INK" "FPGA fabric" bold
text 64 100 11 "$INK" "DisplayPort"
text 64 115 11 "$INK" "source"
text 64 130 11 "$INK" "link layer"
text 64 168 10 "$INK" "pixels in"
text 414 48 12 "$INK" "Panel" bold
text 414 122 10 "$INK" "eDP sink"
text 414 136 10 "$INK" "(timing"
text 414 150 10 "$INK" "controller)"
quad tx "PLL, not shared"
arrow 120 130 156 "$TX"
for i in 0 1 2 3; do
    y=$((40 + i * 42))
    arrow 296 $((y + 12)) 376 "$TX"
done
text 341 214 10 "$INK" "1, 2 or 4"
text 341 228 10 "$INK" "lanes"
text 296 264 10 "$INK" "reference clock"
aux
line 430 230 430 308 "$AUX"
line 430 308 56 308 "$AUX"
uparrow 56 308 230 "$AUX"
text 243 321 10 "$AUX" "HPD from the panel"
finish serdes_edp_tx.png

# eDP with the FPGA as sink: RX lines from a source, AUX and HPD beside them.
start 460 332
ends
text 64 48 12 "$INK" "FPGA fabric" bold
text 64 100 11 "$INK" "DisplayPort"
text 64 115 11 "$INK" "sink"
text 64 130 11 "$INK" "link layer"
text 64 168 10 "$INK" "pixels out"
text 414 48 12 "$INK" "Source" bold
text 414 122 10 "$INK" "processor"
text 414 136 10 "$INK" "or GPU"
quad rx "PLL, not shared"
arrow 156 130 120 "$RX"
for i in 0 1 2 3; do
    y=$((40 + i * 42))
    arrow 376 $((y + 22)) 296 "$RX"
done
text 341 214 10 "$INK" "1, 2 or 4"
text 341 228 10 "$INK" "lanes"
text 296 264 10 "$INK" "reference clock"
aux
line 56 230 56 308 "$AUX"
line 56 308 430 308 "$AUX"
uparrow 430 308 230 "$AUX"
text 243 321 10 "$AUX" "HPD to the source"
finish serdes_edp_rx.png
