// SPDX-License-Identifier: MIT
#pragma once

// The shapes in which the device tiers' networks are written down, one file of
// rows per tier, and the rule that picks the tier. Internal to the library.

#include <QString>

namespace IPSERDESIP {
namespace topology {

// Part family strings of the two smaller tiers, "/"-joined and compared whole
// and case-sensitively. Every other string, unknown ones included, is 880k.
const char DEVICES_370K[] = "RK9C-370D/RK9C-370Q";
const char DEVICES_90K[] = "RK9C-90F/RK9MC-90F/RK9MC-90D/RK9C-90D/RK9LC-90F/RK9LMC-90F";

enum class Tier { T880k, T370k, T90k };

Tier tierOf(const QString &device);

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

} // namespace topology
} // namespace IPSERDESIP
