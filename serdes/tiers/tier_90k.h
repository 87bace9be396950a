// SPDX-License-Identifier: MIT
#pragma once

// Tier 90k: one quad with two reference inputs behind two muxes, of which
// only selects 0 and 2 are wired. The fabric clock and the master clock reach
// the PLLs directly, at selects 2 and 3, without any mux.
//
// Its parameter tables hold the rows that are its own; those it shares with
// the other tiers are in translate/parsertables_shared.h.
//
// Its clock schematic: one quad, two reference inputs, the fabric clock and the main
// clock in front of two muxes.

#include "plugin/serdesipconstants.h"
#include "tiers/quadrows.h"
#include "tiers/tierdata.h"
#include "translate/parsertables_shared.h"

namespace IPSERDESIP {
namespace t90k {

namespace network {
using namespace topology;
// clang-format off
constexpr MuxRow MUXES[] = {
    // name      quad  kind                sel  dir   sel 0    sel 1  sel 2    sel 3
    {Q0_MUX0, Q0, MuxKind::Selector, {4, 1, {{Q0_REF0, OPEN, Q0_REF1, OPEN}}},
     "[q0].refimux0_sel %1"},
    {Q0_MUX1, Q0, MuxKind::Selector, {4, 1, {{Q0_REF1, OPEN, Q0_REF0, OPEN}}},
     "[q0].refimux1_sel %1"},
};

constexpr PllSelectRow PLL_SELECTS[] = {
    {Q0, {4, 1, {{Q0_MUX0, Q0_MUX1, Q0_GPIO, Q0_MCLK}}}},
};

constexpr ElementRow REFS[] = {
    {Q0_REF0, Q0}, {Q0_REF1, Q0}, {Q0_GPIO, Q0}, {Q0_MCLK, Q0},
};
// clang-format on
} // namespace network

namespace parameters {
using namespace parsertables;
// The scopes, not the model classes of the same names.
using parsertables::LANE;
using parsertables::QUAD;

// Calibration clock sources beside those of every tier.
constexpr ValuePair CDR_REFCLK_MORE[] = {{"gpio", "\"GPIO\""}, {"mclk", "\"MCLK\""}};

constexpr Family FAMILIES[] = {
    {LANE, "cdr_refclk_sel", "cdr_calib_clk_src", CDR_REFCLK_MORE, nullptr},

    // Free values, translated by rule; only their defaults are rows.
    {QUAD, "gpio_freq", nullptr, {}, "0"},
};

constexpr Rows<Family> FAMILY_GROUPS[] = {COMMON_FAMILIES, FAMILIES_370K_90K, FAMILIES};
static_assert(familyRowsAgree(FAMILY_GROUPS), "a family of tier 90k has rows that disagree");

constexpr Rows<Line> CHIP_LINE_GROUPS[] = {COMMON_CHIP_LINES, CHIP_LINES_370K_90K};

constexpr Line CHIP_DEFAULTS[] = {
    {"mclk_freq", "0"},
};
constexpr Rows<Line> CHIP_DEFAULT_GROUPS[] = {COMMON_CHIP_DEFAULTS, CHIP_DEFAULTS};

// The name under which the register compiler knows each group of parts.
constexpr DeviceLine DEVICE_LINES[] = {
    {"RK9C-90F/RK9C-90D/RK9LC-90F/RK9LMC-90F", "device = \"RK9C-90\""},
    {"RK9MC-90F/RK9MC-90D", "device = \"RK9MC-90\""},
};

constexpr TierTables TABLES = {
    1, FAMILY_GROUPS, MASTER_LANES, MASTER_SELECTS, CHIP_LINE_GROUPS, CHIP_DEFAULT_GROUPS,
};
} // namespace parameters

namespace drawing {
using namespace schematic;
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
} // namespace drawing

constexpr TierData TIER = {
    // clang-format off
    {
        Tier::T90k,                                     // tier
        "90k",                                          // tag
        "RK9C-90F/RK9MC-90F/RK9MC-90D/RK9C-90D/RK9LC-90F/RK9LMC-90F",// families
        1,                                              // quads
        "Q0 REFCLK0/Q0 REFCLK1",                        // reference pins
        "Q0 REFIN/MCLK",                                // fabric references
        "REFMUX0/REFMUX1",                              // reference muxes
        APP_SERDES_TOML_TO_CSR_90K,                     // register compiler
        8,                                              // Upar requesters
        2,                                              // form quads
    },
    // clang-format on
    quadrows::networkOf(1, network::MUXES, network::PLL_SELECTS, network::REFS),
    {1, drawing::SOURCES, std::size(drawing::SOURCES), drawing::MUXES, std::size(drawing::MUXES),
     drawing::OFFSETS, std::size(drawing::OFFSETS), 930, 740},
    &parameters::TABLES,
    parameters::DEVICE_LINES,
};

} // namespace t90k
} // namespace IPSERDESIP
