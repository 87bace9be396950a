// SPDX-License-Identifier: MIT
#pragma once

#include <protocol/protocolpackage.h>

// The root object of the plug-in: one protocol, the burst-mode CDR receiver.
class BcdrPackage : public IPSERDESIP::ProtocolPackage
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.tarvexchip.plugins.ProtocolPackage/1.0")
    Q_INTERFACES(IPSERDESIP::ProtocolPackage)

public:
    QList<IPSERDESIP::BaseProtocol *> protocols() override;
};
