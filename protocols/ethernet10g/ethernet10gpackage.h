// SPDX-License-Identifier: MIT
#pragma once

#include <protocol/protocolpackage.h>

class Ethernet10gPackage : public IPSERDESIP::ProtocolPackage
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.tarvexchip.plugins.ProtocolPackage/1.0")
    Q_INTERFACES(IPSERDESIP::ProtocolPackage)

public:
    QList<IPSERDESIP::BaseProtocol *> protocols() override;
};
