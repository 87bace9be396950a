// SPDX-License-Identifier: MIT
#pragma once

#include "hostplatform_global.h"
#include "dev/devicearg.h"

#include <QMap>
#include <QStringList>
#include <QVariant>

namespace IPCore {

// Reads a core's description file. The file is in INI form, every key in the
// [General] section, named as the description map's keys ("ipcore.id",
// "ipcore.category", ...). Lists are comma-separated. A missing or unreadable
// file gives an empty map.
HOSTPLATFORM_EXPORT QMap<QString, QVariant> processIPInfoSpec(const QString &path);

// True when the keys every core must describe are present and not empty:
// ipcore.id, ipcore.name and ipcore.category.
HOSTPLATFORM_EXPORT bool checkCommonInfo(const QMap<QString, QVariant> &info);

// Whether a core may be used on a device, by the device's part family string.
// A family on the unsupported list is refused. Otherwise an empty supported
// list admits the device, and a non-empty one admits only the families it
// names. Families are compared exactly.
HOSTPLATFORM_EXPORT bool isSupported(const DEV::DeviceArg &device,
                                     const QStringList &unsupportedList,
                                     const QStringList &supportedList);

} // namespace IPCore
