// SPDX-License-Identifier: MIT
#include "utils/messages.h"

#include <QApplication>
#include <QPixmap>

namespace Utils {

namespace {

const char ERROR_IMAGE[] = ":/coregen/image/exclamation.png";

bool hasWidgets()
{
    return qobject_cast<QApplication *>(QCoreApplication::instance());
}

} // namespace

void showMessage(QWidget *parent, QMessageBox::Icon icon, const QString &title, const QString &text,
                 const QStringList &list, ListShown shown)
{
    if (!hasWidgets()) {
        printMessage(icon, text, list);
        return;
    }
    QMessageBox box(icon, title, text, QMessageBox::Ok, parent);
    box.setDefaultButton(QMessageBox::Ok);
    if (icon == QMessageBox::NoIcon)
        box.setIconPixmap(QPixmap(QLatin1String(ERROR_IMAGE)));
    if (!list.isEmpty()) {
        const QString lines = list.join(QLatin1Char('\n'));
        if (shown == ListShown::UnderText)
            box.setInformativeText(lines);
        else
            box.setDetailedText(lines);
    }
    box.exec();
}

QMessageBox::StandardButton ask(QWidget *parent, const QString &title, const QString &text,
                                QMessageBox::StandardButtons buttons,
                                QMessageBox::StandardButton defaultButton)
{
    if (!hasWidgets()) {
        printMessage(QMessageBox::Question, text);
        return defaultButton;
    }
    QMessageBox box(QMessageBox::Question, title, text, buttons, parent);
    if (defaultButton != QMessageBox::NoButton)
        box.setDefaultButton(defaultButton);
    // Closed without a button, the box answers as QMessageBox::question() does.
    if (box.exec() == -1)
        return QMessageBox::Cancel;
    return box.standardButton(box.clickedButton());
}

void printMessage(QMessageBox::Icon icon, const QString &text, const QStringList &list)
{
    QString message = text;
    for (const QString &line : list)
        message += QString(QStringLiteral("\n    ") + line);
    switch (icon) {
    case QMessageBox::NoIcon:
    case QMessageBox::Critical:
        qCritical("%s", qPrintable(message));
        break;
    case QMessageBox::Warning:
        qWarning("%s", qPrintable(message));
        break;
    case QMessageBox::Information:
    case QMessageBox::Question:
        qInfo("%s", qPrintable(message));
        break;
    }
}

bool hasDisplay()
{
    if (!hasWidgets())
        return false;
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

} // namespace Utils
