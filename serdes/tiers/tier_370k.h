// SPDX-License-Identifier: MIT
#pragma once

// Tier 370k: one quad with four reference inputs and four fabric clock inputs,
// all behind the four muxes; every PLL can take any mux.
//
// Its parameter tables hold the rows that are its own; those it shares with
// the other tiers are in translate/parsertables_shared.h.
//
// Its clock schematic: one quad, four reference inputs and four fabric clocks in front
// of four muxes.

#include "plugin/serdesipconstants.h"
#include "tiers/quadrows.h"
#include "tiers/tierdata.h"
#include "translate/parsertables_shared.h"

namespace IPSERDESIP {
namespace t370k {

namespace network {
using namespace topology;
// clang-format off
constexpr MuxRow MUXES[] = {
    // name      quad  kind                sel  dir   sel 0    sel 1     sel 2    sel 3
    {Q0_MUX0, Q0, MuxKind::Selector, {4, 1, {{Q0_REF0, Q0_GPIO1, Q0_REF1, Q0_GPIO0}}},
     "[q0].refimux0_sel %1"},
    {Q0_MUX1, Q0, MuxKind::Selector, {4, 1, {{Q0_REF1, Q0_GPIO1, Q0_REF0, Q0_GPIO0}}},
     "[q0].refimux1_sel %1"},
    {Q0_MUX2, Q0, MuxKind::Selector, {4, 1, {{Q0_REF2, Q0_GPIO3, Q0_REF3, Q0_GPIO2}}},
     "[q0].refimux2_sel %1"},
    {Q0_MUX3, Q0, MuxKind::Selector, {4, 1, {{Q0_REF3, Q0_GPIO3, Q0_REF2, Q0_GPIO2}}},
     "[q0].refimux3_sel %1"},
};

constexpr PllSelectRow PLL_SELECTS[] = {
    {Q0, {4, 1, {{Q0_MUX0, Q0_MUX1, Q0_MUX2, Q0_MUX3}}}},
};

constexpr ElementRow REFS[] = {
    {Q0_REF0, Q0},  {Q0_REF1, Q0},  {Q0_REF2, Q0},  {Q0_REF3, Q0},
    {Q0_GPIO0, Q0}, {Q0_GPIO1, Q0}, {Q0_GPIO2, Q0}, {Q0_GPIO3, Q0},
};
// clang-format on
} // namespace network

namespace parameters {
using namespace parsertables;
// The scopes, not the model classes of the same names.
using parsertables::LANE;
using parsertables::QUAD;

// Calibration clock sources beside those of every tier.
constexpr ValuePair CDR_REFCLK_MORE[] = {{"refmux2", "\"REFMUX2\""}, {"refmux3", "\"REFMUX3\""}};

constexpr Family FAMILIES[] = {
    {LANE, "cdr_refclk_sel", "cdr_calib_clk_src", CDR_REFCLK_MORE, nullptr},

    // Free values, translated by rule; only their defaults are rows.
    {QUAD, "refclk2_freq", nullptr, {}, "0"},
    {QUAD, "refclk3_freq", nullptr, {}, "0"},
    {QUAD, "gpio0_freq", nullptr, {}, "0"},
    {QUAD, "gpio1_freq", nullptr, {}, "0"},
    {QUAD, "gpio2_freq", nullptr, {}, "0"},
    {QUAD, "gpio3_freq", nullptr, {}, "0"},
};

constexpr Rows<Family> FAMILY_GROUPS[] = {COMMON_FAMILIES, FAMILIES_370K_90K, FAMILIES};
static_assert(familyRowsAgree(FAMILY_GROUPS), "a family of tier 370k has rows that disagree");

constexpr Rows<Line> CHIP_LINE_GROUPS[] = {COMMON_CHIP_LINES, CHIP_LINES_370K_90K};
constexpr Rows<Line> CHIP_DEFAULT_GROUPS[] = {COMMON_CHIP_DEFAULTS};

// The name under which the register compiler knows each group of parts.
constexpr DeviceLine DEVICE_LINES[] = {
    {"RK9C-370D/RK9C-370Q", "device = \"RK9C-370\""},
};

constexpr TierTables TABLES = {
    1, FAMILY_GROUPS, MASTER_LANES, MASTER_SELECTS, CHIP_LINE_GROUPS, CHIP_DEFAULT_GROUPS,
};
} // namespace parameters

namespace drawing {
using namespace schematic;
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
} // namespace drawing

constexpr TierData TIER = {
    // clang-format off
    {
        Tier::T370k,                                    // tier
        "370k",                                         // tag
        "RK9C-370D/RK9C-370Q",                          // families
        1,                                              // quads
        "Q0 REFCLK0/Q0 REFCLK1/Q0 REFCLK2/Q0 REFCLK3",  // reference pins
        "Q0 REFIN0/Q0 REFIN1/Q0 REFIN2/Q0 REFIN3",      // fabric references
        "REFMUX0/REFMUX1/REFMUX2/REFMUX3",              // reference muxes
        APP_SERDES_TOML_TO_CSR_370K,                    // register compiler
        4,                                              // Upar requesters
        1,                                              // form quads
    },
    // clang-format on
    quadrows::networkOf(1, network::MUXES, network::PLL_SELECTS, network::REFS),
    {1, drawing::SOURCES, std::size(drawing::SOURCES), drawing::MUXES, std::size(drawing::MUXES),
     drawing::OFFSETS, std::size(drawing::OFFSETS), 930, 740},
    &parameters::TABLES,
    parameters::DEVICE_LINES,
};

} // namespace t370k
} // namespace IPSERDESIP
