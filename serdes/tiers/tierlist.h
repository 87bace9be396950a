// SPDX-License-Identifier: MIT
#pragma once

// The list of device tiers. A tier is its own file, tier_<tag>.h, and one
// entry here, in the order of enum Tier; nothing else names a tier.

#include "tiers/tier_370k.h"
#include "tiers/tier_880k.h"
#include "tiers/tier_90k.h"

namespace IPSERDESIP {

// Like the tiers' rows, the list has internal linkage: the rows name the
// element constants, which have it too. A file that reads the list at compile
// time (the network's builder) holds its own copy; every other file asks
// tierData().
constexpr const TierData *TIERS[] = {&t880k::TIER, &t370k::TIER, &t90k::TIER};

constexpr bool tiersInOrder()
{
    for (std::size_t i = 0; i < std::size(TIERS); ++i) {
        if (TIERS[i]->description.tier != static_cast<Tier>(i))
            return false;
    }
    return true;
}
static_assert(tiersInOrder(), "the list of tiers must follow enum Tier");

// The parts of a tier agree on how many quads it has.
constexpr bool quadsAgree()
{
    for (const TierData *tier : TIERS) {
        const std::size_t quads = static_cast<std::size_t>(tier->description.quads);
        if (tier->network.quads.size != quads || tier->parameters->quadCount != tier->description.quads
            || tier->drawing.quads != tier->description.quads)
            return false;
    }
    return true;
}
static_assert(quadsAgree(), "a tier's network, tables and drawing differ in their quads");

// Exactly one tier takes the families that no list names.
constexpr bool oneTierTakesTheRest()
{
    int open = 0;
    for (const TierData *tier : TIERS)
        open += tier->description.families == nullptr ? 1 : 0;
    return open == 1;
}
static_assert(oneTierTakesTheRest(), "one tier, and only one, has no list of families");

} // namespace IPSERDESIP
