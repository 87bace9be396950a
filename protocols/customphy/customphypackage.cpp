// SPDX-License-Identifier: MIT
#include "customphypackage.h"

#include "customphy.h"

QList<IPSERDESIP::BaseProtocol *> CustomPhyPackage::protocols()
{
    return {new CustomPhy(path)};
}
