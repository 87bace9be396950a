// SPDX-License-Identifier: MIT
#include "customphysettings.h"

#include "../common/fields.h"

namespace {

QString onOff(bool on)
{
    return on ? QStringLiteral("enable") : QStringLiteral("disable");
}

QStringList values(const QList<QPair<QString, QString>> &pairs)
{
    QStringList list;
    for (const auto &pair : pairs)
        list << pair.second;
    return list;
}

} // namespace

namespace customphy {

QList<QPair<QString, QString>> encodings(samples::Tier tier)
{
    QStringList values{QStringLiteral("off"), QStringLiteral("8b10b")};
    // The two-quad tier codes 8b/10b only.
    if (tier != samples::Tier::T880k)
        values << QStringLiteral("64b66b") << QStringLiteral("64b67b");
    QList<QPair<QString, QString>> list;
    for (const QString &value : values)
        list << qMakePair(samples::valueText(value), value);
    return list;
}

QList<QPair<QString, QString>> loopbacks(samples::Tier tier)
{
    QList<QPair<QString, QString>> list{
        {CustomPhySettings::tr("Off"), QStringLiteral("off")},
        {CustomPhySettings::tr("Near-end serial"), QStringLiteral("lb_nes")},
        {CustomPhySettings::tr("Far-end serial"), QStringLiteral("lb_fes")},
        {CustomPhySettings::tr("Encoder"), QStringLiteral("lb_enc")},
        {CustomPhySettings::tr("RX only"), QStringLiteral("rx_only")}};
    if (tier != samples::Tier::T880k)
        list << qMakePair(CustomPhySettings::tr("TX only"), QStringLiteral("tx_only"));
    return list;
}

QStringList widths()
{
    return {QStringLiteral("8"), QStringLiteral("10"), QStringLiteral("16"), QStringLiteral("20")};
}

} // namespace customphy

CustomPhySettings CustomPhySettings::fromMap(const QMap<QString, QVariant> &args)
{
    CustomPhySettings s;
    s.readFrom(args);
    for (const QString &quad : s.quads()) {
        QuadClock clock;
        clock.pll = args.value(QString(quad + QStringLiteral("_pll")), clock.pll).toString();
        clock.reference = args.value(QString(quad + QStringLiteral("_reference"))).toString();
        clock.refFreq = args.value(QString(quad + QStringLiteral("_refFreq"))).toDouble();
        s.clocks.insert(quad, clock);
    }
    s.txRate = args.value(QStringLiteral("txRate")).toDouble();
    s.rxRate = args.value(QStringLiteral("rxRate")).toDouble();
    s.width = args.value(QStringLiteral("width")).toInt();
    s.encoding = args.value(QStringLiteral("encoding")).toString();
    s.wordAlign = args.value(QStringLiteral("wordAlign")).toBool();
    s.alignPattern = args.value(QStringLiteral("alignPattern")).toString();
    s.txPolarityInvert = args.value(QStringLiteral("txPolarityInvert")).toBool();
    s.rxPolarityInvert = args.value(QStringLiteral("rxPolarityInvert")).toBool();
    s.loopback = args.value(QStringLiteral("loopback")).toString();
    s.referenceMux = args.value(QStringLiteral("referenceMux")).toString();
    return s;
}

QMap<QString, QVariant> CustomPhySettings::toMap() const
{
    QMap<QString, QVariant> args;
    writeTo(args);
    for (auto it = clocks.cbegin(); it != clocks.cend(); ++it) {
        args.insert(QString(it.key() + QStringLiteral("_pll")), it->pll);
        args.insert(QString(it.key() + QStringLiteral("_reference")), it->reference);
        args.insert(QString(it.key() + QStringLiteral("_refFreq")),
                    samples::numberText(it->refFreq));
    }
    args.insert(QStringLiteral("txRate"), samples::numberText(txRate));
    args.insert(QStringLiteral("rxRate"), samples::numberText(rxRate));
    args.insert(QStringLiteral("width"), width);
    args.insert(QStringLiteral("encoding"), encoding);
    args.insert(QStringLiteral("wordAlign"), wordAlign);
    args.insert(QStringLiteral("alignPattern"), alignPattern);
    args.insert(QStringLiteral("txPolarityInvert"), txPolarityInvert);
    args.insert(QStringLiteral("rxPolarityInvert"), rxPolarityInvert);
    args.insert(QStringLiteral("loopback"), loopback);
    args.insert(QStringLiteral("referenceMux"), referenceMux);
    return args;
}

QStringList CustomPhySettings::quads() const
{
    QStringList found;
    for (const QString &lane : lanes)
        found << lane.left(2);
    found.removeDuplicates();
    found.sort();
    return found;
}

CustomPhySettings::QuadClock CustomPhySettings::clockOf(const QString &label) const
{
    return clocks.value(samples::quadOfLane(samples::laneModelName(label)));
}

QList<samples::LaneRow> CustomPhySettings::rows() const
{
    QList<samples::LaneRow> rows;
    for (const QString &label : lanes) {
        const QuadClock clock = clockOf(label);
        rows << samples::laneRow(label, clock.pll, clock.reference, clock.refFreq, txRate, rxRate,
                                 referenceMux);
    }
    return rows;
}

QList<samples::LaneModule::Lane> CustomPhySettings::moduleLanes() const
{
    QList<samples::LaneModule::Lane> list;
    for (const QString &label : lanes) {
        const QuadClock clock = clockOf(label);
        list << samples::LaneModule::Lane{samples::laneModelName(label), clock.pll,
                                          clock.reference};
    }
    return list;
}

int CustomPhySettings::dataWidth() const
{
    if (encoding == QLatin1String("8b10b"))
        return width / 10 * 8;
    if (encoding == QLatin1String("64b66b") || encoding == QLatin1String("64b67b"))
        return 64;
    return width;
}

int CustomPhySettings::ctrlWidth() const
{
    if (encoding == QLatin1String("8b10b"))
        return dataWidth() / 8;
    if (encoding == QLatin1String("64b66b") || encoding == QLatin1String("64b67b"))
        return 8;
    return 0;
}

QList<samples::Problem> CustomPhySettings::problems(samples::Tier tier) const
{
    QList<samples::Problem> found;
    const auto add = [&found](const QString &key, const QString &text) {
        found.append({key, text});
    };
    if (lanes.isEmpty())
        add(QStringLiteral("lanes"), tr("No lane is selected."));
    const QStringList known = samples::laneLabels(tier);
    const QStringList references = samples::referencePins(tier) + samples::fabricReferences(tier);
    for (const QString &lane : lanes) {
        if (!known.contains(lane))
            add(QStringLiteral("lanes"), tr("The device has no lane \"%1\".").arg(lane));
    }
    for (const QString &quad : quads()) {
        const QuadClock clock = clocks.value(quad);
        const QString key = quad + QLatin1Char('_');
        if (!QStringList{QStringLiteral("CPLL"), QStringLiteral("QPLL0"), QStringLiteral("QPLL1")}
                 .contains(clock.pll))
            add(key + QStringLiteral("pll"), tr("\"%1\" is no PLL of %2.").arg(clock.pll, quad));
        if (!references.contains(clock.reference))
            add(key + QStringLiteral("reference"),
                tr("The device has no reference input \"%1\".").arg(clock.reference));
        if (clock.refFreq <= 0.0)
            add(key + QStringLiteral("refFreq"),
                tr("The reference frequency of %1 must be above 0 MHz.").arg(quad));
    }
    if (txRate <= 0.0)
        add(QStringLiteral("txRate"), tr("The TX rate must be above 0 Gbps."));
    if (rxRate <= 0.0)
        add(QStringLiteral("rxRate"), tr("The RX rate must be above 0 Gbps."));
    if (!customphy::widths().contains(QString::number(width)))
        add(QStringLiteral("width"), tr("The PMA width must be 8, 10, 16 or 20 bits."));
    if (!values(customphy::encodings(tier)).contains(encoding))
        add(QStringLiteral("encoding"), tr("The device has no \"%1\" coding.").arg(encoding));
    else if (encoding == QLatin1String("8b10b") && width % 10 != 0)
        add(QStringLiteral("width"), tr("8b/10b coding needs a PMA width of 10 or 20 bits."));
    if (!values(customphy::loopbacks(tier)).contains(loopback))
        add(QStringLiteral("loopback"), tr("The device has no loopback \"%1\".").arg(loopback));
    if (!referenceMux.isEmpty() && !samples::referenceMuxes(tier).contains(referenceMux))
        add(QStringLiteral("referenceMux"), tr("The device has no mux \"%1\".").arg(referenceMux));
    if (wordAlign && alignPattern.isEmpty())
        add(QStringLiteral("alignPattern"), tr("Word alignment needs a pattern."));
    return found;
}

QStringList CustomPhySettings::iniLines(samples::Tier tier) const
{
    QStringList lines;
    for (const QString &quad : quads())
        lines << QStringLiteral("%1_enable true").arg(quad.toLower());
    for (const QString &quad : quads()) {
        const QuadClock clock = clocks.value(quad);
        const QString line = QStringLiteral("%1 %2").arg(
            samples::frequencyParameter(clock.reference), samples::numberText(clock.refFreq));
        if (!lines.contains(line))
            lines << line;
    }
    const bool wide = tier == samples::Tier::T880k;
    for (const samples::LaneRow &row : rows()) {
        const QString p = samples::laneParameterPrefix(row.lane);
        const auto add = [&lines, &p](const QString &name, const QString &value) {
            lines << QStringLiteral("%1_%2 %3").arg(p, name, value);
        };
        add(QStringLiteral("enable"), QStringLiteral("true"));
        add(QStringLiteral("pll_sel"), clocks.value(samples::quadOfLane(row.lane)).pll.toLower());
        add(QStringLiteral("tx_rate"), samples::numberText(txRate));
        add(QStringLiteral("rx_rate"), samples::numberText(rxRate));
        // A receiver clocked straight from the fabric or the master clock,
        // which only the 90k tier has, names that source.
        QString cdr = referenceMux.toLower();
        if (cdr.isEmpty() && tier == samples::Tier::T90k
            && samples::isFabricReference(row.reference))
            cdr = row.reference == QLatin1String("MCLK") ? QStringLiteral("mclk")
                                                         : QStringLiteral("gpio");
        add(QStringLiteral("cdr_refclk_sel"), cdr.isEmpty() ? QStringLiteral("auto") : cdr);
        if (wide) {
            add(QStringLiteral("pma_width_mode"), QString::number(width));
            const QString code = onOff(encoding == QLatin1String("8b10b"));
            add(QStringLiteral("8b10b_encode"), code);
            add(QStringLiteral("8b10b_decode"), code);
        } else {
            add(QStringLiteral("pma_tx_width_mode"), QString::number(width));
            add(QStringLiteral("pma_rx_width_mode"), QString::number(width));
            add(QStringLiteral("tx_encode"), encoding);
            add(QStringLiteral("rx_decode"), encoding);
        }
        add(QStringLiteral("word_align"), onOff(wordAlign));
        if (wordAlign)
            add(QStringLiteral("word_align_pattern"), alignPattern);
        add(QStringLiteral("tx_pol_invert"), onOff(txPolarityInvert));
        add(QStringLiteral("rx_pol_invert"), onOff(rxPolarityInvert));
        add(QStringLiteral("loopback_mode"), loopback);
    }
    return lines;
}
