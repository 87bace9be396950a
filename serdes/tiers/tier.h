// SPDX-License-Identifier: MIT
#pragma once

// What a device tier is, as the rest of the system and the protocols read it.
// The tier follows from the device's part family; everything else that tells
// one tier from another (its clock network, parameter tables and drawings)
// hangs off the tier's description in the list of tiers (tiers/tierlist.h).

#include "plugin/serdesip_global.h"

#include <QString>
#include <QStringList>

namespace IPSERDESIP {

// The tiers, in the order of the list of tiers.
enum class Tier { T880k, T370k, T90k };

struct TierDescription
{
    Tier tier;
    // The tag that names the tier in identifiers and file names: "880k".
    const char *tag;
    // Part families, "/"-joined and compared whole and case-sensitively. Null
    // for the one tier that takes every family no list names, unknown ones too.
    const char *families;
    // Quads "Q0" up to "Q<quads - 1>", four lanes each.
    int quads;
    // Reference inputs as the dialogs offer them, "/"-joined: the dedicated
    // pins, then the clocks that come from the fabric.
    const char *referencePins;
    const char *fabricReferences;
    // The CDR reference muxes a receiver can be pinned to.
    const char *referenceMuxes;
    // The register compiler, relative to the generator's program directory.
    const char *registerCompiler;
    // Requesters on the Upar port that the arbiter serves.
    int uparRequesters;
    // Quads of the register reconfiguration form. The smallest tier keeps
    // the second quad's widgets, as the form always did.
    int formQuads;
};

SERDESIP_EXPORT Tier tierOf(const QString &family);
SERDESIP_EXPORT const TierDescription &tierDescription(Tier tier);
// The entries of one of a description's "/"-joined lists; none for null.
SERDESIP_EXPORT QStringList tierList(const char *joined);
// The sections of the tier's parameter file: its quads', then its lanes'.
SERDESIP_EXPORT QStringList tierSections(Tier tier);

} // namespace IPSERDESIP
