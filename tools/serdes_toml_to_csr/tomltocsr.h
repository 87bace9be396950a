// SPDX-License-Identifier: MIT
#pragma once

#include "tiers/tier.h"

#include <QStringList>

namespace IPSERDESIP {

// The register compiler's command line for one tier: `args` is the program,
// the parameter file, "-o" and the output file. Returns the exit code: 0 when
// the listing was written; otherwise the reasons stand on standard error, each
// with "Error" in it.
int runTomlToCsr(Tier tier, const QStringList &args);

} // namespace IPSERDESIP
