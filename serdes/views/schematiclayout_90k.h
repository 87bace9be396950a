// SPDX-License-Identifier: MIT
#pragma once

// Tier 90k: one quad, two reference inputs, the fabric clock and the main
// clock in front of two muxes.

#include "views/schematiclayout.h"

#include <iterator>

namespace IPSERDESIP {
namespace schematic {
namespace t90k {

// clang-format off
constexpr NodeRow SOURCES[] = {
    {0, Q0_REF0, "Q0 REFCLK0", 30,  50},
    {0, Q0_REF1, "Q0 REFCLK1", 30, 260},
    {0, Q0_GPIO, "GPIO",       30, 440},
    {0, Q0_MCLK, "MCLK",       30, 650},
};

constexpr NodeRow MUXES[] = {
    {0, Q0_MUX0, "REFMUX0", 260, 103},
    {0, Q0_MUX1, "REFMUX1", 260, 246},
};

constexpr OffsetRow OFFSETS[] = {
    {Q0_REF0, 30}, {Q0_REF1, 49}, {Q0_GPIO, 56}, {Q0_MCLK, 77},
    {Q0_MUX0, 40}, {Q0_MUX1, 70},
};
// clang-format on

constexpr TierLayout LAYOUT = {
    1, SOURCES, std::size(SOURCES), MUXES, std::size(MUXES), OFFSETS, std::size(OFFSETS), 930, 740,
};

} // namespace t90k
} // namespace schematic
} // namespace IPSERDESIP
