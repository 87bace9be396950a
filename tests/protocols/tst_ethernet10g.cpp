// SPDX-License-Identifier: MIT
#include "protocolharness.h"

#include <QDir>
#include <QFile>
#include <QtTest>

class tst_Ethernet10g : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void describesItself();
    void dialog_data();
    void dialog();
    void fieldProblems_data();
    void fieldProblems() { driver::fieldProblem(m_harness); }
    void savedMapAndModule_data();
    void savedMapAndModule();
    void everyOfferTranslates_data();
    void everyOfferTranslates();
    void validateNamesKeys_data();
    void validateNamesKeys();

private:
    ProtocolHarness m_harness;
};

void tst_Ethernet10g::initTestCase()
{
    QVERIFY2(m_harness.protocol(), qPrintable(m_harness.loadError()));
}

void tst_Ethernet10g::describesItself()
{
    IPSERDESIP::BaseProtocol *eth = m_harness.protocol();
    QCOMPARE(m_harness.identity(),
             QString("10GBASE-R|SERDES_ETHERNET_10GBASE_R|Serdes/Telecommunication/Ethernet|1.0"
                     "+help"));

    QVERIFY(eth->isSupported(m_harness.prepare(DEVICE_370K)));
    QVERIFY(eth->isSupported(m_harness.prepare(DEVICE_90K)));
    // The two-quad tier's tables have no 64b/66b coding: not offered there,
    // and a stored instance is not generated for it (nor valid, below).
    QVERIFY(!eth->isSupported(m_harness.prepare(DEVICE_880K)));
    const Args args{{"name", "e"},         {"module", "e"},  {"file", "e"},
                    {"lanes", "Q0 Lane0"}, {"pll", "QPLL0"}, {"reference", "Q0 REFCLK0"}};
    QStringList lines, csr, mod;
    QString out;
    QVERIFY(!eth->generate(args, lines, csr, mod, out, false));
    QCOMPARE(lines, QStringList());
}

// Proposals beside a running QPLL, and sharing it; what is proposed is placed
// and runs on the one QPLL named, and the trials leave no trace.
void tst_Ethernet10g::dialog_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QStringList>("held"); // rows of another instance: LANE PLL REF FREQ RATE
    QTest::addColumn<QStringList>("script");
    QTest::addColumn<QStringList>("running"); // QPLLs of Q0 at 10.3125 Gbps once placed

    QTest::newRow("370k, empty")
        << DEVICE_370K << QStringList()
        << QStringList{"listLanes#count==4",
                       "listLanes==Q0 Lane0",
                       "untipped==",
                       "comboPll==QPLL0",
                       "comboReference==Q0 REFCLK0",
                       "comboReference#count==4",
                       "comboRefFreq|comboTxRate|comboRxRate|comboRxRate?enabled"
                       "==156.25|10.3125|10.3125|false",
                       "labelClockNote==QPLL0 of Q0 is free and will run at 10.3125 Gbps."}
        << QStringList{"QPLL0"};
    QTest::newRow("90k, empty") << DEVICE_90K << QStringList()
                                << QStringList{"comboPll==QPLL0", "comboReference#count==2"}
                                << QStringList{"QPLL0"};
    QTest::newRow("90k, QPLL0 at another rate")
        << DEVICE_90K << QStringList{"Q0_LANE0 Q0_QPLL0 Q0_REFCLK0 125 5"}
        << QStringList{"listLanes==Q0 Lane1", "comboPll==QPLL1", "comboReference==Q0 REFCLK1"}
        << QStringList{"QPLL1"};
    const QString shared = "labelClockNote==%1 of Q0 already runs at 10.3125 Gbps from %2 and is "
                           "shared.";
    QTest::newRow("370k, QPLL1 shared")
        << DEVICE_370K
        << QStringList{"Q0_LANE0 Q0_QPLL1 Q0_REFCLK2 156.25 10.3125",
                       "Q0_LANE1 Q0_QPLL1 Q0_REFCLK2 156.25 10.3125"}
        << QStringList{"listLanes==Q0 Lane2", "comboPll==QPLL1", "comboReference==Q0 REFCLK2",
                       shared.arg("QPLL1", "Q0 REFCLK2")}
        << QStringList{"QPLL1"};
    QTest::newRow("90k, QPLL0 shared")
        << DEVICE_90K << QStringList{"Q0_LANE0 Q0_QPLL0 Q0_REFCLK1 156.25 10.3125"}
        << QStringList{"comboPll==QPLL0", "comboReference==Q0 REFCLK1",
                       shared.arg("QPLL0", "Q0 REFCLK1")}
        << QStringList{"QPLL0"};
}

// A QPLL at another rate is left by the other QPLL, a reference pin at
// another frequency by another pin: 10GBASE-R fixes both.
void tst_Ethernet10g::fieldProblems_data()
{
    driver::fieldProblemColumns();
    QTest::newRow("QPLL at another rate")
        << DEVICE_370K << QVariantList{QStringList{"Q0_LANE0 Q0_QPLL0 Q0_REFCLK0 156.25 5"}}
        << QStringList{"comboPll==QPLL1"} << "comboPll"
        << "QPLL0"
        << "QPLL0 of Q0|5 Gbps|another instance"
        << "QPLL1";
    QTest::newRow("reference at another frequency")
        << DEVICE_90K << QVariantList{QStringList{"Q0_LANE0 Q0_CPLL0 Q0_REFCLK0 125 5"}}
        << QStringList{"comboReference==Q0 REFCLK1"} << "comboReference"
        << "Q0 REFCLK0"
        << "Q0 REFCLK0|125 MHz"
        << "Q0 REFCLK1";
    QTest::newRow("no lane") << DEVICE_370K << QVariantList() << QStringList() << "listLanes"
                             << ""
                             << "one to four lanes|0 are selected"
                             << "Q0 Lane2";
    QTest::newRow("module name of another instance")
        << DEVICE_370K
        << QVariantList{Args{{"name", "taken"},
                             {"module", "taken"},
                             {"file", "taken"},
                             {"lanes", "Q0 Lane3"},
                             {"pll", "QPLL1"},
                             {"reference", "Q0 REFCLK3"}}}
        << QStringList() << "editModuleName"
        << "taken"
        << "Another instance is named \"taken\""
        << "mine";
}

void tst_Ethernet10g::dialog()
{
    QFETCH(QString, device);
    QFETCH(QStringList, held);
    QFETCH(QStringList, script);
    QFETCH(QStringList, running);

    const DEV::DeviceArg dev = m_harness.prepare(device);
    serdes *model = serdes::instance();
    QCOMPARE(m_harness.hold(held.isEmpty() ? QVariantList() : QVariantList{held}), QString());
    QStringList lanes;
    for (const QString &row : held)
        lanes << row.section(' ', 0, 0).replace("_LANE", " Lane");
    const QStringList before = driver::modelState();

    const driver::Run run = driver::create(m_harness.protocol(), dev, m_harness.freshDir(), script);
    QCOMPARE(run.seen, run.wanted);
    QCOMPARE(run.boxes, QStringList());
    QCOMPARE(driver::modelState(), before);
    QCOMPARE(m_harness.hold({run.args}), QString());
    QCOMPARE(model->checkPLLforQuad0(10.3125), running);
    // Only the QPLLs in use run: none was taken beside a shared one.
    for (const QString pll : {"QPLL0", "QPLL1"})
        QCOMPARE(model->checkPllEnable("Q0_" + pll), (held + running).join(' ').contains(pll));
    lanes << run.args.value("lanes").toString().split(',');
    lanes.sort();
    QCOMPARE(model->occupiedLanes(), lanes);
}

void tst_Ethernet10g::savedMapAndModule_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QStringList>("script");
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<bool>("drp");

    const QString rate = " 156.25 10.3125 10.3125 10.3125";
    QTest::newRow("370k, three lanes, DRP")
        << DEVICE_370K
        << QStringList{"listLanes=Q0 Lane1,Q0 Lane2,Q0 Lane3", "comboReference=Q0 REFCLK3",
                       "checkDrp=true"}
        << QStringList{"Q0_LANE1 Q0_QPLL0 Q0_REFCLK3" + rate, "Q0_LANE2 Q0_QPLL0 Q0_REFCLK3" + rate,
                       "Q0_LANE3 Q0_QPLL0 Q0_REFCLK3" + rate}
        << true;
    QTest::newRow("370k, no DRP") << DEVICE_370K
                                  << QStringList{"checkDrp=false", "editModuleName=eth_plain"}
                                  << QStringList{"Q0_LANE0 Q0_QPLL0 Q0_REFCLK0" + rate} << false;
    QTest::newRow("90k, DRP, compiled with the others")
        << DEVICE_90K << QStringList{"comboPll=QPLL1", "checkDrp=true", "editModuleName=eth_90k"}
        << QStringList{"Q0_LANE0 Q0_QPLL1 Q0_REFCLK0" + rate} << true;
}

void tst_Ethernet10g::savedMapAndModule()
{
    QFETCH(QString, device);
    QFETCH(QStringList, script);
    QFETCH(QStringList, rows);
    QFETCH(bool, drp);

    const DEV::DeviceArg dev = m_harness.prepare(device);
    IPSERDESIP::BaseProtocol *eth = m_harness.protocol();
    const driver::Run run = driver::create(eth, dev, m_harness.freshDir(), script);
    QVERIFY(run.boxes.isEmpty());
    const QString module = run.args.value("module").toString();
    QCOMPARE(run.args.value("drp").toBool(), drp);

    const Args saved
        = driver::throughIni(run.args, m_harness.freshDir(".ipc"), "10GBASE-R:" + module);
    std::unique_ptr<IPSERDESIP::Message> made(eth->createMessage(run.args));
    std::unique_ptr<IPSERDESIP::Message> rebuilt(eth->createMessage(saved));
    for (const IPSERDESIP::Message *msg : {made.get(), rebuilt.get()}) {
        QCOMPARE(QStringList({msg->type, msg->name, msg->module, msg->file}),
                 QStringList({"10GBASE-R", module, module, "eth10g"}));
        QCOMPARE(driver::rows(*msg), rows);
    }
    const driver::Run edited
        = driver::edit(eth, saved,
                       {"listLanes==" + run.args.value("lanes").toString(),
                        "comboReference==" + run.args.value("reference").toString(),
                        "checkDrp==" + QString(drp ? "true" : "false")});
    QCOMPARE(edited.seen, edited.wanted);
    std::unique_ptr<IPSERDESIP::Message> again(eth->createMessage(edited.args));
    QCOMPARE(driver::rows(*again), rows);

    QCOMPARE(m_harness.hold({saved}), QString());
    QStringList lines, linesSaved, csr, modArgs, modSaved;
    QString out;
    QVERIFY(eth->generate(run.args, lines, csr, modArgs, out, true));
    QVERIFY(eth->generate(saved, linesSaved, csr, modSaved, out, true));
    QCOMPARE(linesSaved, lines);
    QCOMPARE(modSaved, modArgs);
    QCOMPARE(out, QString(run.args.value("dir").toString() + "/eth10g.v"));

    // The DRP line, and one requester slot of the arbiter as its port names
    // it, only when asked.
    const QStringList ports = driver::declaredPorts(out, module);
    QCOMPARE(modArgs, drp ? ports + QStringList{"-" + module + "EnableDRP true"} : ports);
    const QStringList slot{"output 1 drp_req",    "output 1 drp_wr",   "output 24 drp_addr",
                           "output 32 drp_wdata", "input 1 drp_grant", "input 1 drp_ready",
                           "input 32 drp_rdata"};
    for (const QString &line : slot)
        QCOMPARE(modArgs.contains("-" + module + "_port " + line), drp);
    QVERIFY(
        modArgs.contains(QString("-%1_port input %2 tx_data").arg(module).arg(64 * rows.size())));
    const QString pin = rows.first().section(' ', 2, 2).toLower() + "_p";
    QVERIFY(modArgs.contains(QString("-%1_port input 1 %2").arg(module, pin)));
    if (!QByteArray(QTest::currentDataTag()).contains("compiled"))
        return;
    // The rows before this one wrote the other modules.
    QStringList files;
    const QDir all(QFileInfo(m_harness.freshDir()).absolutePath());
    for (const QString &sub : all.entryList({"savedMapAndModule_*"}, QDir::Dirs))
        files << all.filePath(sub + "/eth10g/eth10g.v");
    QCOMPARE(files.size(), 3);
    const QString compiled
        = driver::compileWithWrapper(run.args.value("dir").toString(), module, modArgs, files);
    QVERIFY2(compiled.isEmpty(), qPrintable(compiled));
}

void tst_Ethernet10g::everyOfferTranslates_data()
{
    QTest::addColumn<QString>("device");
    QTest::newRow("370k") << DEVICE_370K;
    QTest::newRow("90k") << DEVICE_90K;
}

// Every PLL and pin the dialog offers, on every lane, translates without a
// single "can no conver param".
void tst_Ethernet10g::everyOfferTranslates()
{
    QFETCH(QString, device);
    const DEV::DeviceArg dev = m_harness.prepare(device);
    IPSERDESIP::BaseProtocol *eth = m_harness.protocol();
    const driver::Run offers
        = driver::create(eth, dev, m_harness.freshDir(),
                         {"comboPll#items==QPLL0,QPLL1", "comboReference#items",
                          "listLanes#count==4", "listLanes#items"});
    QCOMPARE(offers.seen, offers.wanted);
    for (const QString &pll : offers.value(0).split(',')) {
        for (const QString &reference : offers.value(1).split(',')) {
            const Args args{
                {"name", "e"}, {"module", "e"},          {"file", "e"}, {"lanes", offers.value(3)},
                {"pll", pll},  {"reference", reference}, {"drp", true}};
            QStringList lines, csr, mod, errors;
            QString out;
            QVERIFY(eth->generate(args, lines, csr, mod, out, false));
            QCOMPARE(lines.size(), 2 + 10 * 4);
            IPSERDESIP::parser::instance()->converIniToToml(lines, errors);
            QVERIFY2(errors.isEmpty(), qPrintable(errors.join('\n')));
        }
    }
}

void tst_Ethernet10g::validateNamesKeys_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<Args>("changes"); // to a link of two lanes as a file gives it back
    QTest::addColumn<QStringList>("problems");

    QTest::newRow("370k") << DEVICE_370K << Args() << QStringList();
    QTest::newRow("90k") << DEVICE_90K
                         << Args{{"lanes", "Q0 Lane2"},
                                 {"pll", "QPLL1"},
                                 {"reference", "Q0 REFCLK1"},
                                 {"drp", "true"}}
                         << QStringList();
    QTest::newRow("880k") << DEVICE_880K << Args()
                          << QStringList{"The device has no 64b/66b coding for 10GBASE-R."};
    QTest::newRow("every problem")
        << DEVICE_90K
        << Args{{"pll", "CPLL"}, {"reference", "Q0 REFIN"}, {"drp", QVariant()}, {"speed", "10G"}}
        << QStringList{"pll \"CPLL\": not one of QPLL0, QPLL1",
                       "reference \"Q0 REFIN\": not one of Q0 REFCLK0, Q0 REFCLK1 on the "
                       "RK9C-90F family",
                       "drp: missing", "speed \"10G\": no parameter of 10GBASE-R"};
}

// A map that comes from a file or a command line is checked key by key
// against the plug-in's description, on the device's tier.
void tst_Ethernet10g::validateNamesKeys()
{
    QFETCH(QString, device);
    QFETCH(Args, changes);
    QFETCH(QStringList, problems);
    m_harness.prepare(device);
    const Args saved{{"name", "eth0"},         {"module", "eth0"},
                     {"file", "eth0"},         {"lanes", "Q0 Lane0,Q0 Lane1"},
                     {"pll", "QPLL0"},         {"reference", "Q0 REFCLK0"},
                     {"drp", "false"},         {"LANG", "0"},
                     {"target_device", device}};
    QStringList errors;
    QCOMPARE(m_harness.protocol()->validate(driver::changed(saved, changes), errors),
             problems.isEmpty());
    QCOMPARE(errors, problems);
}

QTEST_MAIN(tst_Ethernet10g)
#include "tst_ethernet10g.moc"
