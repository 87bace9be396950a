// SPDX-License-Identifier: MIT
#include "lanelist.h"

#include "sampledlg.h"

#include <utils/messages.h>

#include <QListWidget>
#include <QMessageBox>

namespace samples {

void fillLaneList(QListWidget *list, const QStringList &labels, const QStringList &checked)
{
    const QSignalBlocker quiet(list);
    list->clear();
    for (const QString &label : labels) {
        auto *item = new QListWidgetItem(label, list);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
        item->setCheckState(checked.contains(label) ? Qt::Checked : Qt::Unchecked);
    }
}

QStringList checkedLanes(const QListWidget *list)
{
    QStringList labels;
    for (int i = 0; i < list->count(); ++i) {
        if (list->item(i)->checkState() == Qt::Checked)
            labels << list->item(i)->text();
    }
    return labels;
}

QList<Utils::PinFigure> figurePins(const QList<Port> &ports)
{
    QList<Utils::PinFigure> pins;
    for (const Port &port : ports) {
        const Utils::PinFigure::Direction direction
            = port.direction == QLatin1String("input")    ? Utils::PinFigure::Input
              : port.direction == QLatin1String("output") ? Utils::PinFigure::Output
                                                          : Utils::PinFigure::Inout;
        pins << Utils::PinFigure(port.name, direction, port.width);
    }
    return pins;
}

void readFrame(InstanceSettings &settings, const SampleDlg &dialog, const QListWidget *list)
{
    settings.name = dialog.moduleName();
    settings.module = dialog.moduleName();
    settings.file = dialog.fileName();
    settings.dir = dialog.createPath();
    settings.targetDevice = dialog.deviceId();
    settings.language = dialog.uiLanguageIndex();
    settings.lanes = checkedLanes(list);
}

bool lanesStillFree(const QStringList &lanes, const QStringList &free)
{
    for (const QString &lane : lanes) {
        if (!free.contains(lane))
            return false;
    }
    return !lanes.isEmpty();
}

QList<Problem> placementProblems(const QList<Problem> &own, const QList<LaneRow> &rows,
                                 const std::function<QString(const Refusal &)> &keyOf, Lines lines)
{
    // Settings the tier cannot take are not tried on the model.
    if (!own.isEmpty())
        return own;
    Refusal refusal;
    if (provePlacement(rows, refusal, lines))
        return {};
    return {{keyOf(refusal), refusal.why}};
}

bool confirmLanes(SampleDlg *dialog, const QString &title, const QList<Problem> &problems,
                  const QList<LaneRow> &rows, Lines lines)
{
    if (!dialog->checkModuleName())
        return false;
    const QStringList found = problemTexts(dialog->nameProblems() + problems);
    if (!found.isEmpty()) {
        Utils::showMessage(dialog, QMessageBox::Warning, title, found.join(QLatin1Char('\n')));
        return false;
    }
    Refusal refusal;
    if (!provePlacement(rows, refusal, lines)) {
        Utils::showMessage(dialog, QMessageBox::Warning, title, refusal.why);
        return false;
    }
    return true;
}

} // namespace samples
