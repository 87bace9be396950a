// SPDX-License-Identifier: MIT
#pragma once

// The list of lanes a dialog offers, one checkable row per free lane, and
// what else the dialogs of the lane protocols share: reading the frame into
// their settings, and the checks before they close.

#include "fields.h"
#include "instancesettings.h"
#include "lanemodule.h"
#include "laneplacement.h"

#include <utils/pinfigure.h>

#include <QList>
#include <QStringList>

#include <functional>

class QListWidget;

namespace samples {

class SampleDlg;

// Fills `list` with `labels` ("Q0 Lane1"), checking those in `checked`.
void fillLaneList(QListWidget *list, const QStringList &labels, const QStringList &checked);
// The labels of the checked rows, in the list's order.
QStringList checkedLanes(const QListWidget *list);
// The symbol's pins of a module's ports.
QList<Utils::PinFigure> figurePins(const QList<Port> &ports);
// What the dialog's frame shows, and the lanes checked in `list`.
void readFrame(InstanceSettings &settings, const SampleDlg &dialog, const QListWidget *list);
// Whether a stored instance can be shown as it is: it has lanes, and no
// other instance has taken one of them since.
bool lanesStillFree(const QStringList &lanes, const QStringList &free);
// The settings' own problems; when there are none, the trial placement's
// refusal, under the key that `keyOf` gives the field it comes from.
QList<Problem> placementProblems(const QList<Problem> &own, const QList<LaneRow> &rows,
                                 const std::function<QString(const Refusal &)> &keyOf,
                                 Lines lines = Lines::Both);
// A valid module name, file and module names that no other instance has, no
// problems, and a placement the model accepts. A refusal is shown under
// `title`, and false keeps the dialog open.
bool confirmLanes(SampleDlg *dialog, const QString &title, const QList<Problem> &problems,
                  const QList<LaneRow> &rows, Lines lines = Lines::Both);

} // namespace samples
