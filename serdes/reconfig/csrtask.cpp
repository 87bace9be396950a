// SPDX-License-Identifier: MIT
#include "reconfig/csrtask.h"

#include <QTextStream>

namespace IPSERDESIP {

QStringList csrTaskArguments(const QString &task, const QStringList &laneOptions,
                             const QStringList &options)
{
    return QStringList{QStringLiteral("--task"), task, QStringLiteral("--lane")} + laneOptions
           + options;
}

QByteArray csrRecords(QTextStream &in)
{
    QByteArray records;
    while (!in.atEnd()) {
        const QString line = in.readLine();
        if (!line.startsWith(QLatin1String("upar_write_driver")))
            continue;
        records += line.mid(20, 6).toUtf8();
        records += line.mid(29, 8).toUtf8();
        records += '\n';
    }
    return records;
}

QString csrToolReport(const QString &standardError)
{
    int pos = standardError.indexOf(QLatin1String("Error"));
    if (pos == -1)
        pos = standardError.indexOf(QLatin1String("Exception"));
    return pos == -1 ? standardError : standardError.mid(pos);
}

} // namespace IPSERDESIP
