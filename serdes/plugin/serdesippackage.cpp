// SPDX-License-Identifier: MIT
#include "plugin/serdesippackage.h"

#include "plugin/serdesip.h"
#include "protocol/protocolcatalogue.h"
#include "tiers/tier.h"

#include <core/idecore.h>
#include <dev/devicedb.h>

namespace IPSERDESIP {

QList<IPCore::BaseIPCore *> serdesippackage::ipCores() const
{
    QList<IPCore::BaseIPCore *> cores;
    IPCore::BaseIPCore *core = new serdesip(packagePath);
    if (!core->initilize()) {
        delete core;
        return cores;
    }
    cores << core;
    return cores;
}

int serdesippackage::transceiverQuads(const QString &family) const
{
    return tierDescription(tierOf(family)).quads;
}

QString serdesippackage::protocolListing(const QString &deviceId) const
{
    return IPSERDESIP::protocolListing(Core::IdeCore::deviceDataBase()->findByID(deviceId));
}

} // namespace IPSERDESIP
