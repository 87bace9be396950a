// SPDX-License-Identifier: MIT
#pragma once

// What the protocol tests share: the test protocol plug-in, loaded as the
// page loads a protocol, and a compact picture of what the model holds.

#include "model/serdes.h"
#include "protocol/baseprotocol.h"
#include "protocol/message.h"
#include "protocol/protocolpackage.h"

#include <QPluginLoader>
#include <QtTest>

#include <memory>

namespace protocolclient {

// Loads the test protocol and returns its one protocol, owned by the caller;
// null, with the loader's words in `error`, when that fails.
inline IPSERDESIP::BaseProtocol *loadTestProtocol(QPluginLoader &loader, QString &error)
{
    loader.setFileName(QStringLiteral(SERDES_TEST_PROTOCOL));
    auto *package = qobject_cast<IPSERDESIP::ProtocolPackage *>(loader.instance());
    if (!package) {
        error = loader.errorString();
        return nullptr;
    }
    package->path = QFileInfo(loader.fileName()).absolutePath();
    const QList<IPSERDESIP::BaseProtocol *> protocols = package->protocols();
    if (protocols.size() != 1) {
        qDeleteAll(protocols);
        error = QStringLiteral("expected one protocol");
        return nullptr;
    }
    return protocols.first();
}

// A request through the protocol, as a dialog would hand its rows over.
inline std::unique_ptr<IPSERDESIP::Message> request(IPSERDESIP::BaseProtocol *protocol,
                                                    const QStringList &rows,
                                                    const QString &module,
                                                    const QString &type = QString())
{
    QMap<QString, QVariant> args;
    args.insert(QStringLiteral("module"), module);
    args.insert(QStringLiteral("file"), QString(module + QStringLiteral("_file")));
    args.insert(QStringLiteral("rows"), rows);
    if (!type.isEmpty())
        args.insert(QStringLiteral("type"), type);
    return std::unique_ptr<IPSERDESIP::Message>(protocol->createMessage(args));
}

// Every held element in name order: lines as NAME=count:rate:source, muxes
// and PLL selects as NAME=count@sel (and /dir on the bridge), reference
// sources as NAME=count:freq. Empty when everything is free.
inline QString held(IPSERDESIP::serdes *model)
{
    using namespace IPSERDESIP;
    QStringList parts;
    const QMap<QString, Instance *> all = model->allInstance();
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        MUX *mux = dynamic_cast<MUX *>(it.value());
        if (auto *pll = dynamic_cast<PLL *>(it.value()))
            mux = pll->Mux();
        if (auto *line = dynamic_cast<LINE *>(it.value())) {
            if (line->count != 0 || line->rate != 0 || !line->source.isEmpty())
                parts << QStringLiteral("%1=%2:%3:%4")
                             .arg(it.key())
                             .arg(line->count)
                             .arg(line->rate)
                             .arg(line->source);
        } else if (mux) {
            if (mux->count != 0 || mux->sel() != 0 || mux->dir() != 0)
                parts << QStringLiteral("%1=%2@%3%4")
                             .arg(it.key())
                             .arg(mux->count)
                             .arg(mux->sel())
                             .arg(mux->dirCount > 1 ? QStringLiteral("/%1").arg(mux->dir())
                                                    : QString());
        } else if (auto *ref = dynamic_cast<REF_SOURCE *>(it.value())) {
            if (ref->count != 0 || ref->freq != 0)
                parts << QStringLiteral("%1=%2:%3").arg(it.key()).arg(ref->count).arg(ref->freq);
        }
    }
    return parts.join(QLatin1Char(' '));
}

// The route records, "LINE>MUX>...>SOURCE", in line order.
inline QString routes(IPSERDESIP::serdes *model)
{
    QStringList records;
    const QMap<QString, QStringList> access = model->allAccess();
    for (const QStringList &record : access)
        records << record.join(QLatin1Char('>'));
    return records.join(QLatin1Char(' '));
}

inline IPSERDESIP::serdes *freshModel(const QString &device)
{
    IPSERDESIP::serdes::destory();
    IPSERDESIP::serdes *model = IPSERDESIP::serdes::instance();
    model->initilize(device);
    return model;
}

} // namespace protocolclient
