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
    // An instance's directory is named after its file, as on reopening.
    fileNameConnectCreatIn();
    const QList<QPair<const char *, QString>> tips{
        {"editFileName", tr("Name of the instance's files, and of the folder they are written to "
                            "inside the core's folder.")},
        {"editModuleName", tr("Name of the instance's Verilog module, and of the instance in the "
                              "configuration.")},
        {"editCreateIn", tr("The folder the instance's files are written to; it follows the file "
                            "name.")},
        {"comboBoxLanguage", tr("The sample protocols write their modules in Verilog.")},
        {"synToolComboBox", tr("The synthesis tool the generated files are meant for.")}};
    for (const auto &tip : tips) {
        if (auto *field = findChild<QWidget *>(QLatin1String(tip.first)))
            field->setToolTip(tip.second);
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
