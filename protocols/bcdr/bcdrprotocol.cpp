// SPDX-License-Identifier: MIT
#include "bcdrprotocol.h"

#include "bcdrdlg.h"
#include "bcdrmodule.h"
#include "bcdrparameters.h"
#include "bcdrsettings.h"

#include "../common/devicetier.h"
#include "../common/samplepackage.h"

#include <ipcore/ipcorefile.h>
#include <protocol/message.h>

#include <QDir>

IPSERDESIP::BaseProtocol *samples::makeProtocol(const QString &path)
{
    return new BcdrProtocol(path);
}

BcdrProtocol::BcdrProtocol(const QString &path, QObject *parent)
    : BaseProtocol(parent)
    , m_path(path)
{}

QMap<QString, QVariant> BcdrProtocol::create(const QString &createPath,
                                             const DEV::DeviceArg &device)
{
    BcdrDlg dialog(summaryFile());
    return dialog.runCreating(QStringLiteral("bcdr"), createPath, device);
}

QMap<QString, QVariant> BcdrProtocol::edit(const QMap<QString, QVariant> &args)
{
    BcdrDlg dialog(summaryFile());
    return dialog.runOpening(args);
}

IPSERDESIP::Message *BcdrProtocol::createMessage(const QMap<QString, QVariant> &args)
{
    return Bcdr::Settings::fromMap(args).message(name());
}

bool BcdrProtocol::generate(const QMap<QString, QVariant> &args, QStringList &iniLines,
                            QStringList &csrLines, QStringList &modArgs, QString &outputFile,
                            bool fullRun)
{
    Q_UNUSED(csrLines)
    const Bcdr::Settings settings = Bcdr::Settings::fromMap(args);
    const QStringList errors = settings.check();
    if (!errors.isEmpty()) {
        qCritical("BCDR instance \"%s\" cannot be generated: %s", qPrintable(settings.name),
                  qPrintable(errors.join(QLatin1Char(' '))));
        return false;
    }
    iniLines << Bcdr::parameterLines(settings, samples::tierOfInstance(args, device));
    if (!fullRun)
        return true;

    // In a folder named after the instance's file, as the dialog frame shows
    // it on opening.
    const QString dir = samples::instanceDirectory(args);
    if (dir.isEmpty() || !IPCore::makeDirs(dir, QString())) {
        qCritical("BCDR instance \"%s\": no directory \"%s\" for its file.",
                  qPrintable(settings.name), qPrintable(QDir::toNativeSeparators(dir)));
        return false;
    }
    const QString file = QDir(dir).absoluteFilePath(settings.file + QStringLiteral(".v"));
    // generateFile tells the user itself when it cannot write.
    if (!IPCore::generateFile(file, Bcdr::moduleText(settings), nullptr, QString()))
        return false;
    outputFile = file;
    modArgs << Bcdr::moduleGeneratorLines(settings);
    return true;
}

bool BcdrProtocol::validate(const QMap<QString, QVariant> &args, QStringList &errors) const
{
    const QStringList found = Bcdr::Settings::fromMap(args).check();
    errors << found;
    return found.isEmpty();
}

QString BcdrProtocol::version() const
{
    return QStringLiteral("1.0");
}

QString BcdrProtocol::id() const
{
    return QStringLiteral("SERDES_BCDR_RX");
}

QString BcdrProtocol::name() const
{
    return QStringLiteral("BCDR");
}

QStringList BcdrProtocol::category() const
{
    return {QStringLiteral("Serdes"), QStringLiteral("Receiver")};
}

QString BcdrProtocol::summaryFile() const
{
    return m_path + QStringLiteral("/bcdr.html");
}

bool BcdrProtocol::isSupported(const DEV::DeviceArg &device) const
{
    return samples::hasTransceivers(device);
}
