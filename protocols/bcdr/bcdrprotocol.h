// SPDX-License-Identifier: MIT
#pragma once

#include <protocol/baseprotocol.h>

// A burst-mode CDR receiver: receive-only lanes whose RX lines are clocked by
// a PLL and oversampled, so that a burst is taken without waiting for a CDR to
// lock. Its requests are of the type "BCDR", which the model places with the
// RX lines on PLLs. The keys of its parameter map are those of Bcdr::Key.
class BcdrProtocol : public IPSERDESIP::BaseProtocol
{
    Q_OBJECT

public:
    // `path`: the plug-in's directory, where the help page lies.
    explicit BcdrProtocol(const QString &path, QObject *parent = nullptr);

    QMap<QString, QVariant> create(const QString &createPath,
                                   const DEV::DeviceArg &device) override;
    QMap<QString, QVariant> edit(const QMap<QString, QVariant> &args) override;
    IPSERDESIP::Message *createMessage(const QMap<QString, QVariant> &args) override;
    // Parameter lines always; with fullRun the module file "<file>.v" in the
    // instance's directory, and the module generator's port lines.
    bool generate(const QMap<QString, QVariant> &args, QStringList &iniLines, QStringList &csrLines,
                  QStringList &modArgs, QString &outputFile, bool fullRun) override;
    bool validate(const QMap<QString, QVariant> &args, QStringList &errors) const override;
    QString version() const override;
    QString id() const override;
    QString name() const override;
    QStringList category() const override;
    QString summaryFile() const override;
    // Every device with transceivers: the receiver's settings translate on
    // all three tiers.
    bool isSupported(const DEV::DeviceArg &device) const override;

private:
    QString m_path;
};
