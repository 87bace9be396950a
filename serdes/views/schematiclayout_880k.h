// SPDX-License-Identifier: MIT
#pragma once

// Tier 880k: two quads, one below the other, each with two reference inputs
// in front of two muxes. The bridge between the quads is no node: a route
// through it is drawn as a wire from the other quad's reference input
// straight to this quad's mux.

#include "views/schematiclayout.h"

#include <iterator>

namespace IPSERDESIP {
namespace schematic {
namespace t880k {

// clang-format off
constexpr NodeRow SOURCES[] = {
    {0, Q0_REF0, "Q0 REFCLK0", 30,  177},
    {0, Q0_REF1, "Q0 REFCLK1", 30,  564},
    {1, Q1_REF0, "Q1 REFCLK0", 30,  877},
    {1, Q1_REF1, "Q1 REFCLK1", 30, 1264},
};

constexpr NodeRow MUXES[] = {
    {0, Q0_MUX0, "REFMUX0", 230,  237},
    {0, Q0_MUX1, "REFMUX1", 230,  464},
    {1, Q1_MUX0, "REFMUX0", 230,  937},
    {1, Q1_MUX1, "REFMUX1", 230, 1164},
};

constexpr OffsetRow OFFSETS[] = {
    {Q0_REF0, 40}, {Q0_REF1, 50}, {Q1_REF0, 60}, {Q1_REF1, 70},
    {Q0_MUX0, 40}, {Q0_MUX1, 50}, {Q1_MUX0, 60}, {Q1_MUX1, 70},
};
// clang-format on

constexpr TierLayout LAYOUT = {
    2, SOURCES, std::size(SOURCES), MUXES, std::size(MUXES), OFFSETS, std::size(OFFSETS), 930, 1460,
};

} // namespace t880k
} // namespace schematic
} // namespace IPSERDESIP
