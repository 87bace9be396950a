// SPDX-License-Identifier: MIT
#include "bcdroptions.h"

namespace Bcdr {
namespace Options {

QList<Choice> plls()
{
    return {{QStringLiteral("CPLL"), QStringLiteral("CPLL (each lane's own)")},
            {QStringLiteral("QPLL0"), QStringLiteral("QPLL0 (shared by the quad)")}};
}

QList<Choice> encodings()
{
    return {{QStringLiteral("8b10b"), QStringLiteral("8B/10B")},
            {QStringLiteral("none"), QStringLiteral("None (raw bits)")}};
}

QList<Choice> widths(const QString &encoding)
{
    if (encoding == QLatin1String("8b10b"))
        return {{QStringLiteral("20"), QStringLiteral("20 (16 data bits, 2 K flags)")},
                {QStringLiteral("10"), QStringLiteral("10 (8 data bits, 1 K flag)")}};
    return {{QStringLiteral("20"), QStringLiteral("20")},
            {QStringLiteral("16"), QStringLiteral("16")},
            {QStringLiteral("10"), QStringLiteral("10")},
            {QStringLiteral("8"), QStringLiteral("8")}};
}

QList<Choice> commas()
{
    return {{QStringLiteral("k28.5"), QStringLiteral("K28.5")},
            {QStringLiteral("k28.1"), QStringLiteral("K28.1")},
            {QStringLiteral("k28.7"), QStringLiteral("K28.7")}};
}

QList<Choice> couplings()
{
    return {{QStringLiteral("ac"), QStringLiteral("AC")},
            {QStringLiteral("dc"), QStringLiteral("DC")}};
}

QList<Choice> sdThresholds()
{
    QList<Choice> choices;
    for (int mv = 50; mv <= 200; mv += 25) {
        const QString value = QStringLiteral("%1mV").arg(mv);
        choices.append({value, QStringLiteral("%1 mV").arg(mv)});
    }
    return choices;
}

QList<Choice> ovsModes()
{
    return {{QStringLiteral("buildin"), QStringLiteral("In the transceiver")},
            {QStringLiteral("fabric"), QStringLiteral("In the fabric")}};
}

QList<Choice> ovsRatios()
{
    return {{QStringLiteral("5x"), QStringLiteral("5x")},
            {QStringLiteral("10x"), QStringLiteral("10x")},
            {QStringLiteral("20x"), QStringLiteral("20x")}};
}

QStringList values(const QList<Choice> &choices)
{
    QStringList list;
    for (const Choice &choice : choices)
        list << choice.value;
    return list;
}

} // namespace Options
} // namespace Bcdr
