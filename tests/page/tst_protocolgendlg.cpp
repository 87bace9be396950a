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
    QLineEdit *edit(const char *name) const { return widget<QLineEdit>(name); }

    int accepted = 0;
    QMap<QString, QVariant> restored;
    bool restoreResult = true;
    QStringList prepared;
};

void compareErrorBox(const SeenBox &box, const QString &text)
{
    QCOMPARE(box.title, QStringLiteral("Error"));
    QCOMPARE(box.text, text);
    QVERIFY(box.hasWindowIcon);
    QCOMPARE(box.pixmap, QPixmap(QStringLiteral(":/coregen/image/exclamation.png")).toImage());
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
    void checkFileOptions();
    void checkFileExisting_data();
    void checkFileExisting();
    void checkModuleName();
    void pagesAndButtons();
    void figure();
    void outsidePlugin();

private:
    DEV::DeviceArg device(const char *id) const { return m_db.findByID(QLatin1String(id)); }
    QString inTmp(const QString &name) const
    {
        return QDir::toNativeSeparators(m_tmp.path()) + QLatin1Char('/') + name;
    }

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
    QLineEdit *edit = dialog.edit(qPrintable(field));
    edit->clear();
    for (const QChar c : typed) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(c));
        QApplication::sendEvent(edit, &press);
    }
    QCOMPARE(edit->text(), kept);
}

void tst_ProtocolGenDlg::proposals_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QStringList>("modules");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("module");
    QStringList files{"m"}, modules{"m", "m_1st", "m_2nd", "m_3rd"};
    for (int n = 1; n <= 20; ++n)
        files << QStringLiteral("m_%1").arg(n);
    for (int n = 4; n <= 20; ++n)
        modules << QStringLiteral("m_%1th").arg(n);
    QTest::newRow("twenty-first") << files << modules << "m_21" << "m_21th";
    QTest::newRow("a gap is filled") << QStringList{"m", "m_2"} << QStringList{"m", "m_2nd"}
                                     << "m_1" << "m_1st";
    // Only the base itself counts as taken, compared exactly.
    QTest::newRow("suffixed or other case") << QStringList{"M", "m_1"} << QStringList{"M", "m_1st"}
                                            << "m" << "m";
}

void tst_ProtocolGenDlg::proposals()
{
    QFETCH(QStringList, files);
    QFETCH(QStringList, modules);
    QFETCH(QString, file);
    QFETCH(QString, module);

    IPSERDESIP::serdes::instance()->fileNames = files;
    IPSERDESIP::serdes::instance()->moduleNames = modules;
    Dialog dialog;
    dialog.uiSetDefaultFileName(QStringLiteral("m"));
    dialog.uiSetModuleName(QStringLiteral("m"));
    dialog.setCreating(m_tmp.path() + QStringLiteral("/"), device(kDeviceWithVersion));

    QCOMPARE(dialog.fileName(), file);
    QCOMPARE(dialog.moduleName(), module);
    QCOMPARE(dialog.edit("editCreateIn")->text(), inTmp(file));
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
    row("complete", "eth_top", kDeviceWithVersion, true, "eth_top", kDeviceWithVersion);
    row("restore refused, single version", "m", kDeviceWithoutVersion, false, "m",
        kDeviceWithoutVersion);
    row("no device", "eth_top", nullptr, true, "eth_top", "");
    row("unknown device, no module", nullptr, "RK0-NONE", true, "preset", "");
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
    // A path that follows the file name stays in the configuration's folder.
    dialog.fileNameConnectCreatIn();
    MessageBoxAnswers answers;
    QCOMPARE(dialog.setOpening(args), restoreResult);
    QCOMPARE(dialog.restored, args);
    QCOMPARE(dialog.prepared, QStringList{QStringLiteral("eth0 ") + module});

    QCOMPARE(dialog.edit("editCreateIn")->text(), inTmp(QStringLiteral("eth0")));
    QVERIFY(dialog.edit("editCreateIn")->isReadOnly());
    for (const char *name : {"editCreateIn", "btnBrowse", "comboBoxLanguage", "editFileName"})
        QVERIFY2(!dialog.widget<QWidget>(name)->isEnabled(), name);
    QVERIFY(dialog.edit("editModuleName")->isEnabled());

    const DEV::DeviceArg arg = m_db.findByID(device);
    QCOMPARE(dialog.widget<QLabel>("label_device")->text(), arg.name);
    QCOMPARE(dialog.widget<QLabel>("label_pn")->text(), arg.partNumber);
    QCOMPARE(dialog.widget<QLabel>("labelDeviceVersion")->text(), arg.version);
    if (!device.isEmpty()) {
        for (const char *label : {"labelDeviceVersion", "labelDeviceVersionTitle"})
            QCOMPARE(dialog.widget<QLabel>(label)->isHidden(), arg.version.isEmpty());
    }
    // An opened instance's directory is there already: nothing is asked.
    QVERIFY(dialog.checkFileExisting());
    QCOMPARE(answers.boxes.size(), device.isEmpty() ? 1 : 0);
    if (device.isEmpty()) {
        QCOMPARE(answers.boxes.first().title, QStringLiteral("Warning"));
        QCOMPARE(answers.boxes.first().text,
                 QStringLiteral("IPC file device information is lost."));
        QCOMPARE(answers.boxes.first().icon, QMessageBox::Warning);
        QVERIFY(answers.boxes.first().hasWindowIcon);
    }
}

void tst_ProtocolGenDlg::browseAndFollow()
{
    Dialog dialog;
    dialog.uiSetDefaultFileName(QStringLiteral("pcie"));
    dialog.setCreating(QStringLiteral("/projects/a"), device(kDeviceWithVersion));
    QLineEdit *fileName = dialog.edit("editFileName");
    QLineEdit *createIn = dialog.edit("editCreateIn");
    // Until linked, the path does not follow the name; browsing appends the
    // default name, and cancelling keeps what was chosen.
    fileName->setText(QStringLiteral("renamed"));
    QCOMPARE(createIn->text(), QStringLiteral("/projects/a/pcie"));
    for (const QString &chosen : {m_tmp.path(), QString()}) {
        answerDirectoryDialog(chosen);
        QTest::mouseClick(dialog.widget<QPushButton>("btnBrowse"), Qt::LeftButton);
        QCOMPARE(createIn->text(), inTmp(QStringLiteral("pcie")));
    }

    dialog.fileNameConnectCreatIn();
    QVERIFY(!createIn->isEnabled());
    QVERIFY(!dialog.widget<QPushButton>("btnBrowse")->isEnabled());
    fileName->clear();
    QTest::keyClicks(fileName, QStringLiteral("lane2"));
    QCOMPARE(createIn->text(), QStringLiteral("/projects/a/lane2"));
}

void tst_ProtocolGenDlg::checkFileOptions()
{
    const char *fields[] = {"editFileName", "editCreateIn", "editModuleName"};
    const QStringList errors{"\"File Name\" can not be empty.", "\"Create In\" can not be empty.",
                             "\"Module Name\" can not be empty."};
    Dialog dialog;
    for (const char *field : fields)
        dialog.edit(field)->setText(QStringLiteral("x"));
    QCOMPARE(dialog.checkFileOptions(), QStringList());
    for (int i = 0; i < 3; ++i) {
        dialog.edit(fields[i])->clear();
        QCOMPARE(dialog.checkFileOptions(), QStringList(errors.at(i)));
        dialog.edit(fields[i])->setText(QStringLiteral("x"));
    }
    for (const char *field : fields)
        dialog.edit(field)->clear();
    QCOMPARE(dialog.checkFileOptions(), errors);
}

void tst_ProtocolGenDlg::checkFileExisting_data()
{
    QTest::addColumn<QString>("createIn");
    QTest::addColumn<QMessageBox::StandardButton>("answer");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QString>("title"); // empty: no message box
    QTest::newRow("exists, overwrite") << "existing/./" << QMessageBox::Yes << true << "Warning";
    QTest::newRow("exists, cancel") << "existing" << QMessageBox::Cancel << false << "Warning";
    QTest::newRow("made") << "new/deeper" << QMessageBox::Ok << true << "";
    QTest::newRow("cannot be made") << "afile/below" << QMessageBox::Ok << false << "Error";
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
    dialog.setCreating(dir.path(), device(kDeviceWithVersion));
    const QString path = dir.filePath(createIn);
    dialog.edit("editCreateIn")->setText(path);

    MessageBoxAnswers answers(answer);
    QCOMPARE(dialog.checkFileExisting(), result);
    QCOMPARE(answers.boxes.size(), title.isEmpty() ? 0 : 1);
    if (title.isEmpty()) {
        QVERIFY(QFileInfo(path).isDir());
    } else if (title == QLatin1String("Warning")) {
        const SeenBox &box = answers.boxes.first();
        QCOMPARE(box.title, title);
        QCOMPARE(box.text,
                 QStringLiteral("Directory \"%1\" already exists, do you want to overwrite?")
                     .arg(QDir::toNativeSeparators(QDir::cleanPath(path))));
        QCOMPARE(box.buttons, QMessageBox::Yes | QMessageBox::Cancel);
        QCOMPARE(box.defaultButton, QMessageBox::Cancel);
    } else {
        compareErrorBox(
            answers.boxes.first(),
            QStringLiteral("Failed to create path \"%1\"").arg(QDir::toNativeSeparators(path)));
        QCOMPARE(answers.boxes.first().buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    }
}

void tst_ProtocolGenDlg::checkModuleName()
{
    Dialog dialog;
    MessageBoxAnswers answers;
    // Primitive names are matched whole and in their own case.
    for (const char *module : {"lut4", "LUT4_wrap"}) {
        dialog.uiSetModuleName(QLatin1String(module));
        QVERIFY2(dialog.checkModuleName(), module);
    }
    QVERIFY(answers.boxes.isEmpty());
    dialog.uiSetModuleName(QStringLiteral("LUT4"));
    QVERIFY(!dialog.checkModuleName());
    QCOMPARE(answers.boxes.size(), 1);
    compareErrorBox(answers.boxes.first(), "Moudle name is the same as primitive name !");
}

void tst_ProtocolGenDlg::pagesAndButtons()
{
    Dialog dialog;
    // Symbol and fields share a splitter that lets neither collapse.
    auto *splitter = qobject_cast<QSplitter *>(dialog.widget<QWidget>("figure")->parentWidget());
    QVERIFY(splitter && !splitter->childrenCollapsible());
    QCOMPARE(splitter->indexOf(dialog.widget<QWidget>("general")), 1);
    auto *buttons = dialog.widget<QDialogButtonBox>("buttonBox");
    QVERIFY(buttons->button(QDialogButtonBox::Help)->isHidden());
    QVERIFY(dialog.widget<QComboBox>("synToolComboBox")->isHidden());

    auto *tabs = dialog.widget<QTabWidget>("tabOptions");
    QCOMPARE(dialog.uiAddTab(new QWidget, QStringLiteral("Lanes")), 0);
    QCOMPARE(dialog.uiAddTab(new QWidget, QStringLiteral("Clocks")), 1);
    dialog.uiHideTabOptionLabel(5);
    QVERIFY(!tabs->findChild<QTabBar *>()->isHidden());
    dialog.uiHideTabOptionLabel(0);
    QVERIFY(tabs->findChild<QTabBar *>()->isHidden());

    QPushButton *ok = buttons->button(QDialogButtonBox::Ok);
    dialog.setOptionsAvailable(false);
    QVERIFY(!tabs->isEnabled() && !ok->isEnabled());
    dialog.setOptionsAvailable(true);
    QVERIFY(tabs->isEnabled() && ok->isEnabled());

    QCOMPARE(dialog.uiSynthesisTool(), QStringLiteral("TarvexSynthesis"));
    dialog.uiSetSynTools({QStringLiteral("A"), QStringLiteral("B")});
    dialog.uiSetSynthesisTool(QStringLiteral("B"));
    dialog.uiSetSynthesisTool(QStringLiteral("b"));
    QCOMPARE(dialog.uiSynthesisTool(), QStringLiteral("B"));

    QLineEdit *module = dialog.edit("editModuleName");
    dialog.uiSetModuleNameColor();
    const QColor disabled = module->palette().color(QPalette::Disabled, QPalette::Base);
    for (const auto group : {QPalette::Active, QPalette::Inactive})
        QCOMPARE(module->palette().color(group, QPalette::Base), disabled);

    MessageBoxAnswers answers;
    dialog.showErrorMsg({QStringLiteral("one"), QStringLiteral("two")});
    QCOMPARE(answers.boxes.size(), 1);
    compareErrorBox(answers.boxes.first(), "The following errors occurred while customizing IP, "
                                           "plese check and correct.");
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

    // A bus is drawn thicker than a single wire: dark pixels across an input,
    // just inside its outer end.
    const QImage image = figure->grab().toImage();
    const auto thickness = [&](int pin) {
        const QPoint at = figure->pinLine(pin).p1().toPoint() + QPoint(2, 0);
        int dark = 0;
        for (int dy = -8; dy <= 8; ++dy)
            dark += qGray(image.pixel(at.x(), at.y() + dy)) < 160 ? 1 : 0;
        return dark;
    };
    QVERIFY(thickness(0) >= 1);
    QVERIFY2(thickness(1) > thickness(0), qPrintable(QString::number(thickness(1))));

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
    const DEV::DeviceArg arg = device(kDeviceWithoutVersion);

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
    const QMap<QString, QVariant> args = protocol->create(m_tmp.path(), arg);
    QCOMPARE(seen, (QStringList{"outside_1", "outside_1st", "1", "3", arg.name}));
    // The device lies in a protected member, read by the plug-in's own code.
    QCOMPARE(args.value("target_device").toString(), arg.id);
    QCOMPARE(args.value("lanes").toInt(), 4);
    QVERIFY(QFileInfo(m_tmp.filePath(QStringLiteral("outside_1"))).isDir());

    qDeleteAll(protocols);
    QVERIFY(loader.unload());
}

QTEST_MAIN(tst_ProtocolGenDlg)
#include "tst_protocolgendlg.moc"
