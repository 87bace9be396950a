// SPDX-License-Identifier: MIT
#include "protocol/protocolgendlg.h"

#include "model/serdes.h"
#include "plugin/serdesipconstants.h"
#include "protocol/confirmdirectory.h"
#include "ui_gendlg.h"

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <ipcore/ipcorefile.h>
#include <utils/messages.h>

#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QRegularExpressionValidator>
#include <QSplitter>
#include <QTabBar>
#include <QUrl>

namespace IPSERDESIP {

namespace {

// Past the third the ending is always "th" ("m_21th", not "m_21st"): module
// names already saved in configurations were formed this way.
QString numberedModuleName(const QString &base, int n)
{
    switch (n) {
    case 1:
        return QStringLiteral("%1_1st").arg(base);
    case 2:
        return QStringLiteral("%1_2nd").arg(base);
    case 3:
        return QStringLiteral("%1_3rd").arg(base);
    default:
        return QStringLiteral("%1_%2th").arg(base).arg(n);
    }
}

QString nativeDir(const QString &path)
{
    return QDir::toNativeSeparators(QDir(path).path());
}

} // namespace

protocolGenDlg::protocolGenDlg(QWidget *parent)
    : QDialog(parent)
    , m_ui(new Ui_genDlg)
{
    m_ui->setupUi(this);

    m_ui->banner->setBackgroundRole(QPalette::Base);
    QFont title = m_ui->label->font();
    title.setBold(true);
    title.setPointSizeF(title.pointSizeF() * 1.25);
    m_ui->label->setFont(title);

    auto *splitter = new QSplitter(Qt::Horizontal, this);
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(m_ui->figure);
    splitter->addWidget(m_ui->general);
    splitter->setSizes({270, 560});
    splitter->setStretchFactor(1, 1);
    m_ui->bodyLayout->addWidget(splitter);

    m_ui->editFileName->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("[A-Za-z0-9_]*")), m_ui->editFileName));
    m_ui->editModuleName->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("[A-Za-z]+[A-Za-z0-9_]*")), m_ui->editModuleName));

    m_ui->synToolComboBox->hide();
    m_ui->labelSynTool->hide();
    hideHelp();

    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &protocolGenDlg::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_ui->buttonBox, &QDialogButtonBox::helpRequested, this, &protocolGenDlg::onBtnHelp);
    connect(m_ui->btnBrowse, &QPushButton::clicked, this, &protocolGenDlg::onBtnBrowse);
    connect(m_ui->editModuleName, &QLineEdit::textChanged, m_ui->figure,
            &Utils::ModuleFigureView::setModuleName);
}

protocolGenDlg::~protocolGenDlg()
{
    delete m_ui;
}

void protocolGenDlg::dialogDidPrepare()
{}

int protocolGenDlg::uiAddTab(QWidget *page, const QString &title)
{
    return m_ui->tabOptions->addTab(page, title);
}

void protocolGenDlg::uiSetFigurePins(const QList<Utils::PinFigure> &pins)
{
    m_ui->figure->setPins(pins);
}

void protocolGenDlg::uiSetLabelText(const QString &text)
{
    m_ui->label->setText(text);
}

void protocolGenDlg::uiSetDefaultFileName(const QString &name)
{
    m_defaultFileName = name;
    m_ui->editFileName->setText(name);
}

void protocolGenDlg::uiSetModuleName(const QString &name)
{
    m_ui->editModuleName->setText(name);
}

void protocolGenDlg::uiSetModuleNameReadOnly(bool readOnly)
{
    m_ui->editModuleName->setReadOnly(readOnly);
}

void protocolGenDlg::uiSetModuleNameColor()
{
    QPalette palette = m_ui->editModuleName->palette();
    palette.setColor(QPalette::Base, palette.color(QPalette::Disabled, QPalette::Base));
    m_ui->editModuleName->setPalette(palette);
}

QString protocolGenDlg::moduleName() const
{
    return m_ui->editModuleName->text();
}

QString protocolGenDlg::fileName() const
{
    return m_ui->editFileName->text();
}

QString protocolGenDlg::createPath() const
{
    return QDir(m_ui->editCreateIn->text()).path();
}

int protocolGenDlg::uiLanguageIndex() const
{
    return m_ui->comboBoxLanguage->currentIndex();
}

void protocolGenDlg::uiSetLanguageIndex(int index)
{
    m_ui->comboBoxLanguage->setCurrentIndex(index);
}

QString protocolGenDlg::uiSynthesisTool() const
{
    return m_ui->synToolComboBox->currentText();
}

void protocolGenDlg::uiSetSynthesisTool(const QString &tool)
{
    const int index = m_ui->synToolComboBox->findText(tool);
    if (index >= 0)
        m_ui->synToolComboBox->setCurrentIndex(index);
}

void protocolGenDlg::uiSetSynTools(const QStringList &tools)
{
    m_ui->synToolComboBox->clear();
    m_ui->synToolComboBox->addItems(tools);
}

void protocolGenDlg::uiSetButtonOKEnabled(bool enabled)
{
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(enabled);
}

void protocolGenDlg::uiSetButtonHelpEnabled(bool enabled)
{
    m_ui->buttonBox->button(QDialogButtonBox::Help)->setEnabled(enabled);
}

void protocolGenDlg::setOptionsAvailable(bool available)
{
    m_ui->tabOptions->setEnabled(available);
    uiSetButtonOKEnabled(available);
}

void protocolGenDlg::uiHideTabOptionLabel(int index)
{
    const QList<QTabBar *> bars = m_ui->tabOptions->findChildren<QTabBar *>();
    if (index >= 0 && index < bars.size())
        bars.at(index)->hide();
}

void protocolGenDlg::fileNameConnectCreatIn()
{
    m_ui->editCreateIn->setEnabled(false);
    m_ui->btnBrowse->setEnabled(false);
    connect(m_ui->editFileName, &QLineEdit::textChanged, this, &protocolGenDlg::setCreatPath,
            Qt::UniqueConnection);
}

void protocolGenDlg::hideHelp()
{
    m_ui->buttonBox->button(QDialogButtonBox::Help)->hide();
}

void protocolGenDlg::setCreating(const QString &createPath, const DEV::DeviceArg &device)
{
    m_opening = false;
    m_createPath = createPath;
    const QString dir = nativeDir(createPath);
    m_ui->editCreateIn->setText(dir + QLatin1Char('/') + m_defaultFileName);

    m_device = device;
    showDevice();

    // Propose names that no instance of the configuration has taken yet.
    const serdes *model = serdes::instance();
    const QString fileBase = m_ui->editFileName->text();
    QString file = fileBase;
    for (int n = 1; model->fileNames.contains(file); ++n)
        file = QStringLiteral("%1_%2").arg(fileBase).arg(n);
    m_ui->editFileName->setText(file);
    m_ui->editCreateIn->setText(dir + QLatin1Char('/') + file);

    const QString moduleBase = m_ui->editModuleName->text();
    QString module = moduleBase;
    for (int n = 1; model->moduleNames.contains(module); ++n)
        module = numberedModuleName(moduleBase, n);
    m_ui->editModuleName->setText(module);

    dialogDidPrepare();
}

bool protocolGenDlg::setOpening(const QMap<QString, QVariant> &args)
{
    m_ui->editCreateIn->setReadOnly(true);
    m_ui->editCreateIn->setEnabled(false);
    m_ui->btnBrowse->setEnabled(false);
    // Kept although only setCreating fills it: a dialog whose path follows
    // the file name (fileNameConnectCreatIn) rewrites "Create In" when
    // fillFileInfo sets the name below, and without the configuration's
    // directory here the user would see, and the instance would be written
    // to, "./<file>" relative to wherever the generator was started.
    m_createPath = serdes::instance()->workingDir();
    m_ui->editCreateIn->setText(nativeDir(m_createPath) + QLatin1Char('/')
                                + args.value(QLatin1String(FILE_NAME)).toString());
    m_opening = true;

    fillFileInfo(args);
    setDevice(args);
    m_ui->comboBoxLanguage->setEnabled(false);
    m_ui->editFileName->setEnabled(false);

    dialogDidPrepare();
    return restoreArgs(args);
}

void protocolGenDlg::fillFileInfo(const QMap<QString, QVariant> &args)
{
    const QString module = args.value(QLatin1String(MODULE_NAME)).toString();
    if (!module.isEmpty())
        m_ui->editModuleName->setText(module);
    m_ui->editFileName->setText(args.value(QLatin1String(FILE_NAME)).toString());
}

void protocolGenDlg::setDevice(const QMap<QString, QVariant> &args)
{
    DEV::DeviceArg device;
    const QString id = args.value(QLatin1String(IPCore::Info::KEY_IP_DEVICE)).toString();
    if (!id.isEmpty())
        device = Core::IdeCore::deviceDataBase()->findByID(id);

    if (!device.id.isEmpty()) {
        m_device = device;
        showDevice();
        return;
    }
    Utils::showMessage(this, QMessageBox::Warning, tr("Warning"),
                       tr("IPC file device information is lost."));
}

void protocolGenDlg::showDevice()
{
    m_ui->label_device->setText(m_device.name);
    m_ui->label_pn->setText(m_device.partNumber);
    m_ui->labelDeviceVersion->setText(m_device.version);
    const bool hasVersion = !m_device.version.isEmpty();
    m_ui->labelDeviceVersion->setVisible(hasVersion);
    m_ui->labelDeviceVersionTitle->setVisible(hasVersion);
}

void protocolGenDlg::setCreatPath(const QString &text)
{
    m_ui->editCreateIn->setText(nativeDir(m_createPath) + QLatin1Char('/') + text);
}

void protocolGenDlg::onBtnBrowse()
{
    const QString dir = QFileDialog::getExistingDirectory(
        this, tr("Select Directory"), m_ui->editCreateIn->text(), QFileDialog::ShowDirsOnly);
    if (dir.isEmpty())
        return;
    // The default name, not the field's: every instance gets a directory of
    // its own inside the chosen one, whatever its file is called.
    m_ui->editCreateIn->setText(nativeDir(dir) + QLatin1Char('/') + m_defaultFileName);
}

void protocolGenDlg::onBtnHelp()
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(m_helpFile));
}

QStringList protocolGenDlg::checkFileOptions()
{
    QStringList errors;
    if (m_ui->editFileName->text().isEmpty())
        errors << tr("\"File Name\" can not be empty.");
    if (m_ui->editCreateIn->text().isEmpty())
        errors << tr("\"Create In\" can not be empty.");
    if (m_ui->editModuleName->text().isEmpty())
        errors << tr("\"Module Name\" can not be empty.");
    return errors;
}

bool protocolGenDlg::checkFileExisting()
{
    if (m_opening)
        return true;

    const QString path = m_ui->editCreateIn->text();
    const DirectoryAnswer answer = confirmDirectory(this, path, tr("Warning"));
    if (answer != DirectoryAnswer::NotMade)
        return answer == DirectoryAnswer::Ready;
    Utils::showMessage(this, QMessageBox::NoIcon, tr("Error"),
                       tr("Failed to create path \"%1\"").arg(QDir::toNativeSeparators(path)));
    return false;
}

bool protocolGenDlg::checkModuleName()
{
    if (!IPCore::getPrimitiveNames().contains(m_ui->editModuleName->text()))
        return true;
    Utils::showMessage(this, QMessageBox::NoIcon, tr("Error"),
                       tr("Moudle name is the same as primitive name !"));
    return false;
}

void protocolGenDlg::showErrorMsg(const QStringList &errors)
{
    Utils::showMessage(this, QMessageBox::NoIcon, tr("Error"),
                       tr("The following errors occurred while customizing IP, plese check "
                          "and correct."),
                       errors);
}

} // namespace IPSERDESIP
