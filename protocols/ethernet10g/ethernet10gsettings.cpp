// SPDX-License-Identifier: MIT
#include "ethernet10gsettings.h"

bool ethernet10gRunsOn(samples::Tier tier)
{
    return tier != samples::Tier::T880k;
}

Ethernet10gSettings Ethernet10gSettings::fromMap(const QMap<QString, QVariant> &args)
{
    Ethernet10gSettings s;
    s.readFrom(args);
    s.pll = args.value(QStringLiteral("pll"), s.pll).toString();
    s.reference = args.value(QStringLiteral("reference")).toString();
    s.drp = args.value(QStringLiteral("drp")).toBool();
    return s;
}

QMap<QString, QVariant> Ethernet10gSettings::toMap() const
{
    QMap<QString, QVariant> args;
    writeTo(args);
    args.insert(QStringLiteral("pll"), pll);
    args.insert(QStringLiteral("reference"), reference);
    args.insert(QStringLiteral("drp"), drp);
    return args;
}

QString Ethernet10gSettings::quad() const
{
    return lanes.value(0).left(2);
}

QList<samples::LaneRow> Ethernet10gSettings::rows() const
{
    QList<samples::LaneRow> rows;
    for (const QString &label : lanes)
        rows << samples::laneRow(label, pll, reference, REF_FREQ, LINE_RATE, LINE_RATE);
    return rows;
}

QList<samples::LaneModule::Lane> Ethernet10gSettings::moduleLanes() const
{
    QList<samples::LaneModule::Lane> list;
    for (const QString &label : lanes)
        list << samples::LaneModule::Lane{samples::laneModelName(label), pll, reference};
    return list;
}

QStringList Ethernet10gSettings::iniLines() const
{
    QStringList lines{QStringLiteral("%1_enable true").arg(quad().toLower()),
                      QStringLiteral("%1 %2").arg(samples::frequencyParameter(reference),
                                                  samples::numberText(REF_FREQ))};
    for (const samples::LaneRow &row : rows()) {
        const QString p = samples::laneParameterPrefix(row.lane);
        const auto add = [&lines, &p](const char *name, const QString &value) {
            lines << QStringLiteral("%1_%2 %3").arg(p, QLatin1String(name), value);
        };
        add("enable", QStringLiteral("true"));
        add("pll_sel", pll.toLower());
        add("tx_rate", samples::numberText(LINE_RATE));
        add("rx_rate", samples::numberText(LINE_RATE));
        add("cdr_refclk_sel", QStringLiteral("auto"));
        // The widest PMA word keeps the parallel clock lowest.
        add("pma_tx_width_mode", QStringLiteral("20"));
        add("pma_rx_width_mode", QStringLiteral("20"));
        add("tx_encode", QStringLiteral("64b66b"));
        add("rx_decode", QStringLiteral("64b66b"));
        add("rx_64b66b_decode_10gbaser", QStringLiteral("enable"));
    }
    return lines;
}

QList<samples::Problem> Ethernet10gSettings::problems(samples::Tier tier) const
{
    QList<samples::Problem> found;
    if (!ethernet10gRunsOn(tier)) {
        found.append({QString(), tr("The device has no 64b/66b coding for 10GBASE-R.")});
        return found;
    }
    const QString lanesKey = QStringLiteral("lanes");
    if (lanes.isEmpty() || lanes.size() > MAX_LANES)
        found.append({lanesKey,
                      tr("10GBASE-R takes one to four lanes; %1 are selected.").arg(lanes.size())});
    const QStringList known = samples::laneLabels(tier);
    bool apart = false;
    for (const QString &lane : lanes) {
        if (!known.contains(lane))
            found.append({lanesKey, tr("The device has no lane \"%1\".").arg(lane)});
        else
            apart = apart || !lane.startsWith(quad());
    }
    if (apart)
        found.append(
            {lanesKey, tr("The lanes must share one QPLL, so they must lie in one quad.")});
    if (pll != QLatin1String("QPLL0") && pll != QLatin1String("QPLL1"))
        found.append({QStringLiteral("pll"),
                      tr("10GBASE-R runs on QPLL0 or QPLL1, not on \"%1\".").arg(pll)});
    if (!samples::referencePins(tier).contains(reference))
        found.append({QStringLiteral("reference"),
                      tr("\"%1\" is no reference clock pin of the device.").arg(reference)});
    return found;
}
