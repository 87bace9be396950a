// SPDX-License-Identifier: MIT
#include "ipcore/ipcoreproject.h"

#include "core/projectmanager.h"

namespace IPCore {

bool addFilesToProject(const QStringList &files)
{
    return Core::ProjectManager::instance()->addFiles(files);
}

} // namespace IPCore
