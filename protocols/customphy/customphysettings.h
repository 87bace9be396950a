// SPDX-License-Identifier: MIT
#pragma once

#include "../common/devicetier.h"
#include "../common/fields.h"
#include "../common/instancesettings.h"
#include "../common/lanemodule.h"
#include "../common/laneplacement.h"

#include <QCoreApplication>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

// One Custom PHY instance: its lanes, the clocking of each quad it uses, and
// the line settings that all its lanes share. It reads and writes the
// instance's parameter map, which is all that survives in a configuration
// file, so that a reopened file gives the same request and the same outputs.
//
// Keys of the map besides those of samples::InstanceSettings: per quad with
// lanes "<quad>_pll" ("CPLL", "QPLL0", "QPLL1"), "<quad>_reference" (option
// string) and "<quad>_refFreq" (MHz); "txRate", "rxRate" (Gbps); "width" (PMA
// bits); "encoding" ("off", "8b10b", "64b66b", "64b67b"); "wordAlign",
// "alignPattern"; "txPolarityInvert", "rxPolarityInvert"; "loopback" (the
// tables' value, "off", "lb_nes", ...); "referenceMux" ("" or "REFMUX1").
struct CustomPhySettings : samples::InstanceSettings
{
    Q_DECLARE_TR_FUNCTIONS(CustomPhySettings)

public:
    struct QuadClock
    {
        QString pll = QStringLiteral("QPLL0");
        QString reference;
        double refFreq = 156.25;
    };

    static CustomPhySettings fromMap(const QMap<QString, QVariant> &args);
    QMap<QString, QVariant> toMap() const;

    // The quads that have a lane of the instance.
    QStringList quads() const;
    // The clocking of the quad of a lane shown as `label`.
    QuadClock clockOf(const QString &label) const;
    QList<samples::LaneRow> rows() const;
    QList<samples::LaneModule::Lane> moduleLanes() const;
    // Protocol parameter lines in the tables' vocabulary of `tier`.
    QStringList iniLines(samples::Tier tier) const;
    // Values the tier has no translation or no element for, each under the
    // key of its field; empty when the settings can be generated.
    QList<samples::Problem> problems(samples::Tier tier) const;
    // Fabric bits per lane and clock, and control bits with them.
    int dataWidth() const;
    int ctrlWidth() const;

    QMap<QString, QuadClock> clocks;
    double txRate = 2.5;
    double rxRate = 2.5;
    int width = 20;
    QString encoding = QStringLiteral("8b10b");
    bool wordAlign = true;
    QString alignPattern = QStringLiteral("k28.5");
    bool txPolarityInvert = false;
    bool rxPolarityInvert = false;
    QString loopback = QStringLiteral("off");
    QString referenceMux;
};

// What the dialogs offer, per tier, as pairs of display text and value.
namespace customphy {
QList<QPair<QString, QString>> encodings(samples::Tier tier);
QList<QPair<QString, QString>> loopbacks(samples::Tier tier);
QStringList widths();
} // namespace customphy
