// SPDX-License-Identifier: MIT
#pragma once

#include "hostplatform_global.h"

#include <QString>

namespace Utils {

// One port of a module as its symbol shows it.
class HOSTPLATFORM_EXPORT PinFigure
{
public:
    enum Direction { Input, Output, Inout };

    PinFigure() = default;
    // A width below 1 is taken as 1: a port has at least one bit.
    PinFigure(const QString &name, Direction direction, int width = 1);

    QString name;
    Direction direction = Input;
    int width = 1;

    bool isBus() const { return width > 1; }
    // The name with the bit range of a bus, as in a port list: "data[31:0]".
    QString label() const;
};

} // namespace Utils
