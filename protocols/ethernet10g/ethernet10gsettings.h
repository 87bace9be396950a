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

// One 10GBASE-R instance: one to four lanes of a quad, all on one QPLL of
// that quad at 10.3125 Gbps from a 156.25 MHz reference, with the device's
// 64b/66b coding and 10GBASE-R decoding.
//
// Keys of the parameter map besides those of samples::InstanceSettings: "pll"
// ("QPLL0" or "QPLL1"); "reference" (option string); "drp" (true asks for a
// port on the Upar arbiter).
struct Ethernet10gSettings : samples::InstanceSettings
{
    Q_DECLARE_TR_FUNCTIONS(Ethernet10gSettings)

public:
    static constexpr double LINE_RATE = 10.3125; // Gbps
    static constexpr double REF_FREQ = 156.25;   // MHz
    static constexpr int MAX_LANES = 4;
    // The fabric side of a lane: the 64-bit words and 8 control flags of the
    // 10GBASE-R coding.
    static constexpr int DATA_BITS = 64;
    static constexpr int CTRL_BITS = 8;

    static Ethernet10gSettings fromMap(const QMap<QString, QVariant> &args);
    QMap<QString, QVariant> toMap() const;

    QString quad() const;
    QList<samples::LaneRow> rows() const;
    QList<samples::LaneModule::Lane> moduleLanes() const;
    QStringList iniLines() const;
    // What keeps the settings from being generated on `tier`, each under the
    // key of its field; empty if none.
    QList<samples::Problem> problems(samples::Tier tier) const;

    QString pll = QStringLiteral("QPLL0");
    QString reference;
    bool drp = false;
};

// Only the one-quad tiers code 64b/66b and decode 10GBASE-R; the two-quad
// tier's tables have neither.
bool ethernet10gRunsOn(samples::Tier tier);
