// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace Bcdr {

struct Settings;

// One port of the instance's module.
struct Port
{
    QString direction; // "input" or "output"
    int width = 1;
    QString name;
};

// The ports of the module, in the order the module declares them.
QList<Port> modulePorts(const Settings &settings);

// The Verilog text of the module named after the instance's module name. It
// instantiates the device's primitives SERDES_QUAD, SERDES_LANE and DIFFIN,
// which the device library declares.
QStringList moduleText(const Settings &settings);

// The module generator's lines for the instance: one "-<module>_port" line a
// port, as the module declares them.
QStringList moduleGeneratorLines(const Settings &settings);

} // namespace Bcdr
