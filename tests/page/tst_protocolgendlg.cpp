// SPDX-License-Identifier: MIT
//
// The protocol dialog frame through a derived class, as protocol plug-ins use
// it, and through a plug-in built outside this repository against the
// installed tree.

#include "modalanswers.h"

#include "model/serdes.h"
#include "protocol/baseprotocol.h"
#include "protocol/protocolgendlg.h"
#include "protocol/protocolpackage.h"

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <utils/modulefigureview.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPluginLoader>
#include <QPushButton>
#include <QSpinBox>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QtTest>

using IPSERDESIP::protocolGenDlg;

namespace {

const char kDeviceWithVersion[] = "RK9C880D-FG1517-3";    // version "B"
const char kDeviceWithoutVersion[] = "RK9C880D-FG1156-2"; // no version

class Dialog : public protocolGenDlg
{
public:
    void accept() override
    {
        ++accepted;
        QDialog::accept();
    }
    bool restoreArgs(const QMap<QString, QVariant> &args) override
    {
        restored = args;
        return restoreResult;
    }
    void dialogDidPrepare() override { prepared << fileName() + QLatin1Char(' ') + moduleName(); }

    template<typename T>
    T *widget(const char *name) const
    {
        return findChild<T *>(QLatin1String(name));
    }
    QPushButton *button(QDialogButtonBox::StandardButton which) const
    {
        return widget<QDialogButtonBox>("buttonBox")->button(which);
    }
    QString createIn() const { return widget<QLineEdit>("editCreateIn")->text(); }

    int accepted = 0;
    QMap<QString, QVariant> restored;
    bool restoreResult = true;
    QStringList prepared;
};

void compareBox(const SeenBox &box, const QString &title, const QString &text)
{
    QCOMPARE(box.title, title);
    QCOMPARE(box.text, text);
}

void compareExclamation(const SeenBox &box)
{
    QVERIFY(!box.pixmap.isNull());
    QCOMPARE(box.pixmap, QPixmap(QStringLiteral(":/coregen/image/exclamation.png")).toImage());
}

// Darkness of the widest run of ink across a horizontal wire at column x.
int wireThickness(const QImage &image, int x, int y)
{
    int thickness = 0;
    for (int dy = -8; dy <= 8; ++dy) {
        if (qGray(image.pixel(x, y + dy)) < 160)
            ++thickness;
    }
    return thickness;
}

} // namespace

class tst_ProtocolGenDlg : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void validators_data();
    void validators();
    void proposals_data();
    void proposals();
    void opening_data();
    void opening();
    void browseAndFollow();
    void checkFileOptions_data();
    void checkFileOptions();
    void checkFileExisting_data();
    void checkFileExisting();
    void checkModuleName_data();
    void checkModuleName();
    void pagesAndButtons();
    void figure();
    void outsidePlugin();

private:
    DEV::DeviceDb m_db;
    QTemporaryDir m_tmp;
};

void tst_ProtocolGenDlg::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    QVERIFY(m_tmp.isValid());
    QString error;
    QVERIFY2(m_db.load(QStringLiteral(SERDES_STAGE_DIR "/data/devices/devices.json"), &error),
             qPrintable(error));
    Core::IdeCore::setDeviceDataBase(&m_db);
}

void tst_ProtocolGenDlg::cleanup()
{
    IPSERDESIP::serdes::destory();
}

void tst_ProtocolGenDlg::validators_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("kept");
    // File names may start with a digit; module names keep no leading digit or
    // underscore; neither keeps signs, blanks or letters beyond ASCII.
    QTest::newRow("file") << "editFileName" << QStringLiteral("9_a-b \u00e9.1") << "9_ab1";
    QTest::newRow("module") << "editModuleName" << QStringLiteral("9_a-b_C\u00f49$") << "ab_C9";
}

void tst_ProtocolGenDlg::validators()
{
    QFETCH(QString, field);
    QFETCH(QString, typed);
    QFETCH(QString, kept);

    Dialog dialog;
    auto *edit = dialog.widget<QLineEdit>(qPrintable(field));
    edit->clear();
    for (const QChar c : typed) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(c));
        QApplication::sendEvent(edit, &press);
    }
    QCOMPARE(edit->text(), kept);
}

void tst_ProtocolGenDlg::proposals_data()
{
    QTest::addColumn<QString>("base");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QStringList>("modules");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("module");
    const auto row = [](const char *name, const char *base, const QStringList &files,
                        const QStringList &modules, const char *file, const char *module) {
        QTest::newRow(name) << QString(base) << files << modules << QString(file)
                            << QString(module);
    };
    row("taken once", "eth", {"eth"}, {"eth"}, "eth_1", "eth_1st");
    QStringList files{"m"}, modules{"m", "m_1st", "m_2nd", "m_3rd"};
    for (int n = 1; n <= 20; ++n)
        files << QStringLiteral("m_%1").arg(n);
    for (int n = 4; n <= 20; ++n)
        modules << QStringLiteral("m_%1th").arg(n);
    row("twenty-first", "m", files, modules, "m_21", "m_21th");
    // Only the base itself counts as taken, compared exactly.
    row("suffixed only", "eth", {"eth_1"}, {"eth_1st"}, "eth", "eth");
    row("other case", "eth", {"ETH"}, {"Eth"}, "eth", "eth");
    row("a gap is filled", "eth", {"eth", "eth_2"}, {"eth", "eth_2nd"}, "eth_1", "eth_1st");
}

void tst_ProtocolGenDlg::proposals()
{
    QFETCH(QString, base);
    QFETCH(QStringList, files);
    QFETCH(QStringList, modules);
    QFETCH(QString, file);
    QFETCH(QString, module);

    IPSERDESIP::serdes::instance()->fileNames = files;
    IPSERDESIP::serdes::instance()->moduleNames = modules;
    Dialog dialog;
    dialog.uiSetDefaultFileName(base);
    dialog.uiSetModuleName(base);
    dialog.setCreating(m_tmp.path() + QStringLiteral("/"),
                       m_db.findByID(QLatin1String(kDeviceWithVersion)));

    QCOMPARE(dialog.fileName(), file);
    QCOMPARE(dialog.moduleName(), module);
    QCOMPARE(dialog.createIn(), QDir::toNativeSeparators(m_tmp.path()) + QLatin1Char('/') + file);
    QCOMPARE(dialog.createPath(), m_tmp.path() + QLatin1Char('/') + file);
    QCOMPARE(dialog.prepared, QStringList{file + QLatin1Char(' ') + module});
}

void tst_ProtocolGenDlg::opening_data()
{
    using Args = QMap<QString, QVariant>;
    QTest::addColumn<Args>("args");
    QTest::addColumn<bool>("restoreResult");
    QTest::addColumn<QString>("module");
    QTest::addColumn<QString>("device");
    // module, device: left out of the arguments when null.
    const auto row = [](const char *name, const char *module, const char *device, bool restore,
                        const char *shown, const char *known) {
        Args args{{"file", "eth0"}};
        if (module)
            args.insert("module", module);
        if (device)
            args.insert("target_device", device);
        QTest::newRow(name) << args << restore << QString(shown) << QString(known);
    };
    const char *v = kDeviceWithVersion;
    row("complete", "eth_top", v, true, "eth_top", v);
    row("restore refused, single version", "m", kDeviceWithoutVersion, false, "m",
        kDeviceWithoutVersion);
    row("empty module keeps the field", "", v, true, "preset", v);
    row("no device", "eth_top", nullptr, true, "eth_top", "");
    row("unknown device", nullptr, "RK0-NONE", true, "preset", "");
}

void tst_ProtocolGenDlg::opening()
{
    using Args = QMap<QString, QVariant>;
    QFETCH(Args, args);
    QFETCH(bool, restoreResult);
    QFETCH(QString, module);
    QFETCH(QString, device);

    IPSERDESIP::serdes::instance()->setWorkingDir(m_tmp.path());
    Dialog dialog;
    dialog.restoreResult = restoreResult;
    dialog.uiSetModuleName(QStringLiteral("preset"));
    MessageBoxAnswers answers;
    QCOMPARE(dialog.setOpening(args), restoreResult);
    QCOMPARE(dialog.restored, args);
    QCOMPARE(dialog.prepared, QStringList{QStringLiteral("eth0 ") + module});

    auto *createIn = dialog.widget<QLineEdit>("editCreateIn");
    QCOMPARE(createIn->text(), QDir::toNativeSeparators(m_tmp.path()) + QStringLiteral("/eth0"));
    QVERIFY(createIn->isReadOnly());
    for (const char *name : {"editCreateIn", "btnBrowse", "comboBoxLanguage", "editFileName"})
        QVERIFY2(!dialog.widget<QWidget>(name)->isEnabled(), name);
    QVERIFY(dialog.widget<QLineEdit>("editModuleName")->isEnabled());

    const DEV::DeviceArg arg = m_db.findByID(device);
    QCOMPARE(dialog.widget<QLabel>("label_device")->text(), arg.name);
    QCOMPARE(dialog.widget<QLabel>("label_pn")->text(), arg.partNumber);
    QCOMPARE(dialog.widget<QLabel>("labelDeviceVersion")->text(), arg.version);
    for (const char *label : {"labelDeviceVersion", "labelDeviceVersionTitle"}) {
        if (!device.isEmpty())
            QCOMPARE(dialog.widget<QLabel>(label)->isHidden(), arg.version.isEmpty());
    }
    QCOMPARE(answers.boxes.size(), device.isEmpty() ? 1 : 0);
    // An opened instance's directory is there already: nothing is asked.
    QVERIFY(dialog.checkFileExisting());
    QCOMPARE(answers.boxes.size(), device.isEmpty() ? 1 : 0);
    if (device.isEmpty()) {
        compareBox(answers.boxes.first(), "Warning", "IPC file device information is lost.");
        QCOMPARE(answers.boxes.first().icon, QMessageBox::Warning);
        QVERIFY(answers.boxes.first().hasWindowIcon);
    }
}

void tst_ProtocolGenDlg::browseAndFollow()
{
    Dialog dialog;
    dialog.uiSetDefaultFileName(QStringLiteral("pcie"));
    dialog.setCreating(QStringLiteral("/projects/a"),
                       m_db.findByID(QLatin1String(kDeviceWithVersion)));
    auto *fileName = dialog.widget<QLineEdit>("editFileName");
    auto *createIn = dialog.widget<QLineEdit>("editCreateIn");
    fileName->setText(QStringLiteral("renamed"));
    // Without the link the path does not follow the name.
    QCOMPARE(createIn->text(), QStringLiteral("/projects/a/pcie"));
    for (const QString &chosen : {m_tmp.path(), QString()}) {
        answerDirectoryDialog(chosen);
        QTest::mouseClick(dialog.widget<QPushButton>("btnBrowse"), Qt::LeftButton);
        QCOMPARE(createIn->text(), QDir::toNativeSeparators(m_tmp.path()) + "/pcie");
    }

    dialog.fileNameConnectCreatIn();
    dialog.fileNameConnectCreatIn();
    QVERIFY(!createIn->isEnabled());
    QVERIFY(!dialog.widget<QPushButton>("btnBrowse")->isEnabled());
    fileName->clear();
    QTest::keyClicks(fileName, QStringLiteral("lane2"));
    QCOMPARE(createIn->text(), QStringLiteral("/projects/a/lane2"));
}

void tst_ProtocolGenDlg::checkFileOptions_data()
{
    QTest::addColumn<QStringList>("fields"); // file, create in, module
    QTest::addColumn<QStringList>("errors");
    const QString noFile = "\"File Name\" can not be empty.",
                  noDir = "\"Create In\" can not be empty.",
                  noModule = "\"Module Name\" can not be empty.";
    QTest::newRow("complete") << QStringList{"f", "/d", "m"} << QStringList();
    QTest::newRow("all empty") << QStringList{"", "", ""} << QStringList{noFile, noDir, noModule};
    QTest::newRow("no module") << QStringList{"f", "/d", ""} << QStringList{noModule};
    QTest::newRow("no file, no dir") << QStringList{"", "", "m"} << QStringList{noFile, noDir};
}

void tst_ProtocolGenDlg::checkFileOptions()
{
    QFETCH(QStringList, fields);
    QFETCH(QStringList, errors);
    Dialog dialog;
    for (const char *name : {"editFileName", "editCreateIn", "editModuleName"})
        dialog.widget<QLineEdit>(name)->setText(fields.takeFirst());
    QCOMPARE(dialog.checkFileOptions(), errors);
}

void tst_ProtocolGenDlg::checkFileExisting_data()
{
    QTest::addColumn<QString>("createIn");
    QTest::addColumn<QMessageBox::StandardButton>("answer");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QString>("title"); // empty: no message box
    const auto row = [](const char *name, const char *createIn, QMessageBox::StandardButton answer,
                        bool result, const char *title) {
        QTest::newRow(name) << QString(createIn) << answer << result << QString(title);
    };
    row("exists, overwrite", "existing/./", QMessageBox::Yes, true, "Warning");
    row("exists, cancel", "existing", QMessageBox::Cancel, false, "Warning");
    row("made", "new/deeper", QMessageBox::Ok, true, "");
    row("cannot be made", "afile/below", QMessageBox::Ok, false, "Error");
}

void tst_ProtocolGenDlg::checkFileExisting()
{
    QFETCH(QString, createIn);
    QFETCH(QMessageBox::StandardButton, answer);
    QFETCH(bool, result);
    QFETCH(QString, title);

    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("existing")));
    QVERIFY(QFile(dir.filePath(QStringLiteral("afile"))).open(QIODevice::WriteOnly));

    Dialog dialog;
    dialog.setCreating(dir.path(), m_db.findByID(QLatin1String(kDeviceWithVersion)));
    const QString path = dir.filePath(createIn);
    dialog.widget<QLineEdit>("editCreateIn")->setText(path);

    MessageBoxAnswers answers(answer);
    QCOMPARE(dialog.checkFileExisting(), result);
    QCOMPARE(answers.boxes.size(), title.isEmpty() ? 0 : 1);
    if (title.isEmpty()) {
        QVERIFY(QFileInfo(path).isDir());
        return;
    }
    const SeenBox &box = answers.boxes.first();
    if (title == QLatin1String("Warning")) {
        compareBox(box, title,
                   QStringLiteral("Directory \"%1\" already exists, do you want to overwrite?")
                       .arg(QDir::toNativeSeparators(QDir::cleanPath(path))));
        QCOMPARE(box.buttons, QMessageBox::Yes | QMessageBox::Cancel);
        QCOMPARE(box.defaultButton, QMessageBox::Cancel);
    } else {
        compareBox(
            box, title,
            QStringLiteral("Failed to create path \"%1\"").arg(QDir::toNativeSeparators(path)));
        QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
        compareExclamation(box);
        QVERIFY(box.hasWindowIcon);
    }
}

void tst_ProtocolGenDlg::checkModuleName_data()
{
    QTest::addColumn<QString>("module");
    QTest::addColumn<bool>("result");
    QTest::newRow("primitive") << "LUT4" << false;
    QTest::newRow("primitive in other case") << "lut4" << true;
    QTest::newRow("primitive as prefix") << "LUT4_wrap" << true;
    QTest::newRow("last primitive") << "VCC" << false;
}

void tst_ProtocolGenDlg::checkModuleName()
{
    QFETCH(QString, module);
    QFETCH(bool, result);

    Dialog dialog;
    dialog.uiSetModuleName(module);
    MessageBoxAnswers answers;
    QCOMPARE(dialog.checkModuleName(), result);
    QCOMPARE(answers.boxes.size(), result ? 0 : 1);
    if (!result) {
        compareBox(answers.boxes.first(), "Error", "Moudle name is the same as primitive name !");
        compareExclamation(answers.boxes.first());
    }
}

void tst_ProtocolGenDlg::pagesAndButtons()
{
    Dialog dialog;
    QCOMPARE(dialog.size(), QSize(861, 658));
    // Symbol and fields share a splitter that lets neither collapse.
    auto *splitter = qobject_cast<QSplitter *>(dialog.widget<QWidget>("figure")->parentWidget());
    QVERIFY(splitter && !splitter->childrenCollapsible());
    QCOMPARE(splitter->indexOf(dialog.widget<QWidget>("general")), 1);
    QVERIFY(dialog.button(QDialogButtonBox::Help)->isHidden());
    QVERIFY(dialog.widget<QComboBox>("synToolComboBox")->isHidden());

    auto *tabs = dialog.widget<QTabWidget>("tabOptions");
    QCOMPARE(dialog.uiAddTab(new QWidget, QStringLiteral("Lanes")), 0);
    QCOMPARE(dialog.uiAddTab(new QWidget, QStringLiteral("Clocks")), 1);
    dialog.uiHideTabOptionLabel(5);
    QVERIFY(!tabs->findChild<QTabBar *>()->isHidden());
    dialog.uiHideTabOptionLabel(0);
    QVERIFY(tabs->findChild<QTabBar *>()->isHidden());

    QPushButton *ok = dialog.button(QDialogButtonBox::Ok);
    dialog.setOptionsAvailable(false);
    QVERIFY(!tabs->isEnabled() && !ok->isEnabled());
    dialog.setOptionsAvailable(true);
    QVERIFY(tabs->isEnabled() && ok->isEnabled());

    QCOMPARE(dialog.uiSynthesisTool(), QStringLiteral("TarvexSynthesis"));
    dialog.uiSetSynTools({QStringLiteral("A"), QStringLiteral("B")});
    dialog.uiSetSynthesisTool(QStringLiteral("B"));
    dialog.uiSetSynthesisTool(QStringLiteral("b"));
    QCOMPARE(dialog.uiSynthesisTool(), QStringLiteral("B"));

    auto *module = dialog.widget<QLineEdit>("editModuleName");
    dialog.uiSetModuleNameColor();
    const QColor disabled = module->palette().color(QPalette::Disabled, QPalette::Base);
    for (const auto group : {QPalette::Active, QPalette::Inactive})
        QCOMPARE(module->palette().color(group, QPalette::Base), disabled);

    MessageBoxAnswers answers;
    dialog.showErrorMsg({QStringLiteral("one"), QStringLiteral("two")});
    QCOMPARE(answers.boxes.size(), 1);
    QCOMPARE(answers.boxes.first().title, QStringLiteral("Error"));
    QCOMPARE(answers.boxes.first().details, QStringLiteral("one\ntwo"));

    dialog.show();
    QTest::mouseClick(ok, Qt::LeftButton);
    QCOMPARE(dialog.accepted, 1);
}

void tst_ProtocolGenDlg::figure()
{
    using Utils::PinFigure;
    Dialog dialog;
    auto *figure = dialog.widget<Utils::ModuleFigureView>("figure");
    const QList<PinFigure> pins = {
        PinFigure(QStringLiteral("refclk"), PinFigure::Input),
        PinFigure(QStringLiteral("tx_data"), PinFigure::Input, 32),
        PinFigure(QStringLiteral("rx_data"), PinFigure::Output, 32),
        PinFigure(QStringLiteral("mdio"), PinFigure::Inout),
        PinFigure(QStringLiteral("rx_valid"), PinFigure::Output, 0),
    };
    dialog.uiSetFigurePins(pins);
    QCOMPARE(figure->pins().size(), pins.size());
    QCOMPARE(pins.at(1).label(), QStringLiteral("tx_data[31:0]"));
    QCOMPARE(pins.at(4).width, 1);
    QCOMPARE(pins.at(4).label(), QStringLiteral("rx_valid"));

    dialog.uiSetModuleName(QStringLiteral("xaui_top"));
    QCOMPARE(figure->moduleName(), QStringLiteral("xaui_top"));

    figure->resize(400, 400);
    const QRectF box = figure->symbolRect();
    QVERIFY(figure->rect().contains(box.toRect()));
    // Inputs enter on the left, everything else leaves on the right.
    for (int i = 0; i < pins.size(); ++i) {
        const QLineF wire = figure->pinLine(i);
        const bool left = pins.at(i).direction == PinFigure::Input;
        QCOMPARE(wire.p2().x(), left ? box.left() : box.right());
        QVERIFY(left ? wire.p1().x() < box.left() : wire.p1().x() > box.right());
    }
    QVERIFY(figure->pinLine(pins.size()).isNull());
    // Outputs are listed before bidirectional ports, in their given order.
    QVERIFY(figure->pinLine(2).p1().y() < figure->pinLine(4).p1().y());
    QVERIFY(figure->pinLine(4).p1().y() < figure->pinLine(3).p1().y());

    // A bus is drawn thicker than a single wire.
    const QImage image = figure->grab().toImage();
    const auto thickness = [&](int pin) {
        const QLineF wire = figure->pinLine(pin);
        const int outward = wire.p2().x() > wire.p1().x() ? 1 : -1;
        return wireThickness(image, qRound(wire.p1().x()) + 2 * outward, qRound(wire.p1().y()));
    };
    QVERIFY(thickness(0) >= 1);
    QVERIFY2(thickness(1) > thickness(0),
             qPrintable(QStringLiteral("%1 vs %2").arg(thickness(1)).arg(thickness(0))));
    QVERIFY(thickness(2) > thickness(4));

    // A symbol larger than the widget is scaled down to fit.
    figure->resize(140, 100);
    QVERIFY(QRectF(figure->contentsRect()).contains(figure->symbolRect()));
}

void tst_ProtocolGenDlg::outsidePlugin()
{
    QPluginLoader loader(QStringLiteral(SERDES_OUTSIDE_PROTOCOL));
    auto *package = qobject_cast<IPSERDESIP::ProtocolPackage *>(loader.instance());
    QVERIFY2(package, qPrintable(loader.errorString()));
    const QList<IPSERDESIP::BaseProtocol *> protocols = package->protocols();
    QCOMPARE(protocols.size(), 1);
    IPSERDESIP::BaseProtocol *protocol = protocols.first();

    IPSERDESIP::serdes::instance()->fileNames = QStringList{QStringLiteral("outside")};
    IPSERDESIP::serdes::instance()->moduleNames = QStringList{QStringLiteral("outside")};
    const DEV::DeviceArg device = m_db.findByID(QLatin1String(kDeviceWithoutVersion));

    // The plug-in's own dialog, seen as the frame's: names proposed, fields
    // filled; its accept() makes the directory.
    QStringList seen;
    whenModal<protocolGenDlg>([&seen](protocolGenDlg *dialog) {
        seen << dialog->fileName() << dialog->moduleName()
             << QString::number(dialog->findChild<QTabWidget *>("tabOptions")->count())
             << QString::number(
                    dialog->findChild<Utils::ModuleFigureView *>("figure")->pins().size())
             << dialog->findChild<QLabel *>("label_device")->text();
        dialog->findChild<QSpinBox *>("lanes")->setValue(4);
        dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
    });
    const QMap<QString, QVariant> args = protocol->create(m_tmp.path(), device);
    QCOMPARE(seen, (QStringList{"outside_1", "outside_1st", "1", "3", device.name}));
    QCOMPARE(args.value("file").toString(), QStringLiteral("outside_1"));
    QCOMPARE(args.value("module").toString(), QStringLiteral("outside_1st"));
    QCOMPARE(args.value("lanes").toInt(), 4);
    QCOMPARE(args.value("target_device").toString(), device.id);
    QVERIFY(QFileInfo(m_tmp.filePath(QStringLiteral("outside_1"))).isDir());

    // Editing reopens the instance where it is; cancel gives nothing back.
    IPSERDESIP::serdes::instance()->setWorkingDir(m_tmp.path());
    whenModal<protocolGenDlg>([&seen](protocolGenDlg *dialog) {
        seen = QStringList{dialog->findChild<QLineEdit *>("editCreateIn")->text(),
                           QString::number(dialog->findChild<QSpinBox *>("lanes")->value())};
        dialog->reject();
    });
    QVERIFY(protocol->edit(args).isEmpty());
    QCOMPARE(seen, (QStringList{QDir::toNativeSeparators(m_tmp.path()) + "/outside_1", "4"}));

    qDeleteAll(protocols);
    QVERIFY(loader.unload());
}

QTEST_MAIN(tst_ProtocolGenDlg)
#include "tst_protocolgendlg.moc"
