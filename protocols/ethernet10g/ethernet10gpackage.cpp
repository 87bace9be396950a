// SPDX-License-Identifier: MIT
#include "ethernet10gpackage.h"

#include "ethernet10g.h"

QList<IPSERDESIP::BaseProtocol *> Ethernet10gPackage::protocols()
{
    return {new Ethernet10g(path)};
}
