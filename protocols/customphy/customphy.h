// SPDX-License-Identifier: MIT
#pragma once

#include <protocol/baseprotocol.h>

// The general protocol: any free lanes, at rates, widths and codings of the
// user's choice, each quad clocked from a PLL of its own choice. Its parameter
// map is described with CustomPhySettings.
class CustomPhy : public IPSERDESIP::BaseProtocol
{
    Q_OBJECT

public:
    explicit CustomPhy(const QString &path);

    QMap<QString, QVariant> create(const QString &createPath,
                                   const DEV::DeviceArg &device) override;
    QMap<QString, QVariant> edit(const QMap<QString, QVariant> &args) override;
    IPSERDESIP::Message *createMessage(const QMap<QString, QVariant> &args) override;
    bool generate(const QMap<QString, QVariant> &args, QStringList &iniLines, QStringList &csrLines,
                  QStringList &modArgs, QString &outputFile, bool fullRun) override;
    bool validate(const QMap<QString, QVariant> &args, QStringList &errors) const override;
    QString version() const override;
    QString id() const override;
    QString name() const override;
    QStringList category() const override;
    QString summaryFile() const override;
    bool isSupported(const DEV::DeviceArg &device) const override;

private:
    // The directory of the plug-in's file, where its help page lies.
    QString m_path;
};
