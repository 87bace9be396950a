// SPDX-License-Identifier: MIT
//
// The burst-mode CDR receiver, loaded from the staged tree as the generator
// loads it: its dialog driven headless on a device of each tier, its maps and
// requests, their placement in the model, and its outputs.

#include "protocolharness.h"

#include <QDir>
#include <QFile>
#include <QtTest>

namespace {

// An instance's map as the configuration file gives it back, with only the
// keys that place it; the rest take the protocol's defaults.
Args instance(const QString &module, const QStringList &lanes, const QString &pll,
              const QString &ref, const QString &freq = "125", const QString &rate = "1.25")
{
    return {{"name", module}, {"file", module},   {"module", module}, {"lanes", lanes},
            {"pll", pll},     {"ref_clock", ref}, {"ref_freq", freq}, {"rx_rate", rate}};
}

} // namespace

class tst_Bcdr : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void identity();
    void dialog_data();
    void dialog();
    void fieldProblems_data();
    void fieldProblems() { driver::fieldProblem(*m_harness); }
    void createdRequestIsPlacedAndSaved_data();
    void createdRequestIsPlacedAndSaved();
    void everyOfferedSettingTranslates_data();
    void everyOfferedSettingTranslates();
    void generateWritesModule_data();
    void generateWritesModule();
    void editShowsStoredInstance();
    void validateNamesKeys_data();
    void validateNamesKeys();

private:
    IPSERDESIP::BaseProtocol *protocol() const { return m_harness->protocol(); }

    std::unique_ptr<ProtocolHarness> m_harness;
};

void tst_Bcdr::initTestCase()
{
    m_harness = std::make_unique<ProtocolHarness>();
    QVERIFY2(protocol(), qPrintable(m_harness->loadError()));
}

void tst_Bcdr::identity()
{
    IPSERDESIP::BaseProtocol *p = protocol();
    QCOMPARE(m_harness->identity(), QString("BCDR|SERDES_BCDR_RX|Serdes/Receiver|1.0+help"));

    // The help page lies beside the plug-in; its picture is named relative to
    // the generator's picture folder, against which the help pane shows it.
    const QString plugin = QFileInfo(QStringLiteral(SERDES_PROTOCOL_PLUGIN)).absolutePath();
    QCOMPARE(p->summaryFile(), QString(plugin + "/bcdr.html"));
    QFile page(p->summaryFile());
    QVERIFY(page.open(QIODevice::ReadOnly));
    const QRegularExpressionMatch img
        = QRegularExpression("<img src=\"([^\"]+)\"").match(QString::fromUtf8(page.readAll()));
    const QString picture = QDir::cleanPath(SERDES_STAGE_DIR "/data/ipcores/" + img.captured(1));
    QCOMPARE(picture, QString(plugin + "/bcdr.svg"));
    QVERIFY(QFile::exists(picture));

    for (const char *id : {DEVICE_880K, DEVICE_370K, DEVICE_90K})
        QVERIFY2(p->isSupported(m_harness->prepare(id)), id);
    // A device without transceivers.
    QVERIFY(!p->isSupported(m_harness->prepare("RK7C60L-BG256-1")));
}

// The dialog's offers and proposals, and that its trials leave no trace in
// the model.
void tst_Bcdr::dialog_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QVariantList>("placed");
    QTest::addColumn<QStringList>("script");
    QTest::addColumn<QString>("module"); // of the map given back; empty when none is

    const QString quad0 = "Q0 Lane0,Q0 Lane1,Q0 Lane2,Q0 Lane3";
    const QString quad1 = "Q1 Lane0,Q1 Lane1,Q1 Lane2,Q1 Lane3";
    QTest::newRow("880k offers")
        << DEVICE_880K << QVariantList()
        << QStringList{"listLanes#items==" + quad0 + "," + quad1,
                       "listLanes==Q0 Lane0",
                       "untipped==",
                       "comboReference#items==Q0 REFCLK0,Q0 REFCLK1,Q1 REFCLK0,Q1 REFCLK1",
                       "comboPll#items==CPLL,QPLL0",
                       "comboReference|comboRefFreq|comboRxRate|editModuleName|editFileName"
                       "==Q0 REFCLK0|125|1.25|bcdr|bcdr",
                       "comboWidth#items==20,10",
                       "comboEncoding=none",
                       "comboWidth#items|checkWordAlign?enabled==20,16,10,8|false"}
        << "bcdr";
    QTest::newRow("370k offers")
        << DEVICE_370K << QVariantList()
        << QStringList{"listLanes#items==" + quad0, "listLanes==Q0 Lane0",
                       "comboReference#items==Q0 REFCLK0,Q0 REFCLK1,Q0 REFCLK2,Q0 REFCLK3,"
                       "Q0 REFIN0,Q0 REFIN1,Q0 REFIN2,Q0 REFIN3"}
        << "bcdr";

    // Beside a running QPLL0 its settings are proposed, and the symbol follows
    // the reference clock.
    const QString running = "labelClockNote==QPLL0 of Q0 already runs from %1 at 156.25 MHz and "
                            "2.5 Gbps for another instance: its settings are proposed, since "
                            "lanes can share it only as it runs.";
    QTest::newRow("880k beside a running QPLL0")
        << DEVICE_880K
        << QVariantList({instance("bcdr", {"Q0_LANE0"}, "QPLL0", "Q0 REFCLK1", "156.25", "2.5")})
        << QStringList{"listLanes#items==Q0 Lane1,Q0 Lane2,Q0 Lane3," + quad1,
                       "editModuleName|editFileName==bcdr_1st|bcdr_1", "comboPll=QPLL0",
                       "comboReference|comboRefFreq|comboRxRate==Q0 REFCLK1|156.25|2.5",
                       running.arg("Q0 REFCLK1"),
                       "figure==refclk_p,refclk_n,rxp,rxn,rx_reset,rx_usrclk,rx_outclk,rx_data,rx_"
                       "ctrl,rx_ready,pll_lock",
                       // On its own CPLL the lane still meets the clock in use.
                       "comboPll=CPLL|comboRefFreq=100|comboReference=Q0 REFCLK0|comboReference=Q0 "
                       "REFCLK1",
                       "comboRefFreq==156.25",
                       "labelClockNote==Q0 REFCLK1 already runs at 156.25 MHz for another "
                       "instance, and a reference clock input has one frequency."}
        << "bcdr_1st";
    QTest::newRow("no free lane")
        << DEVICE_90K
        << QVariantList({instance("all", {"Q0_LANE0", "Q0_LANE1", "Q0_LANE2", "Q0_LANE3"}, "CPLL",
                                  "Q0 REFCLK0")})
        << QStringList{"listLanes#items==", "tabOptions?enabled==false",
                       "comboReference#items==Q0 REFCLK0,Q0 REFCLK1,MCLK,Q0 REFIN",
                       "labelLanes==No lane of this device is free: other instances hold them "
                       "all. Delete or change one of them to make room for the receiver."}
        << QString();
}

void tst_Bcdr::fieldProblems_data()
{
    driver::fieldProblemColumns();
    QTest::newRow("no lane") << DEVICE_880K << QVariantList() << QStringList() << "listLanes"
                             << ""
                             << "Select at least one lane"
                             << "Q1 Lane1";
    // The receiver's own limits.
    QTest::newRow("frequency out of range")
        << DEVICE_370K << QVariantList() << QStringList() << "comboRefFreq"
        << "20"
        << "50 to 800 MHz"
        << "100";
    QTest::newRow("rate out of range")
        << DEVICE_90K << QVariantList() << QStringList() << "comboRxRate"
        << "13"
        << "0.5 to 12.5 Gbps"
        << "2.5";
    QTest::newRow("no number") << DEVICE_90K << QVariantList() << QStringList() << "comboRefFreq"
                               << "1OO"
                               << "\"1OO\" is no number"
                               << "125";
    QTest::newRow("shared QPLL0 at another rate")
        << DEVICE_370K << QVariantList({instance("a", {"Q0_LANE0"}, "QPLL0", "Q0 REFCLK0")})
        << QStringList{"listLanes=Q0 Lane1", "comboPll=QPLL0"} << "comboRxRate"
        << "2.5"
        << "QPLL0 of Q0|1.25 Gbps|another instance"
        << "1.25";
    QTest::newRow("reference at another frequency")
        << DEVICE_880K << QVariantList({instance("a", {"Q1_LANE0"}, "CPLL", "Q1 REFCLK0")})
        << QStringList{"comboReference=Q1 REFCLK0"} << "comboRefFreq"
        << "100"
        << "Q1 REFCLK0|125 MHz"
        << "125";
    // Both reference muxes of quad 1 are held at its own inputs: the first
    // lane is routed, the second finds no way over the bridge.
    QTest::newRow("no free clock path")
        << DEVICE_880K
        << QVariantList({instance("a", {"Q1_LANE0"}, "CPLL", "Q1 REFCLK0"),
                         instance("b", {"Q1_LANE1"}, "CPLL", "Q1 REFCLK1")})
        << QStringList{"listLanes=Q0 Lane2,Q1 Lane2", "comboPll=CPLL"} << "comboReference"
        << "Q0 REFCLK0"
        << "Q0 REFCLK0|the CPLL of Q1 Lane2|receiver of Q1 Lane2"
        << "Q1 REFCLK0";
}

void tst_Bcdr::dialog()
{
    QFETCH(QString, device);
    QFETCH(QVariantList, placed);
    QFETCH(QStringList, script);
    QFETCH(QString, module);
    const DEV::DeviceArg dev = m_harness->prepare(device);
    QCOMPARE(m_harness->hold(placed), QString());
    const QStringList before = driver::modelState();

    const driver::Run run = driver::create(protocol(), dev, m_harness->freshDir(), script);
    QCOMPARE(run.seen, run.wanted);
    QCOMPARE(run.boxes, QStringList());
    QCOMPARE(run.stayed, module.isEmpty());
    QCOMPARE(run.args.value("module").toString(), module);
    // Whatever the dialog tried to prove its selection is given back.
    QCOMPARE(driver::modelState(), before);
    if (!module.isEmpty())
        QCOMPARE(m_harness->hold({run.args}), QString());
}

void tst_Bcdr::createdRequestIsPlacedAndSaved_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QStringList>("script");
    QTest::addColumn<QStringList>("rows");   // lane pll ref freq rate rx tx
    QTest::addColumn<QStringList>("routes"); // after placing
    QTest::addColumn<QString>("line");       // one of the parameter lines

    QTest::newRow("880k, QPLL0s of both quads, one over the bridge")
        << DEVICE_880K << QStringList{"listLanes=Q0 Lane1,Q1 Lane2",
                                      "comboPll=QPLL0",
                                      "comboReference=Q0 REFCLK1",
                                      "comboRefFreq=156.25",
                                      "comboRxRate=2.5",
                                      "checkPolarityInvert=true"}
        << QStringList{"Q0_LANE1_RX Q0_QPLL0 Q0_REFCLK1 156.25 0 2.5 0",
                       "Q1_LANE2_RX Q1_QPLL0 Q0_REFCLK1 156.25 0 2.5 0"}
        << QStringList{"Q0_LANE1_RX: Q0_LANE1_RX -> Q0_QPLL0 -> Q0_MUX0 -> Q0_REFCLK1",
                       "Q1_LANE2_RX: Q1_LANE2_RX -> Q1_QPLL0 -> Q1_MUX0 -> MUX_Q0_TO_Q1 -> "
                       "Q0_REFCLK1"}
        << "q1_ln2_rx_pol_invert enable";
    // One lane: a list of one comes back from the file as a string.
    QTest::newRow("370k, a CPLL from a fabric clock")
        << DEVICE_370K
        << QStringList{"listLanes=Q0 Lane3", "comboPll=CPLL",      "comboReference=Q0 REFIN2",
                       "comboRefFreq=100",   "comboEncoding=none", "comboWidth=8"}
        << QStringList{"Q0_LANE3_RX Q0_CPLL3 Q0_GPIO2 100 0 1.25 0"}
        << QStringList{"Q0_LANE3_RX: Q0_LANE3_RX -> Q0_CPLL3 -> Q0_MUX2 -> Q0_GPIO2"}
        << "q0_ln3_pma_rx_width_mode 8";
    QTest::newRow("90k, one QPLL0 straight from the main clock")
        << DEVICE_90K
        << QStringList{"listLanes=Q0 Lane0,Q0 Lane2",
                       "comboPll=QPLL0",
                       "comboReference=MCLK",
                       "comboRefFreq=100",
                       "comboRxRate=2.5",
                       "comboOvsRatio=20x"}
        << QStringList{"Q0_LANE0_RX Q0_QPLL0 Q0_MCLK 100 0 2.5 0",
                       "Q0_LANE2_RX Q0_QPLL0 Q0_MCLK 100 0 2.5 0"}
        << QStringList{"Q0_LANE0_RX: Q0_LANE0_RX -> Q0_QPLL0 -> Q0_MCLK",
                       "Q0_LANE2_RX: Q0_LANE2_RX -> Q0_QPLL0 -> Q0_MCLK"}
        << "q0_ln2_rx_ovs_ratio 20x";
}

void tst_Bcdr::createdRequestIsPlacedAndSaved()
{
    QFETCH(QString, device);
    QFETCH(QStringList, script);
    QFETCH(QStringList, rows);
    QFETCH(QStringList, routes);
    QFETCH(QString, line);
    const DEV::DeviceArg dev = m_harness->prepare(device);
    QStringList free = serdes::instance()->notOccupiedLanes();
    const QStringList before = driver::modelState();

    const QString dir = m_harness->freshDir();
    const driver::Run run = driver::create(protocol(), dev, dir, script);
    QCOMPARE(run.boxes, QStringList());
    // The dialog proved the routes and gave them back.
    QCOMPARE(driver::modelState(), before);
    QCOMPARE(run.args.value("target_device").toString(), device);
    QCOMPARE(run.args.value("dir").toString(), QString(dir + "/bcdr"));
    QVERIFY(QFileInfo(dir + "/bcdr").isDir());

    // As the page stores an instance and reads it back when the file is
    // opened: the same request and the same parameter lines.
    const Args saved = driver::throughIni(run.args, dir + ".ipc", "BCDR:bcdr");
    QCOMPARE(saved.keys(), run.args.keys());
    QStringList made, rebuilt, csr, mod;
    QString out;
    QVERIFY(protocol()->generate(run.args, made, csr, mod, out, false));
    QVERIFY(protocol()->generate(saved, rebuilt, csr, mod, out, false));
    QCOMPARE(rebuilt, made);
    QVERIFY2(made.contains(line), qPrintable(made.join('\n')));
    for (const Args &args : {run.args, saved}) {
        std::unique_ptr<IPSERDESIP::Message> msg(protocol()->createMessage(args));
        QVERIFY(msg->check());
        QCOMPARE(QStringList({msg->type, msg->name, msg->module, msg->file}),
                 QStringList({"BCDR", "bcdr", "bcdr", "bcdr"}));
        QCOMPARE(driver::rows(*msg), rows);
    }

    QCOMPARE(m_harness->hold({saved}), QString());
    QStringList access;
    const QMap<QString, QStringList> all = serdes::instance()->allAccess();
    for (auto it = all.cbegin(); it != all.cend(); ++it)
        access << it.key() + ": " + it.value().join(" -> ");
    QCOMPARE(access, routes);
    for (const QString &row : rows)
        QVERIFY(free.removeOne(row.section('_', 0, 1).replace("_LANE", " Lane")));
    QCOMPARE(serdes::instance()->notOccupiedLanes(), free);
    QCOMPARE(serdes::instance()->moduleNames, QStringList{"bcdr"});
}

void tst_Bcdr::everyOfferedSettingTranslates_data()
{
    QTest::addColumn<QString>("device");
    QTest::newRow("880k") << DEVICE_880K;
    QTest::newRow("370k") << DEVICE_370K;
    QTest::newRow("90k") << DEVICE_90K;
}

// Each value of each choice, the others at the proposal, is valid and
// translates on the tier without a single "can no conver param".
void tst_Bcdr::everyOfferedSettingTranslates()
{
    QFETCH(QString, device);
    const DEV::DeviceArg dev = m_harness->prepare(device);
    const QStringList keys{"lanes",    "pll",          "ref_clock", "width",    "comma",
                           "coupling", "sd_threshold", "ovs_mode",  "ovs_ratio"};
    const driver::Run base = driver::create(
        protocol(), dev, m_harness->freshDir(),
        {"listLanes#items", "comboPll#items", "comboReference#items", "comboWidth#items",
         "comboComma#items", "comboCoupling#items", "comboSdThreshold#items", "comboOvsMode#items",
         "comboOvsRatio#items==5x,10x,20x", "comboEncoding=none", "comboWidth#items",
         "comboEncoding=8b10b"});
    QCOMPARE(base.seen, base.wanted);
    QVERIFY(!base.args.isEmpty());

    QList<Args> variants;
    for (int i = 0; i < keys.size(); ++i) {
        for (QString value : base.value(i).split(',')) {
            Args variant = base.args;
            if (keys.at(i) == "lanes")
                variant.insert("lanes", QStringList{value.toUpper().replace(' ', '_')});
            else
                variant.insert(keys.at(i), value);
            variants << variant;
        }
    }
    for (const QString &width : base.value(keys.size()).split(',')) {
        Args variant = base.args;
        variant.insert("encoding", "none");
        variant.insert("width", width);
        variants << variant;
    }
    for (const char *key : {"word_align", "polarity_invert"}) {
        for (bool on : {false, true}) {
            Args variant = base.args;
            variant.insert(key, on);
            variants << variant;
        }
    }
    for (const Args &variant : variants) {
        QStringList errors, ini, csr, mod;
        QString out;
        QVERIFY2(protocol()->validate(variant, errors), qPrintable(errors.join('\n')));
        QVERIFY(protocol()->generate(variant, ini, csr, mod, out, false));
        QVERIFY(!ini.isEmpty());
        IPSERDESIP::parser::instance()->converIniToToml(ini, errors);
        QVERIFY2(errors.isEmpty(), qPrintable(errors.join('\n')));
    }
}

void tst_Bcdr::generateWritesModule_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QVariantMap>("args");
    QTest::addColumn<QStringList>("ports"); // "direction width name"

    // The reference comes in at the pads of the other quad's primitive.
    QTest::newRow("880k, quad pads")
        << DEVICE_880K << instance("bcdr", {"Q0_LANE0", "Q1_LANE3"}, "QPLL0", "Q1 REFCLK1")
        << QStringList{"input 1 refclk_p",   "input 1 refclk_n",  "input 2 rxp",
                       "input 2 rxn",        "input 1 rx_reset",  "input 2 rx_usrclk",
                       "output 2 rx_outclk", "output 32 rx_data", "output 4 rx_ctrl",
                       "output 2 rx_ready",  "output 2 pll_lock"};
    // Pads the quad primitive has no pins for, through an input buffer.
    Args other = instance("bcdr_diffin", {"Q0_LANE1"}, "CPLL", "Q0 REFCLK2");
    other.insert("encoding", "none");
    other.insert("width", "16");
    QTest::newRow("370k, other pads")
        << DEVICE_370K << other
        << QStringList{"input 1 refclk_p",   "input 1 refclk_n",  "input 1 rxp",
                       "input 1 rxn",        "input 1 rx_reset",  "input 1 rx_usrclk",
                       "output 1 rx_outclk", "output 16 rx_data", "output 1 rx_ready",
                       "output 1 pll_lock"};
    // A clock from the fabric, and a single K flag.
    Args fabric = instance("bcdr_fabric", {"Q0_LANE2"}, "QPLL0", "MCLK");
    fabric.insert("width", "10");
    QTest::newRow("90k, fabric clock, compiled with the others")
        << DEVICE_90K << fabric
        << QStringList{"input 1 refclk",   "input 1 rxp",       "input 1 rxn",
                       "input 1 rx_reset", "input 1 rx_usrclk", "output 1 rx_outclk",
                       "output 8 rx_data", "output 1 rx_ctrl",  "output 1 rx_ready",
                       "output 1 pll_lock"};
}

void tst_Bcdr::generateWritesModule()
{
    QFETCH(QString, device);
    QFETCH(QVariantMap, args);
    QFETCH(QStringList, ports);
    m_harness->prepare(device);
    const QString module = args.value("module").toString();
    for (QString &port : ports)
        port.prepend("-" + module + "_port ");

    // Only the parameter lines without a full run: no directory, no file.
    const QString dir = QFileInfo(m_harness->freshDir()).absolutePath() + "/modules";
    serdes::instance()->setWorkingDir(dir + "/elsewhere");
    QStringList ini, csr, mod;
    QString out;
    QVERIFY(protocol()->generate(args, ini, csr, mod, out, false));
    QVERIFY(!ini.isEmpty());
    QCOMPARE(mod, QStringList());
    QCOMPARE(out, QString());
    QVERIFY(!QFileInfo::exists(dir + "/elsewhere"));

    serdes::instance()->setWorkingDir(dir);
    QStringList fullIni;
    QVERIFY(protocol()->generate(args, fullIni, csr, mod, out, true));
    QCOMPARE(fullIni, ini);
    QCOMPARE(csr, QStringList());
    QCOMPARE(mod, ports);
    QCOMPARE(out, QString(dir + "/" + module + "/" + module + ".v"));
    // The module's own port list says what the module generator is told, and
    // the quad's register port, which the Upar arbiter owns, is left idle.
    QCOMPARE(driver::declaredPorts(out, module), ports);
    QFile written(out);
    QVERIFY(written.open(QIODevice::ReadOnly) && written.readAll().contains(".UPAR_RST(1'b0),"));

    // The host's module generator wraps the last, and all the modules written
    // so far compile against the device's primitives.
    if (!QByteArray(QTest::currentDataTag()).contains("compiled"))
        return;
    QStringList files;
    for (const QString &sub : QDir(dir).entryList({"bcdr*"}, QDir::Dirs))
        files << dir + "/" + sub + "/" + sub + ".v";
    QCOMPARE(files.size(), 3);
    const QString errors = driver::compileWithWrapper(dir, module, mod, files);
    QVERIFY2(errors.isEmpty(), qPrintable(errors));
}

void tst_Bcdr::editShowsStoredInstance()
{
    const DEV::DeviceArg dev = m_harness->prepare(DEVICE_880K);
    const QString dir = m_harness->freshDir();
    const driver::Run run
        = driver::create(protocol(), dev, dir,
                         {"listLanes=Q1 Lane2,Q1 Lane3", "comboPll=QPLL0",
                          "comboReference=Q0 REFCLK1", "comboRefFreq=156.25", "comboRxRate=3.125",
                          "comboEncoding=none", "comboWidth=16", "comboOvsRatio=20x"});
    QVERIFY(!run.args.isEmpty());

    // The page opens an instance out of the model, from its directory.
    serdes::instance()->setWorkingDir(dir);
    const driver::Run edited
        = driver::edit(protocol(), run.args,
                       {"listLanes==Q1 Lane2,Q1 Lane3", "comboPll==QPLL0",
                        "comboReference==Q0 REFCLK1", "comboRefFreq==156.25", "comboRxRate==3.125",
                        "comboWidth==16", "comboOvsRatio==20x", "editFileName?enabled==false"});
    QCOMPARE(edited.seen, edited.wanted);
    QCOMPARE(edited.args, run.args);

    // A stored lane that another instance took meanwhile cannot be shown:
    // the edit ends as cancelled, without a dialog.
    QCOMPARE(m_harness->hold({instance("other", {"Q1_LANE3"}, "CPLL", "Q1 REFCLK0")}), QString());
    bool shown = false;
    QTimer guard;
    connect(&guard, &QTimer::timeout, [&shown] {
        if (auto *d = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
            shown = true;
            d->reject();
        }
    });
    guard.start(10);
    QVERIFY(protocol()->edit(run.args).isEmpty());
    QVERIFY(!shown);
}

void tst_Bcdr::validateNamesKeys_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<Args>("changes"); // to a receiver of two lanes as a file gives it back
    QTest::addColumn<QStringList>("problems");

    QTest::newRow("880k") << DEVICE_880K << Args() << QStringList();
    QTest::newRow("370k, one lane, raw bits")
        << DEVICE_370K << Args{{"lanes", "Q0_LANE1"}, {"ref_clock", "Q0 REFIN2"},
                               {"pll", "QPLL0"},      {"encoding", "none"},
                               {"width", "16"},       {"word_align", "false"},
                               {"dir", "/tmp/bcdr"}}
        << QStringList();
    QTest::newRow("90k") << DEVICE_90K
                         << Args{{"lanes", QStringList{"Q0_LANE0", "Q0_LANE3"}},
                                 {"ref_clock", "MCLK"}}
                         << QStringList();
    QTest::newRow("every problem")
        << DEVICE_90K
        << Args{{"lanes", QStringList{"Q0_LANE3", "Q1_LANE0"}},
                {"ref_clock", "MCLK"},
                {"rx_rate", QVariant()},
                {"word_align", "1"},
                {"sd_threshold", "90mV"},
                {"LANG", "0"}}
        << QStringList{"lanes \"Q0_LANE3, Q1_LANE0\": Q1_LANE0 is not one of Q0_LANE0, "
                       "Q0_LANE1, Q0_LANE2, Q0_LANE3 on the RK9C-90F family",
                       "rx_rate: missing", "word_align \"1\": neither true nor false",
                       "sd_threshold \"90mV\": not one of 50mV, 75mV, 100mV, 125mV, 150mV, "
                       "175mV, 200mV",
                       "LANG \"0\": no parameter of BCDR"};
    // The receiver's own limits and rules stand beside the keys' problems.
    QTest::newRow("receiver's own checks")
        << DEVICE_880K << Args{{"ref_freq", "900"}, {"width", "16"}, {"target_device", "RK9C880D"}}
        << QStringList{"target_device \"RK9C880D\": no device the generator knows (a device "
                       "identifier, e.g. RK9C370D-FG676-2)",
                       "The reference frequency must be a number from 50 to 800 MHz.",
                       "\"16\" is no data width with this encoding this receiver offers."};
}

// A map that comes from a file or a command line is checked key by key
// against the plug-in's description, on the device's tier.
void tst_Bcdr::validateNamesKeys()
{
    QFETCH(QString, device);
    QFETCH(Args, changes);
    QFETCH(QStringList, problems);
    m_harness->prepare(device);
    const Args rest{{"comma", "k28.5"},        {"coupling", "ac"},
                    {"encoding", "8b10b"},     {"ovs_mode", "buildin"},
                    {"ovs_ratio", "5x"},       {"polarity_invert", "false"},
                    {"sd_threshold", "100mV"}, {"target_device", device},
                    {"width", "20"},           {"word_align", "true"}};
    const Args saved
        = driver::changed(instance("bcdr", {"Q1_LANE2", "Q1_LANE3"}, "CPLL", "Q1 REFCLK0"), rest);
    QStringList errors;
    QCOMPARE(protocol()->validate(driver::changed(saved, changes), errors), problems.isEmpty());
    QCOMPARE(errors, problems);
}

QTEST_MAIN(tst_Bcdr)
#include "tst_bcdr.moc"
