// SPDX-License-Identifier: MIT
#pragma once

// The shapes in which the clock schematic's layout is written down, the part
// that every quad shares, and the drawing's colours. Each tier's own rows
// stand in a file of their own. Coordinates are scene units; a box's position
// is its top left corner.

#include "plugin/serdesipconstants.h"
#include "views/schematicrows.h"

#include <QRgb>

#include <cstddef>

namespace IPSERDESIP {
namespace schematic {

enum class Kind { Box, Pll, Line };

// A row of the part every quad has. `key` holds the element name in quad 0
// and in quad 1; boxes have none. Sizes are given for boxes only: nodes have
// the size of their class.
struct QuadRow
{
    Kind kind;
    const char *key[2];
    const char *label;
    double x;
    double y;
    double width;
    double height;
};

struct QuadOffsetRow
{
    const char *key[2];
    int offset;
};

// Quad q stands QUAD_PITCH * q lower than quad 0.
// Height of every caption's font, in pixels.
constexpr int CAPTION_PIXELS = 12;

constexpr double QUAD_PITCH = 700;

constexpr const char *QUAD_LABELS[] = {"Quad0", "Quad1"};
constexpr double QUAD_BOX_X = 150;
constexpr double QUAD_BOX_Y = 20;
constexpr double QUAD_BOX_WIDTH = 730;
constexpr double QUAD_BOX_HEIGHT = 700;

// clang-format off
// In the order of creation, which is also the stacking order: the quad PLLs
// stand in the gap between Lane1 and Lane2, not inside a lane.
constexpr QuadRow QUAD_ROWS[] = {
    {Kind::Box,  {},                         "Lane0", 500,  50, 360, 100},
    {Kind::Pll,  {Q0_CPLL0, Q1_CPLL0},       "CPLL",  530,  70,   0,   0},
    {Kind::Box,  {},                         "Lane1", 500, 185, 360, 100},
    {Kind::Pll,  {Q0_CPLL1, Q1_CPLL1},       "CPLL",  530, 205,   0,   0},
    {Kind::Pll,  {Q0_QPLL0, Q1_QPLL0},       "QPLL0", 530, 310,   0,   0},
    {Kind::Pll,  {Q0_QPLL1, Q1_QPLL1},       "QPLL1", 530, 380,   0,   0},
    {Kind::Box,  {},                         "Lane2", 500, 465, 360, 100},
    {Kind::Pll,  {Q0_CPLL2, Q1_CPLL2},       "CPLL",  530, 485,   0,   0},
    {Kind::Box,  {},                         "Lane3", 500, 600, 360, 100},
    {Kind::Pll,  {Q0_CPLL3, Q1_CPLL3},       "CPLL",  530, 620,   0,   0},
    {Kind::Line, {Q0_LANE0_TX, Q1_LANE0_TX}, "TX",    730,  70,   0,   0},
    {Kind::Line, {Q0_LANE0_RX, Q1_LANE0_RX}, "RX",    730, 105,   0,   0},
    {Kind::Line, {Q0_LANE1_TX, Q1_LANE1_TX}, "TX",    730, 205,   0,   0},
    {Kind::Line, {Q0_LANE1_RX, Q1_LANE1_RX}, "RX",    730, 240,   0,   0},
    {Kind::Line, {Q0_LANE2_TX, Q1_LANE2_TX}, "TX",    730, 485,   0,   0},
    {Kind::Line, {Q0_LANE2_RX, Q1_LANE2_RX}, "RX",    730, 520,   0,   0},
    {Kind::Line, {Q0_LANE3_TX, Q1_LANE3_TX}, "TX",    730, 620,   0,   0},
    {Kind::Line, {Q0_LANE3_RX, Q1_LANE3_RX}, "RX",    730, 655,   0,   0},
};

// Offsets of the PLLs of every quad present. Lines take none: no wire leaves
// them.
constexpr QuadOffsetRow QUAD_OFFSETS[] = {
    {{Q0_CPLL0, Q1_CPLL0}, 40}, {{Q0_CPLL1, Q1_CPLL1}, 40},
    {{Q0_CPLL2, Q1_CPLL2}, 40}, {{Q0_CPLL3, Q1_CPLL3}, 40},
    {{Q0_QPLL0, Q1_QPLL0}, 50}, {{Q0_QPLL1, Q1_QPLL1}, 60},
};
// clang-format on

// Node shapes, in item coordinates. Lines and PLLs are alike.
constexpr int NODE_WIDTH = 100;
constexpr int NODE_HEIGHT = 30;
constexpr int MUX_HEIGHT = 60;
// A reference source is an arrow pointing right: a 20 high shaft and a head
// from -10 to 30. Its tip is the out point.
constexpr double REFCLK_ARROW[][2] = {
    {0, 0}, {90, 0}, {90, -10}, {100, 10}, {90, 30}, {90, 20}, {0, 20},
};
constexpr double REFCLK_TOP = -10;
constexpr double REFCLK_HEIGHT = 40;
constexpr double REFCLK_SHAFT = 20;
constexpr double REFCLK_TEXT_WIDTH = 90;
// Labels start 2 in from the left but keep the shape's full width, so they
// overhang it by 2 and centred text sits 1 right of the shape's middle.
constexpr double LABEL_INSET = 2;

constexpr int NODE_PEN_WIDTH = 2;
constexpr int BOX_PEN_WIDTH = 2;
constexpr int WIRE_PEN_WIDTH = 2;
constexpr int SELECTED_WIRE_PEN_WIDTH = 3;
// Wires are easier to hit than to see.
constexpr double WIRE_PICK_WIDTH = 8;
constexpr double BOX_Z = -5;

// Fill of a node on no connection and on one; outline of nodes and colour of
// wires.
constexpr QRgb NODE_IDLE = qRgb(148, 181, 212);
constexpr QRgb NODE_ON_PATH = qRgb(255, 230, 102);
constexpr QRgb WIRE = qRgb(91, 155, 213);

// Notes beside the nodes, smaller than the captions and grey: a reference
// source's frequency above its shaft, from its tail; a line's rate above a TX
// line and below an RX line, flush with the line's right end. So they stay
// inside the lane's box, off its caption and clear of the wires, which come
// in from the left.
constexpr int NOTE_PIXELS = 10;
constexpr double NOTE_HEIGHT = 13;
constexpr double NOTE_GAP = 1;
constexpr QRgb NOTE = qRgb(64, 64, 64);

// The dot where a wire branches, so that a branch and a crossing differ.
constexpr double JUNCTION_DIAMETER = 6;

// The last leg of a wire stops this short of its target; the arrowhead fills
// the gap and is half as wide as it is long.
constexpr double ARROW_LENGTH = 10;

constexpr double ZOOM_IN_STEP = 1.25;
constexpr double ZOOM_OUT_STEP = 0.8;
constexpr double ZOOM_MAX = 4.0;
constexpr double ZOOM_MIN = 0.1;

} // namespace schematic
} // namespace IPSERDESIP
