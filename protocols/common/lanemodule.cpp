// SPDX-License-Identifier: MIT
#include "lanemodule.h"

#include "devicetier.h"

#include <model/serdesip_common.h>

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextStream>

namespace samples {

namespace {

// The widths of a lane primitive's fabric buses and of the Upar port.
constexpr int LANE_DATA_BITS = 64;
constexpr int LANE_CTRL_BITS = 8;
constexpr int UPAR_ADDR_BITS = 24;
constexpr int UPAR_DATA_BITS = 32;

QString range(int width)
{
    return QStringLiteral("[%1:0] ").arg(width - 1);
}

// Bits [lane*width +: width] of a bus, widened with zeros to `full` bits.
QString laneSlice(const QString &bus, int lane, int width, int full)
{
    const QString slice
        = QStringLiteral("%1[%2:%3]").arg(bus).arg(lane * width + width - 1).arg(lane * width);
    if (width == full)
        return slice;
    return QStringLiteral("{%1'd0, %2}").arg(full - width).arg(slice);
}

// Bit `i` of a port `width` bits wide; a port of one bit has no index.
QString bit(const QString &port, int i, int width)
{
    return width == 1 ? port : QStringLiteral("%1[%2]").arg(port).arg(i);
}

// The `size` bits of a port `width` bits wide from bit `low` on.
QString part(const QString &port, int low, int size, int width)
{
    return width == 1 ? port : QStringLiteral("%1[%2 +: %3]").arg(port).arg(low).arg(size);
}

// Where a receiver's reference clock enters.
enum class RefEntry {
    QuadPins,  // REFCLK0 or REFCLK1: a pin pair of its quad's SERDES_QUAD
    OtherPins, // a pin pair the quad primitive has no pins for: DIFFIN, then the lanes
    Fabric,    // a clock from the fabric (REFIN, GPIO, MCLK): straight to the lanes
};

RefEntry refEntry(const QString &option)
{
    static const QRegularExpression quadPins(QStringLiteral("^Q[01]_REFCLK[01]$"));
    const QString name = IPSERDESIP::refsrcOptTransforSerdesName(option);
    if (quadPins.match(name).hasMatch())
        return RefEntry::QuadPins;
    return name.contains(QLatin1String("REFCLK")) ? RefEntry::OtherPins : RefEntry::Fabric;
}

// The device's lane number, 0 to 7: the lanes of quad 1 follow those of
// quad 0.
int deviceLane(const QString &lane)
{
    return quadOfLane(lane).mid(1).toInt() * 4 + laneInQuad(lane);
}

// The lock output of the PLL a lane runs from.
QString pllLock(const LaneModule::Lane &lane)
{
    if (lane.pll == QLatin1String("CPLL"))
        return QString(laneParameterPrefix(lane.lane) + QStringLiteral("_cpll_lock"));
    return QStringLiteral("%1_%2_lock").arg(quadOfLane(lane.lane).toLower(), lane.pll.toLower());
}

// The connections of a quad's Upar register port, which no module of an
// instance drives: the port belongs to the Upar arbiter, which the user
// instantiates from its own template, and the quad is one primitive however
// many instances' modules name it. Every input therefore stays at its idle
// level, the reset (active high, as the arbiter's) included: a held reset
// would keep the quad's port, and with it the arbiter of an instance on the
// same quad, from ever completing an access.
QStringList uparTieOff()
{
    return {QStringLiteral("        .UPAR_CLK(1'b0), .UPAR_RST(1'b0), .UPAR_WR(1'b0), "
                           ".UPAR_RD(1'b0),"),
            QStringLiteral("        .UPAR_ADDR(%1'd0), .UPAR_WDATA(%2'd0), .UPAR_RDATA(), "
                           ".UPAR_READY()")
                .arg(UPAR_ADDR_BITS)
                .arg(UPAR_DATA_BITS)};
}

} // namespace

LaneModule::LaneModule(const QString &module, const QList<Lane> &lanes, int dataWidth,
                       int ctrlWidth, bool drp, Lines lines)
    : m_module(module)
    , m_lanes(lanes)
    , m_dataWidth(dataWidth)
    , m_ctrlWidth(ctrlWidth)
    , m_drp(drp)
    , m_lines(lines)
{}

bool LaneModule::receiverOnly() const
{
    return m_lines == Lines::ReceiverOnPll;
}

QStringList LaneModule::references() const
{
    QStringList refs;
    for (const Lane &lane : m_lanes) {
        if (!refs.contains(lane.reference))
            refs << lane.reference;
    }
    return refs;
}

// Quads with a lane of the instance or a reference pin it uses.
QStringList LaneModule::quads() const
{
    QStringList found;
    for (const Lane &lane : m_lanes)
        found << quadOfLane(lane.lane);
    for (const QString &ref : references()) {
        // A receiver takes a reference at its quad's primitive only where
        // that primitive has pins for it.
        if (receiverOnly() ? refEntry(ref) == RefEntry::QuadPins : !isFabricReference(ref))
            found << ref.left(2);
    }
    found.removeDuplicates();
    found.sort();
    return found;
}

QList<Port> LaneModule::ports() const
{
    return receiverOnly() ? receiverPorts() : transceiverPorts();
}

// One reference clock for all lanes, one reset for all receivers.
QList<Port> LaneModule::receiverPorts() const
{
    const int n = m_lanes.size();
    const QString in = QStringLiteral("input");
    const QString out = QStringLiteral("output");
    QList<Port> ports;
    if (refEntry(m_lanes.value(0).reference) == RefEntry::Fabric)
        ports << Port{in, 1, QStringLiteral("refclk")};
    else
        ports << Port{in, 1, QStringLiteral("refclk_p")} << Port{in, 1, QStringLiteral("refclk_n")};
    ports << Port{in, n, QStringLiteral("rxp")} << Port{in, n, QStringLiteral("rxn")}
          << Port{in, 1, QStringLiteral("rx_reset")} << Port{in, n, QStringLiteral("rx_usrclk")}
          << Port{out, n, QStringLiteral("rx_outclk")}
          << Port{out, n * m_dataWidth, QStringLiteral("rx_data")};
    if (m_ctrlWidth > 0)
        ports << Port{out, n * m_ctrlWidth, QStringLiteral("rx_ctrl")};
    ports << Port{out, n, QStringLiteral("rx_ready")} << Port{out, n, QStringLiteral("pll_lock")};
    return ports;
}

QList<Port> LaneModule::transceiverPorts() const
{
    QList<Port> ports;
    for (const QString &ref : references()) {
        const QString name = referencePortName(ref);
        if (isFabricReference(ref)) {
            ports << Port{QStringLiteral("input"), 1, name};
        } else {
            ports << Port{QStringLiteral("input"), 1, QString(name + QStringLiteral("_p"))}
                  << Port{QStringLiteral("input"), 1, QString(name + QStringLiteral("_n"))};
        }
    }
    const int n = m_lanes.size();
    const QString in = QStringLiteral("input");
    const QString out = QStringLiteral("output");
    ports << Port{out, n, QStringLiteral("tx_p")} << Port{out, n, QStringLiteral("tx_n")}
          << Port{in, n, QStringLiteral("rx_p")} << Port{in, n, QStringLiteral("rx_n")}
          << Port{out, n, QStringLiteral("pll_lock")} << Port{in, n, QStringLiteral("tx_reset")}
          << Port{in, n, QStringLiteral("rx_reset")} << Port{out, n, QStringLiteral("tx_ready")}
          << Port{out, n, QStringLiteral("rx_ready")} << Port{in, n, QStringLiteral("tx_usrclk")}
          << Port{out, n, QStringLiteral("tx_outclk")} << Port{in, n, QStringLiteral("rx_usrclk")}
          << Port{out, n, QStringLiteral("rx_outclk")}
          << Port{in, n * m_dataWidth, QStringLiteral("tx_data")}
          << Port{out, n * m_dataWidth, QStringLiteral("rx_data")};
    if (m_ctrlWidth > 0) {
        ports << Port{in, n * m_ctrlWidth, QStringLiteral("tx_ctrl")}
              << Port{out, n * m_ctrlWidth, QStringLiteral("rx_ctrl")};
    }
    if (m_drp) {
        // The user's side of the register access ...
        ports << Port{in, 1, QStringLiteral("usr_drp_req")}
              << Port{in, 1, QStringLiteral("usr_drp_wr")}
              << Port{in, UPAR_ADDR_BITS, QStringLiteral("usr_drp_addr")}
              << Port{in, UPAR_DATA_BITS, QStringLiteral("usr_drp_wdata")}
              << Port{out, 1, QStringLiteral("usr_drp_grant")}
              << Port{out, 1, QStringLiteral("usr_drp_ready")}
              << Port{out, UPAR_DATA_BITS, QStringLiteral("usr_drp_rdata")}
              // ... and the requester slot of the Upar arbiter that carries it.
              << Port{out, 1, QStringLiteral("drp_req")} << Port{out, 1, QStringLiteral("drp_wr")}
              << Port{out, UPAR_ADDR_BITS, QStringLiteral("drp_addr")}
              << Port{out, UPAR_DATA_BITS, QStringLiteral("drp_wdata")}
              << Port{in, 1, QStringLiteral("drp_grant")}
              << Port{in, 1, QStringLiteral("drp_ready")}
              << Port{in, UPAR_DATA_BITS, QStringLiteral("drp_rdata")};
    }
    return ports;
}

QStringList LaneModule::portLines() const
{
    QStringList lines;
    for (const Port &port : ports()) {
        lines << QStringLiteral("-%1_port %2 %3 %4")
                     .arg(m_module, port.direction)
                     .arg(port.width)
                     .arg(port.name);
    }
    return lines;
}

QString LaneModule::verilog(const QStringList &description) const
{
    QStringList v;
    for (const QString &line : description)
        v << QString(QStringLiteral("// ") + line);
    v << QString();

    const QList<Port> all = ports();
    v << QStringLiteral("module %1 (").arg(m_module);
    for (int i = 0; i < all.size(); ++i) {
        const Port &port = all.at(i);
        // A transceiver's lane buses stay vectors at one lane too, so that [0]
        // selects a bit; a receiver's ports of one bit are wired without one.
        const bool bus = port.width > 1
                         || (!receiverOnly()
                             && (port.name.startsWith(QLatin1String("tx_"))
                                 || port.name.startsWith(QLatin1String("rx_"))
                                 || port.name == QLatin1String("pll_lock")));
        v << QStringLiteral("    %1 wire %2%3%4")
                 .arg(receiverOnly() ? port.direction.leftJustified(6) : port.direction,
                      bus ? range(port.width) : QString(), port.name,
                      i + 1 < all.size() ? QStringLiteral(",") : QString());
    }
    v << QStringLiteral(");") << QString();
    v << (receiverOnly() ? receiverBody() : transceiverBody());
    v << QStringLiteral("endmodule") << QString();
    return v.join(QLatin1Char('\n'));
}

QStringList LaneModule::transceiverBody() const
{
    QStringList v;
    const QStringList refs = references();
    // Reference clocks as the lanes' own PLLs take them: a pin pair through
    // its input buffer, a fabric clock as it comes.
    for (const QString &ref : refs) {
        const QString name = referencePortName(ref);
        if (isFabricReference(ref))
            continue;
        v << QStringLiteral("    wire %1_clk;").arg(name)
          << QStringLiteral("    DIFFIN u_%1 (.I(%1_p), .IB(%1_n), .O(%1_clk));").arg(name);
    }
    v << QString();

    for (const QString &quad : quads()) {
        const QString q = quad.toLower();
        // The primitive has two reference pin pairs; a quad with four inputs
        // takes the instance's one pin of that quad on the pair of its parity.
        QString pins[2] = {QStringLiteral("1'b0"), QStringLiteral("1'b0")};
        QString pinsN[2] = {QStringLiteral("1'b0"), QStringLiteral("1'b0")};
        for (const QString &ref : refs) {
            if (isFabricReference(ref) || ref.left(2) != quad)
                continue;
            const int pair = ref.right(1).toInt() % 2;
            pins[pair] = QString(referencePortName(ref) + QStringLiteral("_p"));
            pinsN[pair] = QString(referencePortName(ref) + QStringLiteral("_n"));
        }
        v << QStringLiteral("    wire [1:0] %1_qpll_clk;").arg(q)
          << QStringLiteral("    wire %1_qpll0_lock, %1_qpll1_lock;").arg(q)
          << QStringLiteral("    // The quad's register port belongs to the Upar arbiter, which "
                            "is instantiated")
          << QStringLiteral("    // from its own template; here it stays idle.")
          << QStringLiteral("    SERDES_QUAD #(.QUAD(%1)) u_%2 (").arg(quad.right(1), q)
          << QStringLiteral("        .REFCLK0_P(%1), .REFCLK0_N(%2),").arg(pins[0], pinsN[0])
          << QStringLiteral("        .REFCLK1_P(%1), .REFCLK1_N(%2),").arg(pins[1], pinsN[1])
          << QStringLiteral("        .QPLL0_LOCK(%1_qpll0_lock), .QPLL1_LOCK(%1_qpll1_lock), "
                            ".QPLL_CLK(%1_qpll_clk),")
                 .arg(q)
          << uparTieOff() << QStringLiteral("    );") << QString();
    }

    for (int i = 0; i < m_lanes.size(); ++i) {
        const Lane &lane = m_lanes.at(i);
        const QString q = quadOfLane(lane.lane).toLower();
        const QString name = laneParameterPrefix(lane.lane);
        const QString refClock
            = isFabricReference(lane.reference)
                  ? referencePortName(lane.reference)
                  : QString(referencePortName(lane.reference) + QStringLiteral("_clk"));
        v << QStringLiteral("    // %1, %2").arg(laneLabel(lane.lane), lane.pll)
          << QStringLiteral("    wire %1_cpll_lock;").arg(name)
          << QStringLiteral("    wire %1%2_rx_data;").arg(range(LANE_DATA_BITS), name)
          << QStringLiteral("    wire %1%2_rx_ctrl;").arg(range(LANE_CTRL_BITS), name)
          << QStringLiteral("    SERDES_LANE #(.LANE(%1)) u_%2 (")
                 .arg(deviceLane(lane.lane))
                 .arg(name)
          << QStringLiteral("        .TXP(tx_p[%1]), .TXN(tx_n[%1]), .RXP(rx_p[%1]), "
                            ".RXN(rx_n[%1]),")
                 .arg(i)
          << QStringLiteral(
                 "        .QPLL_CLK(%1_qpll_clk), .REFCLK(%2), .CPLL_LOCK(%3_cpll_lock),")
                 .arg(q, refClock, name)
          << QStringLiteral("        .TX_RESET(tx_reset[%1]), .RX_RESET(rx_reset[%1]), "
                            ".TX_READY(tx_ready[%1]), .RX_READY(rx_ready[%1]),")
                 .arg(i)
          << QStringLiteral("        .TX_USRCLK(tx_usrclk[%1]), .TX_OUTCLK(tx_outclk[%1]),").arg(i)
          << QStringLiteral("        .TX_DATA(%1),")
                 .arg(laneSlice(QStringLiteral("tx_data"), i, m_dataWidth, LANE_DATA_BITS))
          << QStringLiteral("        .TX_CTRL(%1),")
                 .arg(m_ctrlWidth > 0
                          ? laneSlice(QStringLiteral("tx_ctrl"), i, m_ctrlWidth, LANE_CTRL_BITS)
                          : QStringLiteral("%1'd0").arg(LANE_CTRL_BITS))
          << QStringLiteral("        .RX_USRCLK(rx_usrclk[%1]), .RX_OUTCLK(rx_outclk[%1]),").arg(i)
          << QStringLiteral("        .RX_DATA(%1_rx_data), .RX_CTRL(%1_rx_ctrl)").arg(name)
          << QStringLiteral("    );")
          << QStringLiteral("    assign rx_data[%1:%2] = %3_rx_data[%4:0];")
                 .arg(i * m_dataWidth + m_dataWidth - 1)
                 .arg(i * m_dataWidth)
                 .arg(name)
                 .arg(m_dataWidth - 1);
        if (m_ctrlWidth > 0) {
            v << QStringLiteral("    assign rx_ctrl[%1:%2] = %3_rx_ctrl[%4:0];")
                     .arg(i * m_ctrlWidth + m_ctrlWidth - 1)
                     .arg(i * m_ctrlWidth)
                     .arg(name)
                     .arg(m_ctrlWidth - 1);
        }
        v << QStringLiteral("    assign pll_lock[%1] = %2;").arg(i).arg(pllLock(lane)) << QString();
    }

    if (m_drp) {
        v << QStringLiteral("    // Register access shares the quad's Upar port with the other "
                            "instances that")
          << QStringLiteral("    // ask for it: the user's requests go to this instance's slot "
                            "of the arbiter.")
          << QStringLiteral("    assign drp_req = usr_drp_req;")
          << QStringLiteral("    assign drp_wr = usr_drp_wr;")
          << QStringLiteral("    assign drp_addr = usr_drp_addr;")
          << QStringLiteral("    assign drp_wdata = usr_drp_wdata;")
          << QStringLiteral("    assign usr_drp_grant = drp_grant;")
          << QStringLiteral("    assign usr_drp_ready = drp_ready;")
          << QStringLiteral("    assign usr_drp_rdata = drp_rdata;") << QString();
    }
    return v;
}

QStringList LaneModule::receiverBody() const
{
    QStringList v;
    const QString ref = m_lanes.value(0).reference;
    const RefEntry entry = refEntry(ref);
    const int n = m_lanes.size();
    QString laneRefclk = QStringLiteral("1'b0");
    if (entry == RefEntry::OtherPins) {
        v << QStringLiteral("    wire refclk;")
          << QStringLiteral("    DIFFIN u_refclk_ibuf (.I(refclk_p), .IB(refclk_n), .O(refclk));")
          << QString();
        laneRefclk = QStringLiteral("refclk");
    } else if (entry == RefEntry::Fabric) {
        laneRefclk = QStringLiteral("refclk");
    }

    for (const QString &quad : quads()) {
        const QString q = quad.toLower();
        // The reference enters at REFCLK0 or REFCLK1 of its own quad.
        QString pins[2] = {QStringLiteral("1'b0"), QStringLiteral("1'b0")};
        QString pinsN[2] = {QStringLiteral("1'b0"), QStringLiteral("1'b0")};
        if (entry == RefEntry::QuadPins && ref.left(2) == quad) {
            pins[ref.right(1).toInt()] = QStringLiteral("refclk_p");
            pinsN[ref.right(1).toInt()] = QStringLiteral("refclk_n");
        }
        v << QStringLiteral("    wire [1:0] %1_qpll_clk;").arg(q)
          << QStringLiteral("    wire %1_qpll0_lock;").arg(q)
          << QStringLiteral("    SERDES_QUAD #(.QUAD(%1)) u_%2 (").arg(quad.mid(1), q)
          << QStringLiteral("        .REFCLK0_P(%1), .REFCLK0_N(%2),").arg(pins[0], pinsN[0])
          << QStringLiteral("        .REFCLK1_P(%1), .REFCLK1_N(%2),").arg(pins[1], pinsN[1])
          << QStringLiteral("        .QPLL0_LOCK(%1_qpll0_lock), .QPLL1_LOCK(), "
                            ".QPLL_CLK(%1_qpll_clk),")
                 .arg(q)
          << QStringLiteral("        // The register port is not used: the register file sets "
                            "the quad.")
          << uparTieOff() << QStringLiteral("    );") << QString();
    }

    const QString rxData = QStringLiteral("rx_data");
    const QString rxCtrl = QStringLiteral("rx_ctrl");
    for (int i = 0; i < n; ++i) {
        const Lane &lane = m_lanes.at(i);
        const QString q = quadOfLane(lane.lane).toLower();
        const QString l = laneParameterPrefix(lane.lane);
        v << QStringLiteral("    wire [63:0] %1_rx_data;").arg(l)
          << QStringLiteral("    wire [7:0] %1_rx_ctrl;").arg(l)
          << QStringLiteral("    wire %1_cpll_lock;").arg(l)
          << QStringLiteral("    SERDES_LANE #(.LANE(%1)) u_%2 (").arg(deviceLane(lane.lane)).arg(l)
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
                 .arg(part(rxData, i * m_dataWidth, m_dataWidth, n * m_dataWidth), l)
                 .arg(m_dataWidth - 1);
        if (m_ctrlWidth > 0) {
            v << QStringLiteral("    assign %1 = %2_rx_ctrl[%3:0];")
                     .arg(part(rxCtrl, i * m_ctrlWidth, m_ctrlWidth, n * m_ctrlWidth), l)
                     .arg(m_ctrlWidth - 1);
        }
        v << QStringLiteral("    assign %1 = %2;")
                 .arg(bit(QStringLiteral("pll_lock"), i, n), pllLock(lane))
          << QString();
    }
    return v;
}

bool writeTextFile(const QString &path, const QString &text, QString &error)
{
    const QFileInfo info(path);
    if (!QDir().mkpath(info.absolutePath())) {
        error = QCoreApplication::translate("samples", "Cannot make the directory \"%1\".")
                    .arg(info.absolutePath());
        return false;
    }
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text | QIODevice::Truncate)) {
        error = QCoreApplication::translate("samples", "Cannot write \"%1\": %2")
                    .arg(path, file.errorString());
        return false;
    }
    QTextStream out(&file);
    out << text;
    out.flush();
    if (file.error() != QFile::NoError) {
        error = QCoreApplication::translate("samples", "Cannot write \"%1\": %2")
                    .arg(path, file.errorString());
        return false;
    }
    return true;
}

bool reportProblems(const QString &protocol, const QString &instance, const QStringList &problems)
{
    for (const QString &problem : problems)
        qCritical().noquote() << protocol << instance << ':' << problem;
    return problems.isEmpty();
}

bool writeInstanceModule(const LaneModule &module, const QStringList &description,
                         const QMap<QString, QVariant> &args, const QString &file,
                         QString &outputFile, QStringList &modArgs)
{
    const QString dir = instanceDirectory(args);
    if (dir.isEmpty()) {
        qCritical().noquote() << QCoreApplication::translate(
                                     "samples",
                                     "Instance file \"%1\" is no name of a folder inside the "
                                     "core's.")
                                     .arg(file);
        return false;
    }
    outputFile = QString(dir + QLatin1Char('/') + file + QStringLiteral(".v"));
    QString error;
    if (!writeTextFile(outputFile, module.verilog(description), error)) {
        qCritical().noquote() << error;
        return false;
    }
    modArgs << module.portLines();
    return true;
}

} // namespace samples
