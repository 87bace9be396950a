// SPDX-License-Identifier: MIT
#pragma once

// The sample protocols' knowledge of the transceiver tiers: which tier a part
// family is, which quads, reference inputs and reference muxes a tier has, and
// how the option strings of the dialogs turn into model names and parameter
// names.
//
// The folder common/ is no library: each protocol compiles these sources into
// its own plug-in by a relative path, so that a plug-in stays one file that
// depends on the installed kit only.

#include <dev/devicearg.h>
#include <tiers/tier.h>

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace samples {

// The kit's tiers and its rule: the families of the two one-quad tiers are
// listed, and every other family, an unknown one too, is the two-quad tier.
using IPSERDESIP::Tier;
using IPSERDESIP::tierOf;
// The part family an instance is generated for: the open model's, or else
// that of the device its map names by "target_device", or else `fallback`'s;
// and the tier of that family.
QString familyOfInstance(const QMap<QString, QVariant> &args, const DEV::DeviceArg &fallback);
Tier tierOfInstance(const QMap<QString, QVariant> &args, const DEV::DeviceArg &fallback);
// Where an instance's own files go: below the configuration's directory once
// the generator has one, else the directory its dialog chose. Empty when the
// instance's file name would lead out of the configuration's directory.
QString instanceDirectory(const QMap<QString, QVariant> &args);
// Devices without transceivers have nothing to configure.
bool hasTransceivers(const DEV::DeviceArg &device);

// "Q0", and "Q1" on the two-quad tier.
QStringList quadsOf(Tier tier);
// Every lane of the tier as the dialogs show it: "Q0 Lane0", ...
QStringList laneLabels(Tier tier);
// Reference inputs as option strings: the dedicated pins first, then the
// clocks that come from the fabric.
QStringList referencePins(Tier tier);
QStringList fabricReferences(Tier tier);
bool isFabricReference(const QString &option);
// The CDR reference muxes a receiver can be pinned to: "REFMUX0", ...
QStringList referenceMuxes(Tier tier);

// The parameter that carries a reference input's frequency in MHz, as
// "q0_refclk1_freq"; empty for an unknown option.
QString frequencyParameter(const QString &option);
// The port name of a reference input in a generated module: "q0_refclk0".
QString referencePortName(const QString &option);

// "Q0 Lane2" <-> "Q0_LANE2".
QString laneModelName(const QString &label);
QString laneLabel(const QString &modelName);
// "Q0" of "Q0_LANE2".
QString quadOfLane(const QString &modelName);
// 2 of "Q0_LANE2".
int laneInQuad(const QString &modelName);
// "q0_ln2", the prefix of the lane's parameters.
QString laneParameterPrefix(const QString &modelName);
// The model name of the PLL that clocks a lane's transmitter: "Q0_CPLL2" for
// "CPLL", "Q0_QPLL1" for "QPLL1".
QString pllModelName(const QString &laneModel, const QString &pllOption);

} // namespace samples
