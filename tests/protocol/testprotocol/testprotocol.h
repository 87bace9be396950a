// SPDX-License-Identifier: MIT
#pragma once

#include <protocol/baseprotocol.h>
#include <protocol/protocolpackage.h>

// A protocol without a dialog: its parameter map spells out the request row
// by row, so that tests can place any request on the model through the same
// path as a real protocol.
//
// Keys of the map:
//   "module", "file"   the instance's module and file names
//   "type"             the request's type; the protocol's name when missing
//   "rows"             one string a row: "LANE PLL REF FREQ RATE RXRATE TXRATE [OPTION]"
//   "ini", "csr", "mod" the lines generate() hands on
//   "fail"             generate() returns false when true
class TestProtocol : public IPSERDESIP::BaseProtocol
{
    Q_OBJECT

public:
    QMap<QString, QVariant> create(const QString &createPath,
                                   const DEV::DeviceArg &device) override;
    QMap<QString, QVariant> edit(const QMap<QString, QVariant> &args) override;
    IPSERDESIP::Message *createMessage(const QMap<QString, QVariant> &args) override;
    bool generate(const QMap<QString, QVariant> &args, QStringList &iniLines,
                  QStringList &csrLines, QStringList &modArgs, QString &outputFile,
                  bool fullRun) override;
    bool validate(const QMap<QString, QVariant> &args, QStringList &errors) const override;
    QString version() const override;
    QString id() const override;
    QString name() const override;
    QStringList category() const override;
    QString summaryFile() const override;
    bool isSupported(const DEV::DeviceArg &device) const override;

    QString path;
};

class TestProtocolPackage : public IPSERDESIP::ProtocolPackage
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.tarvexchip.plugins.ProtocolPackage/1.0")
    Q_INTERFACES(IPSERDESIP::ProtocolPackage)

public:
    QList<IPSERDESIP::BaseProtocol *> protocols() override;
};
