// SPDX-License-Identifier: MIT
#include "protocolharness.h"

#include <QDir>
#include <QFile>
#include <QtTest>

namespace {

// The map of an instance that another user placed before: lanes of one quad
// on one PLL, at `rate` both ways.
QVariant other(const QString &module, const QString &lanes, const QString &pll,
               const QString &reference, const QString &freq, const QString &rate,
               const QString &mux = QString())
{
    const QString quad = lanes.left(2);
    return Args{{"name", module},      {"module", module},    {"file", module},
                {"lanes", lanes},      {quad + "_pll", pll},  {quad + "_reference", reference},
                {"txRate", rate},      {"rxRate", rate},      {quad + "_refFreq", freq},
                {"referenceMux", mux}, {"encoding", "8b10b"}, {"width", 20}};
}

} // namespace

class tst_CustomPhy : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void describesItself();
    void dialog_data();
    void dialog();
    void fieldProblems_data();
    void fieldProblems() { driver::fieldProblem(m_harness); }
    void savedMapRebuildsRequest_data();
    void savedMapRebuildsRequest();
    void everyOfferTranslates_data();
    void everyOfferTranslates();
    void validateNamesKeys_data();
    void validateNamesKeys();

private:
    ProtocolHarness m_harness;
};

void tst_CustomPhy::initTestCase()
{
    QVERIFY2(m_harness.protocol(), qPrintable(m_harness.loadError()));
}

void tst_CustomPhy::describesItself()
{
    IPSERDESIP::BaseProtocol *phy = m_harness.protocol();
    QCOMPARE(m_harness.identity(), QString("Custom PHY|SERDES_CUSTOM_PHY|Serdes/PHY|1.0+help"));

    for (const char *id : {DEVICE_880K, DEVICE_370K, DEVICE_90K})
        QVERIFY2(phy->isSupported(m_harness.prepare(id)), id);
    DEV::DeviceArg noTransceivers = m_harness.prepare(DEVICE_370K);
    noTransceivers.features.removeAll("SERDES");
    QVERIFY(!phy->isSupported(noTransceivers));
}

// What the dialog proposes beside other instances; a proposal can be placed,
// and the trials leave no trace.
void tst_CustomPhy::dialog_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QVariantList>("others");
    QTest::addColumn<QStringList>("script");

    QTest::newRow("880k, empty")
        << DEVICE_880K << QVariantList()
        << QStringList{"listLanes#count==8",           "listLanes==Q0 Lane0",
                       "groupQ1?visible==true",        "comboPllQ0==QPLL0",
                       "comboReferenceQ0==Q0 REFCLK0", "comboReferenceQ0#count==4",
                       "comboEncoding#count==2",       "comboLoopback#count==5",
                       "comboReferenceMux#count==3",   "buttonShareQ0?visible==false"};
    QTest::newRow("370k, empty") << DEVICE_370K << QVariantList()
                                 << QStringList{
                                        "listLanes#count==4",        "listLanes==Q0 Lane0",
                                        "groupQ1?visible==false",    "comboReferenceQ0#count==8",
                                        "comboEncoding#count==4",    "comboLoopback#count==6",
                                        "comboReferenceMux#count==5"};
    QTest::newRow("90k, empty") << DEVICE_90K << QVariantList()
                                << QStringList{"listLanes#count==4", "comboReferenceQ0#count==4",
                                               "untipped==", "comboEncoding#count==4",
                                               "comboReferenceMux#count==3"};
    // A QPLL of the quad runs at the proposed 2.5 Gbps: it is shared, with its
    // reference and frequency.
    QTest::newRow("880k, QPLL0 at the rate")
        << DEVICE_880K << QVariantList{other("a", "Q0 Lane0", "QPLL0", "Q0 REFCLK1", "125", "2.5")}
        << QStringList{"listLanes#count==7",
                       "listLanes==Q0 Lane1",
                       "comboPllQ0==QPLL0",
                       "comboReferenceQ0==Q0 REFCLK1",
                       "comboRefFreqQ0==125",
                       "labelClockNote==QPLL0 of Q0 is shared with another instance that runs it "
                       "at 2.5 Gbps."};
    // At another rate it is not: the next free QPLL, and a free reference.
    QTest::newRow("370k, QPLL0 at another rate")
        << DEVICE_370K << QVariantList{other("a", "Q0 Lane0", "QPLL0", "Q0 REFCLK0", "125", "5")}
        << QStringList{"listLanes==Q0 Lane1", "comboPllQ0==QPLL1", "comboReferenceQ0==Q0 REFCLK1",
                       "comboRefFreqQ0==156.25", "buttonShareQ0?visible==false"};
    // Once the user leaves a running QPLL, it is offered again, and only while
    // the wanted rate is the one it runs at.
    QTest::newRow("share offer follows the rate")
        << DEVICE_370K << QVariantList{other("a", "Q0 Lane3", "QPLL1", "Q0 REFCLK1", "125", "2.5")}
        << QStringList{"comboPllQ0|comboReferenceQ0|comboRefFreqQ0|buttonShareQ0?visible"
                       "==QPLL1|Q0 REFCLK1|125|false",
                       "comboPllQ0=CPLL|comboReferenceQ0=Q0 REFCLK2|comboRefFreqQ0=100",
                       "buttonShareQ0?visible|buttonShareQ0==true|Share QPLL1 (Q0 REFCLK1, 125 "
                       "MHz)",
                       "comboTxRate=5",
                       "buttonShareQ0?visible==false",
                       "comboTxRate=2.5|buttonShareQ0=click",
                       "comboPllQ0|comboReferenceQ0|comboRefFreqQ0|buttonShareQ0?visible"
                       "==QPLL1|Q0 REFCLK1|125|false"};
    // The RX rate takes the TX rate until the user sets it himself.
    QTest::newRow("RX rate follows TX rate")
        << DEVICE_370K << QVariantList()
        << QStringList{"comboTxRate=5", "comboRxRate==5", "comboRxRate=3.125", "comboTxRate=8",
                       "comboRxRate==3.125"};
}

void tst_CustomPhy::fieldProblems_data()
{
    driver::fieldProblemColumns();
    QTest::newRow("reference at another frequency")
        << DEVICE_880K << QVariantList{other("a", "Q0 Lane0", "QPLL0", "Q0 REFCLK0", "125", "5")}
        << QStringList{"comboPllQ0=QPLL1", "comboReferenceQ0=Q0 REFCLK0"} << "comboRefFreqQ0"
        << "156.25"
        << "Q0 REFCLK0|125 MHz|another instance"
        << "125";
    QTest::newRow("TX rate on a QPLL at another rate")
        << DEVICE_370K << QVariantList{other("a", "Q0 Lane0", "QPLL0", "Q0 REFCLK0", "125", "5")}
        << QStringList{"comboPllQ0=QPLL0", "comboReferenceQ0=Q0 REFCLK0", "comboRefFreqQ0=125"}
        << "comboTxRate"
        << "2.5"
        << "QPLL0 of Q0|5 Gbps"
        << "5";
    QTest::newRow("QPLL from another reference")
        << DEVICE_880K << QVariantList{other("a", "Q0 Lane0", "QPLL0", "Q0 REFCLK0", "125", "2.5")}
        << QStringList{"comboPllQ0==QPLL0"} << "comboReferenceQ0"
        << "Q0 REFCLK1"
        << "QPLL0 of Q0|from Q0 REFCLK0 at 125 MHz"
        << "Q0 REFCLK0";
    // Both muxes of the 90k quad are held for REFCLK1: REFCLK0 reaches no PLL.
    QTest::newRow("muxes held for another reference")
        << DEVICE_90K
        << QVariantList{other("a", "Q0 Lane0", "QPLL0", "Q0 REFCLK1", "125", "5", "REFMUX0"),
                        other("b", "Q0 Lane1", "CPLL", "Q0 REFCLK1", "125", "5", "REFMUX1")}
        << QStringList{"listLanes=Q0 Lane2", "comboPllQ0=QPLL1", "comboRefFreqQ0=125"}
        << "comboReferenceQ0"
        << "Q0 REFCLK0"
        << "Q0 REFCLK0|QPLL1 of Q0|Q0 Lane2"
        << "Q0 REFCLK1";
    QTest::newRow("mux cannot reach the master clock")
        << DEVICE_90K << QVariantList() << QStringList{"comboReferenceQ0=MCLK"}
        << "comboReferenceMux"
        << "REFMUX0"
        << "REFMUX0|MCLK|Q0 Lane0"
        << "Auto";
    QTest::newRow("8b/10b on an 8-bit PMA")
        << DEVICE_370K << QVariantList() << QStringList{"comboEncoding=8b/10b"} << "comboWidth"
        << "8"
        << "8b/10b|10 or 20 bits"
        << "20";
    QTest::newRow("no lane") << DEVICE_880K << QVariantList() << QStringList() << "listLanes"
                             << ""
                             << "No lane"
                             << "Q1 Lane3";
    QTest::newRow("module name of another instance")
        << DEVICE_880K
        << QVariantList{other("taken", "Q1 Lane3", "CPLL", "Q1 REFCLK0", "100", "1.25")}
        << QStringList() << "editModuleName"
        << "taken"
        << "Another instance is named \"taken\""
        << "phy";
    QTest::newRow("no number") << DEVICE_90K << QVariantList() << QStringList() << "comboRxRate"
                               << "2,5"
                               << "\"2,5\" is no number"
                               << "2.5";
}

void tst_CustomPhy::dialog()
{
    QFETCH(QString, device);
    QFETCH(QVariantList, others);
    QFETCH(QStringList, script);

    const DEV::DeviceArg dev = m_harness.prepare(device);
    QCOMPARE(m_harness.hold(others), QString());
    const QStringList before = driver::modelState();

    const driver::Run run = driver::create(m_harness.protocol(), dev, m_harness.freshDir(), script);
    QCOMPARE(run.seen, run.wanted);
    QCOMPARE(run.boxes, QStringList());
    // The trials gave back all they took.
    QCOMPARE(driver::modelState(), before);
    QCOMPARE(m_harness.hold({run.args}), QString());
}

void tst_CustomPhy::savedMapRebuildsRequest_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QStringList>("script");
    QTest::addColumn<QString>("module");
    QTest::addColumn<QStringList>("rows"); // lane pll ref freq rate rx tx [mux]

    QTest::newRow("880k, two quads")
        << DEVICE_880K
        << QStringList{"listLanes=Q0 Lane2,Q1 Lane1,Q1 Lane2",
                       "comboPllQ1=CPLL",
                       "comboReferenceQ1=Q0 REFCLK1",
                       "comboRefFreqQ1=100",
                       "comboTxRate=5",
                       "comboRxRate=3.125",
                       "comboReferenceMux=REFMUX1"}
        << "customphy"
        << QStringList{"Q0_LANE2 Q0_QPLL0 Q0_REFCLK0 156.25 0 3.125 5 REFMUX1",
                       "Q1_LANE1 Q1_CPLL1 Q0_REFCLK1 100 0 3.125 5 REFMUX1",
                       "Q1_LANE2 Q1_CPLL2 Q0_REFCLK1 100 0 3.125 5 REFMUX1"};
    QTest::newRow("370k, fabric reference")
        << DEVICE_370K << QStringList{"listLanes=Q0 Lane0,Q0 Lane3", "comboReferenceQ0=Q0 REFIN2",
                                      "comboTxRate=10.3125",         "comboRxRate=10.3125",
                                      "comboEncoding=64b/66b",       "editModuleName=phy_fabric"}
        << "phy_fabric"
        << QStringList{"Q0_LANE0 Q0_QPLL0 Q0_GPIO2 156.25 10.3125 10.3125 10.3125",
                       "Q0_LANE3 Q0_QPLL0 Q0_GPIO2 156.25 10.3125 10.3125 10.3125"};
    QTest::newRow("90k, master clock, compiled with the others")
        << DEVICE_90K
        << QStringList{"comboPllQ0=CPLL", "comboReferenceQ0=MCLK", "editModuleName=phy_mclk"}
        << "phy_mclk" << QStringList{"Q0_LANE0 Q0_CPLL0 Q0_MCLK 156.25 2.5 2.5 2.5"};
}

void tst_CustomPhy::savedMapRebuildsRequest()
{
    QFETCH(QString, device);
    QFETCH(QStringList, script);
    QFETCH(QString, module);
    QFETCH(QStringList, rows);

    const DEV::DeviceArg dev = m_harness.prepare(device);
    IPSERDESIP::BaseProtocol *phy = m_harness.protocol();
    const driver::Run run = driver::create(phy, dev, m_harness.freshDir(), script);
    QVERIFY(run.boxes.isEmpty());
    QCOMPARE(run.args.value("module").toString(), module);
    QCOMPARE(run.args.value("name").toString(), module);
    QCOMPARE(run.args.value("file").toString(), QStringLiteral("customphy"));

    const Args saved
        = driver::throughIni(run.args, m_harness.freshDir(".ipc"), "Custom PHY:" + module);
    std::unique_ptr<IPSERDESIP::Message> made(phy->createMessage(run.args));
    std::unique_ptr<IPSERDESIP::Message> rebuilt(phy->createMessage(saved));
    for (const IPSERDESIP::Message *msg : {made.get(), rebuilt.get()}) {
        QCOMPARE(QStringList({msg->type, msg->name, msg->module, msg->file}),
                 QStringList({"Custom PHY", module, module, "customphy"}));
        QCOMPARE(driver::rows(*msg), rows);
    }
    QStringList lines, linesSaved, csr, modArgs;
    QString out;
    QVERIFY(phy->generate(run.args, lines, csr, modArgs, out, false));
    QVERIFY(phy->generate(saved, linesSaved, csr, modArgs, out, false));
    QCOMPARE(linesSaved, lines);

    // Editing the saved map shows it as it was, and gives it back. Its RX
    // rate follows the TX rate only where the two were alike.
    const QString tx = run.args.value("txRate").toString();
    const QString rx = run.args.value("rxRate").toString();
    const driver::Run edited
        = driver::edit(phy, saved,
                       {"listLanes==" + run.args.value("lanes").toString(), "comboTxRate==" + tx,
                        "comboTxRate=6.25", "comboRxRate==" + (rx == tx ? QString("6.25") : rx),
                        "comboTxRate=" + tx});
    QCOMPARE(edited.seen, edited.wanted);
    QVERIFY(edited.boxes.isEmpty());
    std::unique_ptr<IPSERDESIP::Message> again(phy->createMessage(edited.args));
    QCOMPARE(driver::rows(*again), rows);

    // The instance's own file, and the lines the module generator wraps it by.
    QCOMPARE(m_harness.hold({saved}), QString());
    QVERIFY(phy->generate(saved, lines, csr, modArgs, out, true));
    const QString dir = run.args.value("dir").toString();
    QCOMPARE(out, QString(dir + "/customphy.v"));
    QCOMPARE(driver::declaredPorts(out, module), modArgs);
    QVERIFY(modArgs.contains(QString("-%1_port output %2 tx_p").arg(module).arg(rows.size())));

    // A file name from a configuration file cannot lead out of the core's folder.
    Args outside = saved;
    outside.insert("file", "../escape");
    IPSERDESIP::serdes::instance()->setWorkingDir(dir);
    QTest::ignoreMessage(QtCriticalMsg,
                         "Instance file \"../escape\" is no name of a folder inside the core's.");
    QVERIFY(!phy->generate(outside, lines, csr, modArgs, out, true));
    IPSERDESIP::serdes::instance()->setWorkingDir(QString());
    QVERIFY(!QFileInfo::exists(dir + "/../escape.v"));
    if (!QByteArray(QTest::currentDataTag()).contains("compiled"))
        return;
    QStringList files;
    const QDir all(QFileInfo(m_harness.freshDir()).absolutePath());
    for (const QString &sub : all.entryList({"savedMapRebuildsRequest_*"}, QDir::Dirs))
        files << all.filePath(sub + "/customphy/customphy.v");
    QCOMPARE(files.size(), 3);
    const QString compiled = driver::compileWithWrapper(dir, module, modArgs, files);
    QVERIFY2(compiled.isEmpty(), qPrintable(compiled));
}

void tst_CustomPhy::everyOfferTranslates_data()
{
    QTest::addColumn<QString>("device");
    QTest::newRow("880k") << DEVICE_880K;
    QTest::newRow("370k") << DEVICE_370K;
    QTest::newRow("90k") << DEVICE_90K;
}

// Each value of each choice, the others at the proposal, translates on the
// tier without a single "can no conver param".
void tst_CustomPhy::everyOfferTranslates()
{
    QFETCH(QString, device);
    const DEV::DeviceArg dev = m_harness.prepare(device);
    IPSERDESIP::BaseProtocol *phy = m_harness.protocol();

    // Choice in the dialog -> key of the map it sets.
    const QList<QPair<QString, QString>> choices{
        {"comboPllQ0", "Q0_pll"},         {"comboReferenceQ0", "Q0_reference"},
        {"comboRefFreqQ0", "Q0_refFreq"}, {"comboTxRate", "txRate"},
        {"comboRxRate", "rxRate"},        {"comboWidth", "width"},
        {"comboEncoding", "encoding"},    {"comboAlignPattern", "alignPattern"},
        {"comboLoopback", "loopback"},    {"comboReferenceMux", "referenceMux"}};
    QStringList script;
    for (const auto &choice : choices)
        script << choice.first + "#items";
    const driver::Run base
        = driver::create(phy, dev, m_harness.freshDir(), script << "comboEncoding=None");
    QVERIFY(!base.args.isEmpty());
    QMap<QString, QStringList> offers;
    for (int i = 0; i < choices.size(); ++i)
        offers.insert(choices.at(i).second, base.value(i).split(','));
    for (const char *flag : {"wordAlign", "txPolarityInvert", "rxPolarityInvert"})
        offers.insert(flag, {"true", "false"});

    for (auto it = offers.cbegin(); it != offers.cend(); ++it) {
        QVERIFY2(!it->isEmpty(), qPrintable(it.key()));
        for (const QString &value : *it) {
            Args args = base.args;
            args.insert(it.key(), value);
            QStringList lines, csr, mod, errors;
            QString out;
            QVERIFY2(phy->validate(args, errors), qPrintable(errors.join('\n')));
            QVERIFY2(phy->generate(args, lines, csr, mod, out, false),
                     qPrintable(it.key() + "=" + value));
            IPSERDESIP::parser::instance()->converIniToToml(lines, errors);
            QVERIFY2(errors.isEmpty(), qPrintable(errors.join('\n')));
        }
    }
}

void tst_CustomPhy::validateNamesKeys_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<Args>("changes"); // to a map of one lane as a file gives it back
    QTest::addColumn<QStringList>("problems");

    QTest::newRow("880k, two quads") << DEVICE_880K
                                     << Args{{"lanes", "Q0 Lane3,Q1 Lane0"},
                                             {"Q1_pll", "QPLL1"},
                                             {"Q1_reference", "Q1 REFCLK0"},
                                             {"Q1_refFreq", "125"}}
                                     << QStringList();
    QTest::newRow("370k") << DEVICE_370K << Args() << QStringList();
    QTest::newRow("90k, fabric clock, 64b/66b")
        << DEVICE_90K
        << Args{{"Q0_reference", "MCLK"},    {"encoding", "64b66b"}, {"loopback", "tx_only"},
                {"referenceMux", "REFMUX1"}, {"LANG", "1"},          {"dir", "/tmp/phy"}}
        << QStringList();
    QTest::newRow("880k codes 8b/10b only")
        << DEVICE_880K << Args{{"encoding", "64b66b"}}
        << QStringList{"encoding \"64b66b\": not one of off, 8b10b on the RK9C-880D family"};
    // The settings' own words for the lanes, the width and the rates say the
    // same as the keys' and are left out; all the rest comes in one run.
    QTest::newRow("every problem")
        << DEVICE_370K
        << Args{{"lanes", QStringList{"Q0 Lane2", "Q0 Lane3"}},
                {"txRate", QVariant()},
                {"width", "12"},
                {"wordAlign", "yes"},
                {"Q1_pll", "QPLL0"},
                {"colour", "red"}}
        << QStringList{"lanes \"Q0 Lane2, Q0 Lane3\": a list of 2 texts, where one text is written "
                       "(lane labels joined by commas in one quoted text: \"Q0 Lane0,Q0 Lane1\"; "
                       "one lane needs no quotes)",
                       "txRate: missing",
                       "width \"12\": not one of 8, 10, 16, 20",
                       "wordAlign \"yes\": neither true nor false",
                       "Q1_pll \"QPLL0\": no lane of the instance lies in Q1",
                       "colour \"red\": no parameter of Custom PHY"};
}

// A map that comes from a file or a command line is checked key by key
// against the plug-in's description, on the device's tier.
void tst_CustomPhy::validateNamesKeys()
{
    QFETCH(QString, device);
    QFETCH(Args, changes);
    QFETCH(QStringList, problems);
    m_harness.prepare(device);
    const Args rest{{"LANG", "0"},
                    {"target_device", device},
                    {"wordAlign", "true"},
                    {"alignPattern", "k28.5"},
                    {"txPolarityInvert", "false"},
                    {"rxPolarityInvert", "false"},
                    {"loopback", "off"}};
    const Args saved = driver::changed(
        other("phy", "Q0 Lane3", "CPLL", "Q0 REFCLK1", "156.25", "2.5").toMap(), rest);
    QStringList errors;
    QCOMPARE(m_harness.protocol()->validate(driver::changed(saved, changes), errors),
             problems.isEmpty());
    QCOMPARE(errors, problems);
}

QTEST_MAIN(tst_CustomPhy)
#include "tst_customphy.moc"
