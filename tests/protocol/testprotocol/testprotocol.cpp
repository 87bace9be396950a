// SPDX-License-Identifier: MIT
#include "testprotocol.h"

#include <model/serdes.h>
#include <protocol/message.h>

#include <QDir>
#include <QFile>

QMap<QString, QVariant> TestProtocol::create(const QString &createPath,
                                             const DEV::DeviceArg &device)
{
    IPSERDESIP::serdes *model = IPSERDESIP::serdes::instance();
    const QStringList free = model->notOccupiedLanes();
    if (free.isEmpty())
        return {};
    int n = 1;
    while (model->moduleNames.contains(QStringLiteral("test_%1").arg(n)))
        ++n;
    const QString name = QStringLiteral("test_%1").arg(n);
    const QString lane = free.first().toUpper().replace(QLatin1Char(' '), QLatin1Char('_'));
    const QString quad = lane.left(2);

    QMap<QString, QVariant> args;
    args.insert(QStringLiteral("name"), name);
    args.insert(QStringLiteral("module"), name);
    args.insert(QStringLiteral("file"), name);
    args.insert(QStringLiteral("dir"), createPath);
    args.insert(QStringLiteral("device"), device.id);
    args.insert(QStringLiteral("rows"),
                QStringList{QStringLiteral("%1 %2_QPLL0 %2_REFCLK0 156.25 10.3125 0 0")
                                .arg(lane, quad)});
    return args;
}

QMap<QString, QVariant> TestProtocol::edit(const QMap<QString, QVariant> &args)
{
    if (!args.contains(QStringLiteral("editRows")))
        return {};
    QMap<QString, QVariant> changed = args;
    changed.insert(QStringLiteral("rows"), changed.take(QStringLiteral("editRows")));
    return changed;
}

IPSERDESIP::Message *TestProtocol::createMessage(const QMap<QString, QVariant> &args)
{
    auto *msg = new IPSERDESIP::Message;
    msg->type = args.value(QStringLiteral("type"), name()).toString();
    msg->name = args.value(QStringLiteral("name")).toString();
    msg->module = args.value(QStringLiteral("module")).toString();
    msg->file = args.value(QStringLiteral("file")).toString();
    const QStringList rows = args.value(QStringLiteral("rows")).toStringList();
    for (const QString &row : rows) {
        const QStringList f = row.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        // A short row leaves its lists shorter than the others, which is a
        // malformed request: the tests use it to see the model refuse one.
        const auto field = [&f](int i, QStringList &list) {
            if (i < f.size())
                list << f.at(i);
        };
        field(0, msg->lanes);
        field(1, msg->plls);
        field(2, msg->refs);
        field(3, msg->refFreqs);
        field(4, msg->rates);
        field(5, msg->rxRates);
        field(6, msg->txRates);
        if (f.size() > 7)
            msg->muxOptions.insert(f.at(0), f.at(7));
    }
    return msg;
}

bool TestProtocol::generate(const QMap<QString, QVariant> &args, QStringList &iniLines,
                            QStringList &csrLines, QStringList &modArgs, QString &outputFile,
                            bool fullRun)
{
    if (args.value(QStringLiteral("fail")).toBool())
        return false;
    iniLines << args.value(QStringLiteral("ini")).toStringList();
    if (!fullRun)
        return true;
    csrLines << args.value(QStringLiteral("csr")).toStringList();
    modArgs << args.value(QStringLiteral("mod")).toStringList();
    const QString dir = args.value(QStringLiteral("dir"), QDir::currentPath()).toString();
    outputFile = dir + QLatin1Char('/') + args.value(QStringLiteral("file")).toString()
                 + QStringLiteral(".v");
    QFile out(outputFile);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Text))
        return false;
    out.write("// test protocol instance\n");
    return true;
}

bool TestProtocol::validate(const QMap<QString, QVariant> &args, QStringList &errors) const
{
    if (!args.contains(QStringLiteral("module")))
        errors << QStringLiteral("no module name");
    return errors.isEmpty();
}

QString TestProtocol::version() const
{
    return QStringLiteral("0.1");
}

QString TestProtocol::id() const
{
    return QStringLiteral("TEST_PROTOCOL");
}

QString TestProtocol::name() const
{
    return QStringLiteral("TestProtocol");
}

QStringList TestProtocol::category() const
{
    return {QStringLiteral("Test"), QStringLiteral("Rows")};
}

QString TestProtocol::summaryFile() const
{
    return path + QStringLiteral("/testprotocol.html");
}

bool TestProtocol::isSupported(const DEV::DeviceArg &device) const
{
    return !device.family.isEmpty();
}

QList<IPSERDESIP::BaseProtocol *> TestProtocolPackage::protocols()
{
    auto *protocol = new TestProtocol;
    protocol->path = path;
    return {protocol};
}
