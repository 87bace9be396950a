// SPDX-License-Identifier: MIT
#include "protocol/protocolpackage.h"

namespace IPSERDESIP {

ProtocolPackage::ProtocolPackage(QObject *parent)
    : QObject(parent)
{}

ProtocolPackage::~ProtocolPackage() = default;

} // namespace IPSERDESIP
