// SPDX-License-Identifier: MIT
//
// Parameter tables of tier 370k: one quad, q0, with four lanes. The rows it
// shares with the other tiers are in parsertables_shared.h.

#include "translate/parsertables_shared.h"

namespace IPSERDESIP {
namespace parsertables {
namespace {

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

} // namespace

constexpr TierTables TABLES_370K = {
    1, FAMILY_GROUPS, MASTER_LANES, MASTER_SELECTS, CHIP_LINE_GROUPS, CHIP_DEFAULT_GROUPS,
};

} // namespace parsertables
} // namespace IPSERDESIP
