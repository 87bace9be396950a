// SPDX-License-Identifier: MIT
#pragma once

#include "hostplatform_global.h"

#include <QList>
#include <QObject>
#include <QString>

namespace IPCore {

class BaseIPCore;

// The root object of an IP package plug-in. The generator sets packagePath to
// the package's directory and then asks for the cores it offers; it owns the
// cores it is given.
class HOSTPLATFORM_EXPORT IPPackage : public QObject
{
    Q_OBJECT

public:
    explicit IPPackage(QObject *parent = nullptr);
    ~IPPackage() override;

    virtual QList<BaseIPCore *> ipCores() const = 0;

    QString packagePath;
};

} // namespace IPCore

#define IPCore_IPPackage_iid "com.tarvexchip.plugins.IPPackage/1.0"
Q_DECLARE_INTERFACE(IPCore::IPPackage, IPCore_IPPackage_iid)
