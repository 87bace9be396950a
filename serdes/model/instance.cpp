// SPDX-License-Identifier: MIT
#include "model/instance.h"

namespace IPSERDESIP {

Instance::Instance(const QString &name, QUAD *quad)
    : count(0)
    , name(name)
    , quad(quad)
{}

Instance::~Instance() = default;

bool Instance::enable()
{
    return count != 0;
}

} // namespace IPSERDESIP
