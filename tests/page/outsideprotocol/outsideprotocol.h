// SPDX-License-Identifier: MIT
#pragma once

#include <protocol/baseprotocol.h>
#include <protocol/protocolgendlg.h>
#include <protocol/protocolpackage.h>

class QSpinBox;

// A protocol dialog as a plug-in author writes it: one page of its own, the
// module's pins, and an accept() made of the frame's checks.
class OutsideDlg : public IPSERDESIP::protocolGenDlg
{
    Q_OBJECT

public:
    explicit OutsideDlg(QWidget *parent = nullptr);

    bool restoreArgs(const QMap<QString, QVariant> &args) override;
    QMap<QString, QVariant> args() const;

public slots:
    void accept() override;

private:
    QSpinBox *m_lanes;
};

// Keys of its parameter map: "file", "module", "target_device", "dir" (the
// instance's directory) and "lanes".
class OutsideProtocol : public IPSERDESIP::BaseProtocol
{
    Q_OBJECT

public:
    QMap<QString, QVariant> create(const QString &createPath,
                                   const DEV::DeviceArg &device) override;
    QMap<QString, QVariant> edit(const QMap<QString, QVariant> &args) override;
    IPSERDESIP::Message *createMessage(const QMap<QString, QVariant> &args) override;
    // Writes nothing: the plug-in exists to exercise the dialog frame.
    bool generate(const QMap<QString, QVariant> &args, QStringList &iniLines, QStringList &csrLines,
                  QStringList &modArgs, QString &outputFile, bool fullRun) override;
    bool validate(const QMap<QString, QVariant> &args, QStringList &errors) const override;
    QString id() const override;
    QString name() const override;
    QStringList category() const override;
    QString summaryFile() const override;
    bool isSupported(const DEV::DeviceArg &device) const override;
};

class OutsidePackage : public IPSERDESIP::ProtocolPackage
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.tarvexchip.plugins.ProtocolPackage/1.0")
    Q_INTERFACES(IPSERDESIP::ProtocolPackage)

public:
    QList<IPSERDESIP::BaseProtocol *> protocols() override;
};
