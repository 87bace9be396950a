// SPDX-License-Identifier: MIT
#pragma once

// Tier 880k: two quads with two reference inputs each, joined by a bridge mux.
// The bridge sits at select 2 on quad 0's muxes but at select 1 on quad 1's.

#include "model/topology.h"
#include "plugin/serdesipconstants.h"

namespace IPSERDESIP {
namespace topology {
namespace t880k {

// clang-format off
constexpr const char *QUADS[] = {Q0, Q1};

constexpr ElementRow LANES[] = {
    {Q0_LANE0, Q0}, {Q0_LANE1, Q0}, {Q0_LANE2, Q0}, {Q0_LANE3, Q0},
    {Q1_LANE0, Q1}, {Q1_LANE1, Q1}, {Q1_LANE2, Q1}, {Q1_LANE3, Q1},
};

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

constexpr PllRow PLLS[] = {
    {Q0_CPLL0, Q0, "[q0.ln0].cpll_ref_sel %1"}, {Q0_CPLL1, Q0, "[q0.ln1].cpll_ref_sel %1"},
    {Q0_CPLL2, Q0, "[q0.ln2].cpll_ref_sel %1"}, {Q0_CPLL3, Q0, "[q0.ln3].cpll_ref_sel %1"},
    {Q0_QPLL0, Q0, "[q0].qpll0_ref_sel %1"},    {Q0_QPLL1, Q0, "[q0].qpll1_ref_sel %1"},
    {Q1_CPLL0, Q1, "[q1.ln0].cpll_ref_sel %1"}, {Q1_CPLL1, Q1, "[q1.ln1].cpll_ref_sel %1"},
    {Q1_CPLL2, Q1, "[q1.ln2].cpll_ref_sel %1"}, {Q1_CPLL3, Q1, "[q1.ln3].cpll_ref_sel %1"},
    {Q1_QPLL0, Q1, "[q1].qpll0_ref_sel %1"},    {Q1_QPLL1, Q1, "[q1].qpll1_ref_sel %1"},
};

constexpr ElementRow REFS[] = {
    {Q0_REF0, Q0}, {Q0_REF1, Q0}, {Q1_REF0, Q1}, {Q1_REF1, Q1},
};
// clang-format on

} // namespace t880k
} // namespace topology
} // namespace IPSERDESIP
