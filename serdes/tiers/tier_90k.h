// SPDX-License-Identifier: MIT
#pragma once

// Tier 90k: one quad with two reference inputs behind two muxes, of which
// only selects 0 and 2 are wired. The fabric clock and the master clock reach
// the PLLs directly, at selects 2 and 3, without any mux.
//
// Its clock schematic: one quad, two reference inputs, the fabric clock and the main
// clock in front of two muxes.

#include "plugin/serdesipconstants.h"
#include "tiers/tierdata.h"

namespace IPSERDESIP {
namespace t90k {

namespace network {
using namespace topology;
// clang-format off
constexpr const char *QUADS[] = {Q0};

constexpr ElementRow LANES[] = {
    {Q0_LANE0, Q0}, {Q0_LANE1, Q0}, {Q0_LANE2, Q0}, {Q0_LANE3, Q0},
};

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

constexpr PllRow PLLS[] = {
    {Q0_CPLL0, Q0, "[q0.ln0].cpll_ref_sel %1"}, {Q0_CPLL1, Q0, "[q0.ln1].cpll_ref_sel %1"},
    {Q0_CPLL2, Q0, "[q0.ln2].cpll_ref_sel %1"}, {Q0_CPLL3, Q0, "[q0.ln3].cpll_ref_sel %1"},
    {Q0_QPLL0, Q0, "[q0].qpll0_ref_sel %1"},    {Q0_QPLL1, Q0, "[q0].qpll1_ref_sel %1"},
};

constexpr ElementRow REFS[] = {
    {Q0_REF0, Q0}, {Q0_REF1, Q0}, {Q0_GPIO, Q0}, {Q0_MCLK, Q0},
};
// clang-format on
} // namespace network

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
    {network::QUADS, network::LANES, network::MUXES, network::PLL_SELECTS, network::PLLS,
     network::REFS},
    {1, drawing::SOURCES, std::size(drawing::SOURCES), drawing::MUXES, std::size(drawing::MUXES),
     drawing::OFFSETS, std::size(drawing::OFFSETS), 930, 740},
    &parsertables::TABLES_90K,
};

} // namespace t90k
} // namespace IPSERDESIP
