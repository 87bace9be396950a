// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <QList>
#include <QObject>
#include <QString>

namespace IPSERDESIP {

class BaseProtocol;

// The root object of a protocol plug-in.
class SERDESIP_EXPORT ProtocolPackage : public QObject
{
    Q_OBJECT

public:
    explicit ProtocolPackage(QObject *parent = nullptr);
    ~ProtocolPackage() override;

    // Newly made protocols on every call, owned by the caller.
    virtual QList<BaseProtocol *> protocols() = 0;

    // The directory of the plug-in's file, set by the loader before the first
    // call.
    QString path;
};

} // namespace IPSERDESIP

#define IPSERDESIP_ProtocolPackage_iid "com.tarvexchip.plugins.ProtocolPackage/1.0"
Q_DECLARE_INTERFACE(IPSERDESIP::ProtocolPackage, IPSERDESIP_ProtocolPackage_iid)
