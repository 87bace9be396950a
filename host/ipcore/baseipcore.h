// SPDX-License-Identifier: MIT
#pragma once

#include "hostplatform_global.h"
#include "dev/devicearg.h"

#include <QString>
#include <QStringList>

namespace IPCore {

// One core of the generator's catalogue. The order of the virtual operations
// is the plug-in ABI of the generator: do not reorder them.
class HOSTPLATFORM_EXPORT BaseIPCore
{
public:
    BaseIPCore();
    virtual ~BaseIPCore();

    // Runs the core's dialog for a new core in `path` on `device`.
    virtual void create(const QString &path, const DEV::DeviceArg &device) = 0;
    // Runs the core's dialog on the configuration `file` found in `path`.
    virtual void open(const QString &path, const QString &file) = 0;
    virtual bool initilize() = 0;
    virtual QString version() const;
    virtual QString id() const = 0;
    virtual QString name() const = 0;
    virtual QStringList category() const = 0;
    virtual QString summaryFile() const = 0;
    virtual bool isSupported(const DEV::DeviceArg &device) const = 0;

protected:
    DEV::DeviceArg m_device;
};

} // namespace IPCore
