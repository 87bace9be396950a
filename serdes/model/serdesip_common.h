// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <dev/devicearg.h>

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

class QObject;

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

// Synthesises `sources` (names below info's data directory) into a netlist for
// `device` and copies the results from the run's directory
// <working dir>/<file>/temp/<name> to <working dir>/<file>. Waits in a local
// event loop, so the caller's events go on being processed meanwhile. The
// helper, its dialog and the loop belong to `parent`. Failures are shown to
// the user; on success `netlist` is the copied netlist.
SERDESIP_EXPORT bool waitForRunSyntheSis(const DEV::DeviceArg &device,
                                         const QMap<QString, QVariant> &args,
                                         const QMap<QString, QVariant> &info,
                                         const QStringList &sources, const QString &name,
                                         QString &netlist, QObject *parent);

} // namespace IPSERDESIP
