// SPDX-License-Identifier: MIT
#include "instancesettings.h"

namespace samples {

void InstanceSettings::readFrom(const QMap<QString, QVariant> &args)
{
    name = args.value(QStringLiteral("name")).toString();
    module = args.value(QStringLiteral("module")).toString();
    file = args.value(QStringLiteral("file")).toString();
    dir = args.value(QStringLiteral("dir")).toString();
    targetDevice = args.value(QStringLiteral("target_device")).toString();
    language = args.value(QStringLiteral("LANG"), 0).toInt();
    // A configuration file may give the list back as one text or as a list.
    const QString joined
        = args.value(QStringLiteral("lanes")).toStringList().join(QLatin1Char(','));
    lanes = joined.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (QString &lane : lanes)
        lane = lane.trimmed();
}

void InstanceSettings::writeTo(QMap<QString, QVariant> &args) const
{
    args.insert(QStringLiteral("name"), name);
    args.insert(QStringLiteral("module"), module);
    args.insert(QStringLiteral("file"), file);
    args.insert(QStringLiteral("dir"), dir);
    args.insert(QStringLiteral("target_device"), targetDevice);
    args.insert(QStringLiteral("LANG"), language);
    args.insert(QStringLiteral("lanes"), lanes.join(QLatin1Char(',')));
}

} // namespace samples
