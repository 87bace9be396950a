// SPDX-License-Identifier: MIT
#include "utils/messages.h"

#include <QApplication>
#include <QMessageBox>

namespace Utils {

void showError(QWidget *parent, const QString &text)
{
    if (qobject_cast<QApplication *>(QCoreApplication::instance()))
        QMessageBox::critical(parent, QStringLiteral("Error"), text);
    else
        qCritical("%s", qPrintable(text));
}

} // namespace Utils
