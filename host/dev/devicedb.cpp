// SPDX-License-Identifier: MIT
#include "dev/devicedb.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

namespace DEV {

namespace {

QString fail(QString *error, const QString &text)
{
    if (error)
        *error = text;
    return text;
}

QStringList toStringList(const QJsonValue &value)
{
    QStringList list;
    const QJsonArray array = value.toArray();
    for (const QJsonValue &item : array)
        list << item.toString();
    return list;
}

} // namespace

bool DeviceDb::load(const QString &path, QString *error)
{
    m_devices.clear();
    m_primitives.clear();

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        fail(error, QCoreApplication::translate("DEV::DeviceDb",
                                                "Cannot read the device database \"%1\": %2")
                        .arg(path, file.errorString()));
        return false;
    }
    QJsonParseError parseError;
    const QJsonDocument doc = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (!doc.isObject()) {
        fail(error, QCoreApplication::translate("DEV::DeviceDb",
                                                "The device database \"%1\" is not valid JSON: %2")
                        .arg(path, parseError.errorString()));
        return false;
    }

    const QJsonObject root = doc.object();
    QList<DeviceArg> devices;
    QSet<QString> ids;
    const QJsonArray entries = root.value(QStringLiteral("devices")).toArray();
    for (int i = 0; i < entries.size(); ++i) {
        const QJsonObject o = entries.at(i).toObject();
        DeviceArg d;
        d.id = o.value(QStringLiteral("id")).toString();
        d.partNumber = o.value(QStringLiteral("partNumber")).toString();
        d.series = o.value(QStringLiteral("series")).toString();
        d.family = o.value(QStringLiteral("family")).toString();
        d.name = o.value(QStringLiteral("name")).toString();
        d.version = o.value(QStringLiteral("version")).toString();
        d.package = o.value(QStringLiteral("package")).toString();
        d.speed = o.value(QStringLiteral("speed")).toString();
        d.grade = o.value(QStringLiteral("grade")).toString();
        d.library = o.value(QStringLiteral("library")).toString();
        d.features = toStringList(o.value(QStringLiteral("features")));
        if (d.id.isEmpty() || d.family.isEmpty() || d.name.isEmpty()) {
            fail(error, QCoreApplication::translate(
                            "DEV::DeviceDb", "Device %1 of \"%2\" lacks an id, a family or a name.")
                            .arg(i + 1)
                            .arg(path));
            return false;
        }
        if (ids.contains(d.id)) {
            fail(error, QCoreApplication::translate("DEV::DeviceDb",
                                                    "Device id \"%1\" stands twice in \"%2\".")
                            .arg(d.id, path));
            return false;
        }
        ids.insert(d.id);
        devices << d;
    }
    if (devices.isEmpty()) {
        fail(error, QCoreApplication::translate("DEV::DeviceDb",
                                                "The device database \"%1\" lists no device.")
                        .arg(path));
        return false;
    }

    m_devices = devices;
    m_primitives = toStringList(root.value(QStringLiteral("primitives")));
    return true;
}

DeviceArg DeviceDb::findByID(const QString &id) const
{
    for (const DeviceArg &d : m_devices) {
        if (d.id == id)
            return d;
    }
    return DeviceArg();
}

QList<DeviceArg> DeviceDb::filterDevice(const ChipFilter &filter) const
{
    const auto matches = [](const QString &wanted, const QString &value) {
        return wanted.isEmpty() || wanted == value;
    };
    QList<DeviceArg> result;
    for (const DeviceArg &d : m_devices) {
        if (matches(filter.id, d.name) && matches(filter.package, d.package)
            && matches(filter.speed, d.speed) && matches(filter.family, d.family))
            result << d;
    }
    return result;
}

} // namespace DEV
