// SPDX-License-Identifier: MIT
#include "core/projectmanager.h"

#include "ipcore/ipcoremessages.h"

#include <QDir>
#include <QFileInfo>

namespace Core {

ProjectManager *ProjectManager::instance()
{
    static ProjectManager manager;
    return &manager;
}

bool ProjectManager::addFiles(const QStringList &files)
{
    QStringList added;
    QStringList refused;
    for (const QString &file : files) {
        const QFileInfo info(file);
        if (file.isEmpty()) {
            refused << tr("A file without a name cannot be added.");
        } else if (!info.exists()) {
            refused << tr("\"%1\" does not exist.").arg(QDir::toNativeSeparators(file));
        } else if (!info.isFile()) {
            refused << tr("\"%1\" is no file.").arg(QDir::toNativeSeparators(file));
        } else {
            const QString path = info.absoluteFilePath();
            if (!m_files.contains(path) && !added.contains(path))
                added << path;
        }
    }
    m_files << added;
    if (!added.isEmpty())
        emit filesAdded(added);
    if (refused.isEmpty())
        return true;
    IPCore::showErrorMsgs(tr("Some files could not be added to the project."), refused);
    return false;
}

void ProjectManager::clear()
{
    m_files.clear();
}

} // namespace Core
