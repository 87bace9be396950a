// SPDX-License-Identifier: MIT
#pragma once

// The rows that more than one tier has, written once: the families, master
// selects and chip lines of every tier, then those that 370k and 90k have and
// 880k lacks. Each tier's file names these groups beside its own rows. Only
// the tier files include this.

#include "translate/parsertables.h"

namespace IPSERDESIP {
namespace parsertables {

inline constexpr Scope LANE = Scope::Lane;
inline constexpr Scope QUAD = Scope::Quad;
inline constexpr Scope BOTH = Scope::BothQuads;

inline constexpr ValuePair ENABLE_DISABLE[] = {{"enable", "true"}, {"disable", "false"}};
inline constexpr ValuePair TRUE_FALSE[] = {{"true", "true"}, {"false", "false"}};
inline constexpr ValuePair FABRIC_CSR[] = {{"fabric", "true"}, {"csr", "false"}};

inline constexpr ValuePair PLL_SEL[]
    = {{"cpll", "0"}, {"qpll0", "1"}, {"qpll1", "2"}, {"qclk", "3"}};
inline constexpr ValuePair CDR_REFCLK[]
    = {{"auto", "\"AUTO\""}, {"refmux0", "\"REFMUX0\""}, {"refmux1", "\"REFMUX1\""}};
inline constexpr ValuePair QUAD_CLK[] = {{"internal", "\"Internal\""}, {"common", "\"Mac\""}};
inline constexpr ValuePair QUAD_CLK_PLL[] = {{"qpll0", "\"CM0\""}, {"qpll1", "\"CM1\""}};
inline constexpr ValuePair QUAD_CLK_LANE[] = {{"ln0_pma_rx_clk", "\"LN0_PMA_RX_CLK\""},
                                              {"ln1_pma_rx_clk", "\"LN1_PMA_RX_CLK\""},
                                              {"ln2_pma_rx_clk", "\"LN2_PMA_RX_CLK\""},
                                              {"ln3_pma_rx_clk", "\"LN3_PMA_RX_CLK\""}};
inline constexpr ValuePair GEARBOX[] = {{"1", "\"1:1\""}, {"2", "\"1:2\""}, {"4", "\"1:4\""}};
// The regulator has one setting; any other voltage has no translation.
inline constexpr ValuePair VDDT[] = {{"900", "900.0"}};
inline constexpr ValuePair EQ_MODE[] = {{"auto", "false"}, {"manual", "true"}};
inline constexpr ValuePair FFE_MODE[] = {{"manual", "true"}, {"auto", "false"}};
// The device counts align characters from zero.
inline constexpr ValuePair ALIGN_LENGTH[] = {{"1", "0"}, {"2", "1"}, {"3", "2"}, {"4", "3"}};
inline constexpr ValuePair LOOPBACK[] = {{"off", "\"OFF\""},
                                         {"lb_nes", "\"LB_NES\""},
                                         {"lb_fes", "\"LB_FES\""},
                                         {"lb_enc", "\"LB_ENC\""},
                                         {"rx_only", "\"RX_ONLY\""}};
inline constexpr ValuePair BERT_PATTERN[] = {{"prbs31", "\"PRBS31\""},
                                             {"prbs23", "\"PRBS23\""},
                                             {"prbs15", "\"PRBS15\""},
                                             {"prbs7", "\"PRBS7\""},
                                             {"udp", "\"UDP\""}};
inline constexpr ValuePair TX_OVS_MODE[] = {{"off", "\"OFF\""}, {"buildin", "\"BuildIn\""}};
inline constexpr ValuePair RX_OVS_MODE[]
    = {{"off", "\"OFF\""}, {"buildin", "\"BuildIn\""}, {"fabric", "\"Fabric\""}};
inline constexpr ValuePair TX_OVS_RATIO[] = {{"na", "\"N/A\""},
                                             {"5x", "\"5x\""},
                                             {"10x", "\"10x\""},
                                             {"20x", "\"20x\""},
                                             {"40x", "\"40x\""}};
inline constexpr ValuePair RX_OVS_RATIO[]
    = {{"na", "\"N/A\""}, {"5x", "\"5x\""}, {"10x", "\"10x\""}, {"20x", "\"20x\""}};
inline constexpr ValuePair RX_OVS_PLL[]
    = {{"na", "\"N/A\""}, {"cpll", "\"CPLL\""}, {"qpll0", "\"QPLL0\""}};
inline constexpr ValuePair BONDING_CLK[]
    = {{"quad_rx_clk", "\"quad\""}, {"lane_rx_clk", "\"lane\""}};
inline constexpr ValuePair CTC_CLK[] = {{"fabric_clk", "\"fabric_c2i_clk\""},
                                        {"lane_bond_clk", "\"pcs_rx_b2c_clk\""},
                                        {"lane_tx_clk", "\"pcs_tx_clk\""}};
inline constexpr ValuePair COUPLING[] = {{"ac", "\"AC\""}, {"dc", "\"DC\""}};
inline constexpr ValuePair WIDTH[] = {{"8", "8"}, {"16", "16"}, {"10", "10"}, {"20", "20"}};

// The families of every tier, with the values every tier has.
inline constexpr Family COMMON_FAMILIES[] = {
    // Switches: enable or disable, off by default.
    {LANE, "word_align", "word_align_enable", ENABLE_DISABLE, "disable"},
    {LANE, "channel_bonding", "chbond_enable", ENABLE_DISABLE, "disable"},
    {LANE, "ctc", "ctc_enable", ENABLE_DISABLE, "disable"},
    {LANE, "two_words_ctc", "ctc_skipb_pattern_enable", ENABLE_DISABLE, "disable"},
    {LANE, "tx_data_mpl", "tx_data_manipulation_enable", ENABLE_DISABLE, "disable"},
    {LANE, "tx_bit_invert", "tx_bit_invert", ENABLE_DISABLE, "disable"},
    {LANE, "tx_byte_invert", "tx_byte_invert", ENABLE_DISABLE, "disable"},
    {LANE, "tx_pol_invert", "tx_pol_invert", ENABLE_DISABLE, "disable"},
    {LANE, "rx_data_mpl", "rx_data_manipulation_enable", ENABLE_DISABLE, "disable"},
    {LANE, "rx_bit_invert", "rx_bit_invert", ENABLE_DISABLE, "disable"},
    {LANE, "rx_byte_invert", "rx_byte_invert", ENABLE_DISABLE, "disable"},
    {LANE, "rx_pol_invert", "rx_pol_invert", ENABLE_DISABLE, "disable"},
    {LANE, "bert_preamble", "preamEn", ENABLE_DISABLE, "disable"},
    {LANE, "bert_tx_bist_inv", "txBistInv", ENABLE_DISABLE, "disable"},
    {LANE, "bert_rx_bist_inv", "rxBistInv", ENABLE_DISABLE, "disable"},

    // Flags: true or false, false by default.
    {QUAD, "enable", "enable", TRUE_FALSE, "false"},
    {LANE, "enable", "enable", TRUE_FALSE, "false"},
    {BOTH, "por_toggle_by_fabric", "por_toggle_by_fabric", TRUE_FALSE, "false"},
    {BOTH, "pd_toggle_by_fabric", "pd_toggle_by_fabric", TRUE_FALSE, "false"},
    {LANE, "2nd_channel_bonding_align_pattern_is_k", "chbond_align_pattern1_is_kcode", TRUE_FALSE,
     "false"},
    {LANE, "3rd_channel_bonding_align_pattern_is_k", "chbond_align_pattern2_is_kcode", TRUE_FALSE,
     "false"},
    {LANE, "4th_channel_bonding_align_pattern_is_k", "chbond_align_pattern3_is_kcode", TRUE_FALSE,
     "false"},
    {LANE, "ctc_2nd_pattern_is_k", "ctc_skipb_pattern_is_kcode", TRUE_FALSE, "false"},
    {LANE, "rx_lock_from_fabric", "locked_from_fabric", TRUE_FALSE, "false"},

    // Control from the fabric or from the registers, the fabric by default.
    {LANE, "trigger_bonding_ctrl", "chbond_trigger_by_fabric", FABRIC_CSR, "fabric"},
    {QUAD, "pma_reset_source", "lane_reset_by_fabric", FABRIC_CSR, "fabric"},
    {LANE, "pcs_tx_reset_source", "pcs_tx_reset_by_fabric", FABRIC_CSR, "fabric"},
    {LANE, "pcs_rx_reset_source", "pcs_rx_reset_by_fabric", FABRIC_CSR, "fabric"},
    // A second name for the same field; pcs_tx_reset_source carries its default.
    {LANE, "pcs_tx_reset_src_sel", "pcs_tx_reset_by_fabric", FABRIC_CSR, nullptr},

    // Families with value lists of their own.
    {LANE, "pll_sel", "pcs_tx_clk_src", PLL_SEL, "cpll"},
    {LANE, "cdr_refclk_sel", "cdr_calib_clk_src", CDR_REFCLK, "auto"},
    {QUAD, "tx_quad_clk_sel", "tx_quad_clk_sel", QUAD_CLK, "internal"},
    {QUAD, "rx_quad_clk_sel", "rx_quad_clk_sel", QUAD_CLK, "internal"},
    {QUAD, "tx_quad_clk_internal_sel", "tx_quad_clk_internal_sel", QUAD_CLK_PLL, "qpll0"},
    {QUAD, "rx_quad_clk_internal_sel", "rx_quad_clk_internal_sel", QUAD_CLK_LANE, "ln0_pma_rx_clk"},
    {LANE, "tx_gearbox", "tx_gear_rate", GEARBOX, "1"},
    {LANE, "rx_gearbox", "rx_gear_rate", GEARBOX, "1"},
    {LANE, "vddt", "vddt", VDDT, "900"},
    {LANE, "rx_eq_mode", "eq_manual", EQ_MODE, "auto"},
    {LANE, "tx_ffe_mode", "ffe_manual", FFE_MODE, "auto"},
    {LANE, "channel_bonding_align_length", "chbond_align_length", ALIGN_LENGTH, "1"},
    {LANE, "loopback_mode", "loopBack", LOOPBACK, "off"},
    {LANE, "bert_tx_pattern", "txPattern", BERT_PATTERN, "prbs31"},
    {LANE, "bert_rx_pattern", "rxPattern", BERT_PATTERN, "prbs31"},
    {LANE, "tx_ovs_mode", "tx_ovs_mode", TX_OVS_MODE, "off"},
    {LANE, "rx_ovs_mode", "rx_ovs_mode", RX_OVS_MODE, "off"},
    {LANE, "tx_ovs_ratio", "tx_ovs_ratio", TX_OVS_RATIO, "na"},
    {LANE, "rx_ovs_ratio", "rx_ovs_ratio", RX_OVS_RATIO, "na"},
    {LANE, "rx_ovs_pll_sel", "rx_ovs_pll_src", RX_OVS_PLL, "na"},
    {LANE, "rx_bonding_clk_src_sel", "chbond_clk_src", BONDING_CLK, "lane_rx_clk"},
    {LANE, "ctc_clk_src_sel", "ctc_clk_src", CTC_CLK, "fabric_clk"},
    {LANE, "rx_coupling", "rx_coupling", COUPLING, "ac"},

    // Free values, translated by rule; only their defaults are rows.
    {QUAD, "refclk0_freq", nullptr, {}, "0"},
    {QUAD, "refclk1_freq", nullptr, {}, "0"},
    {LANE, "tx_rate", nullptr, {}, "1.25"},
    {LANE, "rx_rate", nullptr, {}, "1.25"},
    {LANE, "word_align_pattern", nullptr, {}, "k28.5"},
    {LANE, "word_align_pattern_mask", nullptr, {}, "1111111111"},
    {LANE, "tx_differential_swing", nullptr, {}, "900mV"},
    {LANE, "tx_ffe_cm", nullptr, {}, "0"},
    {LANE, "tx_ffe_c1", nullptr, {}, "0"},
    {LANE, "rx_sd_thsel", nullptr, {}, "100mV"},
    {QUAD, "rx_eq_bias", nullptr, {}, "7"},
    {LANE, "rx_att_boost", nullptr, {}, "0"},
    {LANE, "rx_att", nullptr, {}, "7"},
    {LANE, "rx_boost", nullptr, {}, "9"},
    {LANE, "channel_bonding_align_pattern", nullptr, {}, "7C"},
    {LANE, "2nd_channel_bonding_align_pattern", nullptr, {}, "7C"},
    {LANE, "3rd_channel_bonding_align_pattern", nullptr, {}, "7C"},
    {LANE, "4th_channel_bonding_align_pattern", nullptr, {}, "7C"},
    {LANE, "channel_bonding_max_skew", nullptr, {}, "8"},
    {LANE, "ctc_pattern", nullptr, {}, "1C"},
    {LANE, "ctc_2nd_pattern", nullptr, {}, "1C"},
    {LANE, "ctc_rd_start_depth", nullptr, {}, "8"},
    {LANE, "tx_slip_distance", nullptr, {}, "8"},
    {LANE, "rx_slip_distance", nullptr, {}, "8"},
    {LANE, "tx_if_rd_start_depth", nullptr, {}, "8"},
    {LANE, "rx_if_rd_start_depth", nullptr, {}, "8"},
    {LANE, "rx_bonding_rd_start_depth", nullptr, {}, "8"},
    {LANE, "rxsd_idle_low_filter", nullptr, {}, "0"},
    {LANE, "rxsd_idle_high_filter", nullptr, {}, "0"},
    {LANE, "cdr_gc_counter", nullptr, {}, "250"},
};

// Every lane of both quads may be a master, whatever quads the tier has.
inline constexpr ValuePair MASTER_LANES[] = {
    {"q0_ln0", "\"q0.ln0\""}, {"q0_ln1", "\"q0.ln1\""}, {"q0_ln2", "\"q0.ln2\""},
    {"q0_ln3", "\"q0.ln3\""}, {"q1_ln0", "\"q1.ln0\""}, {"q1_ln1", "\"q1.ln1\""},
    {"q1_ln2", "\"q1.ln2\""}, {"q1_ln3", "\"q1.ln3\""},
};

inline constexpr MasterSelect MASTER_SELECTS[] = {
    {"channel_bonding_master_sel", "chbond_mst_sel"},
    {"tx_if_mst_sel", "tx_if_cfg_mst_sel"},
    {"ctc_mst_sel", "ctc_mst_sel"},
};

// Every tier has q0, whose clock the common clock may take.
inline constexpr Line COMMON_CHIP_LINES[] = {
    {"common_clk_from_q0_sel qpll0", "[q0].quad_clk_to_mac_sel \"CM0\""},
    {"common_clk_from_q0_sel qpll1", "[q0].quad_clk_to_mac_sel \"CM1\""},
    {"common_clk_from_q0_sel ln0_pma_rx_clk", "[q0].quad_clk_to_mac_sel \"LN0_PMA_RX_CLK\""},
    {"common_clk_from_q0_sel ln1_pma_rx_clk", "[q0].quad_clk_to_mac_sel \"LN1_PMA_RX_CLK\""},
    {"common_clk_from_q0_sel ln2_pma_rx_clk", "[q0].quad_clk_to_mac_sel \"LN2_PMA_RX_CLK\""},
    {"common_clk_from_q0_sel ln3_pma_rx_clk", "[q0].quad_clk_to_mac_sel \"LN3_PMA_RX_CLK\""},
};

inline constexpr Line COMMON_CHIP_DEFAULTS[] = {
    {"common_clk_src_sel", "q0"},
    {"common_clk_from_q0_sel", "qpll0"},
};

// What 370k and 90k have and 880k lacks: a receive width of its own, 64b66b
// and 64b67b coding besides 8b10b, a transmit-only loopback, and a common clock
// that only q0 can give.

inline constexpr ValuePair LOOPBACK_TX_ONLY[] = {{"tx_only", "\"TX_ONLY\""}};
inline constexpr ValuePair RX_WIDTH[] = {{"8", "\"8\""},
                                         {"16", "\"16\""},
                                         {"10", "\"10\""},
                                         {"20", "\"20\""},
                                         {"share_tx", "\"share\""}};
inline constexpr ValuePair CODE[] = {
    {"8b10b", "\"8b10b\""}, {"off", "\"OFF\""}, {"64b66b", "\"64b66b\""}, {"64b67b", "\"64b67b\""}};

inline constexpr Family FAMILIES_370K_90K[] = {
    {LANE, "rx_64b66b_decode_10gbaser", "10GBASE-R", ENABLE_DISABLE, "disable"},
    {LANE, "rxsd_use_dlogic", "rxsd_use_dlogic", TRUE_FALSE, "false"},
    {LANE, "loopback_mode", "loopBack", LOOPBACK_TX_ONLY, nullptr},
    {LANE, "pma_tx_width_mode", "width_mode", WIDTH, "10"},
    {LANE, "pma_rx_width_mode", "rx_seperated_width_mode", RX_WIDTH, "10"},
    {LANE, "tx_encode", "encode_mode", CODE, "off"},
    {LANE, "rx_decode", "decode_mode", CODE, "off"},
    {LANE, "rx_64b67b_decode_ilk_metaframe_len", nullptr, {}, "32"},
};

// The common clock can only come from the one quad.
inline constexpr Line CHIP_LINES_370K_90K[] = {
    {"common_clk_src_sel q0", "[q0].mac_quad_clk_sel \"Q0\""},
};

constexpr bool sameText(const char *a, const char *b)
{
    if (!a || !b)
        return a == b;
    while (*a && *a == *b) {
        ++a;
        ++b;
    }
    return *a == *b;
}

// Whether the rows of a tier's families fit together: the rows of one family
// (scope and name) write one field, and where a family has several rows,
// exactly one of them carries the default. A family of one row may have none,
// as a second name for a field whose first name carries it.
constexpr bool familyRowsAgree(Groups<Family> families)
{
    for (const Family &family : families) {
        int rows = 0;
        int defaults = 0;
        for (const Family &other : families) {
            if (other.scope != family.scope || !sameText(other.name, family.name))
                continue;
            if (!sameText(other.field, family.field))
                return false;
            ++rows;
            defaults += other.defaultValue ? 1 : 0;
        }
        if (defaults > 1 || (rows > 1 && defaults == 0))
            return false;
    }
    return true;
}

} // namespace parsertables
} // namespace IPSERDESIP
