// SPDX-License-Identifier: MIT
#include "ethernet10g.h"

#include "../common/devicetier.h"
#include "../common/lanemodule.h"
#include "../common/laneplacement.h"
#include "../common/parameters.h"
#include "../common/samplepackage.h"
#include "ethernet10gdlg.h"
#include "ethernet10gsettings.h"

#include <protocol/message.h>

IPSERDESIP::BaseProtocol *samples::makeProtocol(const QString &path)
{
    return new Ethernet10g(path);
}

Ethernet10g::Ethernet10g(const QString &path)
    : m_path(path)
{}

QMap<QString, QVariant> Ethernet10g::create(const QString &createPath, const DEV::DeviceArg &device)
{
    Ethernet10gDlg dialog(samples::tierOf(device.family));
    return dialog.runCreating(QStringLiteral("eth10g"), createPath, device);
}

QMap<QString, QVariant> Ethernet10g::edit(const QMap<QString, QVariant> &args)
{
    Ethernet10gDlg dialog(samples::tierOfInstance(args, device));
    return dialog.runOpening(args);
}

IPSERDESIP::Message *Ethernet10g::createMessage(const QMap<QString, QVariant> &args)
{
    const Ethernet10gSettings s = Ethernet10gSettings::fromMap(args);
    return samples::makeMessage(name(), s.name, s.file, s.module, s.rows());
}

bool Ethernet10g::generate(const QMap<QString, QVariant> &args, QStringList &iniLines,
                           QStringList &csrLines, QStringList &modArgs, QString &outputFile,
                           bool fullRun)
{
    Q_UNUSED(csrLines)
    const Ethernet10gSettings s = Ethernet10gSettings::fromMap(args);
    if (!samples::reportProblems(
            name(), s.name,
            samples::problemTexts(s.problems(samples::tierOfInstance(args, device)))))
        return false;
    iniLines << s.iniLines();
    if (!fullRun)
        return true;

    const samples::LaneModule module(s.module, s.moduleLanes(), Ethernet10gSettings::DATA_BITS,
                                     Ethernet10gSettings::CTRL_BITS, s.drp);
    const QStringList about{
        QStringLiteral("10GBASE-R instance %1, written by the 10GBASE-R protocol at each "
                       "generation.")
            .arg(s.name),
        QStringLiteral("Lanes: %1; 10.3125 Gbps on %2 from %3 at 156.25 MHz; 64b/66b coding%4.")
            .arg(s.lanes.join(QStringLiteral(", ")), s.pll, s.reference,
                 s.drp ? QStringLiteral("; register access through the Upar arbiter") : QString())};
    if (!samples::writeInstanceModule(module, about, args, s.file, outputFile, modArgs))
        return false;
    if (s.drp)
        modArgs << QString(QLatin1Char('-') + s.module + QStringLiteral("EnableDRP true"));
    return true;
}

bool Ethernet10g::validate(const QMap<QString, QVariant> &args, QStringList &errors) const
{
    const samples::Tier tier = samples::tierOfInstance(args, device);
    return samples::validateParameters(
        name(), args, device,
        [tier](const QMap<QString, QVariant> &map) {
            return samples::problemTexts(Ethernet10gSettings::fromMap(map).problems(tier));
        },
        errors);
}

QString Ethernet10g::version() const
{
    return QStringLiteral("1.0");
}

QString Ethernet10g::id() const
{
    return QStringLiteral("SERDES_ETHERNET_10GBASE_R");
}

QString Ethernet10g::name() const
{
    return QStringLiteral("10GBASE-R");
}

// Beside the generator's own XAUI entry, in the folder of the Ethernet PHYs.
QStringList Ethernet10g::category() const
{
    return {QStringLiteral("Serdes"), QStringLiteral("Telecommunication"),
            QStringLiteral("Ethernet")};
}

QString Ethernet10g::summaryFile() const
{
    return QString(m_path + QStringLiteral("/ethernet10g.html"));
}

bool Ethernet10g::isSupported(const DEV::DeviceArg &device) const
{
    return samples::hasTransceivers(device) && ethernet10gRunsOn(samples::tierOf(device.family));
}
