// SPDX-License-Identifier: MIT
#include "core/editormanager.h"

#include <QFileInfo>

namespace Core {

EditorManager *EditorManager::instance()
{
    static EditorManager manager;
    return &manager;
}

bool EditorManager::openEditor(const QString &fileName, bool newWindow)
{
    const QFileInfo info(fileName);
    if (!info.isFile() || !info.isReadable()) {
        qWarning("Cannot open \"%s\" in the editor: no readable file.", qPrintable(fileName));
        return false;
    }
    EditorManager *manager = instance();
    manager->m_opened << info.absoluteFilePath();
    emit manager->editorOpened(info.absoluteFilePath(), newWindow);
    return true;
}

} // namespace Core
