// SPDX-License-Identifier: MIT
#pragma once

#include <dev/devicearg.h>

#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QStringList>

namespace IPSERDESIP {

class Message;

// A machine-readable account of a configuration as the model placed it: the
// device, each instance with its rows (lane, PLL, reference source and their
// frequencies and rates), the reference sources and PLLs in use, and the
// route of every reserved line. Frequencies are in MHz and rates in Gbps, as
// the protocols state them; a value that is no number is kept as text.
QJsonObject configurationReport(const DEV::DeviceArg &device, const QString &moduleName,
                                const QString &fileName, const QMap<QString, Message *> &instances,
                                const QMap<QString, QStringList> &routes);

} // namespace IPSERDESIP
