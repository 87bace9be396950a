// SPDX-License-Identifier: MIT
#pragma once

// The shapes in which a device tier's clock network is written down in the
// tier's own file. Internal to the library and the tools.

#include "tiers/rows.h"

namespace IPSERDESIP {
namespace topology {

// An unconnected position.
constexpr const char *OPEN = nullptr;

// What a select mux sees: at[dir][sel] names a reference source or a mux.
struct Positions
{
    int selCount;
    int dirCount;
    const char *at[2][4];
};

enum class MuxKind {
    // A select mux of one quad, writing one parameter line with its select.
    Selector,
    // The bridge between two quads: it stands in every quad's map, its
    // direction says which quad feeds it, and it writes four lines.
    Bridge,
};

struct MuxRow
{
    const char *name;
    const char *quad;
    MuxKind kind;
    Positions wiring;
    // A selector's parameter line, %1 being its select; none for a bridge.
    const char *line;
};

// The reference select that every PLL of a quad has.
struct PllSelectRow
{
    const char *quad;
    Positions wiring;
};

struct PllRow
{
    const char *name;
    const char *quad;
    // %1 is the select of the PLL's reference mux.
    const char *line;
};

// A lane or a reference source.
struct ElementRow
{
    const char *name;
    const char *quad;
};

// A tier's whole network.
struct Network
{
    Rows<const char *> quads;
    Rows<ElementRow> lanes;
    Rows<MuxRow> muxes;
    // One row per quad: every PLL of the quad has this select.
    Rows<PllSelectRow> pllSelects;
    Rows<PllRow> plls;
    Rows<ElementRow> refs;
};

} // namespace topology
} // namespace IPSERDESIP
