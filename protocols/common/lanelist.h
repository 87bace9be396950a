// SPDX-License-Identifier: MIT
#pragma once

// The list of lanes a dialog offers: one checkable row per free lane.

#include "lanemodule.h"

#include <utils/pinfigure.h>

#include <QList>
#include <QStringList>

class QListWidget;

namespace samples {

// Fills `list` with `labels` ("Q0 Lane1"), checking those in `checked`.
void fillLaneList(QListWidget *list, const QStringList &labels, const QStringList &checked);
// The labels of the checked rows, in the list's order.
QStringList checkedLanes(const QListWidget *list);
// The symbol's pins of a module's ports.
QList<Utils::PinFigure> figurePins(const QList<Port> &ports);

} // namespace samples
