// SPDX-License-Identifier: MIT
#pragma once

// What every quad of every tier has, quad after quad: its name, four lanes,
// a CPLL for each lane and two QPLLs with their reference select lines. A
// tier of n quads takes the rows of the first n.

#include "model/topology.h"
#include "plugin/serdesipconstants.h"

namespace IPSERDESIP {
namespace quadrows {

using namespace topology;

constexpr std::size_t LANES_PER_QUAD = 4;
constexpr std::size_t PLLS_PER_QUAD = 6;

// clang-format off
constexpr const char *QUADS[] = {Q0, Q1};

constexpr ElementRow LANES[] = {
    {Q0_LANE0, Q0}, {Q0_LANE1, Q0}, {Q0_LANE2, Q0}, {Q0_LANE3, Q0},
    {Q1_LANE0, Q1}, {Q1_LANE1, Q1}, {Q1_LANE2, Q1}, {Q1_LANE3, Q1},
};

constexpr PllRow PLLS[] = {
    {Q0_CPLL0, Q0, "[q0.ln0].cpll_ref_sel %1"}, {Q0_CPLL1, Q0, "[q0.ln1].cpll_ref_sel %1"},
    {Q0_CPLL2, Q0, "[q0.ln2].cpll_ref_sel %1"}, {Q0_CPLL3, Q0, "[q0.ln3].cpll_ref_sel %1"},
    {Q0_QPLL0, Q0, "[q0].qpll0_ref_sel %1"},    {Q0_QPLL1, Q0, "[q0].qpll1_ref_sel %1"},
    {Q1_CPLL0, Q1, "[q1.ln0].cpll_ref_sel %1"}, {Q1_CPLL1, Q1, "[q1.ln1].cpll_ref_sel %1"},
    {Q1_CPLL2, Q1, "[q1.ln2].cpll_ref_sel %1"}, {Q1_CPLL3, Q1, "[q1.ln3].cpll_ref_sel %1"},
    {Q1_QPLL0, Q1, "[q1].qpll0_ref_sel %1"},    {Q1_QPLL1, Q1, "[q1].qpll1_ref_sel %1"},
};
// clang-format on

// The network of a tier of `quads` quads: the shared rows of its quads and
// the tier's own muxes, PLL selects and reference sources.
constexpr Network networkOf(std::size_t quads, Rows<MuxRow> muxes, Rows<PllSelectRow> pllSelects,
                            Rows<ElementRow> refs)
{
    return {Rows<const char *>(QUADS).first(quads),
            Rows<ElementRow>(LANES).first(LANES_PER_QUAD * quads),
            muxes,
            pllSelects,
            Rows<PllRow>(PLLS).first(PLLS_PER_QUAD * quads),
            refs};
}

} // namespace quadrows
} // namespace IPSERDESIP
