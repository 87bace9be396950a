// SPDX-License-Identifier: MIT
#include "lanelist.h"

#include <QListWidget>

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

} // namespace samples
