// SPDX-License-Identifier: MIT
#include "reconfig/reconfiguration.h"

#include "plugin/serdesipconstants.h"
#include "reconfig/csrtask.h"
#include "tiers/tier.h"
#include "ui_reconfiguration.h"

#include <utils/messages.h>

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QIcon>
#include <QLocale>
#include <QMessageBox>
#include <QPixmap>
#include <QProcess>
#include <QSaveFile>
#include <QTextStream>

#include <algorithm>
#include <memory>

namespace IPSERDESIP {

namespace {

// The generator's output, relative: it lies in the working directory that the
// generator inherits.
const char TASK_OUTPUT[] = "config_tmp.csr";

constexpr int TASK_TIMEOUT_MS = 30000;

void appendIfVisible(QStringList &options, const char *flag, const QDoubleSpinBox *box)
{
    if (box->isVisible())
        options << QLatin1String(flag) << box->text();
}

QString refMuxSelect(const QComboBox *box)
{
    return box->currentText() == QLatin1String("REFMUX0") ? QStringLiteral("0")
                                                          : QStringLiteral("1");
}

// The first item is "Auto", which a translation may word differently.
QString manualSelect(const QComboBox *box)
{
    return box->currentIndex() == 0 ? QStringLiteral("0") : QStringLiteral("1");
}

} // namespace

reconfiguration::reconfiguration(QWidget *parent)
    : QDialog(parent)
    , ui(new Ui_configUI)
{
    setWindowTitle(tr("Reconfiguration"));
    // The values go to the generator as the spin boxes show them, and it reads
    // numbers with a decimal point whatever the user's locale.
    setLocale(QLocale::c());
    ui->setupUi(this);

    connect(ui->checkBoxTxDataRateEnable, &QCheckBox::toggled, this,
            &reconfiguration::onTxDataRateEnableUpdate);
    connect(ui->checkBoxRxDataRateEnable, &QCheckBox::toggled, this,
            &reconfiguration::onRxDateRateEnableUpdate);
    connect(ui->checkBoxLoopbackEnable, &QCheckBox::toggled, this,
            &reconfiguration::onLoopBackUpdate);
    connect(ui->checkBoxTXAFEEnable, &QCheckBox::toggled, this, &reconfiguration::onTxAFEUpdate);
    connect(ui->checkBoxRXAFEEnable, &QCheckBox::toggled, this, &reconfiguration::onRxAFEUpdate);
    connect(ui->pushButtonDisableAll, &QPushButton::clicked, this, &reconfiguration::onDisableAll);
    connect(ui->pushButtonExport, &QPushButton::clicked, this, &reconfiguration::onExport);

    onTxDataRateEnableUpdate();
    onRxDateRateEnableUpdate();
    onLoopBackUpdate();
    onTxAFEUpdate();
    onRxAFEUpdate();

    // The receive front end is not offered for reconfiguration, and nothing
    // shows the group again. Its widgets and task stay so that the export
    // keeps its full set of tasks.
    ui->groupBox_9->setVisible(false);
    // A spin box writes out its value only when it is first shown or changed,
    // and the task of the hidden group reads its values as text all the same.
    for (QSpinBox *box : {ui->spinBoxBIAS, ui->spinBoxATTBOOST, ui->spinBoxATT, ui->spinBoxBoost})
        box->setValue(box->value());
}

reconfiguration::~reconfiguration()
{
    delete ui;
}

void reconfiguration::setDevice(const DEV::DeviceArg &device)
{
    this->device = device;
}

void reconfiguration::setExportDirectory(const QString &dir)
{
    m_exportDirectory = dir;
}

void reconfiguration::dialogDidPrepare()
{
    const bool showSecondQuad = tierDescription(tierOf(device.family)).formQuads > 1;
    QWidget *const secondQuad[] = {
        ui->groupBox_4,
        ui->labelTXQ1RefMux0Freq,
        ui->labelTXQ1RefMux1Freq,
        ui->labelRXQ1RefMux0Freq,
        ui->labelRXQ1RefMux1Freq,
        ui->doubleSpinBoxTXQ1RefMux0Freq,
        ui->doubleSpinBoxTXQ1RefMux1Freq,
        ui->doubleSpinBoxRXQ1RefMux0Freq,
        ui->doubleSpinBoxRXQ1RefMux1Freq,
    };
    for (QWidget *widget : secondQuad)
        widget->setVisible(showSecondQuad);
}

void reconfiguration::onTxDataRateEnableUpdate()
{
    const bool enabled = ui->checkBoxTxDataRateEnable->isChecked();
    QWidget *const widgets[] = {
        ui->doubleSpinBoxTXDataRate,
        ui->doubleSpinBoxTXQ0RefMux0Freq,
        ui->doubleSpinBoxTXQ0RefMux1Freq,
        ui->doubleSpinBoxTXQ1RefMux0Freq,
        ui->doubleSpinBoxTXQ1RefMux1Freq,
        ui->comboBoxPMAWidth,
        ui->comboBoxTXPLL,
        ui->comboBoxTXRefClkMux,
    };
    for (QWidget *widget : widgets)
        widget->setEnabled(enabled);
}

void reconfiguration::onRxDateRateEnableUpdate()
{
    const bool enabled = ui->checkBoxRxDataRateEnable->isChecked();
    QWidget *const widgets[] = {
        ui->doubleSpinBoxRXDataRate,      ui->doubleSpinBoxRXQ0RefMux0Freq,
        ui->doubleSpinBoxRXQ0RefMux1Freq, ui->doubleSpinBoxRXQ1RefMux0Freq,
        ui->doubleSpinBoxRXQ1RefMux1Freq, ui->comboBoxRXRefclkMux,
    };
    for (QWidget *widget : widgets)
        widget->setEnabled(enabled);
}

void reconfiguration::onLoopBackUpdate()
{
    ui->comboBoxLoopBackMode->setEnabled(ui->checkBoxLoopbackEnable->isChecked());
}

void reconfiguration::onTxAFEUpdate()
{
    const bool enabled = ui->checkBoxTXAFEEnable->isChecked();
    QWidget *const widgets[] = {
        ui->comboBoxTXAFEMode,
        ui->spinBoxFFECM,
        ui->spinBoxTXSwingLevel,
        ui->spinBoxFFEC1,
    };
    for (QWidget *widget : widgets)
        widget->setEnabled(enabled);
}

void reconfiguration::onRxAFEUpdate()
{
    const bool enabled = ui->checkBoxRXAFEEnable->isChecked();
    QWidget *const widgets[] = {
        ui->spinBoxBIAS,  ui->spinBoxATTBOOST,     ui->spinBoxATT,
        ui->spinBoxBoost, ui->comboBoxRXAFEEQMode,
    };
    for (QWidget *widget : widgets)
        widget->setEnabled(enabled);
}

void reconfiguration::onDisableAll()
{
    ui->checkBoxTxDataRateEnable->setChecked(false);
    ui->checkBoxRxDataRateEnable->setChecked(false);
    ui->checkBoxLoopbackEnable->setChecked(false);
    ui->checkBoxTXAFEEnable->setChecked(false);
    ui->checkBoxRXAFEEnable->setChecked(false);
}

QStringList reconfiguration::getTxDataRateOptions() const
{
    const QString pll = ui->comboBoxTXPLL->currentText();
    int source = 0;
    if (pll == QLatin1String("QPLL0"))
        source = 1;
    else if (pll == QLatin1String("QPLL1"))
        source = 2;

    QStringList options{QStringLiteral("--tx_data_rate"),   ui->doubleSpinBoxTXDataRate->text(),
                        QStringLiteral("--pcs_tx_clk_src"), QString::number(source),
                        QStringLiteral("--pll_ref_sel"),    refMuxSelect(ui->comboBoxTXRefClkMux)};
    appendIfVisible(options, "--q0_refmux0_freq", ui->doubleSpinBoxTXQ0RefMux0Freq);
    appendIfVisible(options, "--q0_refmux1_freq", ui->doubleSpinBoxTXQ0RefMux1Freq);
    appendIfVisible(options, "--q1_refmux0_freq", ui->doubleSpinBoxTXQ1RefMux0Freq);
    appendIfVisible(options, "--q1_refmux1_freq", ui->doubleSpinBoxTXQ1RefMux1Freq);
    options << QStringLiteral("--width_mode") << ui->comboBoxPMAWidth->currentText();
    return options;
}

QStringList reconfiguration::getRxDataRateOptions() const
{
    QStringList options{QStringLiteral("--rx_data_rate"), ui->doubleSpinBoxRXDataRate->text(),
                        QStringLiteral("--cdr_calc_src"), refMuxSelect(ui->comboBoxRXRefclkMux)};
    appendIfVisible(options, "--q0_refmux0_freq", ui->doubleSpinBoxRXQ0RefMux0Freq);
    appendIfVisible(options, "--q0_refmux1_freq", ui->doubleSpinBoxRXQ0RefMux1Freq);
    appendIfVisible(options, "--q1_refmux0_freq", ui->doubleSpinBoxRXQ1RefMux0Freq);
    appendIfVisible(options, "--q1_refmux1_freq", ui->doubleSpinBoxRXQ1RefMux1Freq);
    return options;
}

QStringList reconfiguration::getLoopbackOptions() const
{
    const QString mode = ui->comboBoxLoopBackMode->currentText();
    QString state;
    QString sentMode;
    if (mode == QLatin1String("OFF")) {
        // The generator wants a mode even to switch loopback off.
        state = QStringLiteral("OFF");
        sentMode = QStringLiteral("LB_NES");
    } else if (mode == QLatin1String("LB_NES") || mode == QLatin1String("LB_ENC")) {
        state = QStringLiteral("ON");
        sentMode = mode;
    } else {
        return {};
    }
    return {QStringLiteral("--lb_state"), state, QStringLiteral("--lb_mode"), sentMode};
}

QStringList reconfiguration::getTxAFEOptions() const
{
    return {QStringLiteral("--ffe_manual"), manualSelect(ui->comboBoxTXAFEMode),
            QStringLiteral("--txlev"),      ui->spinBoxTXSwingLevel->text(),
            QStringLiteral("--ffe_cm"),     ui->spinBoxFFECM->text(),
            QStringLiteral("--ffe_c1"),     ui->spinBoxFFEC1->text()};
}

QStringList reconfiguration::getRxAFEOptions() const
{
    return {QStringLiteral("--rx_eq_bias"),      ui->spinBoxBIAS->text(),
            QStringLiteral("--dr_rx_att_boost"), ui->spinBoxATTBOOST->text(),
            QStringLiteral("--eq_manual"),       manualSelect(ui->comboBoxRXAFEEQMode),
            QStringLiteral("--dr_rx_att"),       ui->spinBoxATT->text(),
            QStringLiteral("--dr_rx_boost"),     ui->spinBoxBoost->text()};
}

QStringList reconfiguration::getLaneOptions() const
{
    return {QString::number(laneMask())};
}

int reconfiguration::laneMask() const
{
    const QCheckBox *const lanes[] = {
        ui->checkBoxq0ln0, ui->checkBoxq0ln1, ui->checkBoxq0ln2, ui->checkBoxq0ln3,
        ui->checkBoxq1ln0, ui->checkBoxq1ln1, ui->checkBoxq1ln2, ui->checkBoxq1ln3,
    };
    int mask = 0;
    for (int bit = 0; bit < 8; ++bit) {
        // A lane of a hidden quad does not exist on the device, checked or not.
        if (lanes[bit]->isChecked() && lanes[bit]->isVisible())
            mask |= 1 << bit;
    }
    return mask;
}

void reconfiguration::onExport()
{
    struct Task
    {
        const QCheckBox *enable;
        const char *name;
        QStringList (reconfiguration::*options)() const;
    };
    const Task tasks[] = {
        {ui->checkBoxTxDataRateEnable, "cfg_tx_dr", &reconfiguration::getTxDataRateOptions},
        {ui->checkBoxRxDataRateEnable, "cfg_rx_dr", &reconfiguration::getRxDataRateOptions},
        {ui->checkBoxLoopbackEnable, "cfg_lb", &reconfiguration::getLoopbackOptions},
        {ui->checkBoxTXAFEEnable, "cfg_tx_afe", &reconfiguration::getTxAFEOptions},
        {ui->checkBoxRXAFEEnable, "cfg_rx_afe", &reconfiguration::getRxAFEOptions},
    };

    // Refused before a file is asked for: such an export would write an empty
    // script over the chosen file, or a generator run for no lane would fail.
    QStringList missing;
    if (laneMask() == 0)
        missing << tr("No lane is checked. Check at least one lane under \"%1\" to export.")
                       .arg(ui->groupBox->title());
    if (std::none_of(std::begin(tasks), std::end(tasks),
                     [](const Task &task) { return task.enable->isChecked(); }))
        missing << tr("No task is enabled. Check \"Enable\" for at least one task to export.");
    if (!missing.isEmpty()) {
        Utils::showMessage(this, QMessageBox::Warning, tr("Warning"),
                           missing.join(QLatin1Char('\n')));
        return;
    }

    QString proposal = m_lastExport;
    if (proposal.isEmpty())
        proposal = m_exportDirectory.isEmpty()
                       ? QStringLiteral("reconfigure.csr")
                       : QDir(m_exportDirectory).filePath(QStringLiteral("reconfigure.csr"));
    const QString fileName
        = QFileDialog::getSaveFileName(this, tr("Export File"), proposal, tr("CSR(*.csr)"));
    if (fileName.isEmpty())
        return;
    m_lastExport = fileName;

    QByteArray data;
    bool ok = true;
    for (const Task &task : tasks) {
        if (!task.enable->isChecked() || !ok)
            continue;
        const QStringList args
            = csrTaskArguments(QLatin1String(task.name), getLaneOptions(), (this->*task.options)());
        data += runProcessAndGetCsr(args, ok);
    }

    // Written after a failed task too, with what the tasks before it gave: the
    // user has been told which task failed. A file that cannot be written
    // whole keeps what it held.
    const QString shownName = QDir::toNativeSeparators(fileName);
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit()) {
        Utils::showMessage(this, QMessageBox::NoIcon, tr("Error"),
                           tr("Failed to write \"%1\": %2").arg(shownName, file.errorString()));
        return;
    }
    if (!ok)
        return;

    // What is counted is the file's records, one a line: each stands for one
    // line of the generator's output that starts with "upar_write_driver", a
    // short one included.
    const int writes = data.count('\n');
    const QString text = writes == 1 ? tr("Exported 1 register write to \"%1\".").arg(shownName)
                                     : tr("Exported %1 register writes to \"%2\".")
                                           .arg(QString::number(writes), shownName);
    Utils::showMessage(this, QMessageBox::Information, tr("Export"), text);
}

QByteArray reconfiguration::runProcessAndGetCsr(const QStringList &args, bool &ok)
{
    const QString path = QCoreApplication::applicationDirPath() + QLatin1Char('/')
                         + QLatin1String(APP_SERDES_CSR_TASK_GEN);
    const QString cleaned = QDir::cleanPath(path);
    if (!QFile::exists(cleaned)) {
        Utils::showMessage(this, QMessageBox::NoIcon, tr("Error"),
                           tr("Can not find %1, please check your installation.")
                               .arg(QDir::toNativeSeparators(cleaned)));
        ok = false;
        return {};
    }

    const QStringList arguments
        = args + QStringList{QStringLiteral("-o"), QLatin1String(TASK_OUTPUT)};
    auto process = std::make_unique<QProcess>();
    process->start(path, arguments, QIODevice::ReadWrite);
    // Neither a failed start nor the time limit fails the task: the exit code
    // decides. They are told apart here for whoever reads the diagnostics.
    if (!process->waitForFinished(TASK_TIMEOUT_MS))
        qWarning().noquote() << path << "did not finish:" << process->errorString();
    const int exitCode = process->exitCode();
    qDebug().noquote() << path << arguments << QStringLiteral("return %1").arg(exitCode);

    if (exitCode != 0) {
        QByteArray error = process->readAllStandardError();
        const int nul = error.indexOf('\0');
        if (nul >= 0)
            error.truncate(nul);
        const QString text = QString::fromLocal8Bit(error);
        qCritical("%s", qPrintable(text));
        const QString report = csrToolReport(text);
        qDebug("%s", qPrintable(report));
        Utils::showMessage(this, QMessageBox::NoIcon, tr("Error"), report);
        ok = false;
        return {};
    }
    // Ends a generator still running past the time limit before its file is read.
    process.reset();

    QFile output(QString::fromLatin1(TASK_OUTPUT));
    if (!output.exists() || !output.open(QIODevice::ReadOnly))
        return {};
    QTextStream in(&output);
    in.setCodec("UTF-8");
    const QByteArray records = csrRecords(in);
    output.close();
    output.remove();
    return records;
}

} // namespace IPSERDESIP
