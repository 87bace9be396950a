// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace DEV {

// Selects devices of the database. An empty field matches every device.
struct ChipFilter
{
    QString id; // the device name, without package and speed
    QString package;
    QString speed;
    QString family;
};

} // namespace DEV
