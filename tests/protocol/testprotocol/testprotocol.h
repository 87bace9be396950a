// SPDX-License-Identifier: MIT
#pragma once

#include <protocol/baseprotocol.h>
#include <protocol/protocolpackage.h>

// A protocol without a dialog: its parameter map spells out the request row
// by row, so that tests can place any request on the model through the same
// path as a real protocol.
//
// Keys of the map:
//   "name"             the instance's name
//   "module", "file"   the instance's module and file names
//   "type"             the request's type; the protocol's name when missing
//   "rows"             one string a row: "LANE PLL REF FREQ RATE RXRATE TXRATE [OPTION]"
//   "editRows"         the rows an edit changes to; without them an edit is cancelled
//   "ini", "csr", "mod" the lines generate() hands on
//   "fail"             generate() returns false when true
//
// create() makes what a user would get by accepting a dialog's proposals: the
// next free name "test_<n>", and the first free lane, whole, on the quad's
// QPLL0 from its REFCLK0 at 156.25.
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
