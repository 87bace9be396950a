// SPDX-License-Identifier: MIT
#include "plugin/messagebox.h"

#include <QIcon>
#include <QPixmap>

namespace IPSERDESIP {

void showOkBox(QWidget *parent, QMessageBox::Icon icon, const QString &title, const QString &text)
{
    QMessageBox box(icon, title, text, QMessageBox::Ok, parent);
    box.setDefaultButton(QMessageBox::Ok);
    box.setWindowIcon(QIcon(QStringLiteral("://image/module.png")));
    if (icon == QMessageBox::NoIcon)
        box.setIconPixmap(QPixmap(QStringLiteral("://image/exclamation.png")));
    box.exec();
}

} // namespace IPSERDESIP
