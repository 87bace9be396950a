// SPDX-License-Identifier: MIT
#include "bcdroptions.h"

#include "../common/fields.h"

#include <QCoreApplication>

namespace Bcdr {
namespace Options {

namespace {

struct Words
{
    Q_DECLARE_TR_FUNCTIONS(Bcdr::Options)
};

// A choice shown in the words all the sample dialogs use for its value.
Choice shown(const char *value)
{
    const QString text = QLatin1String(value);
    return {text, samples::valueText(text)};
}

} // namespace

QList<Choice> plls()
{
    return {{QStringLiteral("CPLL"), Words::tr("CPLL (each lane's own)")},
            {QStringLiteral("QPLL0"), Words::tr("QPLL0 (shared by the quad)")}};
}

QList<Choice> encodings()
{
    return {shown("8b10b"), shown("none")};
}

QList<Choice> widths(const QString &encoding)
{
    if (encoding == QLatin1String("8b10b"))
        return {{QStringLiteral("20"), Words::tr("20 (16 data bits, 2 K flags)")},
                {QStringLiteral("10"), Words::tr("10 (8 data bits, 1 K flag)")}};
    return {{QStringLiteral("20"), QStringLiteral("20")},
            {QStringLiteral("16"), QStringLiteral("16")},
            {QStringLiteral("10"), QStringLiteral("10")},
            {QStringLiteral("8"), QStringLiteral("8")}};
}

QList<Choice> commas()
{
    return {shown("k28.5"), shown("k28.1"), shown("k28.7")};
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
        choices.append({value, Words::tr("%1 mV").arg(mv)});
    }
    return choices;
}

QList<Choice> ovsModes()
{
    return {{QStringLiteral("buildin"), Words::tr("In the transceiver")},
            {QStringLiteral("fabric"), Words::tr("In the fabric")}};
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
