// SPDX-License-Identifier: MIT
#pragma once

// The shape of a tier's own file: its description, its clock network, its
// part of the clock schematic and its parameter tables. Internal to the
// library and the tools.

#include "model/topology.h"
#include "tiers/tier.h"
#include "translate/parsertables.h"
#include "views/schematicrows.h"

#include <iterator>

namespace IPSERDESIP {

struct TierData
{
    TierDescription description;
    topology::Network network;
    schematic::TierLayout drawing;
    // What the tier shares with the others is reached from here too.
    const parsertables::TierTables *parameters;
};

// The tier's entry in the list of tiers.
const TierData &tierData(Tier tier);

} // namespace IPSERDESIP
