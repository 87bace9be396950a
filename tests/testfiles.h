// SPDX-License-Identifier: MIT
#pragma once

// Files as the tests read, write and copy them.

#include <QDir>
#include <QDirIterator>
#include <QFile>

inline QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline bool writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

// Copies the folder `from` with all it holds to `to`, made if need be.
inline bool copyTree(const QString &from, const QString &to)
{
    if (!QDir().mkpath(to))
        return false;
    QDirIterator it(from, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString source = it.next();
        const QString target = to + source.mid(from.size());
        if (!(it.fileInfo().isDir() ? QDir().mkpath(target) : QFile::copy(source, target)))
            return false;
    }
    return true;
}
