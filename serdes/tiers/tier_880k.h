// SPDX-License-Identifier: MIT
#pragma once

// Tier 880k: two quads with two reference inputs each, joined by a bridge mux.
// The bridge sits at select 2 on quad 0's muxes but at select 1 on quad 1's.
//
// Its parameter tables hold the rows that are its own; those it shares with
// the other tiers are in translate/parsertables_shared.h.
//
// Its clock schematic: two quads, one below the other, each with two reference inputs
// in front of two muxes. The bridge between the quads is no node: a route
// through it is drawn as a wire from the other quad's reference input
// straight to this quad's mux.

#include "plugin/serdesipconstants.h"
#include "tiers/quadrows.h"
#include "tiers/tierdata.h"
#include "translate/parsertables_shared.h"

namespace IPSERDESIP {
namespace t880k {

namespace network {
using namespace topology;
// clang-format off
constexpr MuxRow MUXES[] = {
    // name      quad  kind                sel  dir   sel 0    sel 1         sel 2         sel 3
    {Q0_MUX0, Q0, MuxKind::Selector, {4, 1, {{Q0_REF0, OPEN, MUX_Q0_TO_Q1, Q0_REF1}}},
     "[q0].refimux0_sel %1"},
    {Q0_MUX1, Q0, MuxKind::Selector, {4, 1, {{Q0_REF1, OPEN, MUX_Q0_TO_Q1, Q0_REF0}}},
     "[q0].refimux1_sel %1"},
    {Q1_MUX0, Q1, MuxKind::Selector, {4, 1, {{Q1_REF0, MUX_Q0_TO_Q1, OPEN, Q1_REF1}}},
     "[q1].refimux0_sel %1"},
    {Q1_MUX1, Q1, MuxKind::Selector, {4, 1, {{Q1_REF1, MUX_Q0_TO_Q1, OPEN, Q1_REF0}}},
     "[q1].refimux1_sel %1"},
    // Direction 0 carries a clock of quad 0, direction 1 one of quad 1.
    {MUX_Q0_TO_Q1, Q0, MuxKind::Bridge, {2, 2, {{Q0_REF0, Q0_REF1}, {Q1_REF0, Q1_REF1}}},
     nullptr},
};

constexpr PllSelectRow PLL_SELECTS[] = {
    {Q0, {2, 1, {{Q0_MUX0, Q0_MUX1}}}},
    {Q1, {2, 1, {{Q1_MUX0, Q1_MUX1}}}},
};

constexpr ElementRow REFS[] = {
    {Q0_REF0, Q0}, {Q0_REF1, Q0}, {Q1_REF0, Q1}, {Q1_REF1, Q1},
};
// clang-format on
} // namespace network

namespace parameters {
using namespace parsertables;
// The scopes, not the model classes of the same names.
using parsertables::LANE;
using parsertables::QUAD;

// One width for both directions, and no coding but 8b10b.
constexpr ValuePair CODEC_8B10B[] = {{"enable", "\"8b10b\""}, {"disable", "\"OFF\""}};

constexpr Family FAMILIES[] = {
    {LANE, "pma_width_mode", "width_mode", WIDTH, "10"},
    {LANE, "8b10b_encode", "encode_mode", CODEC_8B10B, "disable"},
    {LANE, "8b10b_decode", "decode_mode", CODEC_8B10B, "disable"},
};

constexpr Rows<Family> FAMILY_GROUPS[] = {COMMON_FAMILIES, FAMILIES};
static_assert(familyRowsAgree(FAMILY_GROUPS), "a family of tier 880k has rows that disagree");

// The common clock is one choice for the chip, written to both quads.
constexpr Line CHIP_LINES[] = {
    {"common_clk_src_sel q0", "[q0].mac_quad_clk_sel \"Q0\" && [q1].mac_quad_clk_sel \"Q0\""},
    {"common_clk_src_sel q1", "[q0].mac_quad_clk_sel \"Q1\" && [q1].mac_quad_clk_sel \"Q1\""},

    {"common_clk_from_q1_sel qpll0", "[q1].quad_clk_to_mac_sel \"CM0\""},
    {"common_clk_from_q1_sel qpll1", "[q1].quad_clk_to_mac_sel \"CM1\""},
    {"common_clk_from_q1_sel ln0_pma_rx_clk", "[q1].quad_clk_to_mac_sel \"LN0_PMA_RX_CLK\""},
    {"common_clk_from_q1_sel ln1_pma_rx_clk", "[q1].quad_clk_to_mac_sel \"LN1_PMA_RX_CLK\""},
    {"common_clk_from_q1_sel ln2_pma_rx_clk", "[q1].quad_clk_to_mac_sel \"LN2_PMA_RX_CLK\""},
    {"common_clk_from_q1_sel ln3_pma_rx_clk", "[q1].quad_clk_to_mac_sel \"LN3_PMA_RX_CLK\""},
};
constexpr Rows<Line> CHIP_LINE_GROUPS[] = {COMMON_CHIP_LINES, CHIP_LINES};

constexpr Line CHIP_DEFAULTS[] = {
    {"common_clk_from_q1_sel", "qpll0"},
};
constexpr Rows<Line> CHIP_DEFAULT_GROUPS[] = {COMMON_CHIP_DEFAULTS, CHIP_DEFAULTS};

// The name under which the register compiler knows each group of parts.
constexpr DeviceLine DEVICE_LINES[] = {
    {"RK9C-880D/RK9C-880E", "device = \"RK9C-880\""},
    {"RK9PC-880D/RK9PC-880E", "device = \"RK9PC-880\""},
    {"RK9C-440D/RK9C-440E", "device = \"RK9C-440\""},
};

constexpr TierTables TABLES = {
    2, FAMILY_GROUPS, MASTER_LANES, MASTER_SELECTS, CHIP_LINE_GROUPS, CHIP_DEFAULT_GROUPS,
};
} // namespace parameters

namespace drawing {
using namespace schematic;
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
} // namespace drawing

constexpr TierData TIER = {
    // clang-format off
    {
        Tier::T880k,                                    // tier
        "880k",                                         // tag
        nullptr,                                        // families
        2,                                              // quads
        "Q0 REFCLK0/Q0 REFCLK1/Q1 REFCLK0/Q1 REFCLK1",  // reference pins
        nullptr,                                        // fabric references
        "REFMUX0/REFMUX1",                              // reference muxes
        APP_SERDES_TOML_TO_CSR_880K,                    // register compiler
        8,                                              // Upar requesters
        2,                                              // form quads
    },
    // clang-format on
    quadrows::networkOf(2, network::MUXES, network::PLL_SELECTS, network::REFS),
    {2, drawing::SOURCES, std::size(drawing::SOURCES), drawing::MUXES, std::size(drawing::MUXES),
     drawing::OFFSETS, std::size(drawing::OFFSETS), 930, 1460},
    &parameters::TABLES,
    parameters::DEVICE_LINES,
};

} // namespace t880k
} // namespace IPSERDESIP
