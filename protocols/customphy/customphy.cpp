// SPDX-License-Identifier: MIT
#include "customphy.h"

#include "../common/devicetier.h"
#include "../common/lanemodule.h"
#include "../common/laneplacement.h"
#include "../common/parameters.h"
#include "../common/samplepackage.h"
#include "customphydlg.h"
#include "customphysettings.h"

#include <protocol/message.h>

IPSERDESIP::BaseProtocol *samples::makeProtocol(const QString &path)
{
    return new CustomPhy(path);
}

CustomPhy::CustomPhy(const QString &path)
    : m_path(path)
{}

QMap<QString, QVariant> CustomPhy::create(const QString &createPath, const DEV::DeviceArg &device)
{
    CustomPhyDlg dialog(samples::tierOf(device.family));
    return dialog.runCreating(QStringLiteral("customphy"), createPath, device);
}

QMap<QString, QVariant> CustomPhy::edit(const QMap<QString, QVariant> &args)
{
    CustomPhyDlg dialog(samples::tierOfInstance(args, device));
    return dialog.runOpening(args);
}

IPSERDESIP::Message *CustomPhy::createMessage(const QMap<QString, QVariant> &args)
{
    const CustomPhySettings s = CustomPhySettings::fromMap(args);
    return samples::makeMessage(name(), s.name, s.file, s.module, s.rows());
}

bool CustomPhy::generate(const QMap<QString, QVariant> &args, QStringList &iniLines,
                         QStringList &csrLines, QStringList &modArgs, QString &outputFile,
                         bool fullRun)
{
    Q_UNUSED(csrLines)
    const CustomPhySettings s = CustomPhySettings::fromMap(args);
    const samples::Tier tier = samples::tierOfInstance(args, device);
    if (!samples::reportProblems(name(), s.name, samples::problemTexts(s.problems(tier))))
        return false;
    iniLines << s.iniLines(tier);
    if (!fullRun)
        return true;

    const samples::LaneModule module(s.module, s.moduleLanes(), s.dataWidth(), s.ctrlWidth(),
                                     false);
    QStringList about{QStringLiteral("Custom PHY instance %1, written by the Custom PHY protocol "
                                     "at each generation.")
                          .arg(s.name),
                      QStringLiteral("Lanes: %1; TX %2 Gbps, RX %3 Gbps, %4-bit PMA, coding %5.")
                          .arg(s.lanes.join(QStringLiteral(", ")), samples::numberText(s.txRate),
                               samples::numberText(s.rxRate))
                          .arg(s.width)
                          .arg(s.encoding)};
    for (auto it = s.clocks.cbegin(); it != s.clocks.cend(); ++it) {
        about << QStringLiteral("%1: %2 from %3 at %4 MHz.")
                     .arg(it.key(), it->pll, it->reference, samples::numberText(it->refFreq));
    }
    return samples::writeInstanceModule(module, about, args, s.file, outputFile, modArgs);
}

bool CustomPhy::validate(const QMap<QString, QVariant> &args, QStringList &errors) const
{
    const samples::Tier tier = samples::tierOfInstance(args, device);
    return samples::validateParameters(
        name(), args, device,
        [tier](const QMap<QString, QVariant> &map) {
            return samples::problemTexts(CustomPhySettings::fromMap(map).problems(tier));
        },
        errors);
}

QString CustomPhy::version() const
{
    return QStringLiteral("1.0");
}

QString CustomPhy::id() const
{
    return QStringLiteral("SERDES_CUSTOM_PHY");
}

QString CustomPhy::name() const
{
    return QStringLiteral("Custom PHY");
}

QStringList CustomPhy::category() const
{
    return {QStringLiteral("Serdes"), QStringLiteral("PHY")};
}

QString CustomPhy::summaryFile() const
{
    return QString(m_path + QStringLiteral("/customphy.html"));
}

bool CustomPhy::isSupported(const DEV::DeviceArg &device) const
{
    return samples::hasTransceivers(device);
}
