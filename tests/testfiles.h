// SPDX-License-Identifier: MIT
#pragma once

// Files as the tests read, write and copy them.

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <algorithm>

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

// Makes `entries` below `dir`: a name ending in "/" a folder, any other a file
// holding "old <name>", as an earlier run might have left them.
inline bool makeEntries(const QString &dir, const QStringList &entries)
{
    return std::all_of(entries.cbegin(), entries.cend(), [&dir](const QString &entry) {
        return entry.endsWith('/') ? QDir().mkpath(dir + '/' + entry)
                                   : writeFile(dir + '/' + entry, "old " + entry.toUtf8());
    });
}

// Whether everything makeEntries made is still there as it was.
inline bool entriesKept(const QString &dir, const QStringList &entries)
{
    return std::all_of(entries.cbegin(), entries.cend(), [&dir](const QString &entry) {
        return entry.endsWith('/') ? QFileInfo(dir + '/' + entry).isDir()
                                   : readAll(dir + '/' + entry) == "old " + entry.toUtf8();
    });
}
