// SPDX-License-Identifier: MIT
#include "page/microsysipgendlg.h"

#include "model/serdes.h"
#include "plugin/serdesipconstants.h"
#include "protocol/baseprotocol.h"
#include "protocol/confirmdirectory.h"
#include "ui_microsysipgendlg.h"

#include <core/idecore.h>
#include <dev/chipfilter.h>
#include <dev/devicedb.h>
#include <utils/messages.h>

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QPalette>
#include <QPushButton>
#include <QSettings>
#include <QSplitter>
#include <QTextStream>
#include <QUrl>
#include <QVBoxLayout>
#include <QWebPage>
#include <QWebView>

namespace IPSERDESIP {

namespace {

const char kSynthesisTool[] = "TarvexSynthesis";

QString helpDirectory()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/../ipcore/SERDES_IP/doc/");
}

QUrl pictureBase()
{
    return QUrl::fromLocalFile(QCoreApplication::applicationDirPath()
                               + QStringLiteral("/../data/ipcores/"));
}

} // namespace

MicroSysIPGenDlg::MicroSysIPGenDlg(QWidget *parent)
    : QDialog(parent)
    , m_ui(new Ui_MicroSysIPGenDlg)
    , m_defaultFileName(QStringLiteral("serdes"))
    , m_defaultModuleName(QStringLiteral("SerDes_Top"))
{
    m_ui->setupUi(this);

    // The core has one synthesis tool; the row is kept for the configuration
    // file, which records it, but the user has nothing to choose.
    m_ui->synToolComboBox->addItem(QLatin1String(kSynthesisTool));
    m_ui->synToolComboBox->setCurrentIndex(
        m_ui->synToolComboBox->findData(QLatin1String(kSynthesisTool), Qt::DisplayRole));
    m_ui->synToolComboBox->hide();
    m_ui->language->hide();

    m_ui->comboBoxLanguage->addItem(QStringLiteral("Verilog"));

    connect(m_ui->buttonBox->button(QDialogButtonBox::Ok), &QPushButton::clicked, this,
            &QDialog::accept);
    connect(m_ui->buttonBox->button(QDialogButtonBox::Cancel), &QPushButton::clicked, this,
            &QDialog::reject);
    connect(m_ui->btnBrowse, &QPushButton::clicked, this, &MicroSysIPGenDlg::onBtnBrowse);
}

MicroSysIPGenDlg::~MicroSysIPGenDlg()
{
    delete m_ui;
}

void MicroSysIPGenDlg::dialogDidPrepare()
{}

void MicroSysIPGenDlg::setCreating(const QString &path, const DEV::DeviceArg &device)
{
    m_opening = false;
    uiSetCreateIn(
        QDir::toNativeSeparators(QDir(path).path() + QLatin1Char('/') + m_defaultFileName));
    m_ui->lineEditModuleName->setText(m_defaultModuleName);
    m_ui->lineEditFileName->setText(m_defaultFileName);
    m_device = device;
    showDevice();
    dialogDidPrepare();
}

bool MicroSysIPGenDlg::setOpening(const QString &path, const QString &file)
{
    m_ui->editCreateIn->setReadOnly(true);
    m_ui->editCreateIn->setEnabled(false);
    m_ui->btnBrowse->setEnabled(false);
    uiSetCreateIn(QDir::toNativeSeparators(QDir(path).path()));
    m_opening = true;

    QSettings settings(file, QSettings::IniFormat);
    // The device decides the model, and the model must stand before the
    // file's instances are placed on it.
    setDevice(settings);
    dialogDidPrepare();
    return parseData(file);
}

void MicroSysIPGenDlg::setDevice(QSettings &settings)
{
    DEV::DeviceDb *db = Core::IdeCore::deviceDataBase();
    DEV::DeviceArg found;
    if (settings.contains(QLatin1String(IPCore::Info::KEY_IP_DEVICE))) {
        m_fileDeviceId = settings.value(QLatin1String(IPCore::Info::KEY_IP_DEVICE)).toString();
        found = db->findByID(m_fileDeviceId);
    } else if (settings.childGroups().contains(QLatin1String(IPCore::Info::GROUP_DEVICE))) {
        settings.beginGroup(QLatin1String(IPCore::Info::GROUP_DEVICE));
        DEV::ChipFilter filter;
        filter.id = settings.value(QLatin1String(IPCore::Info::KEY_IP_DEVICE_ID)).toString();
        filter.package
            = settings.value(QLatin1String(IPCore::Info::KEY_IP_DEVICE_PACKAGE)).toString();
        filter.speed = settings.value(QLatin1String(IPCore::Info::KEY_IP_DEVICE_SPEED)).toString();
        const QList<DEV::DeviceArg> devices = db->filterDevice(filter);
        if (!devices.isEmpty())
            found = devices.first();
        settings.endGroup();
    }

    if (!found.id.isEmpty()) {
        m_device = found;
        showDevice();
        return;
    }
    // There is no way back from here: the dialog goes on with the device it
    // had, and the user learns why the summary is blank.
    Utils::showMessage(this, QMessageBox::Warning, tr("Warning"),
                       tr("IPC file device information is lost."));
}

void MicroSysIPGenDlg::showDevice()
{
    m_ui->devLabel->setText(m_device.name);
    m_ui->pnLabel->setText(m_device.partNumber);
    m_ui->labelDeviceVersion_2->setText(m_device.version);
    const bool hasVersion = !m_device.version.isEmpty();
    m_ui->labelDeviceVersion->setVisible(hasVersion);
    m_ui->labelDeviceVersion_2->setVisible(hasVersion);
}

void MicroSysIPGenDlg::uiAddWidget(QWidget *page)
{
    m_webView = new QWebView(this);
    // Links leave the pane for the system's browser, which has navigation
    // and history; the pane only ever shows the current protocol's page.
    m_webView->page()->setLinkDelegationPolicy(QWebPage::DelegateAllLinks);
    m_webView->setContextMenuPolicy(Qt::NoContextMenu);
    connect(m_webView, &QWebView::linkClicked, this, &MicroSysIPGenDlg::onLinkClicked);

    auto *splitter = new QSplitter(this);
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(page);
    splitter->addWidget(m_webView);
    splitter->setSizes({920, 580});

    auto *layout = new QVBoxLayout;
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(splitter);
    m_ui->wgtContainer->setLayout(layout);
}

void MicroSysIPGenDlg::showIPView(BaseProtocol *proto)
{
    if (!proto)
        return;
    proto->device = m_device;
    renderHelpPage(proto->summaryFile());
}

void MicroSysIPGenDlg::showIPView(QString file)
{
    const QString path = QDir::cleanPath(helpDirectory() + file);
    qDebug("%s", qPrintable(path));
    renderHelpPage(path);
}

void MicroSysIPGenDlg::renderHelpPage(const QString &path)
{
    if (!m_webView) {
        qWarning("No help pane to show \"%s\" in.", qPrintable(path));
        return;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    QTextStream in(&file);
    in.setCodec("UTF-8");
    QString html = in.readAll();

    const QColor base = QApplication::palette().brush(QPalette::Active, QPalette::Base).color();
    const int r = base.red();
    const int g = base.green();
    const int b = base.blue();
    // Perceived brightness of the base colour, 0 to 255.
    const double luminance = r * 0.299 + g * 0.587 + b * 0.114;
    const QString text = luminance < 100.0 ? QStringLiteral("white") : QStringLiteral("black");
    const QString style = QString::fromLatin1(IPCore::Constants::HTML_STYLE_OTHER)
                              .arg(r)
                              .arg(g)
                              .arg(b)
                              .arg(text, text, text);
    html.replace(QStringLiteral("<html>"), QString(QStringLiteral("<html>") + style));

    m_webView->setHtml(html, pictureBase());
}

QString MicroSysIPGenDlg::createPath() const
{
    return QDir(m_ui->editCreateIn->text()).path();
}

QString MicroSysIPGenDlg::fileName() const
{
    return m_ui->lineEditFileName->text();
}

QString MicroSysIPGenDlg::moduleName() const
{
    return m_ui->lineEditModuleName->text();
}

QString MicroSysIPGenDlg::uiCreateIn() const
{
    return m_ui->editCreateIn->text();
}

QString MicroSysIPGenDlg::uiSynthesisTool() const
{
    return m_ui->synToolComboBox->currentText();
}

int MicroSysIPGenDlg::uiLanguageIndex() const
{
    return m_ui->comboBoxLanguage->currentIndex();
}

int MicroSysIPGenDlg::uiSynthesisToolIndex() const
{
    return m_ui->synToolComboBox->currentIndex();
}

void MicroSysIPGenDlg::setFileName(const QString &name)
{
    m_ui->lineEditFileName->setText(name);
}

void MicroSysIPGenDlg::setModuleName(const QString &name)
{
    m_ui->lineEditModuleName->setText(name);
}

void MicroSysIPGenDlg::uiSetLanguageIndex(int index)
{
    // A new core is written in Verilog, the box's one row. A configuration
    // that says otherwise is a VHDL core (any index but 0 is VHDL), and the
    // box gets the row it needs to show and keep that: an index the box lacks
    // would leave it at -1, which names no language, and the top file, the
    // arbiter's synthesis and the saved file would each read it differently.
    if (index != 0 && m_ui->comboBoxLanguage->count() < 2)
        m_ui->comboBoxLanguage->addItem(QStringLiteral("VHDL"));
    m_ui->comboBoxLanguage->setCurrentIndex(index == 0 ? 0 : 1);
}

void MicroSysIPGenDlg::uiSetSynthesisTool(const QString &tool)
{
    const int index
        = m_ui->synToolComboBox->findData(tool, Qt::DisplayRole, Qt::MatchCaseSensitive);
    if (index >= 0)
        m_ui->synToolComboBox->setCurrentIndex(index);
}

void MicroSysIPGenDlg::uiSetCreateIn(const QString &path)
{
    m_ui->editCreateIn->setText(path);
    serdes::instance()->setWorkingDir(path);
}

void MicroSysIPGenDlg::uiSetCreateIn(bool enabled)
{
    m_ui->editCreateIn->setEnabled(enabled);
}

void MicroSysIPGenDlg::uiSetLanguageEnable(bool enabled)
{
    m_ui->comboBoxLanguage->setEnabled(enabled);
}

void MicroSysIPGenDlg::uiSetSynToolEnabled(bool enabled)
{
    m_ui->synToolComboBox->setEnabled(enabled);
}

void MicroSysIPGenDlg::uiSetButtonOKEnabled(bool enabled)
{
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(enabled);
}

void MicroSysIPGenDlg::setOPtoinsAvailable(bool available)
{
    m_ui->wgtContainer->setEnabled(available);
    uiSetButtonOKEnabled(available);
}

void MicroSysIPGenDlg::uiSetLabelText(const QString &text)
{
    Q_UNUSED(text)
}

QStringList MicroSysIPGenDlg::checkFileOptions()
{
    QStringList errors;
    if (m_ui->editCreateIn->text().isEmpty())
        errors << tr("\"Create In\" can not be empty.");
    return errors;
}

bool MicroSysIPGenDlg::checkFileExisting()
{
    if (m_opening)
        return true;

    const QString path = m_ui->editCreateIn->text();
    const DirectoryAnswer answer = confirmDirectory(this, path, tr("Confirm"));
    if (answer != DirectoryAnswer::NotMade)
        return answer == DirectoryAnswer::Ready;

    Utils::showMessage(this, QMessageBox::NoIcon, tr("Error"),
                       tr("Failed to create path \"%1\"").arg(QDir::toNativeSeparators(path)));
    return false;
}

void MicroSysIPGenDlg::showErrorMsg(const QStringList &errors)
{
    Utils::showMessage(this, QMessageBox::NoIcon, tr("Error"),
                       tr("The following errors occurred while customizing IP, plese "
                          "check and correct."),
                       errors);
}

void MicroSysIPGenDlg::onBtnBrowse()
{
    const QString dir = QFileDialog::getExistingDirectory(
        this, tr("Select Directory"), m_ui->editCreateIn->text(), QFileDialog::ShowDirsOnly);
    if (dir.isEmpty())
        return;
    // The core always gets a directory of its own inside the chosen one.
    uiSetCreateIn(QDir::toNativeSeparators(dir + QLatin1Char('/') + m_defaultFileName));
}

void MicroSysIPGenDlg::onBtnHelp()
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(m_helpFile));
}

void MicroSysIPGenDlg::onLinkClicked(const QUrl &url)
{
    QDesktopServices::openUrl(url);
}

} // namespace IPSERDESIP
