// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <dev/devicearg.h>

#include <QHash>
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

// The clock schematic's notes by element name, from the instances placed:
// each reference source's frequency ("156.25 MHz") and each line's rate
// ("10.3125 Gbps"). Values that instances disagree on are all listed.
SERDESIP_TEST_EXPORT QHash<QString, QString>
schematicLabels(const QMap<QString, Message *> &instances);

} // namespace IPSERDESIP
