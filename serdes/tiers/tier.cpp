// SPDX-License-Identifier: MIT
#include "tiers/tier.h"
#include "tiers/tierlist.h"

namespace IPSERDESIP {

const TierData &tierData(Tier tier)
{
    return *TIERS[static_cast<std::size_t>(tier)];
}

Rows<const TierData *> allTiers()
{
    return TIERS;
}

Tier tierOf(const QString &family)
{
    const TierDescription *rest = nullptr;
    for (const TierData *tier : TIERS) {
        const TierDescription &description = tier->description;
        if (!description.families)
            rest = &description;
        else if (tierList(description.families).contains(family))
            return description.tier;
    }
    return rest->tier;
}

const TierDescription &tierDescription(Tier tier)
{
    return tierData(tier).description;
}

QStringList tierList(const char *joined)
{
    if (!joined)
        return {};
    return QString::fromLatin1(joined).split(QLatin1Char('/'));
}

QStringList tierSections(Tier tier)
{
    const int quads = tierDescription(tier).quads;
    QStringList sections;
    for (int q = 0; q < quads; ++q)
        sections << QStringLiteral("[q%1]").arg(q);
    for (int q = 0; q < quads; ++q) {
        for (int m = 0; m < 4; ++m)
            sections << QStringLiteral("[q%1.ln%2]").arg(q).arg(m);
    }
    return sections;
}

} // namespace IPSERDESIP
