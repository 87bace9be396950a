// SPDX-License-Identifier: MIT
#include "page/configurationreport.h"

#include "protocol/message.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QSet>

namespace IPSERDESIP {

namespace {

QJsonValue number(const QString &text)
{
    bool ok = false;
    const double value = text.toDouble(&ok);
    return ok ? QJsonValue(value) : QJsonValue(text);
}

QJsonArray strings(const QStringList &list)
{
    QJsonArray array;
    for (const QString &s : list)
        array.append(s);
    return array;
}

} // namespace

QJsonObject configurationReport(const DEV::DeviceArg &device, const QString &moduleName,
                                const QString &fileName, const QMap<QString, Message *> &instances,
                                const QMap<QString, QStringList> &routes)
{
    QJsonObject references;
    QJsonObject plls;
    QJsonArray instanceArray;
    for (auto it = instances.cbegin(); it != instances.cend(); ++it) {
        const Message &msg = *it.value();
        QJsonArray rows;
        for (int i = 0; i < msg.lanes.size(); ++i) {
            const QString lane = msg.lanes.at(i);
            const QString pll = msg.plls.value(i);
            const QString ref = msg.refs.value(i);
            QJsonObject row{{QStringLiteral("lane"), lane},
                            {QStringLiteral("pll"), pll},
                            {QStringLiteral("reference"), ref},
                            {QStringLiteral("referenceMHz"), number(msg.refFreqs.value(i))},
                            {QStringLiteral("rateGbps"), number(msg.rates.value(i))},
                            {QStringLiteral("rxRateGbps"), number(msg.rxRates.value(i))},
                            {QStringLiteral("txRateGbps"), number(msg.txRates.value(i))}};
            if (msg.muxOptions.contains(lane))
                row.insert(QStringLiteral("muxOption"), msg.muxOptions.value(lane));
            rows.append(row);
            if (!ref.isEmpty())
                references.insert(ref, number(msg.refFreqs.value(i)));
            // "0" marks an RX row that no PLL clocks.
            if (!pll.isEmpty() && pll != QLatin1String("0")) {
                QJsonObject users = plls.value(pll).toObject();
                QJsonArray lanes = users.value(QStringLiteral("lanes")).toArray();
                lanes.append(lane);
                users.insert(QStringLiteral("lanes"), lanes);
                users.insert(QStringLiteral("reference"), ref);
                plls.insert(pll, users);
            }
        }
        instanceArray.append(QJsonObject{{QStringLiteral("name"), it.key()},
                                         {QStringLiteral("type"), msg.type},
                                         {QStringLiteral("module"), msg.module},
                                         {QStringLiteral("file"), msg.file},
                                         {QStringLiteral("rows"), rows}});
    }

    QJsonObject routeObject;
    for (auto it = routes.cbegin(); it != routes.cend(); ++it)
        routeObject.insert(it.key(), strings(it.value()));

    return QJsonObject{{QStringLiteral("device"),
                        QJsonObject{{QStringLiteral("id"), device.id},
                                    {QStringLiteral("partNumber"), device.partNumber},
                                    {QStringLiteral("family"), device.family}}},
                       {QStringLiteral("module"), moduleName},
                       {QStringLiteral("file"), fileName},
                       {QStringLiteral("instances"), instanceArray},
                       {QStringLiteral("references"), references},
                       {QStringLiteral("plls"), plls},
                       {QStringLiteral("routes"), routeObject}};
}

QHash<QString, QString> schematicLabels(const QMap<QString, Message *> &instances)
{
    QMap<QString, QStringList> values;
    const auto note = [&values](const QString &name, const QString &value) {
        // "0" and empty rows stand for none.
        if (!name.isEmpty() && value.toDouble() != 0 && !values[name].contains(value))
            values[name] << value;
    };
    QSet<QString> sources;
    for (const Message *msg : instances) {
        for (int i = 0; i < msg->lanes.size(); ++i) {
            // A row names a whole lane or one of its lines.
            const QString lane = msg->lanes.at(i);
            const bool line
                = lane.endsWith(QLatin1String("_TX")) || lane.endsWith(QLatin1String("_RX"));
            note(line ? lane : QString(lane + QLatin1String("_TX")), msg->txRate(i));
            note(line ? lane : QString(lane + QLatin1String("_RX")), msg->rxRate(i));
            note(msg->refs.value(i), msg->refFreqs.value(i));
            sources << msg->refs.value(i);
        }
    }
    QHash<QString, QString> labels;
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        // The floorplan's tooltips say the same in the same words.
        const char *unit = sources.contains(it.key()) ? "%1 MHz" : "%1 Gbps";
        labels.insert(it.key(), QCoreApplication::translate("IPSERDESIP::serdesView", unit)
                                    .arg(it.value().join(QLatin1String(", "))));
    }
    return labels;
}

} // namespace IPSERDESIP
