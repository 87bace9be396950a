// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace Bcdr {

// One choice the dialog offers: the value as it stands in the parameter map
// and in the parameter lines, and the words the user reads.
struct Choice
{
    QString value;
    QString label;
};

// Everything the dialog offers, in the order it offers it. Values are those
// of the device's parameter tables, so that each translates on every tier.
namespace Options {

// "CPLL": each lane's own PLL. "QPLL0": the PLL its quad shares. The tables
// know no QPLL1 for an oversampling receiver.
QList<Choice> plls();
// "8b10b" or "none".
QList<Choice> encodings();
// PMA widths in bits: 10-bit symbols under 8b/10b, any width without it.
QList<Choice> widths(const QString &encoding);
QList<Choice> commas();
QList<Choice> couplings();
QList<Choice> sdThresholds();
QList<Choice> ovsModes();
QList<Choice> ovsRatios();

QStringList values(const QList<Choice> &choices);

// The protocol's own limits, not the device's.
constexpr double MIN_REF_FREQ = 50.0;  // MHz
constexpr double MAX_REF_FREQ = 800.0; // MHz
constexpr double MIN_RX_RATE = 0.5;    // Gbps
constexpr double MAX_RX_RATE = 12.5;   // Gbps

} // namespace Options
} // namespace Bcdr
