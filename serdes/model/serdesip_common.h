// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <QString>
#include <QStringList>

namespace IPSERDESIP {

// The dictionary between the option strings of protocol dialogs ("Q0 REFCLK0",
// "Q1 Lane2", "QPLL1") and the model's element names. It is the same on every
// tier; whether the element exists is the model's answer.

// Whole, case-sensitive match; anything else gives a null string.
SERDESIP_EXPORT QString refsrcOptTransforSerdesName(const QString &option);
// By containment, so any text holding a model name finds its option. Q0_GPIO
// comes back as "Q0 REFIN": "GPIO" is accepted one way only.
SERDESIP_EXPORT QString refsrcSerdesNameTransforOpt(const QString &name);
// "QPLL0", "QPLL1", or "CPLL" for any other text.
SERDESIP_EXPORT QString FromPllToStringOption(const QString &pll);
// As refsrcOptTransforSerdesName, falling back to the option with "_" for
// each blank.
SERDESIP_EXPORT QString FromRefOptionToRef(const QString &option);
// The lowest lane number among the labels, 0 to 7 over both quads; 7 when no
// label is a lane's.
SERDESIP_EXPORT int FromLaneToInt(const QStringList &labels);

// The hue of the index-th protocol instance, in [0, 1].
SERDESIP_EXPORT double getH(int index);

} // namespace IPSERDESIP
