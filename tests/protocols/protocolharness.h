// SPDX-License-Identifier: MIT
#pragma once

// Loads one sample protocol from the staged tree and prepares the model and
// the tables for a device, the way the page does before a protocol's dialog
// runs.

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <model/serdes.h>
#include <protocol/baseprotocol.h>
#include <protocol/message.h>
#include <protocol/protocolpackage.h>
#include <translate/parser.h>

#include <QFileInfo>
#include <QPluginLoader>
#include <QTest>

#include <memory>

// One device of each tier, from the host's device database.
inline const char *const DEVICE_880K = "RK9C880D-FG1517-2";
inline const char *const DEVICE_370K = "RK9C370D-FG676-2";
inline const char *const DEVICE_90K = "RK9C90F-BG324-1";

class ProtocolHarness
{
public:
    ProtocolHarness() : m_loader(QStringLiteral(SERDES_PROTOCOL_PLUGIN))
    {
        auto *package = qobject_cast<IPSERDESIP::ProtocolPackage *>(m_loader.instance());
        if (!package)
            return;
        package->path = QFileInfo(m_loader.fileName()).absolutePath();
        m_protocols = package->protocols();
    }
    ~ProtocolHarness()
    {
        qDeleteAll(m_protocols);
        IPSERDESIP::parser::destory();
        IPSERDESIP::serdes::destory();
        m_loader.unload();
    }

    QString loadError() const { return m_loader.errorString(); }
    QList<IPSERDESIP::BaseProtocol *> protocols() const { return m_protocols; }
    IPSERDESIP::BaseProtocol *protocol() const { return m_protocols.value(0); }

    // A fresh model and tables for the device, as a new page makes them.
    DEV::DeviceArg prepare(const QString &deviceId)
    {
        const DEV::DeviceArg device = Core::IdeCore::deviceDataBase()->findByID(deviceId);
        IPSERDESIP::serdes::destory();
        IPSERDESIP::serdes::instance()->initilize(device.family);
        IPSERDESIP::parser::destory();
        IPSERDESIP::parser::instance()->initialize(device.family);
        for (IPSERDESIP::BaseProtocol *p : m_protocols)
            p->device = device;
        return device;
    }

    // What the page does with a confirmed map: the request, placed.
    std::unique_ptr<IPSERDESIP::Message> place(const QMap<QString, QVariant> &args,
                                               QString &err)
    {
        std::unique_ptr<IPSERDESIP::Message> msg(protocol()->createMessage(args));
        if (msg && !IPSERDESIP::serdes::instance()->addItem(msg.get(), err))
            msg.reset();
        return msg;
    }

private:
    QPluginLoader m_loader;
    QList<IPSERDESIP::BaseProtocol *> m_protocols;
};
