// SPDX-License-Identifier: MIT
#pragma once

#include "hostplatform_global.h"

#include <QObject>
#include <QStringList>

namespace Core {

// Opens files in the environment's editor. The application shows each file
// it is asked for; without an application window the requests are only kept.
class HOSTPLATFORM_EXPORT EditorManager : public QObject
{
    Q_OBJECT

public:
    static EditorManager *instance();

    // False, with a warning, when the file cannot be read.
    static bool openEditor(const QString &fileName, bool newWindow);

    // Every file opened so far, in order, as absolute paths.
    QStringList openedFiles() const { return m_opened; }

signals:
    void editorOpened(const QString &fileName, bool newWindow);

private:
    EditorManager() = default;
    QStringList m_opened;
};

} // namespace Core
