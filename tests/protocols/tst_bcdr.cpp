// SPDX-License-Identifier: MIT
//
// The burst-mode CDR receiver, loaded from the staged tree as the generator
// loads it: its dialog driven headless on a device of each tier, its maps and
// requests, their placement in the model, and its outputs.

#include "protocolharness.h"

#include "modalanswers.h"

#include <dev/devicedb.h>
#include <ipcore/ipcorefile.h>
#include <ipcore/tvmodgenproxy.h>
#include <protocol/protocolgendlg.h>
#include <utils/modulefigureview.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QProcess>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

using Args = QMap<QString, QVariant>;
using Dialog = IPSERDESIP::protocolGenDlg;
using IPSERDESIP::serdes;

namespace {

template<typename T>
T *widget(QWidget *dialog, const char *name)
{
    T *found = dialog->findChild<T *>(QLatin1String(name));
    if (!found)
        qFatal("The dialog has no widget \"%s\".", name);
    return found;
}

QStringList comboValues(QWidget *dialog, const char *name)
{
    const auto *combo = widget<QComboBox>(dialog, name);
    QStringList values;
    for (int i = 0; i < combo->count(); ++i)
        values << combo->itemData(i).toString();
    return values;
}

QString comboValue(QWidget *dialog, const char *name)
{
    return widget<QComboBox>(dialog, name)->currentData().toString();
}

void choose(QWidget *dialog, const char *name, const QString &value)
{
    auto *combo = widget<QComboBox>(dialog, name);
    const int index = combo->findData(value);
    if (index < 0)
        qFatal("\"%s\" offers no \"%s\".", name, qPrintable(value));
    combo->setCurrentIndex(index);
}

void type(QWidget *dialog, const char *name, const QString &text)
{
    auto *edit = widget<QLineEdit>(dialog, name);
    edit->clear();
    QTest::keyClicks(edit, text);
}

// The lane boxes, one a lane of the device, in the order of their labels.
QList<QCheckBox *> laneBoxes(QWidget *dialog)
{
    QList<QCheckBox *> boxes = widget<QWidget>(dialog, "laneGrid")->findChildren<QCheckBox *>();
    std::sort(boxes.begin(), boxes.end(),
              [](const QCheckBox *a, const QCheckBox *b) { return a->text() < b->text(); });
    return boxes;
}

// The lanes offered, or those ticked.
QStringList laneLabels(QWidget *dialog, bool tickedOnly)
{
    QStringList labels;
    for (const QCheckBox *box : laneBoxes(dialog)) {
        if (box->isEnabled() && (!tickedOnly || box->isChecked()))
            labels << box->text();
    }
    return labels;
}

void tick(QWidget *dialog, const QStringList &labels)
{
    for (QCheckBox *box : laneBoxes(dialog)) {
        if (box->isChecked() != labels.contains(box->text()))
            QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(4, box->height() / 2));
    }
}

QPushButton *okButton(QWidget *dialog)
{
    return widget<QDialogButtonBox>(dialog, "buttonBox")->button(QDialogButtonBox::Ok);
}

// A selection as a user makes it, in this order, since each choice may
// propose the ones after it. Keys: "lanes" (labels), "pll", "ref", "freq",
// "rate", "encoding", "width", "module"; missing keys keep the proposal.
void enter(QWidget *dialog, const QVariantMap &selection)
{
    if (selection.contains(QStringLiteral("lanes")))
        tick(dialog, selection.value(QStringLiteral("lanes")).toStringList());
    if (selection.contains(QStringLiteral("pll")))
        choose(dialog, "comboPll", selection.value(QStringLiteral("pll")).toString());
    if (selection.contains(QStringLiteral("ref")))
        choose(dialog, "comboRefClk", selection.value(QStringLiteral("ref")).toString());
    if (selection.contains(QStringLiteral("freq")))
        type(dialog, "editRefFreq", selection.value(QStringLiteral("freq")).toString());
    if (selection.contains(QStringLiteral("rate")))
        type(dialog, "editRxRate", selection.value(QStringLiteral("rate")).toString());
    if (selection.contains(QStringLiteral("encoding")))
        choose(dialog, "comboEncoding", selection.value(QStringLiteral("encoding")).toString());
    if (selection.contains(QStringLiteral("width")))
        choose(dialog, "comboWidth", selection.value(QStringLiteral("width")).toString());
    if (selection.contains(QStringLiteral("module")))
        type(dialog, "editModuleName", selection.value(QStringLiteral("module")).toString());
}

// An instance's map as the configuration file gives it back, with only the
// keys that place it; the rest take the protocol's defaults.
Args instanceMap(const QString &module, const QStringList &lanes, const QString &pll,
                 const QString &ref, const QString &freq, const QString &rate)
{
    return {{QStringLiteral("name"), module},   {QStringLiteral("file"), module},
            {QStringLiteral("module"), module}, {QStringLiteral("lanes"), lanes},
            {QStringLiteral("pll"), pll},       {QStringLiteral("ref_clock"), ref},
            {QStringLiteral("ref_freq"), freq}, {QStringLiteral("rx_rate"), rate}};
}

// Everything the model holds: counts, selections, line and source states
// and the routes.
QStringList modelState()
{
    serdes *model = serdes::instance();
    QStringList state;
    for (auto it = model->instances.cbegin(); it != model->instances.cend(); ++it) {
        IPSERDESIP::Instance *element = it.value();
        QString text = QStringLiteral("%1 %2").arg(it.key()).arg(element->count);
        IPSERDESIP::MUX *mux = dynamic_cast<IPSERDESIP::MUX *>(element);
        if (auto *pll = dynamic_cast<IPSERDESIP::PLL *>(element))
            mux = pll->Mux();
        if (mux)
            text += QStringLiteral(" mux %1 %2 %3").arg(mux->count).arg(mux->sel()).arg(mux->dir());
        if (auto *line = dynamic_cast<IPSERDESIP::LINE *>(element))
            text += QStringLiteral(" line %1 %2").arg(line->rate).arg(line->source);
        if (auto *ref = dynamic_cast<IPSERDESIP::REF_SOURCE *>(element))
            text += QStringLiteral(" ref %1").arg(ref->freq);
        state << text;
    }
    const QMap<QString, QStringList> routes = model->allAccess();
    for (auto it = routes.cbegin(); it != routes.cend(); ++it)
        state << it.key() + QStringLiteral(": ") + it.value().join(QStringLiteral(" -> "));
    return state;
}

// A request's every field, a line each, for comparing two requests.
QStringList fields(const IPSERDESIP::Message &msg)
{
    QStringList lines{msg.type, msg.name, msg.file, msg.module};
    for (const QStringList &list :
         {msg.lanes, msg.plls, msg.refs, msg.refFreqs, msg.rates, msg.rxRates, msg.txRates})
        lines << list.join(QLatin1Char(' '));
    for (auto it = msg.muxOptions.cbegin(); it != msg.muxOptions.cend(); ++it)
        lines << it.key() + QLatin1Char('=') + it.value();
    return lines;
}

QString compile(const QString &top, const QStringList &files, const QString &dir)
{
    const QString iverilog = QStandardPaths::findExecutable(QStringLiteral("iverilog"));
    if (iverilog.isEmpty())
        return QStringLiteral("iverilog is not installed (scripts/install-deps.sh)");
    QProcess process;
    process.setWorkingDirectory(dir);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(iverilog, QStringList{QStringLiteral("-g2005"), QStringLiteral("-o"),
                                        QStringLiteral("a.vvp"), QStringLiteral("-s"), top}
                                + files);
    if (!process.waitForFinished(30000))
        return QStringLiteral("iverilog did not finish");
    const QString output = QString::fromLocal8Bit(process.readAll()).trimmed();
    if (process.exitCode() != 0 || !output.isEmpty())
        return output.isEmpty() ? QStringLiteral("iverilog failed") : output;
    return QString();
}

} // namespace

class tst_Bcdr : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void identity();
    void dialogOffersWhatTheTierHas_data();
    void dialogOffersWhatTheTierHas();
    void proposalsBesideARunningInstance_data();
    void proposalsBesideARunningInstance();
    void noFreeLane();
    void refusals_data();
    void refusals();
    void createdRequestIsPlaced_data();
    void createdRequestIsPlaced();
    void savedMapRebuildsRequest_data();
    void savedMapRebuildsRequest();
    void everyOfferedSettingTranslates_data();
    void everyOfferedSettingTranslates();
    void generateWritesModule_data();
    void generateWritesModule();
    void editShowsStoredInstance();

private:
    IPSERDESIP::BaseProtocol *protocol() const { return m_harness->protocol(); }
    // Runs the create dialog on the prepared device; `act` ends it.
    Args create(const std::function<void(Dialog *)> &act);
    void place(const Args &args);

    std::unique_ptr<ProtocolHarness> m_harness;
    std::unique_ptr<QTemporaryDir> m_tmp;
    DEV::DeviceArg m_device;
    std::vector<std::unique_ptr<IPSERDESIP::Message>> m_placed;
};

void tst_Bcdr::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    QString error;
    static DEV::DeviceDb db;
    QVERIFY2(db.load(QStringLiteral(SERDES_STAGE_DIR "/data/devices/devices.json"), &error),
             qPrintable(error));
    Core::IdeCore::setDeviceDataBase(&db);
    m_harness = std::make_unique<ProtocolHarness>();
    QVERIFY2(protocol(), qPrintable(m_harness->loadError()));
    QCOMPARE(m_harness->protocols().size(), 1);
}

void tst_Bcdr::init()
{
    m_tmp = std::make_unique<QTemporaryDir>();
    QVERIFY(m_tmp->isValid());
}

void tst_Bcdr::cleanup()
{
    m_placed.clear();
}

Args tst_Bcdr::create(const std::function<void(Dialog *)> &act)
{
    whenModal<Dialog>(act);
    return protocol()->create(m_tmp->path(), m_device);
}

void tst_Bcdr::place(const Args &args)
{
    QString err;
    std::unique_ptr<IPSERDESIP::Message> msg = m_harness->place(args, err);
    QVERIFY2(msg, qPrintable(err));
    m_placed.push_back(std::move(msg));
}

void tst_Bcdr::identity()
{
    IPSERDESIP::BaseProtocol *p = protocol();
    QCOMPARE(p->name(), QStringLiteral("BCDR"));
    QCOMPARE(p->id(), QStringLiteral("SERDES_BCDR_RX"));
    QCOMPARE(p->category(), QStringList({QStringLiteral("Serdes"), QStringLiteral("Receiver")}));
    QCOMPARE(p->version(), QStringLiteral("1.0"));

    // The help page lies beside the plug-in; its picture is named relative to
    // the generator's picture folder, against which the help pane shows it.
    const QString plugin = QFileInfo(QStringLiteral(SERDES_PROTOCOL_PLUGIN)).absolutePath();
    QCOMPARE(p->summaryFile(), QString(plugin + QStringLiteral("/bcdr.html")));
    QFile page(p->summaryFile());
    QVERIFY(page.open(QIODevice::ReadOnly));
    const QRegularExpressionMatch img = QRegularExpression(QStringLiteral("<img src=\"([^\"]+)\""))
                                            .match(QString::fromUtf8(page.readAll()));
    QVERIFY(img.hasMatch());
    const QString picture
        = QDir::cleanPath(QStringLiteral(SERDES_STAGE_DIR "/data/ipcores/") + img.captured(1));
    QCOMPARE(picture, QString(plugin + QStringLiteral("/bcdr.svg")));
    QVERIFY(QFile::exists(picture));

    DEV::DeviceDb *db = Core::IdeCore::deviceDataBase();
    for (const char *id : {DEVICE_880K, DEVICE_370K, DEVICE_90K})
        QVERIFY2(p->isSupported(db->findByID(QLatin1String(id))), id);
    // A device without transceivers.
    QVERIFY(!p->isSupported(db->findByID(QStringLiteral("RK7C60L-BG256-1"))));
}

void tst_Bcdr::dialogOffersWhatTheTierHas_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QStringList>("lanes");
    QTest::addColumn<QStringList>("refs");

    const QStringList quad0{QStringLiteral("Q0 Lane0"), QStringLiteral("Q0 Lane1"),
                            QStringLiteral("Q0 Lane2"), QStringLiteral("Q0 Lane3")};
    QStringList quads = quad0;
    quads << QStringLiteral("Q1 Lane0") << QStringLiteral("Q1 Lane1") << QStringLiteral("Q1 Lane2")
          << QStringLiteral("Q1 Lane3");
    QTest::newRow("880k") << DEVICE_880K << quads
                          << QStringList{"Q0 REFCLK0", "Q0 REFCLK1", "Q1 REFCLK0", "Q1 REFCLK1"};
    QTest::newRow("370k") << DEVICE_370K << quad0
                          << QStringList{"Q0 REFCLK0", "Q0 REFCLK1", "Q0 REFCLK2", "Q0 REFCLK3",
                                         "Q0 REFIN0",  "Q0 REFIN1",  "Q0 REFIN2",  "Q0 REFIN3"};
    QTest::newRow("90k") << DEVICE_90K << quad0
                         << QStringList{"Q0 REFCLK0", "Q0 REFCLK1", "MCLK", "Q0 REFIN"};
}

void tst_Bcdr::dialogOffersWhatTheTierHas()
{
    QFETCH(QString, device);
    QFETCH(QStringList, lanes);
    QFETCH(QStringList, refs);
    m_device = m_harness->prepare(device);
    const QStringList before = modelState();

    QStringList offered, ticked, refOptions, plls, codedWidths, rawWidths;
    QString ref, freq, rate, module, file;
    bool alignWhileRaw = true;
    const Args args = create([&](Dialog *d) {
        offered = laneLabels(d, false);
        ticked = laneLabels(d, true);
        refOptions = comboValues(d, "comboRefClk");
        plls = comboValues(d, "comboPll");
        ref = comboValue(d, "comboRefClk");
        freq = widget<QLineEdit>(d, "editRefFreq")->text();
        rate = widget<QLineEdit>(d, "editRxRate")->text();
        module = widget<QLineEdit>(d, "editModuleName")->text();
        file = widget<QLineEdit>(d, "editFileName")->text();
        codedWidths = comboValues(d, "comboWidth");
        choose(d, "comboEncoding", QStringLiteral("none"));
        rawWidths = comboValues(d, "comboWidth");
        alignWhileRaw = widget<QCheckBox>(d, "checkWordAlign")->isEnabled();
        d->reject();
    });
    QVERIFY(args.isEmpty());
    QCOMPARE(offered, lanes);
    QCOMPARE(ticked, QStringList{lanes.first()});
    QCOMPARE(refOptions, refs);
    QCOMPARE(plls, QStringList({QStringLiteral("CPLL"), QStringLiteral("QPLL0")}));
    QCOMPARE(ref, QStringLiteral("Q0 REFCLK0"));
    QCOMPARE(freq, QStringLiteral("125"));
    QCOMPARE(rate, QStringLiteral("1.25"));
    QCOMPARE(module, QStringLiteral("bcdr"));
    QCOMPARE(file, QStringLiteral("bcdr"));
    QCOMPARE(codedWidths, QStringList({QStringLiteral("20"), QStringLiteral("10")}));
    QCOMPARE(rawWidths, QStringList({QStringLiteral("20"), QStringLiteral("16"),
                                     QStringLiteral("10"), QStringLiteral("8")}));
    QVERIFY(!alignWhileRaw);
    QCOMPARE(modelState(), before);
}

void tst_Bcdr::proposalsBesideARunningInstance_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("ref");
    QTest::addColumn<QStringList>("offered");
    QTest::addColumn<QStringList>("refPins");

    // The symbol follows the proposed reference clock: a pad pair, or a
    // clock from the fabric.
    const QStringList quad0{"Q0 Lane1", "Q0 Lane2", "Q0 Lane3"};
    QTest::newRow("880k") << DEVICE_880K << QStringLiteral("Q0 REFCLK1")
                          << quad0 + QStringList{"Q1 Lane0", "Q1 Lane1", "Q1 Lane2", "Q1 Lane3"}
                          << QStringList{"refclk_p", "refclk_n"};
    QTest::newRow("370k") << DEVICE_370K << QStringLiteral("Q0 REFIN1") << quad0
                          << QStringList{"refclk"};
    QTest::newRow("90k") << DEVICE_90K << QStringLiteral("MCLK") << quad0 << QStringList{"refclk"};
}

void tst_Bcdr::proposalsBesideARunningInstance()
{
    QFETCH(QString, device);
    QFETCH(QString, ref);
    QFETCH(QStringList, offered);
    QFETCH(QStringList, refPins);
    m_device = m_harness->prepare(device);
    place(instanceMap(QStringLiteral("bcdr"), {QStringLiteral("Q0_LANE0")}, QStringLiteral("QPLL0"),
                      ref, QStringLiteral("156.25"), QStringLiteral("2.5")));

    QStringList lanes, pins;
    QString module, file, pllRef, pllFreq, pllRate, pllNote, cpllFreq, cpllNote;
    const Args args = create([&](Dialog *d) {
        lanes = laneLabels(d, false);
        module = widget<QLineEdit>(d, "editModuleName")->text();
        file = widget<QLineEdit>(d, "editFileName")->text();
        choose(d, "comboPll", QStringLiteral("QPLL0"));
        pllRef = comboValue(d, "comboRefClk");
        pllFreq = widget<QLineEdit>(d, "editRefFreq")->text();
        pllRate = widget<QLineEdit>(d, "editRxRate")->text();
        pllNote = widget<QLabel>(d, "labelClockNote")->text();
        for (const Utils::PinFigure &pin : widget<Utils::ModuleFigureView>(d, "figure")->pins()) {
            if (pin.name.startsWith(QLatin1String("refclk")))
                pins << pin.name;
        }
        // On its own CPLL the lane still meets the reference clock in use.
        choose(d, "comboPll", QStringLiteral("CPLL"));
        type(d, "editRefFreq", QStringLiteral("100"));
        choose(d, "comboRefClk", QStringLiteral("Q0 REFCLK0"));
        choose(d, "comboRefClk", ref);
        cpllFreq = widget<QLineEdit>(d, "editRefFreq")->text();
        cpllNote = widget<QLabel>(d, "labelClockNote")->text();
        okButton(d)->click();
    });
    QCOMPARE(lanes, offered);
    QCOMPARE(module, QStringLiteral("bcdr_1st"));
    QCOMPARE(file, QStringLiteral("bcdr_1"));
    QCOMPARE(pllRef, ref);
    QCOMPARE(pins, refPins);
    QCOMPARE(pllFreq, QStringLiteral("156.25"));
    QCOMPARE(pllRate, QStringLiteral("2.5"));
    QCOMPARE(pllNote, QStringLiteral("QPLL0 of Q0 already runs from %1 at 156.25 MHz and 2.5 Gbps "
                                     "for another instance: its settings are proposed, since lanes "
                                     "can share it only as it runs.")
                          .arg(ref));
    QCOMPARE(cpllFreq, QStringLiteral("156.25"));
    QCOMPARE(cpllNote, QStringLiteral("%1 already runs at 156.25 MHz for another instance, and a "
                                      "reference clock input has one frequency.")
                           .arg(ref));

    QCOMPARE(args.value(QStringLiteral("module")).toString(), QStringLiteral("bcdr_1st"));
    place(args);
    const QMap<QString, QStringList> access = serdes::instance()->allAccess();
    QCOMPARE(QStringList(access.keys()),
             QStringList({QStringLiteral("Q0_LANE0_RX"), QStringLiteral("Q0_LANE1_RX")}));
    QCOMPARE(QStringList(access.value(QStringLiteral("Q0_LANE1_RX")).mid(0, 2)),
             QStringList({QStringLiteral("Q0_LANE1_RX"), QStringLiteral("Q0_CPLL1")}));
}

void tst_Bcdr::noFreeLane()
{
    m_device = m_harness->prepare(QLatin1String(DEVICE_90K));
    place(instanceMap(QStringLiteral("all"),
                      {QStringLiteral("Q0_LANE0"), QStringLiteral("Q0_LANE1"),
                       QStringLiteral("Q0_LANE2"), QStringLiteral("Q0_LANE3")},
                      QStringLiteral("CPLL"), QStringLiteral("Q0 REFCLK0"), QStringLiteral("125"),
                      QStringLiteral("1.25")));

    int lanes = -1;
    int held = -1;
    bool ok = true;
    bool options = true;
    QString why;
    const Args args = create([&](Dialog *d) {
        lanes = laneLabels(d, false).size();
        held = laneBoxes(d).size() - lanes;
        ok = okButton(d)->isEnabled();
        options = widget<QTabWidget>(d, "tabOptions")->isEnabled();
        why = widget<QLabel>(d, "labelLanes")->text();
        d->reject();
    });
    QVERIFY(args.isEmpty());
    QCOMPARE(lanes, 0);
    QCOMPARE(held, 4);
    QVERIFY(!ok);
    QVERIFY(!options);
    QCOMPARE(why, QStringLiteral("No lane of this device is free: other instances hold them all. "
                                 "Delete or change one of them to make room for the receiver."));
}

void tst_Bcdr::refusals_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QVariantList>("placed");
    QTest::addColumn<QVariantMap>("selection");
    QTest::addColumn<QString>("message");

    const auto map = [](const char *module, const char *lane, const char *pll, const char *ref,
                        const char *freq, const char *rate) {
        return QVariant(instanceMap(QLatin1String(module), {QLatin1String(lane)},
                                    QLatin1String(pll), QLatin1String(ref), QLatin1String(freq),
                                    QLatin1String(rate)));
    };

    QTest::newRow("no lane") << DEVICE_880K << QVariantList()
                             << QVariantMap{{"lanes", QStringList()}}
                             << "Select at least one lane to receive on.";
    QTest::newRow("frequency out of range")
        << DEVICE_370K << QVariantList() << QVariantMap{{"freq", "20"}}
        << "The reference frequency must be a number from 50 to 800 MHz.";
    QTest::newRow("rate out of range")
        << DEVICE_90K << QVariantList() << QVariantMap{{"rate", "13"}}
        << "The RX line rate must be a number from 0.5 to 12.5 Gbps.";
    QTest::newRow("module name taken")
        << DEVICE_880K << QVariantList{map("rx", "Q1_LANE0", "CPLL", "Q1 REFCLK0", "125", "1.25")}
        << QVariantMap{{"module", "rx"}} << "Another instance already has the module name \"rx\".";
    QTest::newRow("reference clock at another frequency")
        << DEVICE_90K << QVariantList{map("a", "Q0_LANE0", "CPLL", "MCLK", "100", "1.25")}
        << QVariantMap{{"lanes", QStringList{"Q0 Lane1"}}, {"ref", "MCLK"}, {"freq", "125"}}
        << "MCLK already runs at 100 MHz for another instance, and a reference clock input has "
           "one frequency. Use 100 MHz, or another reference clock.";
    QTest::newRow("shared QPLL0 from another reference clock")
        << DEVICE_880K << QVariantList{map("a", "Q0_LANE0", "QPLL0", "Q0 REFCLK0", "125", "1.25")}
        << QVariantMap{{"lanes", QStringList{"Q0 Lane1"}}, {"pll", "QPLL0"}, {"ref", "Q0 REFCLK1"}}
        << "QPLL0 of Q0 already runs from Q0 REFCLK0 for another instance. Use Q0 REFCLK0, or "
           "the lanes' own CPLLs.";
    QTest::newRow("shared QPLL0 at another rate")
        << DEVICE_370K << QVariantList{map("a", "Q0_LANE0", "QPLL0", "Q0 REFCLK0", "125", "1.25")}
        << QVariantMap{{"lanes", QStringList{"Q0 Lane1"}}, {"pll", "QPLL0"}, {"rate", "2.5"}}
        << "QPLL0 of Q0 already runs at 1.25 Gbps for another instance. Use 1.25 Gbps, or the "
           "lanes' own CPLLs.";
    // Both reference muxes of quad 1 are held at its own inputs: the first
    // lane is routed, the second finds no way over the bridge.
    QTest::newRow("no free clock path")
        << DEVICE_880K
        << QVariantList{map("a", "Q1_LANE0", "CPLL", "Q1 REFCLK0", "125", "1.25"),
                        map("b", "Q1_LANE1", "CPLL", "Q1 REFCLK1", "125", "1.25")}
        << QVariantMap{{"lanes", QStringList{"Q0 Lane2", "Q1 Lane2"}},
                       {"pll", "CPLL"},
                       {"ref", "Q0 REFCLK0"}}
        << "Q1 Lane2 cannot be clocked by the CPLL of Q1 Lane2 from Q0 REFCLK0: every clock path "
           "from that input to the PLL is held by another instance for another reference clock. "
           "Choose another reference clock or PLL.";
}

void tst_Bcdr::refusals()
{
    QFETCH(QString, device);
    QFETCH(QVariantList, placed);
    QFETCH(QVariantMap, selection);
    QFETCH(QString, message);
    m_device = m_harness->prepare(device);
    for (const QVariant &args : placed)
        place(args.toMap());
    const QStringList before = modelState();

    QList<SeenBox> boxes;
    bool stayed = false;
    const Args args = create([&](Dialog *d) {
        enter(d, selection);
        MessageBoxAnswers answers;
        okButton(d)->click();
        boxes = answers.boxes;
        stayed = d->isVisible();
        d->reject();
    });
    QVERIFY(args.isEmpty());
    QVERIFY(stayed);
    QCOMPARE(boxes.size(), 1);
    QCOMPARE(boxes.first().title, QStringLiteral("Error"));
    QCOMPARE(boxes.first().text, message);
    // Whatever the dialog tried is given back.
    QCOMPARE(modelState(), before);
}

void tst_Bcdr::createdRequestIsPlaced_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QVariantMap>("selection");
    QTest::addColumn<QStringList>("plls");
    QTest::addColumn<QStringList>("refs");
    QTest::addColumn<QVariantMap>("routes");

    QTest::newRow("880k, QPLL0s of both quads, one over the bridge")
        << DEVICE_880K
        << QVariantMap{{"lanes", QStringList{"Q0 Lane1", "Q1 Lane2"}},
                       {"pll", "QPLL0"},
                       {"ref", "Q0 REFCLK1"},
                       {"freq", "156.25"},
                       {"rate", "2.5"}}
        << QStringList{"Q0_QPLL0", "Q1_QPLL0"} << QStringList{"Q0_REFCLK1", "Q0_REFCLK1"}
        << QVariantMap{
               {"Q0_LANE1_RX", QStringList{"Q0_LANE1_RX", "Q0_QPLL0", "Q0_MUX0", "Q0_REFCLK1"}},
               {"Q1_LANE2_RX",
                QStringList{"Q1_LANE2_RX", "Q1_QPLL0", "Q1_MUX0", "MUX_Q0_TO_Q1", "Q0_REFCLK1"}}};
    QTest::newRow("370k, a CPLL from a fabric clock")
        << DEVICE_370K
        << QVariantMap{{"lanes", QStringList{"Q0 Lane3"}},
                       {"pll", "CPLL"},
                       {"ref", "Q0 REFIN2"},
                       {"freq", "100"},
                       {"rate", "1.25"}}
        << QStringList{"Q0_CPLL3"} << QStringList{"Q0_GPIO2"}
        << QVariantMap{
               {"Q0_LANE3_RX", QStringList{"Q0_LANE3_RX", "Q0_CPLL3", "Q0_MUX2", "Q0_GPIO2"}}};
    QTest::newRow("90k, one QPLL0 straight from the main clock")
        << DEVICE_90K
        << QVariantMap{{"lanes", QStringList{"Q0 Lane0", "Q0 Lane2"}},
                       {"pll", "QPLL0"},
                       {"ref", "MCLK"},
                       {"freq", "100"},
                       {"rate", "2.5"}}
        << QStringList{"Q0_QPLL0", "Q0_QPLL0"} << QStringList{"Q0_MCLK", "Q0_MCLK"}
        << QVariantMap{{"Q0_LANE0_RX", QStringList{"Q0_LANE0_RX", "Q0_QPLL0", "Q0_MCLK"}},
                       {"Q0_LANE2_RX", QStringList{"Q0_LANE2_RX", "Q0_QPLL0", "Q0_MCLK"}}};
}

void tst_Bcdr::createdRequestIsPlaced()
{
    QFETCH(QString, device);
    QFETCH(QVariantMap, selection);
    QFETCH(QStringList, plls);
    QFETCH(QStringList, refs);
    QFETCH(QVariantMap, routes);
    m_device = m_harness->prepare(device);
    const QStringList before = modelState();
    const QStringList free = serdes::instance()->notOccupiedLanes();

    const Args args = create([&](Dialog *d) {
        enter(d, selection);
        okButton(d)->click();
    });
    QVERIFY(!args.isEmpty());
    // The dialog proved the selection and gave it back.
    QCOMPARE(modelState(), before);

    const QString module = args.value(QStringLiteral("module")).toString();
    QCOMPARE(module, QStringLiteral("bcdr"));
    QCOMPARE(args.value(QStringLiteral("name")).toString(), module);
    QCOMPARE(args.value(QStringLiteral("file")).toString(), QStringLiteral("bcdr"));
    QCOMPARE(args.value(QStringLiteral("target_device")).toString(), device);
    QVERIFY(QFileInfo(m_tmp->path() + QStringLiteral("/bcdr")).isDir());

    std::unique_ptr<IPSERDESIP::Message> msg(protocol()->createMessage(args));
    QStringList lines;
    for (const QString &label : selection.value(QStringLiteral("lanes")).toStringList())
        lines << label.toUpper().replace(QLatin1Char(' '), QLatin1Char('_'))
                     + QStringLiteral("_RX");
    const int n = lines.size();
    const QString freq = selection.value(QStringLiteral("freq")).toString();
    const QString rate = selection.value(QStringLiteral("rate")).toString();
    QVERIFY(msg->check());
    QCOMPARE(msg->type, QStringLiteral("BCDR"));
    QCOMPARE(msg->name, module);
    QCOMPARE(msg->module, module);
    QCOMPARE(msg->file, QStringLiteral("bcdr"));
    QCOMPARE(msg->lanes, lines);
    QCOMPARE(msg->plls, plls);
    QCOMPARE(msg->refs, refs);
    const auto repeated = [n](const QString &text) {
        QStringList list;
        for (int i = 0; i < n; ++i)
            list << text;
        return list;
    };
    QCOMPARE(msg->refFreqs, repeated(freq));
    QCOMPARE(msg->rates, repeated(QStringLiteral("0")));
    QCOMPARE(msg->rxRates, repeated(rate));
    QCOMPARE(msg->txRates, repeated(QStringLiteral("0")));
    QVERIFY(msg->muxOptions.isEmpty());

    place(args);
    const QMap<QString, QStringList> access = serdes::instance()->allAccess();
    QCOMPARE(access.keys(), routes.keys());
    for (auto it = routes.cbegin(); it != routes.cend(); ++it)
        QCOMPARE(access.value(it.key()), it.value().toStringList());
    QStringList stillFree = free;
    for (const QString &label : selection.value(QStringLiteral("lanes")).toStringList())
        stillFree.removeOne(label);
    QCOMPARE(serdes::instance()->notOccupiedLanes(), stillFree);
    QCOMPARE(serdes::instance()->moduleNames, QStringList{module});
}

void tst_Bcdr::savedMapRebuildsRequest_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QVariantMap>("selection");

    // One lane is the case to watch: a list of one comes back as a string.
    QTest::newRow("one lane") << DEVICE_90K
                              << QVariantMap{{"lanes", QStringList{"Q0 Lane3"}},
                                             {"ref", "Q0 REFIN"},
                                             {"freq", "62.5"},
                                             {"encoding", "none"},
                                             {"width", "8"}};
    QTest::newRow("three lanes") << DEVICE_880K
                                 << QVariantMap{
                                        {"lanes", QStringList{"Q0 Lane0", "Q0 Lane3", "Q1 Lane1"}},
                                        {"pll", "QPLL0"},
                                        {"ref", "Q1 REFCLK1"},
                                        {"freq", "155.52"},
                                        {"rate", "2.48832"}};
}

void tst_Bcdr::savedMapRebuildsRequest()
{
    QFETCH(QString, device);
    QFETCH(QVariantMap, selection);
    m_device = m_harness->prepare(device);
    const Args args = create([&](Dialog *d) {
        enter(d, selection);
        widget<QCheckBox>(d, "checkPolarityInvert")->setChecked(true);
        okButton(d)->click();
    });
    QVERIFY(!args.isEmpty());

    // As the page stores an instance and reads it back when the file is
    // opened.
    const QString ipc = m_tmp->filePath(QStringLiteral("saved.ipc"));
    {
        QSettings out(ipc, QSettings::IniFormat);
        out.beginGroup(QStringLiteral("BCDR:bcdr"));
        for (auto it = args.cbegin(); it != args.cend(); ++it)
            out.setValue(it.key(), it.value());
        out.endGroup();
    }
    Args reread;
    {
        QSettings in(ipc, QSettings::IniFormat);
        in.beginGroup(QStringLiteral("BCDR:bcdr"));
        for (const QString &key : in.childKeys())
            reread.insert(key, in.value(key));
    }
    QCOMPARE(reread.keys(), args.keys());

    std::unique_ptr<IPSERDESIP::Message> made(protocol()->createMessage(args));
    std::unique_ptr<IPSERDESIP::Message> rebuilt(protocol()->createMessage(reread));
    QCOMPARE(fields(*rebuilt), fields(*made));
    QCOMPARE(rebuilt->lanes.size(), selection.value(QStringLiteral("lanes")).toStringList().size());

    // The settings come back too: the same parameter lines.
    QStringList madeLines, rebuiltLines, csr, mod;
    QString out;
    QVERIFY(protocol()->generate(args, madeLines, csr, mod, out, false));
    QVERIFY(protocol()->generate(reread, rebuiltLines, csr, mod, out, false));
    QCOMPARE(rebuiltLines, madeLines);
    QVERIFY(madeLines.contains(QStringLiteral("q%1_rx_pol_invert enable")
                                   .arg(made->lanes.first().mid(1, 1) + QStringLiteral("_ln")
                                        + made->lanes.first().mid(7, 1))));
}

void tst_Bcdr::everyOfferedSettingTranslates_data()
{
    QTest::addColumn<QString>("device");
    QTest::newRow("880k") << DEVICE_880K;
    QTest::newRow("370k") << DEVICE_370K;
    QTest::newRow("90k") << DEVICE_90K;
}

void tst_Bcdr::everyOfferedSettingTranslates()
{
    QFETCH(QString, device);
    m_device = m_harness->prepare(device);

    // What the dialog offers, by the map key that carries it.
    QMap<QString, QStringList> offers;
    QStringList lanes;
    QStringList rawWidths;
    const Args base = create([&](Dialog *d) {
        lanes = laneLabels(d, false);
        offers.insert(QStringLiteral("pll"), comboValues(d, "comboPll"));
        offers.insert(QStringLiteral("ref_clock"), comboValues(d, "comboRefClk"));
        offers.insert(QStringLiteral("width"), comboValues(d, "comboWidth"));
        offers.insert(QStringLiteral("comma"), comboValues(d, "comboComma"));
        offers.insert(QStringLiteral("coupling"), comboValues(d, "comboCoupling"));
        offers.insert(QStringLiteral("sd_threshold"), comboValues(d, "comboSdThreshold"));
        offers.insert(QStringLiteral("ovs_mode"), comboValues(d, "comboOvsMode"));
        offers.insert(QStringLiteral("ovs_ratio"), comboValues(d, "comboOvsRatio"));
        choose(d, "comboEncoding", QStringLiteral("none"));
        rawWidths = comboValues(d, "comboWidth");
        choose(d, "comboEncoding", QStringLiteral("8b10b"));
        okButton(d)->click();
    });
    QVERIFY(!base.isEmpty());
    QCOMPARE(offers.value(QStringLiteral("ovs_ratio")),
             QStringList({QStringLiteral("5x"), QStringLiteral("10x"), QStringLiteral("20x")}));

    QList<Args> variants;
    for (auto it = offers.cbegin(); it != offers.cend(); ++it) {
        for (const QString &value : it.value()) {
            Args variant = base;
            variant.insert(it.key(), value);
            variants << variant;
        }
    }
    for (const QString &width : rawWidths) {
        Args variant = base;
        variant.insert(QStringLiteral("encoding"), QStringLiteral("none"));
        variant.insert(QStringLiteral("width"), width);
        variants << variant;
    }
    for (const QString &label : lanes) {
        Args variant = base;
        variant.insert(QStringLiteral("lanes"),
                       QStringList{label.toUpper().replace(QLatin1Char(' '), QLatin1Char('_'))});
        variants << variant;
    }
    for (const char *key : {"word_align", "polarity_invert"}) {
        for (bool on : {false, true}) {
            Args variant = base;
            variant.insert(QLatin1String(key), on);
            variants << variant;
        }
    }

    for (const Args &variant : variants) {
        const QString what
            = QStringLiteral("%1 %2 %3")
                  .arg(variant.value(QStringLiteral("lanes")).toStringList().join(','),
                       variant.value(QStringLiteral("ref_clock")).toString(),
                       variant.value(QStringLiteral("width")).toString());
        QStringList validation;
        QVERIFY2(protocol()->validate(variant, validation), qPrintable(validation.join('\n')));
        QStringList ini, csr, mod;
        QString out;
        QVERIFY2(protocol()->generate(variant, ini, csr, mod, out, false), qPrintable(what));
        QVERIFY(!ini.isEmpty());
        QVERIFY(mod.isEmpty());
        QStringList errors;
        IPSERDESIP::parser::instance()->converIniToToml(ini, errors);
        QVERIFY2(errors.isEmpty(), qPrintable(what + QLatin1Char('\n') + errors.join('\n')));
    }
}

void tst_Bcdr::generateWritesModule_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QVariantMap>("selection");
    QTest::addColumn<QStringList>("ports");

    const auto ports = [](std::initializer_list<const char *> lines) {
        QStringList list;
        for (const char *line : lines)
            list << QStringLiteral("-bcdr_port ") + QLatin1String(line);
        return list;
    };
    // The reference comes in at the pads of the other quad's primitive.
    QTest::newRow("880k, quad pads")
        << DEVICE_880K
        << QVariantMap{{"lanes", QStringList{"Q0 Lane0", "Q1 Lane3"}},
                       {"pll", "QPLL0"},
                       {"ref", "Q1 REFCLK1"}}
        << ports({"input 1 refclk_p", "input 1 refclk_n", "input 2 rxp", "input 2 rxn",
                  "input 1 rx_reset", "input 2 rx_usrclk", "output 2 rx_outclk",
                  "output 32 rx_data", "output 4 rx_ctrl", "output 2 rx_ready",
                  "output 2 pll_lock"});
    // Pads the quad primitive has no pins for, through an input buffer.
    QTest::newRow("370k, other pads")
        << DEVICE_370K
        << QVariantMap{{"lanes", QStringList{"Q0 Lane1"}},
                       {"ref", "Q0 REFCLK2"},
                       {"encoding", "none"},
                       {"width", "16"}}
        << ports({"input 1 refclk_p", "input 1 refclk_n", "input 1 rxp", "input 1 rxn",
                  "input 1 rx_reset", "input 1 rx_usrclk", "output 1 rx_outclk",
                  "output 16 rx_data", "output 1 rx_ready", "output 1 pll_lock"});
    // A clock from the fabric, and a single K flag.
    QTest::newRow("90k, fabric clock")
        << DEVICE_90K
        << QVariantMap{{"lanes", QStringList{"Q0 Lane2"}},
                       {"pll", "QPLL0"},
                       {"ref", "MCLK"},
                       {"width", "10"}}
        << ports({"input 1 refclk", "input 1 rxp", "input 1 rxn", "input 1 rx_reset",
                  "input 1 rx_usrclk", "output 1 rx_outclk", "output 8 rx_data", "output 1 rx_ctrl",
                  "output 1 rx_ready", "output 1 pll_lock"});
}

void tst_Bcdr::generateWritesModule()
{
    QFETCH(QString, device);
    QFETCH(QVariantMap, selection);
    QFETCH(QStringList, ports);
    m_device = m_harness->prepare(device);
    const Args args = create([&](Dialog *d) {
        enter(d, selection);
        okButton(d)->click();
    });
    QVERIFY(!args.isEmpty());

    // Only the parameter lines without a full run.
    const QString dir = m_tmp->path();
    serdes::instance()->setWorkingDir(dir + QStringLiteral("/elsewhere"));
    QStringList ini, csr, mod;
    QString out;
    QVERIFY(protocol()->generate(args, ini, csr, mod, out, false));
    QVERIFY(!ini.isEmpty());
    QVERIFY(mod.isEmpty());
    QVERIFY(out.isEmpty());
    QVERIFY(!QFileInfo::exists(dir + QStringLiteral("/elsewhere")));

    serdes::instance()->setWorkingDir(dir);
    QStringList fullIni;
    QVERIFY(protocol()->generate(args, fullIni, csr, mod, out, true));
    QCOMPARE(fullIni, ini);
    QVERIFY(csr.isEmpty());
    QCOMPARE(mod, ports);
    QCOMPARE(out, QDir(dir).absoluteFilePath(QStringLiteral("bcdr/bcdr.v")));

    // The module's own port list says what the module generator is told.
    QFile module(out);
    QVERIFY(module.open(QIODevice::ReadOnly | QIODevice::Text));
    const QString text = QString::fromUtf8(module.readAll());
    QVERIFY(text.contains(QStringLiteral("\nmodule bcdr (\n")));
    QStringList declared;
    const QRegularExpression port(
        QStringLiteral("^    (input|output) +wire (?:\\[(\\d+):0\\] )?(\\w+),?$"),
        QRegularExpression::MultilineOption);
    for (auto it = port.globalMatch(text); it.hasNext();) {
        const QRegularExpressionMatch m = it.next();
        const int width = m.captured(2).isEmpty() ? 1 : m.captured(2).toInt() + 1;
        declared << QStringLiteral("-bcdr_port %1 %2 %3")
                        .arg(m.captured(1))
                        .arg(width)
                        .arg(m.captured(3));
    }
    QCOMPARE(declared, ports);

    // The host's module generator wraps it, and the whole compiles against
    // the device's primitives.
    const QString commands = dir + QStringLiteral("/serdes.mod");
    QStringList lines{QStringLiteral("-type SERDES"),
                      QStringLiteral("-path %1/").arg(dir),
                      QStringLiteral("-file_type vlg"),
                      QStringLiteral("-file_name top"),
                      QStringLiteral("-mod_name serdes_top"),
                      IPCore::modfileHeader(m_device),
                      QStringLiteral("-protocol_module_name0 bcdr")};
    lines << mod;
    QVERIFY(IPCore::generateFile(commands, lines, nullptr, QString()));
    IPCore::TvModGenProxy modgen;
    QCOMPARE(modgen.startModGen(commands, IPCore::Verilog, false), 0);
    const QString errors
        = compile(QStringLiteral("serdes_top"),
                  {QStringLiteral(SERDES_STAGE_DIR "/data/devices/primitives_bb.v"), out,
                   dir + QStringLiteral("/top.v")},
                  dir);
    QVERIFY2(errors.isEmpty(), qPrintable(errors));
}

void tst_Bcdr::editShowsStoredInstance()
{
    m_device = m_harness->prepare(QLatin1String(DEVICE_880K));
    const QVariantMap selection{{"lanes", QStringList{"Q1 Lane2", "Q1 Lane3"}},
                                {"pll", "QPLL0"},
                                {"ref", "Q0 REFCLK1"},
                                {"freq", "156.25"},
                                {"rate", "3.125"},
                                {"encoding", "none"},
                                {"width", "16"}};
    const Args args = create([&](Dialog *d) {
        enter(d, selection);
        choose(d, "comboOvsRatio", QStringLiteral("20x"));
        okButton(d)->click();
    });
    QVERIFY(!args.isEmpty());
    place(args);

    // The page takes the instance out of the model while its dialog runs.
    QString err;
    QVERIFY(serdes::instance()->deleteItem(m_placed.back().get(), err));
    serdes::instance()->setWorkingDir(m_tmp->path());

    QStringList ticked;
    QString pll, ref, freq, ratio;
    bool fileFixed = false;
    whenModal<Dialog>([&](Dialog *d) {
        ticked = laneLabels(d, true);
        pll = comboValue(d, "comboPll");
        ref = comboValue(d, "comboRefClk");
        freq = widget<QLineEdit>(d, "editRefFreq")->text();
        ratio = comboValue(d, "comboOvsRatio");
        fileFixed = !widget<QLineEdit>(d, "editFileName")->isEnabled();
        okButton(d)->click();
    });
    const Args edited = protocol()->edit(args);
    QCOMPARE(ticked, selection.value(QStringLiteral("lanes")).toStringList());
    QCOMPARE(pll, QStringLiteral("QPLL0"));
    QCOMPARE(ref, QStringLiteral("Q0 REFCLK1"));
    QCOMPARE(freq, QStringLiteral("156.25"));
    QCOMPARE(ratio, QStringLiteral("20x"));
    QVERIFY(fileFixed);
    QCOMPARE(edited, args);

    // A stored lane that another instance took meanwhile cannot be shown:
    // the edit ends as cancelled, without a dialog.
    place(instanceMap(QStringLiteral("other"), {QStringLiteral("Q1_LANE3")}, QStringLiteral("CPLL"),
                      QStringLiteral("Q1 REFCLK0"), QStringLiteral("125"), QStringLiteral("1.25")));
    bool shown = false;
    QTimer guard;
    connect(&guard, &QTimer::timeout, [&] {
        if (auto *d = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
            shown = true;
            d->reject();
        }
    });
    guard.start(10);
    QVERIFY(protocol()->edit(args).isEmpty());
    QVERIFY(!shown);
}

QTEST_MAIN(tst_Bcdr)
#include "tst_bcdr.moc"
