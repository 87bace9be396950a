// SPDX-License-Identifier: MIT
#pragma once

// Tier 370k: one quad, four reference inputs and four fabric clocks in front
// of four muxes.

#include "views/schematiclayout.h"

#include <iterator>

namespace IPSERDESIP {
namespace schematic {
namespace t370k {

// clang-format off
constexpr NodeRow SOURCES[] = {
    {0, Q0_REF0,  "Q0 REFCLK0", 30,  50},
    {0, Q0_GPIO0, "Q0 GPIO0",   30, 120},
    {0, Q0_GPIO1, "Q0 GPIO1",   30, 190},
    {0, Q0_REF1,  "Q0 REFCLK1", 30, 260},
    {0, Q0_REF2,  "Q0 REFCLK2", 30, 440},
    {0, Q0_GPIO2, "Q0 GPIO2",   30, 510},
    {0, Q0_GPIO3, "Q0 GPIO3",   30, 580},
    {0, Q0_REF3,  "Q0 REFCLK3", 30, 650},
};

constexpr NodeRow MUXES[] = {
    {0, Q0_MUX0, "REFMUX0", 260, 103},
    {0, Q0_MUX1, "REFMUX1", 260, 246},
    {0, Q0_MUX2, "REFMUX2", 260, 434},
    {0, Q0_MUX3, "REFMUX3", 260, 577},
};

// Uneven on purpose, and kept so: every source's trunk runs in a column of
// its own.
constexpr OffsetRow OFFSETS[] = {
    {Q0_REF0, 30},  {Q0_GPIO1, 37}, {Q0_GPIO0, 42}, {Q0_REF1, 49},
    {Q0_REF2, 56},  {Q0_GPIO3, 63}, {Q0_GPIO2, 70}, {Q0_REF3, 77},
    {Q0_MUX0, 40},  {Q0_MUX1, 50},  {Q0_MUX2, 60},  {Q0_MUX3, 70},
};
// clang-format on

constexpr TierLayout LAYOUT = {
    1, SOURCES, std::size(SOURCES), MUXES, std::size(MUXES), OFFSETS, std::size(OFFSETS), 930, 740,
};

} // namespace t370k
} // namespace schematic
} // namespace IPSERDESIP
