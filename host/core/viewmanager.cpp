// SPDX-License-Identifier: MIT
#include "core/viewmanager.h"

#include <QPointer>
#include <QWidget>

namespace Core {

namespace {
QPointer<QWidget> parentWidget;
}

QWidget *ViewManager::dialogParent()
{
    return parentWidget.data();
}

void ViewManager::setDialogParent(QWidget *parent)
{
    parentWidget = parent;
}

} // namespace Core
