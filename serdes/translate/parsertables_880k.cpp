// SPDX-License-Identifier: MIT
//
// Parameter tables of tier 880k: two quads, q0 and q1, four lanes each. The
// rows it shares with the other tiers are in parsertables_shared.h.

#include "translate/parsertables_shared.h"

namespace IPSERDESIP {
namespace parsertables {
namespace {

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

} // namespace

constexpr TierTables TABLES_880K = {
    2, FAMILY_GROUPS, MASTER_LANES, MASTER_SELECTS, CHIP_LINE_GROUPS, CHIP_DEFAULT_GROUPS,
};

} // namespace parsertables
} // namespace IPSERDESIP
