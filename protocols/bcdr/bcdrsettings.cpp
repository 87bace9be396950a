// SPDX-License-Identifier: MIT
#include "bcdrsettings.h"

#include "bcdroptions.h"

#include "../common/devicetier.h"

#include <model/serdesip_common.h>

#include <QRegularExpression>

namespace Bcdr {

namespace {

QString text(const QMap<QString, QVariant> &args, const char *key, const QString &fallback)
{
    const QVariant value = args.value(QLatin1String(key));
    return value.isValid() ? value.toString() : fallback;
}

bool flag(const QMap<QString, QVariant> &args, const char *key, bool fallback)
{
    const QVariant value = args.value(QLatin1String(key));
    return value.isValid() ? value.toBool() : fallback;
}

bool isLane(const QString &name)
{
    static const QRegularExpression form(QStringLiteral("^Q[01]_LANE[0-3]$"));
    return form.match(name).hasMatch();
}

// A number within [low, high], given as text.
bool inRange(const QString &value, double low, double high)
{
    bool ok = false;
    const double number = value.toDouble(&ok);
    return ok && number >= low && number <= high;
}

void checkChoice(QList<samples::Problem> &errors, const char *key, const QString &value,
                 const QList<Choice> &choices, const QString &what)
{
    if (!Options::values(choices).contains(value))
        errors.append({QLatin1String(key),
                       Settings::tr("\"%1\" is no %2 this receiver offers.").arg(value, what)});
}

} // namespace

Settings Settings::fromMap(const QMap<QString, QVariant> &args)
{
    Settings s;
    s.name = text(args, Key::NAME, QString());
    s.file = text(args, Key::FILE, QString());
    s.module = text(args, Key::MODULE, QString());
    s.device = text(args, Key::DEVICE, QString());
    s.dir = text(args, Key::DIR, QString());
    // A list of one element comes back from the configuration file as a
    // string, and toStringList takes both.
    s.lanes = args.value(QLatin1String(Key::LANES)).toStringList();
    s.lanes.removeAll(QString());
    s.lanes.sort();
    s.pll = text(args, Key::PLL, s.pll);
    s.ref = text(args, Key::REF, s.ref);
    s.refFreq = text(args, Key::REF_FREQ, s.refFreq);
    s.rxRate = text(args, Key::RX_RATE, s.rxRate);
    s.width = text(args, Key::WIDTH, s.width);
    s.encoding = text(args, Key::ENCODING, s.encoding);
    s.wordAlign = flag(args, Key::WORD_ALIGN, s.wordAlign);
    s.comma = text(args, Key::COMMA, s.comma);
    s.polarityInvert = flag(args, Key::POLARITY_INVERT, s.polarityInvert);
    s.coupling = text(args, Key::COUPLING, s.coupling);
    s.sdThreshold = text(args, Key::SD_THRESHOLD, s.sdThreshold);
    s.ovsMode = text(args, Key::OVS_MODE, s.ovsMode);
    s.ovsRatio = text(args, Key::OVS_RATIO, s.ovsRatio);
    return s;
}

QMap<QString, QVariant> Settings::toMap() const
{
    QMap<QString, QVariant> args;
    args.insert(QLatin1String(Key::NAME), name);
    args.insert(QLatin1String(Key::FILE), file);
    args.insert(QLatin1String(Key::MODULE), module);
    args.insert(QLatin1String(Key::DEVICE), device);
    args.insert(QLatin1String(Key::DIR), dir);
    args.insert(QLatin1String(Key::LANES), lanes);
    args.insert(QLatin1String(Key::PLL), pll);
    args.insert(QLatin1String(Key::REF), ref);
    args.insert(QLatin1String(Key::REF_FREQ), refFreq);
    args.insert(QLatin1String(Key::RX_RATE), rxRate);
    args.insert(QLatin1String(Key::WIDTH), width);
    args.insert(QLatin1String(Key::ENCODING), encoding);
    args.insert(QLatin1String(Key::WORD_ALIGN), wordAlign);
    args.insert(QLatin1String(Key::COMMA), comma);
    args.insert(QLatin1String(Key::POLARITY_INVERT), polarityInvert);
    args.insert(QLatin1String(Key::COUPLING), coupling);
    args.insert(QLatin1String(Key::SD_THRESHOLD), sdThreshold);
    args.insert(QLatin1String(Key::OVS_MODE), ovsMode);
    args.insert(QLatin1String(Key::OVS_RATIO), ovsRatio);
    return args;
}

QList<samples::Problem> Settings::check() const
{
    QList<samples::Problem> errors;
    const auto add = [&errors](const char *key, const QString &text) {
        errors.append({QLatin1String(key), text});
    };
    if (module.isEmpty())
        add(Key::MODULE, tr("The module name is empty."));
    if (file.isEmpty())
        add(Key::FILE, tr("The file name is empty."));
    if (lanes.isEmpty())
        add(Key::LANES, tr("Select at least one lane to receive on."));
    for (const QString &lane : lanes) {
        if (!isLane(lane))
            add(Key::LANES, tr("\"%1\" is no lane.").arg(lane));
    }
    checkChoice(errors, Key::PLL, pll, Options::plls(), tr("PLL"));
    if (ref.isEmpty())
        add(Key::REF, tr("Choose a reference clock."));
    else if (refName().isEmpty())
        add(Key::REF, tr("\"%1\" is no reference clock input.").arg(ref));
    if (!inRange(refFreq, Options::MIN_REF_FREQ, Options::MAX_REF_FREQ))
        add(Key::REF_FREQ, tr("The reference frequency must be a number from %1 to %2 MHz.")
                               .arg(Options::MIN_REF_FREQ)
                               .arg(Options::MAX_REF_FREQ));
    if (!inRange(rxRate, Options::MIN_RX_RATE, Options::MAX_RX_RATE))
        add(Key::RX_RATE, tr("The RX line rate must be a number from %1 to %2 Gbps.")
                              .arg(Options::MIN_RX_RATE)
                              .arg(Options::MAX_RX_RATE));
    checkChoice(errors, Key::ENCODING, encoding, Options::encodings(), tr("encoding"));
    checkChoice(errors, Key::WIDTH, width, Options::widths(encoding),
                tr("data width with this encoding"));
    checkChoice(errors, Key::COMMA, comma, Options::commas(), tr("comma"));
    checkChoice(errors, Key::COUPLING, coupling, Options::couplings(), tr("coupling"));
    checkChoice(errors, Key::SD_THRESHOLD, sdThreshold, Options::sdThresholds(),
                tr("signal detect threshold"));
    checkChoice(errors, Key::OVS_MODE, ovsMode, Options::ovsModes(), tr("oversampling mode"));
    checkChoice(errors, Key::OVS_RATIO, ovsRatio, Options::ovsRatios(), tr("oversampling ratio"));
    return errors;
}

QString Settings::pllOf(const QString &lane) const
{
    return samples::pllModelName(lane, pll);
}

QString Settings::refName() const
{
    return IPSERDESIP::refsrcOptTransforSerdesName(ref);
}

QList<samples::LaneRow> Settings::rows() const
{
    QList<samples::LaneRow> list;
    for (const QString &lane : lanes) {
        samples::LaneRow row;
        row.lane = lane;
        row.pll = pllOf(lane);
        row.reference = ref;
        row.refFreq = refFreq.toDouble();
        row.rxRate = rxRate.toDouble();
        list << row;
    }
    return list;
}

QList<samples::LaneModule::Lane> Settings::moduleLanes() const
{
    QList<samples::LaneModule::Lane> list;
    for (const QString &lane : lanes)
        list << samples::LaneModule::Lane{lane, pll, ref};
    return list;
}

int Settings::dataWidth() const
{
    const int bits = width.toInt();
    return encoding == QLatin1String("8b10b") ? bits / 10 * 8 : bits;
}

int Settings::ctrlWidth() const
{
    return encoding == QLatin1String("8b10b") ? width.toInt() / 10 : 0;
}

QString normalNumber(const QString &text)
{
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    if (!ok)
        return QString();
    return QString::number(value, 'g', 12);
}

} // namespace Bcdr
