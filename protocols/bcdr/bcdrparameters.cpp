// SPDX-License-Identifier: MIT
#include "bcdrparameters.h"

#include "bcdrsettings.h"

namespace Bcdr {

QStringList parameterLines(const Settings &s, samples::Tier tier)
{
    const auto line = [](const QString &name, const QString &value) {
        return name + QLatin1Char(' ') + value;
    };
    const auto onOff = [](bool on) {
        return on ? QStringLiteral("enable") : QStringLiteral("disable");
    };
    const bool coded = s.encoding == QLatin1String("8b10b");

    QStringList lines;
    QStringList quads;
    for (const QString &lane : s.lanes)
        quads << samples::quadOfLane(lane).toLower();
    // A reference input of another quad (over the bridge) needs that quad on.
    const QString refName = s.refName();
    if (refName.contains(QStringLiteral("REFCLK")))
        quads << refName.left(2).toLower();
    quads.removeDuplicates();
    quads.sort();
    for (const QString &quad : quads)
        lines << line(quad + QStringLiteral("_enable"), QStringLiteral("true"));
    if (!refName.isEmpty())
        lines << line(samples::frequencyParameter(s.ref), s.refFreq);

    for (const QString &lane : s.lanes) {
        const QString p = samples::laneParameterPrefix(lane) + QLatin1Char('_');
        lines << line(p + QStringLiteral("enable"), QStringLiteral("true"));
        lines << line(p + QStringLiteral("rx_rate"), s.rxRate);
        lines << line(p + QStringLiteral("rx_ovs_mode"), s.ovsMode);
        lines << line(p + QStringLiteral("rx_ovs_ratio"), s.ovsRatio);
        lines << line(p + QStringLiteral("rx_ovs_pll_sel"), s.pll.toLower());
        if (tier == samples::Tier::T880k) {
            lines << line(p + QStringLiteral("pma_width_mode"), s.width);
            lines << line(p + QStringLiteral("8b10b_decode"), onOff(coded));
        } else {
            lines << line(p + QStringLiteral("pma_rx_width_mode"), s.width);
            lines << line(p + QStringLiteral("rx_decode"),
                          coded ? QStringLiteral("8b10b") : QStringLiteral("off"));
        }
        // Commas exist only in an 8b/10b stream.
        const bool align = coded && s.wordAlign;
        lines << line(p + QStringLiteral("word_align"), onOff(align));
        if (align)
            lines << line(p + QStringLiteral("word_align_pattern"), s.comma);
        lines << line(p + QStringLiteral("rx_pol_invert"), onOff(s.polarityInvert));
        lines << line(p + QStringLiteral("rx_coupling"), s.coupling);
        lines << line(p + QStringLiteral("rx_sd_thsel"), s.sdThreshold);
    }
    return lines;
}

} // namespace Bcdr
