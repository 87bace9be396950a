// SPDX-License-Identifier: MIT
#pragma once

// Tier 90k: one quad with two reference inputs behind two muxes, of which
// only selects 0 and 2 are wired. The fabric clock and the master clock reach
// the PLLs directly, at selects 2 and 3, without any mux.

#include "model/topology.h"
#include "plugin/serdesipconstants.h"

namespace IPSERDESIP {
namespace topology {
namespace t90k {

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

} // namespace t90k
} // namespace topology
} // namespace IPSERDESIP
