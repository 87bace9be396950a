// SPDX-License-Identifier: MIT
#include "protocol/baseprotocol.h"

namespace IPSERDESIP {

BaseProtocol::BaseProtocol(QObject *parent)
    : QObject(parent)
{}

BaseProtocol::~BaseProtocol() = default;

QString BaseProtocol::version() const
{
    return QString();
}

} // namespace IPSERDESIP
