// SPDX-License-Identifier: MIT
#include "ipcore/ipinfospec.h"

#include <QFileInfo>
#include <QSettings>

namespace IPCore {

QMap<QString, QVariant> processIPInfoSpec(const QString &path)
{
    QMap<QString, QVariant> info;
    if (!QFileInfo(path).isReadable())
        return info;
    QSettings spec(path, QSettings::IniFormat);
    spec.setIniCodec("UTF-8");
    if (spec.status() != QSettings::NoError)
        return info;
    const QStringList keys = spec.allKeys();
    for (const QString &key : keys)
        info.insert(key, spec.value(key));
    return info;
}

bool checkCommonInfo(const QMap<QString, QVariant> &info)
{
    static const char *const required[] = {"ipcore.id", "ipcore.name", "ipcore.category"};
    for (const char *key : required) {
        const QVariant value = info.value(QString::fromLatin1(key));
        if (value.toStringList().join(QString()).trimmed().isEmpty())
            return false;
    }
    return true;
}

bool isSupported(const DEV::DeviceArg &device, const QStringList &unsupportedList,
                 const QStringList &supportedList)
{
    if (unsupportedList.contains(device.family))
        return false;
    return supportedList.isEmpty() || supportedList.contains(device.family);
}

} // namespace IPCore
