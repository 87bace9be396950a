// SPDX-License-Identifier: MIT
#pragma once

// Geometry of the quad floorplan and of the instance tiles, in scene units,
// and the model names that its boxes stand for. Positions of child boxes are
// relative to their parent box.

#include "plugin/serdesipconstants.h"

namespace IPSERDESIP {
namespace floorplan {

struct Box
{
    int width;
    int height;
    double x;
    double y;
};

// clang-format off
constexpr Box QUAD_BOXES[] = {
    {340, 360,   0, 0}, // Quad0
    {340, 360, 360, 0}, // Quad1
};
constexpr const char *QUAD_CAPTIONS[] = {"Quad0", "Quad1"};
constexpr double QUAD_CAPTION_X = 10;
constexpr double QUAD_CAPTION_Y = 5;

// Lane boxes inside a quad, Lane0 to Lane3.
constexpr Box LANE_BOXES[] = {
    {70, 150,  15, 170},
    {70, 150,  95, 170},
    {70, 150, 175, 170},
    {70, 150, 255, 170},
};
constexpr const char *LANE_CAPTIONS[] = {"Lane0", "Lane1", "Lane2", "Lane3"};
constexpr double LANE_CAPTION_X = 15;
constexpr double LANE_CAPTION_Y = 110;

// The channel PLL inside each lane box.
constexpr Box CPLL_BOX = {50, 45, 10, 15};
constexpr const char CPLL_LABEL[] = "CPLL";

// The quad PLLs, above the lanes.
constexpr Box QPLL_BOXES[] = {
    {90, 60,  75, 90},
    {90, 60, 175, 90},
};
constexpr const char *QPLL_LABELS[] = {"QPLL0", "QPLL1"};

// The names a request gives the boxes, by quad. PLLs are matched whole; a
// lane matches any name that holds it, so a line's name finds its lane.
constexpr const char *QPLL_NAMES[2][2] = {{Q0_QPLL0, Q0_QPLL1}, {Q1_QPLL0, Q1_QPLL1}};
constexpr const char *CPLL_NAMES[2][4] = {
    {Q0_CPLL0, Q0_CPLL1, Q0_CPLL2, Q0_CPLL3},
    {Q1_CPLL0, Q1_CPLL1, Q1_CPLL2, Q1_CPLL3},
};
constexpr const char *LANE_NAMES[2][4] = {
    {Q0_LANE0, Q0_LANE1, Q0_LANE2, Q0_LANE3},
    {Q1_LANE0, Q1_LANE1, Q1_LANE2, Q1_LANE3},
};
// clang-format on

// An instance's tile in the strip; it widens to fit a long name.
constexpr int TILE_WIDTH = 170;
constexpr int TILE_HEIGHT = 60;

// How far the floorplan zooms, per step and in all.
constexpr double ZOOM_IN_STEP = 1.2;
constexpr double ZOOM_OUT_STEP = 0.8;
constexpr double ZOOM_MAX = 4.0;
constexpr double ZOOM_MIN = 0.1;

// Saturation, value and alpha of every instance's colour; the hue is the
// instance's own.
constexpr double INSTANCE_SATURATION = 0.5;
constexpr double INSTANCE_VALUE = 0.9;
constexpr double INSTANCE_ALPHA = 1.0;

} // namespace floorplan
} // namespace IPSERDESIP
