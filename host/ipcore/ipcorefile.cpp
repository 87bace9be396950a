// SPDX-License-Identifier: MIT
#include "ipcore/ipcorefile.h"

#include "core/idecore.h"
#include "dev/devicedb.h"
#include "utils/messages.h"

#include <QCoreApplication>
#include <QDir>
#include <QSaveFile>
#include <QTextCodec>
#include <QTextStream>

namespace IPCore {

QString modfileHeader(const DEV::DeviceArg &device)
{
    const QStringList lines = {
        QStringLiteral("-device %1").arg(device.name),
        QStringLiteral("-device_id %1").arg(device.id),
        QStringLiteral("-part_number %1").arg(device.partNumber),
        QStringLiteral("-family %1").arg(device.family),
        QStringLiteral("-package %1").arg(device.package),
        QStringLiteral("-speed %1").arg(device.speed),
    };
    return lines.join(QLatin1Char('\n'));
}

bool generateFile(const QString &path, const QStringList &lines, QWidget *parent,
                  const QString &codec)
{
    QTextCodec *textCodec = QTextCodec::codecForName(
        codec.isEmpty() ? QByteArray("UTF-8") : codec.toLatin1());
    if (!textCodec) {
        Utils::showMessage(
            parent, QMessageBox::Critical, QCoreApplication::translate("IPCore", "Error"),
            QCoreApplication::translate("IPCore", "Unknown text encoding \"%1\" for \"%2\".")
                .arg(codec, QDir::toNativeSeparators(path)));
        return false;
    }

    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        QTextStream out(&file);
        out.setCodec(textCodec);
        for (const QString &line : lines)
            out << line << '\n';
        out.flush();
        if (file.commit())
            return true;
    }
    Utils::showMessage(parent, QMessageBox::Critical,
                       QCoreApplication::translate("IPCore", "Error"),
                       QCoreApplication::translate("IPCore", "Failed to write \"%1\": %2")
                           .arg(QDir::toNativeSeparators(path), file.errorString()));
    return false;
}

bool makeDirs(const QString &path, const QString &base)
{
    const QDir dir(base.isEmpty() ? QDir::currentPath() : base);
    return dir.mkpath(path);
}

QStringList getPrimitiveNames()
{
    return Core::IdeCore::deviceDataBase()->primitiveNames();
}

} // namespace IPCore
