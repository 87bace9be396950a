// SPDX-License-Identifier: MIT
#pragma once

// The shapes in which a tier's own part of the clock schematic is written down
// in the tier's file: its sources and muxes, where each stands, and how far
// its wires run before they turn. Scene units; a position is the top left
// corner.

#include <cstddef>

namespace IPSERDESIP {
namespace schematic {

// A reference source or a mux of one tier.
struct NodeRow
{
    int quad;
    const char *key;
    const char *label;
    double x;
    double y;
};

// The distance from a node's out point to the vertical run of its wires.
struct OffsetRow
{
    const char *key;
    int offset;
};

struct TierLayout
{
    int quads;
    const NodeRow *sources;
    std::size_t sourceCount;
    const NodeRow *muxes;
    std::size_t muxCount;
    const OffsetRow *offsets;
    std::size_t offsetCount;
    double width;
    double height;
};

} // namespace schematic
} // namespace IPSERDESIP
