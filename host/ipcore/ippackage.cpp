// SPDX-License-Identifier: MIT
#include "ipcore/ippackage.h"

namespace IPCore {

IPPackage::IPPackage(QObject *parent)
    : QObject(parent)
{}

IPPackage::~IPPackage() = default;

} // namespace IPCore
