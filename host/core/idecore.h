// SPDX-License-Identifier: MIT
#pragma once

#include "hostplatform_global.h"

#include <QString>

namespace DEV {
class DeviceDb;
}

namespace Core {

class HOSTPLATFORM_EXPORT IdeCore
{
public:
    // The environment's device database. Unless the application installed
    // one, it is read on first use from data/devices/devices.json beside the
    // application's directory; a missing file gives an empty database and a
    // warning.
    static DEV::DeviceDb *deviceDataBase();
    // The application keeps ownership of `db`; null goes back to the default.
    static void setDeviceDataBase(DEV::DeviceDb *db);
    // Where the default database is read from.
    static QString deviceDataBasePath();
};

} // namespace Core
