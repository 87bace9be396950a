// SPDX-License-Identifier: MIT
#include "ipcore/ipcoremessages.h"

#include <QApplication>
#include <QMessageBox>

namespace IPCore {

namespace {

bool hasDisplay()
{
    if (!qobject_cast<QApplication *>(QCoreApplication::instance()))
        return false;
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

} // namespace

void showErrorMsgs(const QString &title, const QStringList &errors)
{
    QStringList shown;
    for (const QString &error : errors) {
        if (!error.isEmpty())
            shown << error;
    }
    if (!hasDisplay()) {
        QString text = title;
        for (const QString &error : qAsConst(shown))
            text += QString(QStringLiteral("\n    ") + error);
        qCritical("%s", qPrintable(text));
        return;
    }
    QMessageBox box(QMessageBox::Critical, QStringLiteral("Error"), title, QMessageBox::Ok,
                    QApplication::activeWindow());
    box.setInformativeText(shown.join(QLatin1Char('\n')));
    box.exec();
}

} // namespace IPCore
