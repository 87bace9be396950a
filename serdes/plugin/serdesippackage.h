// SPDX-License-Identifier: MIT
#pragma once

#include <ipcore/ippackage.h>

namespace IPSERDESIP {

// The root object of libSERDES_IP.so: offers the one SerDes core.
class serdesippackage : public IPCore::IPPackage
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.tarvexchip.plugins.IPPackage/1.0")
    Q_INTERFACES(IPCore::IPPackage)

public:
    // An empty list when the core cannot read its description.
    QList<IPCore::BaseIPCore *> ipCores() const override;
    // The transceiver quads of a device of `family`, for the generator's
    // device listing.
    Q_INVOKABLE int transceiverQuads(const QString &family) const;
    // The installed protocols, whether the device of identifier `deviceId`
    // can use each, and their parameters: text for the generator to print.
    Q_INVOKABLE QString protocolListing(const QString &deviceId) const;
};

} // namespace IPSERDESIP
