// SPDX-License-Identifier: MIT
#pragma once

// The shape of a tier's own file: its description, its clock network, its
// part of the clock schematic, its parameter tables and its device lines. Internal to the
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
    // The device line of each group of the tier's parts; a part of the tier in
    // none of them gets no device line.
    Rows<parsertables::DeviceLine> deviceLines;
};

// The tier's entry in the list of tiers.
const TierData &tierData(Tier tier);
// The list of tiers, in the order of enum Tier.
Rows<const TierData *> allTiers();

} // namespace IPSERDESIP
