// SPDX-License-Identifier: MIT
#include "protocoldriver.h"

#include <model/serdes.h>
#include <protocol/message.h>
#include <translate/parser.h>

#include <QFile>
#include <QLocale>

using IPSERDESIP::serdes;

namespace {

// The map of an instance that another user placed before: lanes of one quad
// on one PLL, 8b/10b at `rate`.
QMap<QString, QVariant> other(const QString &module, const QString &lanes, const QString &pll,
                              const QString &reference, const QString &freq, const QString &rate,
                              const QString &mux = QString())
{
    const QString quad = lanes.left(2);
    return {{"name", module},
            {"module", module},
            {"file", module},
            {"lanes", lanes},
            {QString(quad + "_pll"), pll},
            {QString(quad + "_reference"), reference},
            {QString(quad + "_refFreq"), freq},
            {"txRate", rate},
            {"rxRate", rate},
            {"width", 20},
            {"encoding", "8b10b"},
            {"wordAlign", true},
            {"alignPattern", "k28.5"},
            {"loopback", "off"},
            {"referenceMux", mux}};
}

// Every element that something holds, with its count: PLLs by their select.
QStringList held()
{
    QStringList found;
    const QMap<QString, IPSERDESIP::Instance *> all = serdes::instance()->allInstance();
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        auto *pll = dynamic_cast<IPSERDESIP::PLL *>(it.value());
        const int count = pll ? pll->Mux()->count : it.value()->count;
        if (count > 0)
            found << QString(it.key() + ":" + QString::number(count));
    }
    return found;
}

} // namespace

class tst_CustomPhy : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void describesItself();
    void proposals_data();
    void proposals();
    void shareOfferFollowsTheRate();
    void refusals_data();
    void refusals();
    void savedMapRebuildsRequest_data();
    void savedMapRebuildsRequest();
    void everyOfferTranslates_data();
    void everyOfferTranslates();

private:
    // Places the others, as the page would have before this dialog opens.
    void placeOthers(const QVariantList &others);
    // A directory of the current test row's own, not made yet.
    QString freshDir() const;

    DEV::DeviceDb m_db;
    ProtocolHarness m_harness;
    QTemporaryDir m_dir;
    std::vector<std::unique_ptr<IPSERDESIP::Message>> m_placed;
};

void tst_CustomPhy::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    QString error;
    QVERIFY2(m_db.load(QStringLiteral(SERDES_STAGE_DIR "/data/devices/devices.json"), &error),
             qPrintable(error));
    Core::IdeCore::setDeviceDataBase(&m_db);
    QVERIFY2(m_harness.protocol(), qPrintable(m_harness.loadError()));
    QVERIFY(m_dir.isValid());
}

void tst_CustomPhy::placeOthers(const QVariantList &others)
{
    m_placed.clear();
    for (const QVariant &map : others) {
        QString err;
        m_placed.push_back(m_harness.place(map.toMap(), err));
        QVERIFY2(m_placed.back(), qPrintable(err));
    }
}

void tst_CustomPhy::cleanupTestCase()
{
    Core::IdeCore::setDeviceDataBase(nullptr);
}

QString tst_CustomPhy::freshDir() const
{
    return m_dir.filePath(QString(QTest::currentTestFunction()) + "_"
                          + QString(QTest::currentDataTag()).replace(' ', '_'));
}

void tst_CustomPhy::describesItself()
{
    IPSERDESIP::BaseProtocol *phy = m_harness.protocol();
    QCOMPARE(m_harness.protocols().size(), 1);
    QCOMPARE(phy->name(), QStringLiteral("Custom PHY"));
    QCOMPARE(phy->id(), QStringLiteral("SERDES_CUSTOM_PHY"));
    QCOMPARE(phy->category(), (QStringList{"Serdes", "PHY"}));
    QCOMPARE(phy->version(), QStringLiteral("1.0"));
    QFile help(phy->summaryFile());
    QVERIFY2(help.open(QIODevice::ReadOnly), qPrintable(phy->summaryFile()));
    QVERIFY(help.readAll().contains("<svg"));

    for (const char *id : {DEVICE_880K, DEVICE_370K, DEVICE_90K})
        QVERIFY2(phy->isSupported(m_harness.prepare(id)), id);
    DEV::DeviceArg noTransceivers = m_harness.prepare(DEVICE_370K);
    noTransceivers.features.removeAll("SERDES");
    QVERIFY(!phy->isSupported(noTransceivers));
}

void tst_CustomPhy::proposals_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QVariantList>("others");
    QTest::addColumn<QStringList>("expected"); // "key=value", as driver::read gives it

    QTest::newRow("880k, empty")
        << DEVICE_880K << QVariantList()
        << QStringList{"listLanes#count=8",           "listLanes=Q0 Lane0",
                       "groupQ1?visible=true",        "comboPllQ0=QPLL0",
                       "comboReferenceQ0=Q0 REFCLK0", "comboReferenceQ0#count=4",
                       "comboEncoding#count=2",       "comboLoopback#count=5",
                       "comboReferenceMux#count=3",   "buttonShareQ0?visible=false"};
    QTest::newRow("370k, empty") << DEVICE_370K << QVariantList()
                                 << QStringList{
                                        "listLanes#count=4",        "listLanes=Q0 Lane0",
                                        "groupQ1?visible=false",    "comboReferenceQ0#count=8",
                                        "comboEncoding#count=4",    "comboLoopback#count=6",
                                        "comboReferenceMux#count=5"};
    QTest::newRow("90k, empty") << DEVICE_90K << QVariantList()
                                << QStringList{"listLanes#count=4", "comboReferenceQ0#count=4",
                                               "comboEncoding#count=4",
                                               "comboReferenceMux#count=3"};
    // A QPLL of the quad runs at the proposed 2.5 Gbps: it is shared, with its
    // reference and frequency.
    QTest::newRow("880k, QPLL0 at the rate")
        << DEVICE_880K << QVariantList{other("a", "Q0 Lane0", "QPLL0", "Q0 REFCLK1", "125", "2.5")}
        << QStringList{"listLanes#count=7",
                       "listLanes=Q0 Lane1",
                       "comboPllQ0=QPLL0",
                       "comboReferenceQ0=Q0 REFCLK1",
                       "comboRefFreqQ0=125",
                       "labelClockNote=QPLL0 of Q0 is shared with another instance that runs it "
                       "at 2.5 Gbps."};
    // At another rate it is not: the next free QPLL, and a free reference.
    QTest::newRow("370k, QPLL0 at another rate")
        << DEVICE_370K << QVariantList{other("a", "Q0 Lane0", "QPLL0", "Q0 REFCLK0", "125", "5")}
        << QStringList{"listLanes=Q0 Lane1", "comboPllQ0=QPLL1", "comboReferenceQ0=Q0 REFCLK1",
                       "comboRefFreqQ0=156.25", "buttonShareQ0?visible=false"};
}

void tst_CustomPhy::proposals()
{
    QFETCH(QString, device);
    QFETCH(QVariantList, others);
    QFETCH(QStringList, expected);

    const DEV::DeviceArg dev = m_harness.prepare(device);
    placeOthers(others);
    QStringList keys;
    for (const QString &pair : expected)
        keys << pair.section('=', 0, 0);
    const driver::Run run = driver::create(m_harness.protocol(), dev, freshDir(), keys, {});
    for (const QString &pair : expected)
        QCOMPARE(run.shown.value(pair.section('=', 0, 0)), pair.section('=', 1));

    // What is proposed can be placed.
    QVERIFY(run.boxes.isEmpty());
    QString err;
    QVERIFY2(m_harness.place(run.args, err), qPrintable(err));
}

// Once the user leaves a running QPLL, the dialog offers it again, and only
// while the wanted rate is the one it runs at.
void tst_CustomPhy::shareOfferFollowsTheRate()
{
    const DEV::DeviceArg dev = m_harness.prepare(DEVICE_370K);
    placeOthers({other("a", "Q0 Lane3", "QPLL1", "Q0 REFCLK1", "125", "2.5")});
    QStringList seen;
    whenModal<QDialog>([&seen](QDialog *dialog) {
        const QStringList keys{"comboPllQ0", "comboReferenceQ0", "comboRefFreqQ0",
                               "buttonShareQ0?visible"};
        const auto look = [&] {
            QStringList values;
            for (const QString &key : keys)
                values << driver::read(dialog, key);
            seen << values.join(' ');
        };
        look();
        driver::apply(dialog, {"comboPllQ0=CPLL", "comboReferenceQ0=Q0 REFCLK2",
                               "comboRefFreqQ0=100"});
        look();
        seen << driver::read(dialog, "buttonShareQ0");
        driver::apply(dialog, {"comboTxRate=5"});
        look();
        driver::apply(dialog, {"comboTxRate=2.5", "buttonShareQ0=click"});
        look();
        dialog->reject();
    });
    QVERIFY(m_harness.protocol()->create(freshDir(), dev).isEmpty());
    QCOMPARE(seen, (QStringList{"QPLL1 Q0 REFCLK1 125 false", "CPLL Q0 REFCLK2 100 true",
                                "Share QPLL1 (Q0 REFCLK1, 125 MHz)", "CPLL Q0 REFCLK2 100 false",
                                "QPLL1 Q0 REFCLK1 125 false"}));
}

void tst_CustomPhy::refusals_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QVariantList>("others");
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QString>("text");

    QTest::newRow("reference at another frequency")
        << DEVICE_880K << QVariantList{other("a", "Q0 Lane0", "QPLL0", "Q0 REFCLK0", "125", "5")}
        << QStringList{"comboPllQ0=QPLL1", "comboReferenceQ0=Q0 REFCLK0", "comboRefFreqQ0=156.25"}
        << "Q0 REFCLK0 already runs at 125 MHz for another instance; a reference input runs at "
           "one frequency, so choose 125 MHz or another reference.";
    QTest::newRow("QPLL at another rate")
        << DEVICE_370K << QVariantList{other("a", "Q0 Lane0", "QPLL0", "Q0 REFCLK0", "125", "5")}
        << QStringList{"comboPllQ0=QPLL0", "comboReferenceQ0=Q0 REFCLK0", "comboRefFreqQ0=125"}
        << "QPLL0 of Q0 already runs at 5 Gbps for another instance; choose another PLL or that "
           "rate.";
    QTest::newRow("QPLL from another reference")
        << DEVICE_880K << QVariantList{other("a", "Q0 Lane0", "QPLL0", "Q0 REFCLK0", "125", "2.5")}
        << QStringList{"comboPllQ0=QPLL0", "comboReferenceQ0=Q0 REFCLK1"}
        << "QPLL0 of Q0 already runs from Q0 REFCLK0 at 125 MHz for another instance; choose "
           "that reference to share it, or another PLL.";
    // Both muxes of the 90k quad are held for REFCLK1: REFCLK0 reaches no PLL.
    QTest::newRow("muxes held for another reference")
        << DEVICE_90K
        << QVariantList{other("a", "Q0 Lane0", "QPLL0", "Q0 REFCLK1", "125", "5", "REFMUX0"),
                        other("b", "Q0 Lane1", "CPLL", "Q0 REFCLK1", "125", "5", "REFMUX1")}
        << QStringList{"listLanes=Q0 Lane2", "comboPllQ0=QPLL1", "comboReferenceQ0=Q0 REFCLK0"}
        << "There is no clock route from Q0 REFCLK0 to QPLL1 of Q0 for Q0 Lane2: the reference "
           "muxes on the way are held by other instances for other references.";
    QTest::newRow("mux cannot reach the master clock")
        << DEVICE_90K << QVariantList()
        << QStringList{"comboReferenceQ0=MCLK", "comboReferenceMux=REFMUX0"}
        << "REFMUX0 cannot bring MCLK to the receiver of Q0 Lane0; choose another mux or Auto.";
    QTest::newRow("8b/10b on an 8-bit PMA")
        << DEVICE_370K << QVariantList() << QStringList{"comboWidth=8", "comboEncoding=8b/10b"}
        << "8b/10b coding needs a PMA width of 10 or 20 bits.";
    QTest::newRow("no lane") << DEVICE_880K << QVariantList() << QStringList{"listLanes="}
                             << "No lane is selected.";
    QTest::newRow("module name of another instance")
        << DEVICE_880K
        << QVariantList{other("taken", "Q1 Lane3", "CPLL", "Q1 REFCLK0", "100", "1.25")}
        << QStringList{"editModuleName=taken"} << "Another instance is named \"taken\".";
}

void tst_CustomPhy::refusals()
{
    QFETCH(QString, device);
    QFETCH(QVariantList, others);
    QFETCH(QStringList, steps);
    QFETCH(QString, text);

    const DEV::DeviceArg dev = m_harness.prepare(device);
    placeOthers(others);
    serdes *model = serdes::instance();
    const QMap<QString, QStringList> routes = model->allAccess();
    const QStringList before = held();

    const driver::Run run = driver::create(m_harness.protocol(), dev, freshDir(), {}, steps);
    QVERIFY(run.args.isEmpty());
    QCOMPARE(run.boxes.size(), 1);
    QCOMPARE(run.boxes.first().title, QStringLiteral("Custom PHY"));
    QCOMPARE(run.boxes.first().text, text);
    // The trial gave back all it took.
    QCOMPARE(model->allAccess(), routes);
    QCOMPARE(held(), before);
}

void tst_CustomPhy::savedMapRebuildsRequest_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QStringList>("steps");
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
        << QStringList{"Q0_LANE2 Q0_QPLL0 Q0_REFCLK0 156.25 0 3.125 5 REFMUX1",
                       "Q1_LANE1 Q1_CPLL1 Q0_REFCLK1 100 0 3.125 5 REFMUX1",
                       "Q1_LANE2 Q1_CPLL2 Q0_REFCLK1 100 0 3.125 5 REFMUX1"};
    QTest::newRow("370k, fabric reference")
        << DEVICE_370K
        << QStringList{"listLanes=Q0 Lane0,Q0 Lane3", "comboReferenceQ0=Q0 REFIN2",
                       "comboTxRate=10.3125", "comboRxRate=10.3125", "comboEncoding=64b/66b"}
        << QStringList{"Q0_LANE0 Q0_QPLL0 Q0_GPIO2 156.25 10.3125 10.3125 10.3125",
                       "Q0_LANE3 Q0_QPLL0 Q0_GPIO2 156.25 10.3125 10.3125 10.3125"};
    QTest::newRow("90k, master clock")
        << DEVICE_90K << QStringList{"comboPllQ0=CPLL", "comboReferenceQ0=MCLK"}
        << QStringList{"Q0_LANE0 Q0_CPLL0 Q0_MCLK 156.25 2.5 2.5 2.5"};
}

void tst_CustomPhy::savedMapRebuildsRequest()
{
    QFETCH(QString, device);
    QFETCH(QStringList, steps);
    QFETCH(QStringList, rows);

    const DEV::DeviceArg dev = m_harness.prepare(device);
    IPSERDESIP::BaseProtocol *phy = m_harness.protocol();
    const driver::Run run = driver::create(phy, dev, freshDir(), {}, steps);
    QVERIFY(run.boxes.isEmpty());
    QCOMPARE(run.args.value("module").toString(), QStringLiteral("customphy"));
    QCOMPARE(run.args.value("name"), run.args.value("module"));
    QCOMPARE(run.args.value("file").toString(), QStringLiteral("customphy"));

    std::unique_ptr<IPSERDESIP::Message> made(phy->createMessage(run.args));
    QCOMPARE(made->type, QStringLiteral("Custom PHY"));
    QCOMPARE(driver::rows(*made), rows);

    const QString ini = m_dir.filePath(QString(QTest::currentDataTag()) + ".ipc");
    const QMap<QString, QVariant> saved = driver::throughIni(run.args, ini, "Custom PHY:customphy");
    std::unique_ptr<IPSERDESIP::Message> rebuilt(phy->createMessage(saved));
    QCOMPARE(driver::rows(*rebuilt), rows);
    QCOMPARE(rebuilt->module, made->module);
    QCOMPARE(rebuilt->file, made->file);

    QStringList lines, linesSaved, csr, mod;
    QString out;
    QVERIFY(phy->generate(run.args, lines, csr, mod, out, false));
    QVERIFY(phy->generate(saved, linesSaved, csr, mod, out, false));
    QCOMPARE(linesSaved, lines);

    // Editing the saved map shows it as it was, and gives it back.
    const driver::Run edited = driver::edit(phy, saved, {"listLanes", "comboTxRate"});
    QVERIFY(edited.boxes.isEmpty());
    QCOMPARE(edited.shown.value("listLanes"), run.args.value("lanes").toString());
    QCOMPARE(edited.shown.value("comboTxRate"), run.args.value("txRate").toString());
    std::unique_ptr<IPSERDESIP::Message> again(phy->createMessage(edited.args));
    QCOMPARE(driver::rows(*again), rows);

    QString err;
    QVERIFY2(serdes::instance()->addItem(rebuilt.get(), err), qPrintable(err));

    // The instance's own file, and the lines the module generator wraps it by.
    QStringList modArgs;
    QVERIFY(phy->generate(saved, lines, csr, modArgs, out, true));
    QCOMPARE(out, QString(run.args.value("dir").toString() + "/customphy.v"));
    QVERIFY(modArgs.contains(QString("-customphy_port output %1 tx_p").arg(rows.size())));
    const QString compiled
        = driver::compileWithWrapper(run.args.value("dir").toString(), "customphy", modArgs, out);
    if (compiled == QLatin1String("no iverilog"))
        QSKIP("iverilog is not installed");
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
    QMap<QString, QStringList> offers;
    MessageBoxAnswers answers;
    whenModal<QDialog>([&](QDialog *dialog) {
        for (const auto &choice : choices)
            offers.insert(choice.second,
                          driver::offered(dialog->findChild<QComboBox *>(choice.first)));
        dialog->reject();
    });
    QVERIFY(phy->create(freshDir(), dev).isEmpty());
    offers.insert("wordAlign", {"true", "false"});
    offers.insert("txPolarityInvert", {"true", "false"});
    offers.insert("rxPolarityInvert", {"true", "false"});
    QCOMPARE(offers.size(), choices.size() + 3);

    const driver::Run base = driver::create(phy, dev, freshDir(), {}, {"comboEncoding=None"});
    QVERIFY(!base.args.isEmpty());
    for (auto it = offers.cbegin(); it != offers.cend(); ++it) {
        QVERIFY2(!it->isEmpty(), qPrintable(it.key()));
        for (const QString &value : *it) {
            QMap<QString, QVariant> args = base.args;
            args.insert(it.key(), value);
            QStringList lines, csr, mod, errors;
            QString out;
            QVERIFY2(phy->generate(args, lines, csr, mod, out, false),
                     qPrintable(it.key() + "=" + value));
            IPSERDESIP::parser::instance()->converIniToToml(lines, errors);
            QVERIFY2(errors.isEmpty(), qPrintable(errors.join('\n')));
        }
    }
}

QTEST_MAIN(tst_CustomPhy)
#include "tst_customphy.moc"
