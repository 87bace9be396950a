// SPDX-License-Identifier: MIT
#include "bcdrpackage.h"

#include "bcdrprotocol.h"

QList<IPSERDESIP::BaseProtocol *> BcdrPackage::protocols()
{
    return {new BcdrProtocol(path)};
}
