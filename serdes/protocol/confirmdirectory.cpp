// SPDX-License-Identifier: MIT
#include "protocol/confirmdirectory.h"

#include <utils/messages.h>

#include <QCoreApplication>
#include <QDir>

namespace IPSERDESIP {

DirectoryAnswer confirmDirectory(QWidget *parent, const QString &path,
                                 const QString &confirmTitle)
{
    if (QDir(path).exists()) {
        const QMessageBox::StandardButton answer = Utils::ask(
            parent, confirmTitle,
            QCoreApplication::translate("IPSERDESIP::confirmDirectory",
                                        "Directory \"%1\" already exists, do you want to "
                                        "overwrite?")
                .arg(QDir::toNativeSeparators(QDir::cleanPath(path))),
            QMessageBox::Yes | QMessageBox::Cancel, QMessageBox::Cancel);
        return answer == QMessageBox::Cancel ? DirectoryAnswer::Declined : DirectoryAnswer::Ready;
    }
    return QDir().mkpath(path) ? DirectoryAnswer::Ready : DirectoryAnswer::NotMade;
}

} // namespace IPSERDESIP
