// SPDX-License-Identifier: MIT
#include "bcdrprotocol.h"

#include "bcdrdlg.h"
#include "bcdrparameters.h"
#include "bcdrsettings.h"

#include "../common/devicetier.h"
#include "../common/lanemodule.h"
#include "../common/laneplacement.h"
#include "../common/parameters.h"
#include "../common/samplepackage.h"

#include <protocol/message.h>

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
    const Bcdr::Settings s = Bcdr::Settings::fromMap(args);
    return samples::makeMessage(name(), s.name, s.file, s.module, s.rows(),
                                samples::Lines::ReceiverOnPll);
}

bool BcdrProtocol::generate(const QMap<QString, QVariant> &args, QStringList &iniLines,
                            QStringList &csrLines, QStringList &modArgs, QString &outputFile,
                            bool fullRun)
{
    Q_UNUSED(csrLines)
    const Bcdr::Settings s = Bcdr::Settings::fromMap(args);
    if (!samples::reportProblems(name(), s.name, samples::problemTexts(s.check())))
        return false;
    iniLines << Bcdr::parameterLines(s, samples::tierOfInstance(args, device));
    if (!fullRun)
        return true;

    const samples::LaneModule module(s.module, s.moduleLanes(), s.dataWidth(), s.ctrlWidth(), false,
                                     samples::Lines::ReceiverOnPll);
    QStringList labels;
    for (const QString &lane : s.lanes)
        labels << samples::laneLabel(lane);
    const QStringList about{
        QStringLiteral("Burst-mode CDR receiver \"%1\", written by the BCDR protocol of the "
                       "SerDes IP core.")
            .arg(s.module),
        QStringLiteral("Lanes %1, RX only, each line clocked by %2 from %3 at %4 MHz;")
            .arg(labels.join(QStringLiteral(", ")),
                 s.pll == QLatin1String("QPLL0") ? QStringLiteral("its quad's QPLL0")
                                                 : QStringLiteral("its own CPLL"),
                 s.ref, s.refFreq),
        QStringLiteral("%1 Gbps, %2-times oversampled, %3-bit PMA, %4.")
            .arg(s.rxRate, s.ovsRatio.chopped(1), s.width,
                 s.ctrlWidth() > 0 ? QStringLiteral("8B/10B decoded")
                                   : QStringLiteral("no decoding")),
        QStringLiteral("The clock network and the lanes' settings are set by the register file, "
                       "not here.")};
    return samples::writeInstanceModule(module, about, args, s.file, outputFile, modArgs);
}

bool BcdrProtocol::validate(const QMap<QString, QVariant> &args, QStringList &errors) const
{
    return samples::validateParameters(
        name(), args, device,
        [](const QMap<QString, QVariant> &map) {
            return samples::problemTexts(Bcdr::Settings::fromMap(map).check());
        },
        errors);
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
