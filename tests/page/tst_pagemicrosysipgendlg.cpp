// SPDX-License-Identifier: MIT
//
// The generator's frame, driven through a derived class as the SerDes page
// drives it: a new core, an opened configuration file, the help pane and the
// file options.

#include "modalanswers.h"

#include "model/serdes.h"
#include "page/microsysipgendlg.h"
#include "protocol/baseprotocol.h"

#include <core/idecore.h>
#include <dev/devicedb.h>

#include "testfiles.h"

#include <QComboBox>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QTemporaryDir>
#include <QWebFrame>
#include <QWebView>
#include <QtTest>

namespace {

const char kDeviceWithVersion[] = "RK9C880D-FG1517-3";    // version "B"
const char kDeviceWithoutVersion[] = "RK9C880D-FG1156-2"; // no version

class Frame : public IPSERDESIP::MicroSysIPGenDlg
{
public:
    Frame() { uiAddWidget(new QWidget); }

    void dialogDidPrepare() override { calls << QStringLiteral("prepare ") + device().id; }
    void setDevice(QSettings &settings) override
    {
        calls << QStringLiteral("device");
        MicroSysIPGenDlg::setDevice(settings);
    }
    bool parseData(const QString &file) override
    {
        calls << QStringLiteral("parse ") + QFileInfo(file).fileName();
        return parseResult;
    }

    template<typename T>
    T *widget(const char *name) const
    {
        return findChild<T *>(QLatin1String(name));
    }
    QString label(const char *name) const { return widget<QLabel>(name)->text(); }
    QWebView *help() const { return findChild<QWebView *>(); }
    QString evaluate(const QString &script) const
    {
        return help()->page()->mainFrame()->evaluateJavaScript(script).toString();
    }
    QString computed(const char *tag, const char *property) const
    {
        return evaluate(QStringLiteral("getComputedStyle(document.getElementsByTagName('%1')[0])"
                                       ".getPropertyValue('%2')")
                            .arg(QLatin1String(tag), QLatin1String(property)));
    }
    bool settled() const { return evaluate("document.readyState") == QLatin1String("complete"); }

    QStringList calls;
    bool parseResult = true;
};

// Only its summary page and its device member are used.
class HelpProtocol : public IPSERDESIP::BaseProtocol
{
public:
    using Args = QMap<QString, QVariant>;
    Args create(const QString &, const DEV::DeviceArg &) override { return {}; }
    Args edit(const Args &) override { return {}; }
    IPSERDESIP::Message *createMessage(const Args &) override { return nullptr; }
    bool generate(const Args &, QStringList &, QStringList &, QStringList &, QString &,
                  bool) override
    {
        return false;
    }
    bool validate(const Args &, QStringList &) const override { return false; }
    QString id() const override { return QStringLiteral("help"); }
    QString name() const override { return QStringLiteral("Help"); }
    QStringList category() const override { return {}; }
    QString summaryFile() const override { return page; }
    bool isSupported(const DEV::DeviceArg &) const override { return true; }

    QString page;
};

void compareErrorBox(const SeenBox &box, const QString &text)
{
    QCOMPARE(box.title, QStringLiteral("Error"));
    QCOMPARE(box.text, text);
    QVERIFY(box.hasWindowIcon);
    QCOMPARE(box.pixmap, QPixmap(QStringLiteral("://image/exclamation.png")).toImage());
}

QString writeIpc(const QTemporaryDir &dir, const QMap<QString, QString> &entries)
{
    const QString path = dir.filePath(QStringLiteral("core.ipc"));
    QFile::remove(path);
    QSettings settings(path, QSettings::IniFormat);
    for (auto it = entries.cbegin(); it != entries.cend(); ++it)
        settings.setValue(it.key(), it.value());
    return path;
}

} // namespace

class tst_PageMicroSysIPGenDlg : public QObject
{
    Q_OBJECT

public slots:
    void openUrl(const QUrl &url) { m_opened << url; }

private slots:
    void initTestCase();
    void cleanup();
    void creating_data();
    void creating();
    void opening_data();
    void opening();
    void helpStyle_data();
    void helpStyle();
    void helpPagesOfTheCore_data();
    void helpPagesOfTheCore();
    void helpLinksLeaveThePane();
    void browseAndOptions();
    void checkFileExisting_data();
    void checkFileExisting();

private:
    DEV::DeviceDb m_db;
    QTemporaryDir m_tmp;
    QList<QUrl> m_opened;
};

void tst_PageMicroSysIPGenDlg::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    QVERIFY(m_tmp.isValid());
    QString error;
    QVERIFY2(m_db.load(QStringLiteral(SERDES_STAGE_DIR "/data/devices/devices.json"), &error),
             qPrintable(error));
    Core::IdeCore::setDeviceDataBase(&m_db);
}

void tst_PageMicroSysIPGenDlg::cleanup()
{
    IPSERDESIP::serdes::destory();
}

void tst_PageMicroSysIPGenDlg::creating_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("createIn");

    QTest::newRow("versioned device") << "/work/D" << kDeviceWithVersion << "/work/D/serdes";
    QTest::newRow("single version, relative, trailing slash")
        << "work/D/" << kDeviceWithoutVersion << "work/D/serdes";
}

void tst_PageMicroSysIPGenDlg::creating()
{
    QFETCH(QString, path);
    QFETCH(QString, device);
    QFETCH(QString, createIn);

    const DEV::DeviceArg arg = m_db.findByID(device);
    Frame frame;
    frame.setCreating(path, arg);

    QCOMPARE(frame.uiCreateIn(), createIn);
    QCOMPARE(IPSERDESIP::serdes::instance()->workingDir(), createIn);
    QCOMPARE(frame.fileName(), QStringLiteral("serdes"));
    QCOMPARE(frame.moduleName(), QStringLiteral("SerDes_Top"));
    QCOMPARE(frame.calls, QStringList{QStringLiteral("prepare ") + device});
    QCOMPARE(frame.label("devLabel"), arg.name);
    QCOMPARE(frame.label("pnLabel"), arg.partNumber);
    QCOMPARE(frame.label("labelDeviceVersion_2"), arg.version);
    for (const char *label : {"labelDeviceVersion", "labelDeviceVersion_2"})
        QCOMPARE(frame.widget<QLabel>(label)->isHidden(), arg.version.isEmpty());
    // The synthesis tool is recorded, but not offered.
    QCOMPARE(frame.uiSynthesisTool(), QStringLiteral("TarvexSynthesis"));
    QVERIFY(frame.widget<QComboBox>("synToolComboBox")->isHidden());
    QVERIFY(frame.widget<QLabel>("language")->isHidden());
    QCOMPARE(frame.widget<QComboBox>("comboBoxLanguage")->currentText(), QStringLiteral("Verilog"));
}

void tst_PageMicroSysIPGenDlg::opening_data()
{
    using Entries = QMap<QString, QString>;
    QTest::addColumn<Entries>("entries");
    QTest::addColumn<QString>("device");
    QTest::addColumn<bool>("parseResult");

    QTest::newRow("target device")
        << Entries{{"target_device", kDeviceWithVersion}} << kDeviceWithVersion << true;
    QTest::newRow("older device group, parse fails")
        << Entries{{"device/id", "RK9C880D"}, {"device/package", "FG1156"}, {"device/speed", "2"}}
        << kDeviceWithoutVersion << false;
    // An unknown identifier is not made up for by an older group beside it.
    QTest::newRow("unknown target device")
        << Entries{{"target_device", "RK0-NONE"}, {"device/id", "RK9C880D"}} << QString() << true;
    QTest::newRow("no device group match")
        << Entries{{"device/id", "RK9C880D"}, {"device/package", "FG9"}} << QString() << true;
}

void tst_PageMicroSysIPGenDlg::opening()
{
    using Entries = QMap<QString, QString>;
    QFETCH(Entries, entries);
    QFETCH(QString, device);
    QFETCH(bool, parseResult);

    Frame frame;
    frame.parseResult = parseResult;
    MessageBoxAnswers answers;
    QCOMPARE(frame.setOpening(m_tmp.path(), writeIpc(m_tmp, entries)), parseResult);

    // Device, then model, then data; a lost device does not stop the opening.
    QCOMPARE(frame.calls,
             (QStringList{"device", QStringLiteral("prepare ") + device, "parse core.ipc"}));
    QCOMPARE(frame.device().id, device);
    QCOMPARE(frame.uiCreateIn(), m_tmp.path());
    QCOMPARE(IPSERDESIP::serdes::instance()->workingDir(), m_tmp.path());
    auto *createIn = frame.widget<QLineEdit>("editCreateIn");
    QVERIFY(createIn->isReadOnly() && !createIn->isEnabled());
    QVERIFY(!frame.widget<QPushButton>("btnBrowse")->isEnabled());
    QVERIFY(frame.widget<QLineEdit>("lineEditFileName")->isEnabled());
    QVERIFY(frame.widget<QLineEdit>("lineEditModuleName")->isEnabled());

    QCOMPARE(answers.boxes.size(), device.isEmpty() ? 1 : 0);
    if (device.isEmpty()) {
        const SeenBox &box = answers.boxes.first();
        QCOMPARE(box.title, QStringLiteral("Warning"));
        QCOMPARE(box.text, QStringLiteral("IPC file device information is lost."));
        QCOMPARE(box.icon, QMessageBox::Warning);
        QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
        QVERIFY(box.hasWindowIcon);
        QCOMPARE(frame.label("devLabel"), QStringLiteral("TextLabel"));
    } else {
        QCOMPARE(frame.label("pnLabel"), m_db.findByID(device).partNumber);
    }
}

void tst_PageMicroSysIPGenDlg::helpStyle_data()
{
    QTest::addColumn<QColor>("base");
    QTest::addColumn<QString>("text");
    QTest::newRow("just below 100") << QColor(99, 99, 99) << "rgb(255, 255, 255)";
    QTest::newRow("exactly 100") << QColor(100, 100, 100) << "rgb(0, 0, 0)";
    // 0.587 * 122 + 0.114 * 249 is 100.0 exactly as well.
    QTest::newRow("exactly 100, coloured") << QColor(0, 122, 249) << "rgb(0, 0, 0)";
}

void tst_PageMicroSysIPGenDlg::helpStyle()
{
    QFETCH(QColor, base);
    QFETCH(QString, text);

    const QString path = m_tmp.filePath(QStringLiteral("help.html"));
    QVERIFY(writeFile(path, "<html><body><h1>T</h1><p>P</p><ul><li>L</li></ul></body></html>"));
    const QPalette saved = QApplication::palette();
    QPalette palette = saved;
    palette.setColor(QPalette::Active, QPalette::Base, base);
    QApplication::setPalette(palette);

    Frame frame;
    frame.setCreating(m_tmp.path(), m_db.findByID(QLatin1String(kDeviceWithVersion)));
    HelpProtocol protocol;
    protocol.page = path;
    frame.showIPView(&protocol);
    QApplication::setPalette(saved);

    // The protocol learns the dialog's device before it names its page.
    QCOMPARE(protocol.device.id, QLatin1String(kDeviceWithVersion));
    QTRY_VERIFY(frame.settled());
    const QString html = frame.help()->page()->mainFrame()->toHtml();
    QCOMPARE(frame.computed("body", "background-color"),
             QStringLiteral("rgb(%1, %2, %3)").arg(base.red()).arg(base.green()).arg(base.blue()));
    for (const char *element : {"h1", "p", "li"})
        QCOMPARE(frame.computed(element, "color"), text);

    // A page that cannot be read leaves the pane as it was.
    protocol.page = m_tmp.filePath(QStringLiteral("missing.html"));
    frame.showIPView(&protocol);
    frame.showIPView(static_cast<IPSERDESIP::BaseProtocol *>(nullptr));
    QCOMPARE(frame.help()->page()->mainFrame()->toHtml(), html);
}

void tst_PageMicroSysIPGenDlg::helpPagesOfTheCore_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("heading");
    for (const auto &page :
         {std::make_pair("xaui.html", "XAUI"), std::make_pair("edp_rx_information.html", "eDP RX"),
          std::make_pair("edp_tx_information.html", "eDP TX")})
        QTest::newRow(page.first) << QString(page.first) << QString(page.second);
}

void tst_PageMicroSysIPGenDlg::helpPagesOfTheCore()
{
    QFETCH(QString, page);
    QFETCH(QString, heading);

    Frame frame;
    frame.showIPView(page);
    QTRY_VERIFY(frame.settled());
    QCOMPARE(frame.evaluate("document.getElementsByTagName('h1')[0].textContent"), heading);
    QCOMPARE(frame.evaluate("String(document.images.length)"), QStringLiteral("1"));
    QTRY_COMPARE(frame.evaluate("String(document.images[0].naturalWidth > 0)"),
                 QStringLiteral("true"));
}

void tst_PageMicroSysIPGenDlg::helpLinksLeaveThePane()
{
    QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "openUrl");
    const QString path = m_tmp.filePath(QStringLiteral("link.html"));
    QVERIFY(writeFile(path, "<html><body><p><a id=\"out\" href=\"https://example.org/datasheet\">"
                            "datasheet</a></p></body></html>"));
    Frame frame;
    HelpProtocol protocol;
    protocol.page = path;
    frame.showIPView(&protocol);
    QTRY_VERIFY(frame.settled());
    const QUrl shown = frame.help()->url();
    frame.evaluate("document.getElementById('out').click()");
    QTRY_COMPARE(m_opened, QList<QUrl>{QUrl(QStringLiteral("https://example.org/datasheet"))});
    QCOMPARE(frame.help()->url(), shown);
    QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
}

void tst_PageMicroSysIPGenDlg::browseAndOptions()
{
    Frame frame;
    frame.setCreating(m_tmp.path(), m_db.findByID(QLatin1String(kDeviceWithVersion)));
    frame.setFileName(QStringLiteral("renamed"));

    // The default name is appended, never the File Name field; cancelling
    // keeps the field.
    frame.uiSetCreateIn(QStringLiteral("/kept"));
    for (const QString &chosen : {QString(), m_tmp.path()}) {
        answerDirectoryDialog(chosen);
        QTest::mouseClick(frame.widget<QPushButton>("btnBrowse"), Qt::LeftButton);
    }
    QCOMPARE(frame.uiCreateIn(), QDir::toNativeSeparators(m_tmp.path() + "/serdes"));
    QCOMPARE(IPSERDESIP::serdes::instance()->workingDir(), frame.uiCreateIn());

    QVERIFY(frame.checkFileOptions().isEmpty());
    frame.widget<QLineEdit>("editCreateIn")->clear();
    QCOMPARE(frame.checkFileOptions(), QStringList{"\"Create In\" can not be empty."});

    MessageBoxAnswers answers;
    frame.showErrorMsg({QStringLiteral("first"), QStringLiteral("second")});
    QCOMPARE(answers.boxes.size(), 1);
    compareErrorBox(answers.boxes.first(),
                    "The following errors occurred while customizing IP, plese check and correct.");
    QCOMPARE(answers.boxes.first().details, QStringLiteral("first\nsecond"));

    QPushButton *ok = frame.widget<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Ok);
    frame.setOPtoinsAvailable(false);
    QVERIFY(!frame.widget<QWidget>("wgtContainer")->isEnabled() && !ok->isEnabled());
    frame.setOPtoinsAvailable(true);
    QVERIFY(frame.widget<QWidget>("wgtContainer")->isEnabled() && ok->isEnabled());
    frame.show();
    QTest::mouseClick(ok, Qt::LeftButton);
    QCOMPARE(frame.result(), int(QDialog::Accepted));
}

// How an existing directory is asked about is the protocol frame's too, and
// tested there; this frame differs in the question's title, its own error box,
// and that an opened configuration never asks.
void tst_PageMicroSysIPGenDlg::checkFileExisting_data()
{
    QTest::addColumn<QString>("createIn");
    QTest::addColumn<bool>("opening");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QString>("title"); // empty: no message box
    QTest::newRow("exists, cancel") << "existing" << false << false << "Confirm";
    QTest::newRow("made") << "new/deeper" << false << true << "";
    QTest::newRow("cannot be made") << "afile/below" << false << false << "Error";
    QTest::newRow("opening never looks") << "afile/below" << true << true << "";
}

void tst_PageMicroSysIPGenDlg::checkFileExisting()
{
    QFETCH(QString, createIn);
    QFETCH(bool, opening);
    QFETCH(bool, result);
    QFETCH(QString, title);

    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("existing")));
    QVERIFY(writeFile(dir.filePath(QStringLiteral("afile")), "not a directory"));
    Frame frame;
    if (opening)
        frame.setOpening(dir.path(), writeIpc(m_tmp, {{"target_device", kDeviceWithVersion}}));
    const QString path = dir.filePath(createIn);
    frame.widget<QLineEdit>("editCreateIn")->setText(path);

    MessageBoxAnswers answers(QMessageBox::Cancel);
    QCOMPARE(frame.checkFileExisting(), result);
    QCOMPARE(answers.boxes.size(), title.isEmpty() ? 0 : 1);
    if (title == QLatin1String("Confirm"))
        QCOMPARE(answers.boxes.first().title, title);
    else if (!title.isEmpty())
        compareErrorBox(
            answers.boxes.first(),
            QStringLiteral("Failed to create path \"%1\"").arg(QDir::toNativeSeparators(path)));
    QCOMPARE(QFileInfo(path).isDir(), !createIn.startsWith(QLatin1String("afile")));
}

QTEST_MAIN(tst_PageMicroSysIPGenDlg)
#include "tst_pagemicrosysipgendlg.moc"
