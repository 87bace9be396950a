// SPDX-License-Identifier: MIT
#include "outsideprotocol.h"

#include <protocol/message.h>

#include <QFormLayout>
#include <QSpinBox>

OutsideDlg::OutsideDlg(QWidget *parent)
    : protocolGenDlg(parent)
    , m_lanes(new QSpinBox)
{
    m_lanes->setObjectName(QStringLiteral("lanes"));
    m_lanes->setRange(1, 4);
    auto *page = new QWidget;
    auto *form = new QFormLayout(page);
    form->addRow(QStringLiteral("Lanes:"), m_lanes);
    uiAddTab(page, QStringLiteral("Lanes"));
    uiSetLabelText(QStringLiteral("Outside"));
    uiSetFigurePins({Utils::PinFigure(QStringLiteral("refclk"), Utils::PinFigure::Input),
                     Utils::PinFigure(QStringLiteral("tx_data"), Utils::PinFigure::Input, 32),
                     Utils::PinFigure(QStringLiteral("rx_data"), Utils::PinFigure::Output, 32)});
}

bool OutsideDlg::restoreArgs(const QMap<QString, QVariant> &args)
{
    m_lanes->setValue(args.value(QStringLiteral("lanes"), 1).toInt());
    return args.contains(QStringLiteral("lanes"));
}

QMap<QString, QVariant> OutsideDlg::args() const
{
    return {{QStringLiteral("file"), fileName()},
            {QStringLiteral("module"), moduleName()},
            {QStringLiteral("target_device"), m_device.id},
            {QStringLiteral("dir"), createPath()},
            {QStringLiteral("lanes"), m_lanes->value()}};
}

void OutsideDlg::accept()
{
    const QStringList errors = checkFileOptions();
    if (!errors.isEmpty()) {
        showErrorMsg(errors);
        return;
    }
    if (!checkModuleName() || !checkFileExisting())
        return;
    QDialog::accept();
}

QMap<QString, QVariant> OutsideProtocol::create(const QString &createPath,
                                                const DEV::DeviceArg &device)
{
    OutsideDlg dialog;
    dialog.uiSetDefaultFileName(QStringLiteral("outside"));
    dialog.uiSetModuleName(QStringLiteral("outside"));
    dialog.setCreating(createPath, device);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return dialog.args();
}

QMap<QString, QVariant> OutsideProtocol::edit(const QMap<QString, QVariant> &args)
{
    OutsideDlg dialog;
    if (!dialog.setOpening(args) || dialog.exec() != QDialog::Accepted)
        return {};
    return dialog.args();
}

IPSERDESIP::Message *OutsideProtocol::createMessage(const QMap<QString, QVariant> &args)
{
    auto *msg = new IPSERDESIP::Message;
    msg->type = name();
    msg->file = args.value(QStringLiteral("file")).toString();
    msg->module = args.value(QStringLiteral("module")).toString();
    return msg;
}

bool OutsideProtocol::generate(const QMap<QString, QVariant> &args, QStringList &iniLines,
                               QStringList &csrLines, QStringList &modArgs, QString &outputFile,
                               bool fullRun)
{
    Q_UNUSED(args)
    Q_UNUSED(iniLines)
    Q_UNUSED(csrLines)
    Q_UNUSED(modArgs)
    Q_UNUSED(outputFile)
    Q_UNUSED(fullRun)
    return false;
}

bool OutsideProtocol::validate(const QMap<QString, QVariant> &args, QStringList &errors) const
{
    if (args.value(QStringLiteral("file")).toString().isEmpty()) {
        errors << QStringLiteral("No file name.");
        return false;
    }
    return true;
}

QString OutsideProtocol::id() const
{
    return QStringLiteral("OUTSIDE");
}

QString OutsideProtocol::name() const
{
    return QStringLiteral("Outside");
}

QStringList OutsideProtocol::category() const
{
    return {QStringLiteral("Serdes"), QStringLiteral("Test")};
}

QString OutsideProtocol::summaryFile() const
{
    return QString();
}

bool OutsideProtocol::isSupported(const DEV::DeviceArg &device) const
{
    Q_UNUSED(device)
    return true;
}

QList<IPSERDESIP::BaseProtocol *> OutsidePackage::protocols()
{
    return {new OutsideProtocol};
}
