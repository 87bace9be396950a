// SPDX-License-Identifier: MIT
#include "samplepackage.h"

namespace samples {

QList<IPSERDESIP::BaseProtocol *> SamplePackage::protocols()
{
    return {makeProtocol(path)};
}

} // namespace samples
