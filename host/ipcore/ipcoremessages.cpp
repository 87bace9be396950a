// SPDX-License-Identifier: MIT
#include "ipcore/ipcoremessages.h"

#include "utils/messages.h"

#include <QApplication>

namespace IPCore {

void showErrorMsgs(const QString &title, const QStringList &errors)
{
    QStringList shown;
    for (const QString &error : errors) {
        if (!error.isEmpty())
            shown << error;
    }
    // Sent from deep inside a run, with no window of its own: where nobody
    // could see it, it goes to the message handler at once.
    if (!Utils::hasDisplay()) {
        Utils::printMessage(QMessageBox::Critical, title, shown);
        return;
    }
    Utils::showMessage(QApplication::activeWindow(), QMessageBox::Critical,
                       QCoreApplication::translate("IPCore", "Error"), title, shown,
                       Utils::ListShown::UnderText);
}

} // namespace IPCore
