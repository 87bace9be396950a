// SPDX-License-Identifier: MIT
#pragma once

#include "../common/devicetier.h"

#include <QStringList>

namespace Bcdr {

struct Settings;

// The instance's protocol parameter lines, "q0_ln1_rx_rate 2.5", in the
// vocabulary of the tier's tables, which differ in the names of the width and
// encoding parameters.
QStringList parameterLines(const Settings &settings, samples::Tier tier);

} // namespace Bcdr
