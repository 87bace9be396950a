// SPDX-License-Identifier: MIT
//
// The free-valued parameters: frequencies, rates, patterns, analog settings
// and the reference mux selects that the route search leaves to a protocol.
// The same for every tier.

#include "translate/parsertables.h"

namespace IPSERDESIP {
namespace parsertables {
namespace {

constexpr RuleScope LANE = RuleScope::Lane;
constexpr RuleScope QUAD = RuleScope::Quad;
constexpr RuleScope CHIP = RuleScope::Chip;

constexpr ValueRule TEXT = ValueRule::Text;
constexpr ValueRule UPPER = ValueRule::Upper;
constexpr ValueRule SWING = ValueRule::Swing;
constexpr ValueRule THRESHOLD = ValueRule::Threshold;
constexpr ValueRule HEX = ValueRule::Hex;

// Frequencies are in MHz and rates in Gb/s; the number is passed on unread.
constexpr Rule RULE_ROWS[] = {
    {QUAD, 2, "refclk0_freq", "ref_pad0_freq", "\"%1M\"", TEXT},
    {QUAD, 2, "refclk1_freq", "ref_pad1_freq", "\"%1M\"", TEXT},
    {QUAD, 1, "refclk2_freq", "ref_pad2_freq", "\"%1M\"", TEXT},
    {QUAD, 1, "refclk3_freq", "ref_pad3_freq", "\"%1M\"", TEXT},
    {QUAD, 1, "gpio0_freq", "gpio0_freq", "\"%1M\"", TEXT},
    {QUAD, 1, "gpio1_freq", "gpio1_freq", "\"%1M\"", TEXT},
    {QUAD, 1, "gpio2_freq", "gpio2_freq", "\"%1M\"", TEXT},
    {QUAD, 1, "gpio3_freq", "gpio3_freq", "\"%1M\"", TEXT},
    {QUAD, 1, "gpio_freq", "gpio_freq", "\"%1M\"", TEXT},
    {CHIP, 1, "mclk_freq", "mclk_freq", "\"%1M\"", TEXT},
    {LANE, 2, "tx_rate", "tx_data_rate", "\"%1G\"", TEXT},
    {LANE, 2, "rx_rate", "rx_data_rate", "\"%1G\"", TEXT},
    {LANE, 2, "word_align_pattern", "comma", "\"%1\"", UPPER},
    {LANE, 2, "word_align_pattern_mask", "comma_mask", "\"%1\"", TEXT},
    {LANE, 2, "tx_differential_swing", "txlev", "%1", SWING},
    {LANE, 2, "tx_ffe_cm", "ffe_cm", "%1", TEXT},
    {LANE, 2, "tx_ffe_c0", "ffe_c0", "%1", TEXT},
    {LANE, 2, "tx_ffe_c1", "ffe_c1", "%1", TEXT},
    {LANE, 2, "rx_sd_thsel", "sr_sd_thsel", "%1", THRESHOLD},
    {QUAD, 2, "rx_eq_bias", "rx_eq_bias", "%1", TEXT},
    {LANE, 2, "rx_att_boost", "dr_rx_att_boost", "%1", TEXT},
    {LANE, 2, "rx_att", "dr_rx_att", "%1", TEXT},
    {LANE, 2, "rx_boost", "dr_rx_boost", "%1", TEXT},
    {LANE, 2, "channel_bonding_align_pattern", "chbond_align_pattern0", "%1", HEX},
    {LANE, 2, "2nd_channel_bonding_align_pattern", "chbond_align_pattern1", "%1", HEX},
    {LANE, 2, "3rd_channel_bonding_align_pattern", "chbond_align_pattern2", "%1", HEX},
    {LANE, 2, "4th_channel_bonding_align_pattern", "chbond_align_pattern3", "%1", HEX},
    {LANE, 2, "channel_bonding_max_skew", "chbond_max_skew", "%1", TEXT},
    {LANE, 2, "ctc_pattern", "ctc_skipa_pattern", "%1", HEX},
    {LANE, 2, "ctc_2nd_pattern", "ctc_skipb_pattern", "%1", HEX},
    {LANE, 2, "ctc_rd_start_depth", "ctc_rd_start_depth", "\"%1\"", TEXT},
    {LANE, 2, "tx_slip_distance", "tx_slip_distance", "%1", TEXT},
    {LANE, 2, "rx_slip_distance", "rx_slip_distance", "%1", TEXT},
    {LANE, 2, "tx_if_rd_start_depth", "tx_if_cfg_rd_start_depth", "%1", TEXT},
    {LANE, 2, "rx_if_rd_start_depth", "rx_if_cfg_rd_start_depth", "%1", TEXT},
    {LANE, 2, "rx_bonding_rd_start_depth", "chbond_cfg_rd_start_depth", "%1", TEXT},
    {QUAD, 2, "oe_l", "oe_l", "%1", TEXT},
    {QUAD, 2, "oe_r", "oe_r", "%1", TEXT},
    {QUAD, 2, "mux_refin_0_sel", "mux_refin_0_sel", "%1", TEXT},
    {QUAD, 2, "mux_refin_1_sel", "mux_refin_1_sel", "%1", TEXT},
    {QUAD, 2, "mux_refout_sel", "mux_refout_sel", "%1", TEXT},
    {LANE, 2, "mux_cpll_ref_sel", "mux_cpll_ref_sel", "%1", TEXT},
    {QUAD, 2, "mux_qpll0_ref_sel", "mux_qpll0_ref_sel", "%1", TEXT},
    {QUAD, 2, "mux_qpll1_ref_sel", "mux_qpll1_ref_sel", "%1", TEXT},
    {LANE, 2, "rxsd_idle_low_filter", "idle_low_filter", "%1", TEXT},
    {LANE, 2, "rxsd_idle_high_filter", "idle_high_filter", "%1", TEXT},
    {LANE, 2, "cdr_gc_counter", "cdr_gc_counter", "%1", TEXT},
    // Only q0's lanes have the metaframe counter.
    {LANE, 1, "rx_64b67b_decode_ilk_metaframe_len", "ilk_metaframe_len", "\"%1\"", TEXT},
};

} // namespace

constexpr Rows<Rule> RULES = RULE_ROWS;

} // namespace parsertables
} // namespace IPSERDESIP
