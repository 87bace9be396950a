// SPDX-License-Identifier: MIT
#include "utils/fileutils.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSaveFile>

namespace Utils {

bool FileUtils::copyFile(const QString &source, const QString &target, QString *error)
{
    const auto fail = [&](const QString &text) {
        if (error)
            *error = text;
        return false;
    };

    QFile in(source);
    if (!in.open(QIODevice::ReadOnly))
        return fail(QCoreApplication::translate("Utils::FileUtils", "Cannot read \"%1\": %2")
                        .arg(QDir::toNativeSeparators(source), in.errorString()));
    QSaveFile out(target);
    if (!out.open(QIODevice::WriteOnly))
        return fail(QCoreApplication::translate("Utils::FileUtils", "Cannot write \"%1\": %2")
                        .arg(QDir::toNativeSeparators(target), out.errorString()));
    while (!in.atEnd()) {
        const QByteArray chunk = in.read(1 << 16);
        if (chunk.isEmpty() && in.error() != QFile::NoError)
            return fail(QCoreApplication::translate("Utils::FileUtils", "Cannot read \"%1\": %2")
                            .arg(QDir::toNativeSeparators(source), in.errorString()));
        if (out.write(chunk) != chunk.size())
            return fail(QCoreApplication::translate("Utils::FileUtils", "Cannot write \"%1\": %2")
                            .arg(QDir::toNativeSeparators(target), out.errorString()));
    }
    if (!out.commit())
        return fail(QCoreApplication::translate("Utils::FileUtils", "Cannot write \"%1\": %2")
                        .arg(QDir::toNativeSeparators(target), out.errorString()));
    return true;
}

} // namespace Utils
