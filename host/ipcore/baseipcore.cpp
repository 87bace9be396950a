// SPDX-License-Identifier: MIT
#include "ipcore/baseipcore.h"

namespace IPCore {

BaseIPCore::BaseIPCore() = default;

BaseIPCore::~BaseIPCore() = default;

QString BaseIPCore::version() const
{
    return QString();
}

} // namespace IPCore
