// SPDX-License-Identifier: MIT
#include "utils/pinfigure.h"

#include <QtGlobal>

namespace Utils {

PinFigure::PinFigure(const QString &name, Direction direction, int width)
    : name(name)
    , direction(direction)
    , width(qMax(1, width))
{}

QString PinFigure::label() const
{
    if (!isBus())
        return name;
    return QStringLiteral("%1[%2:0]").arg(name).arg(width - 1);
}

} // namespace Utils
