// SPDX-License-Identifier: MIT
#include "lanemodule.h"

#include "devicetier.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
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

} // namespace

LaneModule::LaneModule(const QString &module, const QList<Lane> &lanes, int dataWidth,
                       int ctrlWidth, bool drp)
    : m_module(module)
    , m_lanes(lanes)
    , m_dataWidth(dataWidth)
    , m_ctrlWidth(ctrlWidth)
    , m_drp(drp)
{}

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
        if (!isFabricReference(ref))
            found << ref.left(2);
    }
    found.removeDuplicates();
    found.sort();
    return found;
}

QList<Port> LaneModule::ports() const
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
        // Lane buses stay vectors at one lane too, so that [0] selects a bit.
        const bool bus = port.width > 1 || port.name.startsWith(QLatin1String("tx_"))
                         || port.name.startsWith(QLatin1String("rx_"))
                         || port.name == QLatin1String("pll_lock");
        v << QStringLiteral("    %1 wire %2%3%4")
                 .arg(port.direction, bus ? range(port.width) : QString(), port.name,
                      i + 1 < all.size() ? QStringLiteral(",") : QString());
    }
    v << QStringLiteral(");") << QString();

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
          << QStringLiteral("        .UPAR_CLK(1'b0), .UPAR_RST(1'b0), .UPAR_WR(1'b0), "
                            ".UPAR_RD(1'b0),")
          << QStringLiteral("        .UPAR_ADDR(%1'd0), .UPAR_WDATA(%2'd0), .UPAR_RDATA(), "
                            ".UPAR_READY()")
                 .arg(UPAR_ADDR_BITS)
                 .arg(UPAR_DATA_BITS)
          << QStringLiteral("    );") << QString();
    }

    for (int i = 0; i < m_lanes.size(); ++i) {
        const Lane &lane = m_lanes.at(i);
        const QString q = quadOfLane(lane.lane).toLower();
        const QString name = laneParameterPrefix(lane.lane);
        const QString refClock
            = isFabricReference(lane.reference)
                  ? referencePortName(lane.reference)
                  : QString(referencePortName(lane.reference) + QStringLiteral("_clk"));
        // Lanes are numbered over the device, four to a quad.
        const int number = quadOfLane(lane.lane).right(1).toInt() * 4 + laneInQuad(lane.lane);
        v << QStringLiteral("    // %1, %2").arg(laneLabel(lane.lane), lane.pll)
          << QStringLiteral("    wire %1_cpll_lock;").arg(name)
          << QStringLiteral("    wire %1%2_rx_data;").arg(range(LANE_DATA_BITS), name)
          << QStringLiteral("    wire %1%2_rx_ctrl;").arg(range(LANE_CTRL_BITS), name)
          << QStringLiteral("    SERDES_LANE #(.LANE(%1)) u_%2 (").arg(number).arg(name)
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
        v << QStringLiteral("    assign pll_lock[%1] = %2;")
                 .arg(i)
                 .arg(lane.pll == QLatin1String("CPLL")
                          ? QString(name + QStringLiteral("_cpll_lock"))
                          : QStringLiteral("%1_%2_lock").arg(q, lane.pll.toLower()))
          << QString();
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
    v << QStringLiteral("endmodule") << QString();
    return v.join(QLatin1Char('\n'));
}

bool writeTextFile(const QString &path, const QString &text, QString &error)
{
    const QFileInfo info(path);
    if (!QDir().mkpath(info.absolutePath())) {
        error = QStringLiteral("Cannot make the directory \"%1\".").arg(info.absolutePath());
        return false;
    }
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text | QIODevice::Truncate)) {
        error = QStringLiteral("Cannot write \"%1\": %2").arg(path, file.errorString());
        return false;
    }
    QTextStream out(&file);
    out << text;
    out.flush();
    if (file.error() != QFile::NoError) {
        error = QStringLiteral("Cannot write \"%1\": %2").arg(path, file.errorString());
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
        qCritical().noquote() << QStringLiteral("Instance file \"%1\" is no name of a folder "
                                                "inside the core's.")
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
