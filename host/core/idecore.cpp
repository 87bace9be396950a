// SPDX-License-Identifier: MIT
#include "core/idecore.h"

#include "dev/devicedb.h"

#include <QCoreApplication>
#include <QDir>

namespace Core {

namespace {

DEV::DeviceDb *installedDb = nullptr;

DEV::DeviceDb *defaultDb()
{
    static DEV::DeviceDb db;
    static bool loaded = false;
    if (!loaded) {
        loaded = true;
        QString error;
        if (!db.load(IdeCore::deviceDataBasePath(), &error))
            qWarning("%s", qPrintable(error));
    }
    return &db;
}

} // namespace

DEV::DeviceDb *IdeCore::deviceDataBase()
{
    return installedDb ? installedDb : defaultDb();
}

void IdeCore::setDeviceDataBase(DEV::DeviceDb *db)
{
    installedDb = db;
}

QString IdeCore::deviceDataBasePath()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath()
                           + QStringLiteral("/../data/devices/devices.json"));
}

} // namespace Core
