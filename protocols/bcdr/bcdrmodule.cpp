// SPDX-License-Identifier: MIT
#include "bcdrmodule.h"

#include "bcdrsettings.h"

#include "../common/devicetier.h"

#include <QRegularExpression>

namespace Bcdr {

namespace {

// How the reference clock reaches the lanes.
enum class RefEntry {
    QuadPads,  // REFCLK0 or REFCLK1: the pad pair of a quad's SERDES_QUAD
    OtherPads, // a pad pair the quad primitive has no pins for: DIFFIN, then the lanes
    Fabric,    // a clock from the fabric (REFIN, GPIO, MCLK): straight to the lanes
};

RefEntry refEntry(const QString &refName)
{
    static const QRegularExpression quadPads(QStringLiteral("^Q[01]_REFCLK[01]$"));
    if (quadPads.match(refName).hasMatch())
        return RefEntry::QuadPads;
    if (refName.contains(QStringLiteral("REFCLK")))
        return RefEntry::OtherPads;
    return RefEntry::Fabric;
}

QString range(int width)
{
    return width == 1 ? QString() : QStringLiteral("[%1:0] ").arg(width - 1);
}

// Bit `i` of a port `width` bits wide; a port of one bit has no index.
QString bit(const QString &port, int i, int width)
{
    return width == 1 ? port : QStringLiteral("%1[%2]").arg(port).arg(i);
}

// The `size` bits of a port `width` bits wide from bit `low` on.
QString slice(const QString &port, int low, int size, int width)
{
    if (width == 1)
        return port;
    return QStringLiteral("%1[%2 +: %3]").arg(port).arg(low).arg(size);
}

QString quadNumber(const QString &quad)
{
    return quad.mid(1);
}

// The device's lane number, 0 to 7: quad 1 counts on from quad 0.
int deviceLane(const QString &lane)
{
    return quadNumber(samples::quadOfLane(lane)).toInt() * 4 + samples::laneInQuad(lane);
}

} // namespace

QList<Port> modulePorts(const Settings &s)
{
    const int n = s.lanes.size();
    QList<Port> ports;
    if (refEntry(s.refName()) == RefEntry::Fabric) {
        ports.append({QStringLiteral("input"), 1, QStringLiteral("refclk")});
    } else {
        ports.append({QStringLiteral("input"), 1, QStringLiteral("refclk_p")});
        ports.append({QStringLiteral("input"), 1, QStringLiteral("refclk_n")});
    }
    ports.append({QStringLiteral("input"), n, QStringLiteral("rxp")});
    ports.append({QStringLiteral("input"), n, QStringLiteral("rxn")});
    ports.append({QStringLiteral("input"), 1, QStringLiteral("rx_reset")});
    ports.append({QStringLiteral("input"), n, QStringLiteral("rx_usrclk")});
    ports.append({QStringLiteral("output"), n, QStringLiteral("rx_outclk")});
    ports.append({QStringLiteral("output"), n * s.dataWidth(), QStringLiteral("rx_data")});
    if (s.ctrlWidth() > 0)
        ports.append({QStringLiteral("output"), n * s.ctrlWidth(), QStringLiteral("rx_ctrl")});
    ports.append({QStringLiteral("output"), n, QStringLiteral("rx_ready")});
    ports.append({QStringLiteral("output"), n, QStringLiteral("pll_lock")});
    return ports;
}

QStringList moduleGeneratorLines(const Settings &s)
{
    QStringList lines;
    for (const Port &port : modulePorts(s))
        lines << QStringLiteral("-%1_port %2 %3 %4")
                     .arg(s.module, port.direction, QString::number(port.width), port.name);
    return lines;
}

QStringList moduleText(const Settings &s)
{
    const int n = s.lanes.size();
    const int data = s.dataWidth();
    const int ctrl = s.ctrlWidth();
    const QString refName = s.refName();
    const RefEntry entry = refEntry(refName);
    const bool qpll = s.pll == QLatin1String("QPLL0");

    QStringList labels;
    for (const QString &lane : s.lanes)
        labels << samples::laneLabel(lane);
    QStringList out;
    out << QStringLiteral("// Burst-mode CDR receiver \"%1\", written by the BCDR protocol of the "
                          "SerDes IP core.")
               .arg(s.module)
        << QStringLiteral("// Lanes %1, RX only, each line clocked by %2 from %3 at %4 MHz;")
               .arg(labels.join(QStringLiteral(", ")),
                    qpll ? QStringLiteral("its quad's QPLL0") : QStringLiteral("its own CPLL"),
                    s.ref, s.refFreq)
        << QStringLiteral("// %1 Gbps, %2-times oversampled, %3-bit PMA, %4.")
               .arg(s.rxRate, s.ovsRatio.chopped(1), s.width,
                    ctrl > 0 ? QStringLiteral("8B/10B decoded") : QStringLiteral("no decoding"))
        << QStringLiteral("// The clock network and the lanes' settings are set by the register "
                          "file, not here.")
        << QString();

    const QList<Port> ports = modulePorts(s);
    out << QStringLiteral("module %1 (").arg(s.module);
    for (int i = 0; i < ports.size(); ++i) {
        const Port &port = ports.at(i);
        out << QStringLiteral("    %1 wire %2%3%4")
                   .arg(port.direction.leftJustified(6), range(port.width), port.name,
                        i + 1 < ports.size() ? QStringLiteral(",") : QString());
    }
    out << QStringLiteral(");") << QString();

    // Quads: those of the lanes, and the one whose pads bring the reference.
    QStringList quads;
    for (const QString &lane : s.lanes)
        quads << samples::quadOfLane(lane);
    if (entry == RefEntry::QuadPads)
        quads << refName.left(2);
    quads.removeDuplicates();
    quads.sort();

    QString laneRefclk = QStringLiteral("1'b0");
    if (entry == RefEntry::OtherPads) {
        out << QStringLiteral("    wire refclk;")
            << QStringLiteral("    DIFFIN u_refclk_ibuf (.I(refclk_p), .IB(refclk_n), .O(refclk));")
            << QString();
        laneRefclk = QStringLiteral("refclk");
    } else if (entry == RefEntry::Fabric) {
        laneRefclk = QStringLiteral("refclk");
    }

    for (const QString &quad : quads) {
        const QString q = quad.toLower();
        const auto pad = [&](const char *pin) {
            // The reference enters at REFCLK0 or REFCLK1 of its own quad.
            const QString wanted = quad + QStringLiteral("_REFCLK") + QLatin1Char(pin[6]);
            if (entry != RefEntry::QuadPads || refName != wanted)
                return QStringLiteral("1'b0");
            return QString::fromLatin1(pin).endsWith(QLatin1Char('P')) ? QStringLiteral("refclk_p")
                                                                       : QStringLiteral("refclk_n");
        };
        out << QStringLiteral("    wire [1:0] %1_qpll_clk;").arg(q)
            << QStringLiteral("    wire %1_qpll0_lock;").arg(q)
            << QStringLiteral("    SERDES_QUAD #(.QUAD(%1)) u_%2 (").arg(quadNumber(quad), q)
            << QStringLiteral("        .REFCLK0_P(%1), .REFCLK0_N(%2),")
                   .arg(pad("REFCLK0_P"), pad("REFCLK0_N"))
            << QStringLiteral("        .REFCLK1_P(%1), .REFCLK1_N(%2),")
                   .arg(pad("REFCLK1_P"), pad("REFCLK1_N"))
            << QStringLiteral("        .QPLL0_LOCK(%1_qpll0_lock), .QPLL1_LOCK(), "
                              ".QPLL_CLK(%1_qpll_clk),")
                   .arg(q)
            << QStringLiteral("        // The register port is not used: the register file "
                              "sets the quad.")
            << QStringLiteral("        .UPAR_CLK(1'b0), .UPAR_RST(1'b1), .UPAR_WR(1'b0), "
                              ".UPAR_RD(1'b0),")
            << QStringLiteral("        .UPAR_ADDR(24'd0), .UPAR_WDATA(32'd0), .UPAR_RDATA(), "
                              ".UPAR_READY()")
            << QStringLiteral("    );") << QString();
    }

    for (int i = 0; i < n; ++i) {
        const QString &lane = s.lanes.at(i);
        const QString q = samples::quadOfLane(lane).toLower();
        const QString l = samples::laneParameterPrefix(lane);
        out << QStringLiteral("    wire [63:0] %1_rx_data;").arg(l)
            << QStringLiteral("    wire [7:0] %1_rx_ctrl;").arg(l)
            << QStringLiteral("    wire %1_cpll_lock;").arg(l)
            << QStringLiteral("    SERDES_LANE #(.LANE(%1)) u_%2 (").arg(deviceLane(lane)).arg(l)
            << QStringLiteral("        .TXP(), .TXN(), .RXP(%1), .RXN(%2),")
                   .arg(bit(QStringLiteral("rxp"), i, n), bit(QStringLiteral("rxn"), i, n))
            << QStringLiteral(
                   "        .QPLL_CLK(%1_qpll_clk), .REFCLK(%2), .CPLL_LOCK(%3_cpll_lock),")
                   .arg(q, laneRefclk, l)
            << QStringLiteral("        // Receive only: the transmitter is held in reset.")
            << QStringLiteral("        .TX_RESET(1'b1), .RX_RESET(rx_reset), .TX_READY(), "
                              ".RX_READY(%1),")
                   .arg(bit(QStringLiteral("rx_ready"), i, n))
            << QStringLiteral("        .TX_USRCLK(1'b0), .TX_DATA(64'd0), .TX_CTRL(8'd0), "
                              ".TX_OUTCLK(),")
            << QStringLiteral("        .RX_USRCLK(%1), .RX_DATA(%2_rx_data), .RX_CTRL(%2_rx_ctrl), "
                              ".RX_OUTCLK(%3)")
                   .arg(bit(QStringLiteral("rx_usrclk"), i, n), l,
                        bit(QStringLiteral("rx_outclk"), i, n))
            << QStringLiteral("    );")
            << QStringLiteral("    assign %1 = %2_rx_data[%3:0];")
                   .arg(slice(QStringLiteral("rx_data"), i * data, data, n * data), l)
                   .arg(data - 1);
        if (ctrl > 0)
            out << QStringLiteral("    assign %1 = %2_rx_ctrl[%3:0];")
                       .arg(slice(QStringLiteral("rx_ctrl"), i * ctrl, ctrl, n * ctrl), l)
                       .arg(ctrl - 1);
        out << QStringLiteral("    assign %1 = %2;")
                   .arg(bit(QStringLiteral("pll_lock"), i, n),
                        qpll ? q + QStringLiteral("_qpll0_lock") : l + QStringLiteral("_cpll_lock"))
            << QString();
    }
    out << QStringLiteral("endmodule");
    return out;
}

} // namespace Bcdr
