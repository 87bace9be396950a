// SPDX-License-Identifier: MIT
#include "sampledlg.h"

#include <QComboBox>

namespace samples {

SampleDlg::SampleDlg(QWidget *parent)
    : protocolGenDlg(parent)
{
    // The sample protocols write their modules in Verilog only; a choice of
    // VHDL here would be one the files do not follow.
    if (auto *language = findChild<QComboBox *>(QStringLiteral("comboBoxLanguage"))) {
        language->setCurrentIndex(0);
        language->setEnabled(false);
    }
}

SampleDlg::~SampleDlg() = default;

QString SampleDlg::deviceId() const
{
    return m_device.id;
}

QMap<QString, QVariant> SampleDlg::runCreating(const QString &baseName, const QString &createPath,
                                               const DEV::DeviceArg &device)
{
    uiSetDefaultFileName(baseName);
    uiSetModuleName(baseName);
    setCreating(createPath, device);
    if (exec() != QDialog::Accepted)
        return {};
    return args();
}

QMap<QString, QVariant> SampleDlg::runOpening(const QMap<QString, QVariant> &stored)
{
    if (!setOpening(stored) || exec() != QDialog::Accepted)
        return {};
    return args();
}

void SampleDlg::accept()
{
    const QStringList empty = checkFileOptions();
    if (!empty.isEmpty()) {
        showErrorMsg(empty);
        return;
    }
    if (!confirm() || !checkFileExisting())
        return;
    QDialog::accept();
}

} // namespace samples
