// SPDX-License-Identifier: MIT
#include "model/serdesip_common.h"

#include "model/optionnames.h"
#include "protocol/message.h"

#include <QLatin1String>

#include <iterator>

namespace IPSERDESIP {

QString refsrcOptTransforSerdesName(const QString &option)
{
    for (const optionnames::RefRow &row : optionnames::REFS) {
        if (option == QLatin1String(row.option))
            return QString::fromLatin1(row.name);
    }
    return QString();
}

QString refsrcSerdesNameTransforOpt(const QString &name)
{
    for (const optionnames::RefRow &row : optionnames::REFS) {
        if (row.reverse && name.contains(QLatin1String(row.name)))
            return QString::fromLatin1(row.option);
    }
    return QString();
}

QString FromPllToStringOption(const QString &pll)
{
    if (pll.contains(QLatin1String("QPLL0")))
        return QStringLiteral("QPLL0");
    if (pll.contains(QLatin1String("QPLL1")))
        return QStringLiteral("QPLL1");
    return QStringLiteral("CPLL");
}

QString FromRefOptionToRef(const QString &option)
{
    const QString name = refsrcOptTransforSerdesName(option);
    if (!name.isEmpty())
        return name;
    QString fallback = option;
    return fallback.replace(QLatin1Char(' '), QLatin1Char('_'));
}

int FromLaneToInt(const QStringList &labels)
{
    int lowest = int(std::size(optionnames::LANES)) - 1;
    for (const QString &label : labels) {
        for (int number = 0; number < int(std::size(optionnames::LANES)); ++number) {
            if (label == QLatin1String(optionnames::LANES[number]) && number < lowest)
                lowest = number;
        }
    }
    return lowest;
}

// The first five hues are spread evenly; each later one lies halfway between
// two earlier ones. Computed forwards, so that any index costs linear time.
double getH(int index)
{
    const auto first = [](int i) {
        return 2 * i / 10.0 + 0.1;
    };
    if (index <= 4)
        return first(index);
    double window[5];
    for (int i = 0; i < 5; ++i)
        window[i] = first(i);
    double hue = 0.0;
    for (int i = 5; i <= index; ++i) {
        hue = 0.5 * (window[0] + window[1]);
        for (int k = 0; k < 4; ++k)
            window[k] = window[k + 1];
        window[4] = hue;
    }
    return hue;
}

Message::~Message() = default;

bool Message::check()
{
    const int rows = plls.size();
    if (refs.size() == rows && refFreqs.size() == rows && lanes.size() == rows
        && rates.size() == rows && rxRates.size() == rows && txRates.size() == rows)
        return true;
    qCritical("List size not equal");
    return false;
}

namespace {

QString lineRate(const Message &m, int row, const char *line, const char *other,
                 const QStringList &own)
{
    const QString lane = m.lanes.value(row);
    if (lane.contains(QLatin1String(other)))
        return QString();
    if (lane.contains(QLatin1String(line)) || m.rates.value(row).toDouble() == 0)
        return own.value(row);
    return m.rates.value(row);
}

} // namespace

QString Message::txRate(int row) const
{
    return lineRate(*this, row, "TX", "RX", txRates);
}

QString Message::rxRate(int row) const
{
    return lineRate(*this, row, "RX", "TX", rxRates);
}

} // namespace IPSERDESIP
