// SPDX-License-Identifier: MIT
#pragma once

#include "hostplatform_global.h"

#include <QObject>
#include <QStringList>

namespace Core {

// The environment's current project: the files a design is made of, in the
// order they were added. Cores add what they generate; the application shows
// the list.
class HOSTPLATFORM_EXPORT ProjectManager : public QObject
{
    Q_OBJECT

public:
    static ProjectManager *instance();

    // Adds the existing files among `files` that the project does not hold
    // yet, as absolute paths. A file that does not exist is refused, and the
    // refusals are reported together; false when there was any.
    bool addFiles(const QStringList &files);
    QStringList files() const { return m_files; }
    // Empties the project, as a new project does.
    void clear();

signals:
    void filesAdded(const QStringList &files);

private:
    ProjectManager() = default;
    QStringList m_files;
};

} // namespace Core
