// SPDX-License-Identifier: MIT
#pragma once

#include "../common/fields.h"
#include "../common/lanemodule.h"
#include "../common/laneplacement.h"

#include <QCoreApplication>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace Bcdr {

// Keys of the parameter map. The map is all an instance is: the generator
// stores it in the configuration file and hands it back, as text once it has
// been through the file.
namespace Key {
const char NAME[] = "name";
const char FILE[] = "file";
const char MODULE[] = "module";
const char DEVICE[] = "target_device";
const char DIR[] = "dir";
const char LANES[] = "lanes";
const char PLL[] = "pll";
const char REF[] = "ref_clock";
const char REF_FREQ[] = "ref_freq";
const char RX_RATE[] = "rx_rate";
const char WIDTH[] = "width";
const char ENCODING[] = "encoding";
const char WORD_ALIGN[] = "word_align";
const char COMMA[] = "comma";
const char POLARITY_INVERT[] = "polarity_invert";
const char COUPLING[] = "coupling";
const char SD_THRESHOLD[] = "sd_threshold";
const char OVS_MODE[] = "ovs_mode";
const char OVS_RATIO[] = "ovs_ratio";
} // namespace Key

// One BCDR instance: receive-only lanes whose lines are clocked by a PLL
// (oversampling, so that a burst needs no CDR lock), and their RX settings.
struct Settings
{
    Q_DECLARE_TR_FUNCTIONS(Bcdr::Settings)

public:
    QString name;
    QString file;
    QString module;
    QString device;    // the device's identifier
    QString dir;       // the instance's directory as the dialog had it
    QStringList lanes; // model names, "Q0_LANE1", ascending
    QString pll = QStringLiteral("CPLL");
    QString ref;     // option string of the reference input, "Q0 REFCLK0"
    QString refFreq; // MHz
    QString rxRate;  // Gbps
    QString width = QStringLiteral("20");
    QString encoding = QStringLiteral("8b10b");
    bool wordAlign = true;
    QString comma = QStringLiteral("k28.5");
    bool polarityInvert = false;
    QString coupling = QStringLiteral("ac");
    QString sdThreshold = QStringLiteral("100mV");
    QString ovsMode = QStringLiteral("buildin");
    QString ovsRatio = QStringLiteral("5x");

    // Missing keys keep the defaults above; values are taken as they come.
    static Settings fromMap(const QMap<QString, QVariant> &args);
    QMap<QString, QVariant> toMap() const;

    // What is wrong, in words for the user, each under the key of its
    // field; empty when nothing is.
    QList<samples::Problem> check() const;

    // The model's name of the PLL that clocks `lane`'s RX line.
    QString pllOf(const QString &lane) const;
    // The model's name of the reference input; null when `ref` names none.
    QString refName() const;
    // A row per lane whose receiver the PLL clocks (samples::Lines::ReceiverOnPll),
    // and the lanes of its module.
    QList<samples::LaneRow> rows() const;
    QList<samples::LaneModule::Lane> moduleLanes() const;

    // Bits per lane on the fabric side, and K flags per lane (0 without
    // 8b/10b).
    int dataWidth() const;
    int ctrlWidth() const;
};

// A decimal number in its shortest form ("156.25", "125"); null if `text` is
// none.
QString normalNumber(const QString &text);

} // namespace Bcdr
