// SPDX-License-Identifier: MIT
#include "devicetier.h"

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <model/serdes.h>
#include <model/serdesip_common.h>

namespace samples {

QString familyOfInstance(const QMap<QString, QVariant> &args, const DEV::DeviceArg &fallback)
{
    const QString model = IPSERDESIP::serdes::instance()->device;
    if (!model.isEmpty())
        return model;
    const QString id = args.value(QStringLiteral("target_device")).toString();
    const DEV::DeviceArg named = Core::IdeCore::deviceDataBase()->findByID(id);
    return named.isValid() ? named.family : fallback.family;
}

Tier tierOfInstance(const QMap<QString, QVariant> &args, const DEV::DeviceArg &fallback)
{
    return tierOf(familyOfInstance(args, fallback));
}

QString instanceDirectory(const QMap<QString, QVariant> &args)
{
    const QString working = IPSERDESIP::serdes::instance()->workingDir();
    if (working.isEmpty())
        return args.value(QStringLiteral("dir")).toString();
    // The file name may come from a configuration file: it must name a folder
    // inside the core's, not a path that leads out of it.
    const QString file = args.value(QStringLiteral("file")).toString();
    if (file.isEmpty() || file == QLatin1String(".") || file == QLatin1String("..")
        || file.contains(QLatin1Char('/')) || file.contains(QLatin1Char('\\')))
        return QString();
    return QString(working + QLatin1Char('/') + file);
}

bool hasTransceivers(const DEV::DeviceArg &device)
{
    return !device.family.isEmpty() && device.features.contains(QStringLiteral("SERDES"));
}

QStringList quadsOf(Tier tier)
{
    QStringList quads;
    for (int q = 0; q < IPSERDESIP::tierDescription(tier).quads; ++q)
        quads << QStringLiteral("Q%1").arg(q);
    return quads;
}

QStringList laneLabels(Tier tier)
{
    QStringList labels;
    for (const QString &quad : quadsOf(tier)) {
        for (int i = 0; i < 4; ++i)
            labels << QStringLiteral("%1 Lane%2").arg(quad).arg(i);
    }
    return labels;
}

QStringList referencePins(Tier tier)
{
    return IPSERDESIP::tierList(IPSERDESIP::tierDescription(tier).referencePins);
}

QStringList fabricReferences(Tier tier)
{
    return IPSERDESIP::tierList(IPSERDESIP::tierDescription(tier).fabricReferences);
}

bool isFabricReference(const QString &option)
{
    return option.contains(QStringLiteral("REFIN")) || option == QLatin1String("MCLK");
}

QStringList referenceMuxes(Tier tier)
{
    return IPSERDESIP::tierList(IPSERDESIP::tierDescription(tier).referenceMuxes);
}

QString frequencyParameter(const QString &option)
{
    const QString model = IPSERDESIP::refsrcOptTransforSerdesName(option).toLower();
    if (model.isEmpty())
        return QString();
    // The master clock is the chip's, not a quad's.
    if (model == QLatin1String("q0_mclk"))
        return QStringLiteral("mclk_freq");
    return QString(model + QStringLiteral("_freq"));
}

QString referencePortName(const QString &option)
{
    return option.toLower().replace(QLatin1Char(' '), QLatin1Char('_'));
}

QString laneModelName(const QString &label)
{
    return label.toUpper().replace(QLatin1Char(' '), QLatin1Char('_'));
}

QString laneLabel(const QString &modelName)
{
    // "Q0_LANE2" -> "Q0 Lane2"
    return QStringLiteral("%1 Lane%2").arg(quadOfLane(modelName)).arg(laneInQuad(modelName));
}

QString quadOfLane(const QString &modelName)
{
    return modelName.left(2);
}

int laneInQuad(const QString &modelName)
{
    return modelName.mid(modelName.indexOf(QStringLiteral("LANE")) + 4, 1).toInt();
}

QString laneParameterPrefix(const QString &modelName)
{
    return QStringLiteral("%1_ln%2")
        .arg(quadOfLane(modelName).toLower())
        .arg(laneInQuad(modelName));
}

QString pllModelName(const QString &laneModel, const QString &pllOption)
{
    const QString quad = quadOfLane(laneModel);
    if (pllOption == QLatin1String("CPLL"))
        return QStringLiteral("%1_CPLL%2").arg(quad).arg(laneInQuad(laneModel));
    return QString(quad + QLatin1Char('_') + pllOption);
}

} // namespace samples
