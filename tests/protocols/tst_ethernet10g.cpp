// SPDX-License-Identifier: MIT
#include "protocoldriver.h"

#include <model/serdes.h>
#include <protocol/message.h>
#include <translate/parser.h>

#include <QFile>
#include <QLocale>

using IPSERDESIP::serdes;

class tst_Ethernet10g : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void describesItself();
    void proposalsAndRefusals_data();
    void proposalsAndRefusals();
    void twoInstancesShareAQpll_data();
    void twoInstancesShareAQpll();
    void savedMapRebuildsRequest();
    void drpOnlyWhenAsked_data();
    void drpOnlyWhenAsked();
    void everyOfferTranslates_data();
    void everyOfferTranslates();

private:
    QString freshDir() const;

    DEV::DeviceDb m_db;
    ProtocolHarness m_harness;
    QTemporaryDir m_dir;
};

void tst_Ethernet10g::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    QString error;
    QVERIFY2(m_db.load(QStringLiteral(SERDES_STAGE_DIR "/data/devices/devices.json"), &error),
             qPrintable(error));
    Core::IdeCore::setDeviceDataBase(&m_db);
    QVERIFY2(m_harness.protocol(), qPrintable(m_harness.loadError()));
    QVERIFY(m_dir.isValid());
}

void tst_Ethernet10g::cleanupTestCase()
{
    Core::IdeCore::setDeviceDataBase(nullptr);
}

QString tst_Ethernet10g::freshDir() const
{
    return m_dir.filePath(QString(QTest::currentTestFunction()) + "_"
                          + QString(QTest::currentDataTag()).replace(' ', '_'));
}

void tst_Ethernet10g::describesItself()
{
    IPSERDESIP::BaseProtocol *eth = m_harness.protocol();
    QCOMPARE(eth->name(), QStringLiteral("10GBASE-R"));
    QCOMPARE(eth->id(), QStringLiteral("SERDES_ETHERNET_10GBASE_R"));
    QCOMPARE(eth->category(), (QStringList{"Serdes", "Telecommunication", "Ethernet"}));
    QCOMPARE(eth->version(), QStringLiteral("1.0"));
    QFile help(eth->summaryFile());
    QVERIFY2(help.open(QIODevice::ReadOnly), qPrintable(eth->summaryFile()));
    QVERIFY(help.readAll().contains("<svg"));

    QVERIFY(eth->isSupported(m_harness.prepare(DEVICE_370K)));
    QVERIFY(eth->isSupported(m_harness.prepare(DEVICE_90K)));
    // The two-quad tier's tables have no 64b/66b coding: not offered there,
    // and a stored instance is not generated for it.
    QVERIFY(!eth->isSupported(m_harness.prepare(DEVICE_880K)));
    const QMap<QString, QVariant> args{{"name", "e"},    {"module", "e"},
                                       {"file", "e"},    {"lanes", "Q0 Lane0"},
                                       {"pll", "QPLL0"}, {"reference", "Q0 REFCLK0"}};
    QStringList errors, lines, csr, mod;
    QString out;
    QVERIFY(!eth->validate(args, errors));
    QCOMPARE(errors, QStringList{"The device has no 64b/66b coding for 10GBASE-R."});
    QVERIFY(!eth->generate(args, lines, csr, mod, out, false));
    QVERIFY(lines.isEmpty());
}

void tst_Ethernet10g::proposalsAndRefusals_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("held"); // a placed row: "LANE PLL REF FREQ RATE", or empty
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QStringList>("expected"); // shown before the steps
    QTest::addColumn<QString>("refusal");      // the message box, or empty when placed

    QTest::newRow("370k, empty")
        << DEVICE_370K << QString() << QStringList()
        << QStringList{"listLanes#count=4",
                       "listLanes=Q0 Lane0",
                       "comboPll=QPLL0",
                       "comboReference=Q0 REFCLK0",
                       "comboReference#count=4",
                       "labelShare=QPLL0 of Q0 is free and will run at 10.3125 Gbps."}
        << QString();
    QTest::newRow("90k, empty") << DEVICE_90K << QString() << QStringList()
                                << QStringList{"comboPll=QPLL0", "comboReference#count=2"}
                                << QString();
    QTest::newRow("90k, QPLL0 at another rate")
        << DEVICE_90K << "Q0_LANE0 Q0_QPLL0 Q0_REFCLK0 125 5" << QStringList()
        << QStringList{"listLanes=Q0 Lane1", "comboPll=QPLL1", "comboReference=Q0 REFCLK1"}
        << QString();
    QTest::newRow("choosing the QPLL of another rate")
        << DEVICE_370K << "Q0_LANE0 Q0_QPLL0 Q0_REFCLK0 156.25 5" << QStringList{"comboPll=QPLL0"}
        << QStringList{"comboPll=QPLL1"}
        << "QPLL0 of Q0 already runs at 5 Gbps for another instance; choose another PLL or that "
           "rate.";
    QTest::newRow("choosing a reference at another frequency")
        << DEVICE_370K << "Q0_LANE0 Q0_CPLL0 Q0_REFCLK0 125 5"
        << QStringList{"comboReference=Q0 REFCLK0"} << QStringList{"comboReference=Q0 REFCLK1"}
        << "Q0 REFCLK0 already runs at 125 MHz for another instance; a reference input runs at "
           "one frequency, so choose 125 MHz or another reference.";
}

void tst_Ethernet10g::proposalsAndRefusals()
{
    QFETCH(QString, device);
    QFETCH(QString, held);
    QFETCH(QStringList, steps);
    QFETCH(QStringList, expected);
    QFETCH(QString, refusal);

    const DEV::DeviceArg dev = m_harness.prepare(device);
    IPSERDESIP::Message other;
    QString err;
    if (!held.isEmpty()) {
        const QStringList f = held.split(' ');
        other.name = other.module = other.file = "other";
        other.lanes << f.at(0);
        other.plls << f.at(1);
        other.refs << f.at(2);
        other.refFreqs << f.at(3);
        other.rates << f.at(4);
        other.rxRates << f.at(4);
        other.txRates << f.at(4);
        QVERIFY2(serdes::instance()->addItem(&other, err), qPrintable(err));
    }
    QStringList keys;
    for (const QString &pair : expected)
        keys << pair.section('=', 0, 0);
    const driver::Run run = driver::create(m_harness.protocol(), dev, freshDir(), keys, steps);
    for (const QString &pair : expected)
        QCOMPARE(run.shown.value(pair.section('=', 0, 0)), pair.section('=', 1));
    if (refusal.isEmpty()) {
        QVERIFY(run.boxes.isEmpty());
        QVERIFY2(m_harness.place(run.args, err), qPrintable(err));
    } else {
        QVERIFY(run.args.isEmpty());
        QCOMPARE(run.boxes.size(), 1);
        QCOMPARE(run.boxes.first().title, QStringLiteral("10GBASE-R"));
        QCOMPARE(run.boxes.first().text, refusal);
    }
}

void tst_Ethernet10g::twoInstancesShareAQpll_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QStringList>("first"); // steps of the first instance
    QTest::addColumn<QString>("pll");
    QTest::addColumn<QString>("reference");

    QTest::newRow("370k") << DEVICE_370K
                          << QStringList{"listLanes=Q0 Lane0,Q0 Lane1", "comboPll=QPLL1",
                                         "comboReference=Q0 REFCLK2"}
                          << "QPLL1"
                          << "Q0 REFCLK2";
    QTest::newRow("90k") << DEVICE_90K << QStringList{"comboReference=Q0 REFCLK1"} << "QPLL0"
                         << "Q0 REFCLK1";
}

void tst_Ethernet10g::twoInstancesShareAQpll()
{
    QFETCH(QString, device);
    QFETCH(QStringList, first);
    QFETCH(QString, pll);
    QFETCH(QString, reference);

    const DEV::DeviceArg dev = m_harness.prepare(device);
    QString err;
    const driver::Run one = driver::create(m_harness.protocol(), dev, freshDir(), {}, first);
    std::unique_ptr<IPSERDESIP::Message> placed = m_harness.place(one.args, err);
    QVERIFY2(placed, qPrintable(err));

    // The second instance is proposed the running QPLL with its pin.
    const driver::Run two
        = driver::create(m_harness.protocol(), dev, QString(freshDir() + "_2"), {"labelShare"}, {});
    QCOMPARE(two.args.value("module").toString(), QStringLiteral("eth10g_1st"));
    QCOMPARE(two.args.value("pll").toString(), pll);
    QCOMPARE(two.args.value("reference").toString(), reference);
    QCOMPARE(
        two.shown.value("labelShare"),
        QString(pll + " of Q0 already runs at 10.3125 Gbps from " + reference + " and is shared."));
    std::unique_ptr<IPSERDESIP::Message> shared = m_harness.place(two.args, err);
    QVERIFY2(shared, qPrintable(err));

    serdes *model = serdes::instance();
    const QString other = pll == "QPLL0" ? "Q0_QPLL1" : "Q0_QPLL0";
    QVERIFY(model->checkPllEnable("Q0_" + pll));
    QVERIFY(!model->checkPllEnable(other));
    QCOMPARE(model->checkPLLforQuad0(10.3125), QStringList{pll});
    const QStringList lanes = one.args.value("lanes").toString().split(',')
                              + two.args.value("lanes").toString().split(',');
    QCOMPARE(model->occupiedLanes(), lanes);
}

void tst_Ethernet10g::savedMapRebuildsRequest()
{
    const DEV::DeviceArg dev = m_harness.prepare(DEVICE_370K);
    IPSERDESIP::BaseProtocol *eth = m_harness.protocol();
    const driver::Run run = driver::create(
        eth, dev, freshDir(), {},
        {"listLanes=Q0 Lane1,Q0 Lane2,Q0 Lane3", "comboReference=Q0 REFCLK3", "checkDrp=true"});
    QVERIFY(run.boxes.isEmpty());
    const QStringList rows{"Q0_LANE1 Q0_QPLL0 Q0_REFCLK3 156.25 10.3125 10.3125 10.3125",
                           "Q0_LANE2 Q0_QPLL0 Q0_REFCLK3 156.25 10.3125 10.3125 10.3125",
                           "Q0_LANE3 Q0_QPLL0 Q0_REFCLK3 156.25 10.3125 10.3125 10.3125"};
    std::unique_ptr<IPSERDESIP::Message> made(eth->createMessage(run.args));
    QCOMPARE(made->type, QStringLiteral("10GBASE-R"));
    QCOMPARE(made->name, QStringLiteral("eth10g"));
    QCOMPARE(driver::rows(*made), rows);

    const QMap<QString, QVariant> saved
        = driver::throughIni(run.args, m_dir.filePath("eth.ipc"), "10GBASE-R:eth10g");
    std::unique_ptr<IPSERDESIP::Message> rebuilt(eth->createMessage(saved));
    QCOMPARE(driver::rows(*rebuilt), rows);
    QStringList lines, linesSaved, csr, mod, modSaved;
    QString out;
    QVERIFY(eth->generate(run.args, lines, csr, mod, out, true));
    QVERIFY(eth->generate(saved, linesSaved, csr, modSaved, out, true));
    QCOMPARE(linesSaved, lines);
    QCOMPARE(modSaved, mod);
    const driver::Run edited
        = driver::edit(eth, saved, {"listLanes", "comboReference", "checkDrp"});
    QCOMPARE(edited.shown.value("listLanes"), QStringLiteral("Q0 Lane1,Q0 Lane2,Q0 Lane3"));
    QCOMPARE(edited.shown.value("comboReference"), QStringLiteral("Q0 REFCLK3"));
    QCOMPARE(edited.shown.value("checkDrp"), QStringLiteral("true"));
    std::unique_ptr<IPSERDESIP::Message> again(eth->createMessage(edited.args));
    QCOMPARE(driver::rows(*again), rows);

    QString err;
    QVERIFY2(serdes::instance()->addItem(rebuilt.get(), err), qPrintable(err));
}

void tst_Ethernet10g::drpOnlyWhenAsked_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<bool>("drp");
    QTest::newRow("370k, no DRP") << DEVICE_370K << false;
    QTest::newRow("370k, DRP") << DEVICE_370K << true;
    QTest::newRow("90k, DRP") << DEVICE_90K << true;
}

void tst_Ethernet10g::drpOnlyWhenAsked()
{
    QFETCH(QString, device);
    QFETCH(bool, drp);

    const DEV::DeviceArg dev = m_harness.prepare(device);
    IPSERDESIP::BaseProtocol *eth = m_harness.protocol();
    const driver::Run run
        = driver::create(eth, dev, freshDir(), {}, {drp ? "checkDrp=true" : "checkDrp=false"});
    QCOMPARE(run.args.value("drp").toBool(), drp);
    QStringList lines, csr, modArgs;
    QString out;
    QVERIFY(eth->generate(run.args, lines, csr, modArgs, out, true));
    QCOMPARE(modArgs.contains("-eth10gEnableDRP true"), drp);
    QCOMPARE(modArgs.filter("EnableDRP").size(), drp ? 1 : 0);
    // One requester slot of the arbiter, as the arbiter's port names it.
    const QStringList slot{"-eth10g_port output 1 drp_req",   "-eth10g_port output 1 drp_wr",
                           "-eth10g_port output 24 drp_addr", "-eth10g_port output 32 drp_wdata",
                           "-eth10g_port input 1 drp_grant",  "-eth10g_port input 1 drp_ready",
                           "-eth10g_port input 32 drp_rdata"};
    for (const QString &line : slot)
        QCOMPARE(modArgs.contains(line), drp);
    QVERIFY(modArgs.contains("-eth10g_port input 64 tx_data"));
    QVERIFY(modArgs.contains("-eth10g_port input 1 q0_refclk0_p"));

    const QString compiled
        = driver::compileWithWrapper(run.args.value("dir").toString(), "eth10g", modArgs, out);
    if (compiled == QLatin1String("no iverilog"))
        QSKIP("iverilog is not installed");
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
    QStringList plls, references, lanes;
    MessageBoxAnswers answers;
    whenModal<QDialog>([&](QDialog *dialog) {
        plls = driver::offered(dialog->findChild<QComboBox *>("comboPll"));
        references = driver::offered(dialog->findChild<QComboBox *>("comboReference"));
        auto *list = dialog->findChild<QListWidget *>("listLanes");
        for (int i = 0; i < list->count(); ++i)
            lanes << list->item(i)->text();
        dialog->reject();
    });
    QVERIFY(eth->create(freshDir(), dev).isEmpty());
    QCOMPARE(plls, (QStringList{"QPLL0", "QPLL1"}));
    QCOMPARE(lanes.size(), 4);

    for (const QString &pll : plls) {
        for (const QString &reference : references) {
            const QMap<QString, QVariant> args{
                {"name", "e"}, {"module", "e"},          {"file", "e"}, {"lanes", lanes.join(',')},
                {"pll", pll},  {"reference", reference}, {"drp", true}};
            QStringList lines, csr, mod, errors;
            QString out;
            QVERIFY(eth->generate(args, lines, csr, mod, out, false));
            QCOMPARE(lines.size(), 2 + 10 * lanes.size());
            IPSERDESIP::parser::instance()->converIniToToml(lines, errors);
            QVERIFY2(errors.isEmpty(), qPrintable(errors.join('\n')));
        }
    }
}

QTEST_MAIN(tst_Ethernet10g)
#include "tst_ethernet10g.moc"
