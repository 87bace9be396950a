// SPDX-License-Identifier: MIT
#pragma once

// The parameter map of a sample protocol as its plug-in describes it.
//
// Each protocol folder holds one file, "<name>.json", whose "parameters" list
// every key of the map: its kind (number, boolean, choice, text or list), the
// values it may take ("values", replaced on a tier by "valuesByTier", and
// "valuesOf" for the device's own lanes, reference inputs and muxes, or its
// identifiers), the "separator" of a text that joins several of them, the
// form it is written in, its default, its meaning, whether it stands once for
// each quad the lanes use ("perQuad", keys "Q0_pll", ...) and whether a map
// may go without it ("optional"). samples.cmake builds that one file into the
// plug-in's metadata, which `ipcoregen --protocols` lists without loading the
// plug-in, into the text checked here, and into the help page's table.

#include "devicetier.h"

#include <dev/devicearg.h>

#include <QJsonArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>

namespace samples {

// The "parameters" of this plug-in's description.
QJsonArray describedParameters();

// Checks every key of `args` against `parameters` for a device of `family`
// (of tier `tier`): present unless optional, written in its kind's form, one
// of the values it may take there; and names every key that no parameter
// describes. Each problem names the key and the value as a configuration file
// holds it; all of them, in the order of the description.
QStringList parameterProblems(const QJsonArray &parameters, const QString &protocol,
                              const QMap<QString, QVariant> &args, Tier tier,
                              const QString &family);

// What a sample protocol's validate() does: the problems of its keys, then
// those of its own checks (`ownProblems`, the settings' problems of a map)
// that are not a problem of a key said again in other words. False, with the
// problems appended to `errors`, when there is one.
bool validateParameters(
    const QString &protocol, const QMap<QString, QVariant> &args, const DEV::DeviceArg &device,
    const std::function<QStringList(const QMap<QString, QVariant> &)> &ownProblems,
    QStringList &errors);

} // namespace samples
