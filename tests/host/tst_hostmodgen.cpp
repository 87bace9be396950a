// SPDX-License-Identifier: MIT
//
// The module generator: what it writes from a command file is checked by
// compiling it, Verilog with iverilog against stub instances and the device
// library's black boxes, VHDL with GHDL against stub entities; what it refuses
// is checked by its messages.

#include <dev/devicearg.h>
#include <ipcore/ipcorefile.h>
#include <ipcore/tvmodgenproxy.h>

#include "hdlcompile.h"
#include "testfiles.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString PRIMITIVES = QStringLiteral(SERDES_STAGE_DIR "/data/devices/primitives_bb.v");

DEV::DeviceArg device()
{
    DEV::DeviceArg arg;
    arg.id = QStringLiteral("RK9C880D-FG1517-2");
    arg.partNumber = QStringLiteral("RK9C880D-2FG1517I");
    arg.family = QStringLiteral("RK9C-880D");
    arg.name = QStringLiteral("RK9C880D");
    arg.package = QStringLiteral("FG1517");
    arg.speed = QStringLiteral("2"); // version stays empty, as on most devices
    return arg;
}

// The header exactly as the page composes it, device lines from the host.
QStringList header(const QString &dir, const QString &fileType)
{
    return {QStringLiteral("-type SERDES"),
            QStringLiteral("-path %1/").arg(dir),
            QStringLiteral("-file_type %1").arg(fileType),
            QStringLiteral("-file_name serdes_top"),
            QStringLiteral("-mod_name serdes_top"),
            IPCore::modfileHeader(device())};
}

} // namespace

class tst_HostModGen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void compiles_data();
    void compiles();
    void refusals_data();
    void refusals();
};

void tst_HostModGen::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    QVERIFY(QFile::exists(PRIMITIVES));
}

void tst_HostModGen::compiles_data()
{
    QTest::addColumn<bool>("vhdl");
    QTest::addColumn<QStringList>("instances");
    QTest::addColumn<QByteArray>("stubs");
    QTest::addColumn<QByteArray>("wires"); // the top's ports as a user declares them

    const QStringList two{
        "-protocol_module_name0 eth",  "-eth_port input 1 refclk_p",  "-eth_port input 1 refclk_n",
        "-eth_port input 4 txd",       "-eth_port output 4 rxd",      "-eth_port inout 1 mdio",
        "-eth_param LANES 4",          "-eth_param NAME \"ten gig\"", "-ethEnableDRP true",
        "-protocol_module_name1 xaui", "-xaui_port input 1 clk",      "-xaui_port output 64 data"};
    // Each stub instantiates the device's primitives, as a protocol's module does.
    const QByteArray eth = "module eth #(parameter integer LANES = 1, parameter NAME = \"x\") (\n"
                           "    input wire refclk_p, input wire refclk_n,\n"
                           "    input wire [3:0] txd, output wire [3:0] rxd, inout wire mdio);\n"
                           "  wire refclk;\n"
                           "  DIFFIN ibuf (.I(refclk_p), .IB(refclk_n), .O(refclk));\n"
                           "  SERDES_LANE #(.LANE(0)) lane (.REFCLK(refclk));\n"
                           "  assign rxd = txd;\n"
                           "endmodule\n";
    const QByteArray xaui = "module xaui (input wire clk, output wire [63:0] data);\n"
                            "  SERDES_QUAD q (.UPAR_CLK(clk));\n"
                            "  assign data = 64'd0;\n"
                            "endmodule\n";
    QTest::newRow("Verilog, two instances, ports, parameters, DRP")
        << false << two << QByteArray(eth + xaui)
        << QByteArray("wire eth_refclk_p, eth_refclk_n, eth_mdio, xaui_clk;\n"
                      "wire [3:0] eth_txd, eth_rxd;\nwire [63:0] xaui_data;\n");
    QTest::newRow("Verilog, instance without ports")
        << false << QStringList{"-protocol_module_name0 quiet"}
        << QByteArray("module quiet; SERDES_QUAD q (); endmodule\n") << QByteArray();

    const QByteArray ieee = "library ieee;\nuse ieee.std_logic_1164.all;\n";
    QTest::newRow("VHDL, two instances, ports, parameters, DRP")
        << true << two
        << QByteArray(
               ieee
               + "entity eth is generic (LANES : integer; NAME : string); port (\n"
                 "  refclk_p, refclk_n : in std_logic; txd : in std_logic_vector(3 downto 0);\n"
                 "  rxd : out std_logic_vector(3 downto 0); mdio : inout std_logic);\n"
                 "end entity eth;\narchitecture stub of eth is begin rxd <= txd; end;\n"
               + ieee
               + "entity xaui is port (clk : in std_logic;\n"
                 "  data : out std_logic_vector(63 downto 0)); end entity xaui;\n"
                 "architecture stub of xaui is begin data <= (others => '0'); end;\n")
        << QByteArray("signal eth_refclk_p, eth_refclk_n, eth_mdio, xaui_clk : std_logic;\n"
                      "signal eth_txd, eth_rxd : std_logic_vector(3 downto 0);\n"
                      "signal xaui_data : std_logic_vector(63 downto 0);\n");
    QTest::newRow("VHDL, instance without ports")
        << true << QStringList{"-protocol_module_name0 quiet"}
        << QByteArray("entity quiet is end;\narchitecture stub of quiet is begin end;\n")
        << QByteArray();
}

// In a folder of non-ASCII name, as a user's project may be.
void tst_HostModGen::compiles()
{
    QFETCH(bool, vhdl);
    QFETCH(QStringList, instances);
    QFETCH(QByteArray, stubs);
    QFETCH(QByteArray, wires);

    QTemporaryDir tmp;
    const QString dir = tmp.filePath(QStringLiteral("Pr\u00fcfung \u00fc"));
    QVERIFY(QDir().mkpath(dir));
    const QString command = dir + "/serdes.mod";
    QVERIFY(IPCore::generateFile(command, header(dir, vhdl ? "vhdl" : "vlg") + instances, nullptr,
                                 QString()));

    IPCore::TvModGenProxy proxy;
    QCOMPARE(proxy.startModGen(command, vhdl ? IPCore::VHDL : IPCore::Verilog, false),
             IPCore::TvModGenProxy::Done);
    QVERIFY2(proxy.errorString().isEmpty(), qPrintable(proxy.errorString()));
    const QString suffix = vhdl ? ".vhd" : ".v";
    QVERIFY(!QFile::exists(dir + "/serdes_top" + (vhdl ? ".v" : ".vhd")));
    const QByteArray tmpl = readAll(dir + "/serdes_top_tmp" + suffix);
    QVERIFY(tmpl.contains("RK9C-880D"));
    QVERIFY(writeFile(dir + "/stubs" + suffix, stubs));

    // The template instantiates the top as it is, and the top has exactly the
    // ports the command file describes: iverilog warns of any width that
    // differs, and GHDL binds every component to its entity port by port.
    QString error;
    if (vhdl) {
        QVERIFY(writeFile(dir + "/user.vhd", vhdlUser(tmpl, wires)));
        error = compileVhdl({"stubs.vhd", "serdes_top.vhd", "user.vhd"}, "user", dir);
    } else {
        QVERIFY(writeFile(dir + "/user.v",
                          "module user;\n" + wires + "`include \"serdes_top_tmp.v\"\nendmodule\n"));
        error = runQuietly("iverilog",
                           {"-g2005", "-o", "a.vvp", "-s", "user", "user.v", "serdes_top.v",
                            "stubs.v", PRIMITIVES},
                           dir);
    }
    QVERIFY2(error.isEmpty(), qPrintable(error));
}

void tst_HostModGen::refusals_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("type");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QString>("replace");
    QTest::addColumn<QString>("by");
    // Entries of the output directory before the run, which it must leave as
    // they were: a name ending in "/" is a directory.
    QTest::addColumn<QStringList>("existing");

    // The header takes lines 1 to 11; the first instance line is line 12.
    const QStringList eth = {"-protocol_module_name0 eth"};
    auto row = [&](const char *name, const QStringList &more, const QStringList &expected,
                   int type = IPCore::Verilog, const QString &replace = QString(),
                   const QString &by = QString(), const QStringList &existing = {}) {
        QTest::newRow(name) << QStringList(eth + more) << type << expected << replace << by
                            << existing;
    };
    row("no dash", {"eth_port input 1 a"},
        {"line 13: not of the form \"-key value\": \"eth_port input 1 a\""});
    row("bad direction", {"-eth_port in 1 a"}, {"line 13: direction", "\"-eth_port in 1 a\""});
    row("zero width", {"-eth_port input 0 a"}, {"line 13: width"});
    row("bad parameter", {"-eth_param N 4'b1"}, {"line 13: value must be"});
    row("line of another module", {"-pcie_port input 1 a"},
        {"line 13: not a line of instance \"eth\""});
    row("numbering gap", {"-protocol_module_name2 xaui"}, {"line 13: instance number 1 expected"});
    row("module twice", {"-protocol_module_name1 eth"},
        {"line 13: module named by an earlier instance"});
    row("top port clash",
        {"-eth_port input 1 tx_d", "-protocol_module_name1 eth_tx", "-eth_tx_port output 1 d"},
        {"port \"eth_tx_d\" clashes with port \"eth_tx_d\""});
    row("all errors of a pass", {"-eth_port input x a", "-eth_port input 1 ok", "-eth_frobnicate"},
        {"line 13: width", "line 15: unknown instance line"});
    row("file type contradicts language", {}, {"contradicts the requested VHDL"}, IPCore::VHDL);
    row("no module name", {}, {"no \"-mod_name\" line"}, IPCore::Verilog, "-mod_name", QString());
    row("no output directory", {}, {"does not exist"}, IPCore::Verilog, "-path", "-path gone/");
    row("unreadable command file", {}, {"Cannot read"}, IPCore::Verilog, "*", QString());
    row("Verilog keywords",
        {"-eth_port output 1 logic", "-protocol_module_name1 pulsestyle",
         "-pulsestyle_port input 1 onevent", "-pulsestyle_param begin 1"},
        {"line 5: top module name \"module\" is a reserved word of Verilog: \"-mod_name module\"",
         "line 13: port name \"logic\" is a reserved word of Verilog: "
         "\"-eth_port output 1 logic\"",
         "line 15: top port \"pulsestyle_onevent\" is a reserved word of Verilog",
         "line 16: parameter name \"begin\" is a reserved word of Verilog"},
        IPCore::Verilog, "-mod_name", "-mod_name module");
    // GHDL refuses an integer generic beyond 32 bits only when it elaborates.
    row("VHDL reserved words in any case, integer beyond 32 bits",
        {"-eth_port input 1 signal", "-eth_param RATE_HZ 10312500000",
         "-protocol_module_name1 Entity"},
        {"line 13: port name \"signal\" is a reserved word of VHDL: \"-eth_port input 1 signal\"",
         "line 14: value must lie from -2147483648 to 2147483647 in VHDL",
         "line 15: module name \"Entity\" is a reserved word of VHDL: "
         "\"-protocol_module_name1 Entity\""},
        IPCore::VHDL, "-file_type", "-file_type vhdl");
    row("template cannot be written", {}, {"cannot write", "serdes_top_tmp.v\""}, IPCore::Verilog,
        {}, {}, {"serdes_top_tmp.v/"});
    row("old top kept when the template cannot be written", {}, {"serdes_top_tmp.v\""},
        IPCore::Verilog, {}, {}, {"serdes_top.v", "serdes_top_tmp.v/"});
}

void tst_HostModGen::refusals()
{
    QFETCH(QStringList, lines);
    QFETCH(int, type);
    QFETCH(QStringList, expected);
    QFETCH(QString, replace);
    QFETCH(QString, by);
    QFETCH(QStringList, existing);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString command = dir.filePath("serdes.mod");
    QStringList all = header(dir.path(), "vlg") + lines;
    for (QString &line : all) {
        if (!replace.isEmpty() && line.startsWith(replace))
            line = by;
    }
    if (replace == QLatin1String("*"))
        QVERIFY(QDir(dir.path()).mkdir("serdes.mod"));
    else
        QVERIFY(IPCore::generateFile(command, all, nullptr, QString()));
    QVERIFY(makeEntries(dir.path(), existing));
    QStringList entries{"serdes.mod"};
    for (const QString &entry : existing)
        entries << entry.section('/', 0, 0);

    // Without widgets the host reports on the message handler.
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("serdes\\.mod"));
    IPCore::TvModGenProxy proxy;
    QVERIFY(proxy.startModGen(command, IPCore::FileType(type), false)
            != IPCore::TvModGenProxy::Done);
    for (const QString &text : expected)
        QVERIFY2(proxy.errorString().contains(text), qPrintable(proxy.errorString()));
    QStringList left = QDir(dir.path()).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
    left.sort();
    entries.sort();
    QCOMPARE(left, entries);
    QVERIFY(entriesKept(dir.path(), existing));
}

QTEST_GUILESS_MAIN(tst_HostModGen)
#include "tst_hostmodgen.moc"
