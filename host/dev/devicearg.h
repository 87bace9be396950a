// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace DEV {

// One device of the database. Cores use the members by position, so their
// order is part of the host's interface and must not change.
struct DeviceArg
{
    QString id;         // device identifier: name, package and speed
    QString partNumber; // orderable part number
    QString series;     // product series
    QString family;     // part family string; decides what a core supports
    QString name;       // device name
    QString version;    // silicon version; empty on devices with only one
    QString package;
    QString speed;      // speed grade
    QString grade;      // temperature grade
    QString library;    // primitive library of the device
    QStringList features; // hard blocks the device has

    bool isValid() const { return !id.isEmpty(); }
};

} // namespace DEV
