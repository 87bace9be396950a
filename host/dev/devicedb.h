// SPDX-License-Identifier: MIT
#pragma once

#include "hostplatform_global.h"
#include "dev/chipfilter.h"
#include "dev/devicearg.h"

#include <QList>
#include <QStringList>

namespace DEV {

// The device database of the host, read from a JSON file:
//   { "primitives": [ "LUT4", ... ],
//     "devices": [ { "id": ..., "partNumber": ..., "series": ..., "family": ...,
//                    "name": ..., "version": ..., "package": ..., "speed": ...,
//                    "grade": ..., "library": ..., "features": [ ... ] }, ... ] }
class HOSTPLATFORM_EXPORT DeviceDb
{
public:
    // Replaces the content with the file's. On failure the database is left
    // empty and `error` says why.
    bool load(const QString &path, QString *error = nullptr);

    // An unknown identifier gives a record with an empty identifier.
    DeviceArg findByID(const QString &id) const;
    QList<DeviceArg> filterDevice(const ChipFilter &filter) const;

    const QList<DeviceArg> &devices() const { return m_devices; }
    // The reserved cell names of the primitive library.
    const QStringList &primitiveNames() const { return m_primitives; }

private:
    QList<DeviceArg> m_devices;
    QStringList m_primitives;
};

} // namespace DEV
