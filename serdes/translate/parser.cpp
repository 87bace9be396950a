// SPDX-License-Identifier: MIT

#include "translate/parser.h"

#include "translate/parsertables.h"

#include <QSet>
#include <QStringRef>
#include <QVector>
#include <QtGlobal>

namespace IPSERDESIP {

using parsertables::Family;
using parsertables::Line;
using parsertables::MasterSelect;
using parsertables::Rule;
using parsertables::RuleScope;
using parsertables::Scope;
using parsertables::TierTables;
using parsertables::ValuePair;
using parsertables::ValueRule;

namespace {

parser *p = nullptr;

// Part family strings of the two smaller tiers, "/"-joined and compared whole
// and case-sensitively. Every other string, unknown ones included, is 880k.
const char DEVICES_370K[] = "RK9C-370D/RK9C-370Q";
const char DEVICES_90K[] = "RK9C-90F/RK9MC-90F/RK9MC-90D/RK9C-90D/RK9LC-90F/RK9LMC-90F";

struct DeviceLine
{
    const char *parts;
    const char *line;
};

// The name under which the register compiler knows a part. A part in none of
// these lists gets no device line.
constexpr DeviceLine DEVICE_LINES[] = {
    {"RK9C-370D/RK9C-370Q", "device = \"RK9C-370\""},
    {"RK9C-880D/RK9C-880E", "device = \"RK9C-880\""},
    {"RK9PC-880D/RK9PC-880E", "device = \"RK9PC-880\""},
    {"RK9C-440D/RK9C-440E", "device = \"RK9C-440\""},
    {"RK9C-90F/RK9C-90D/RK9LC-90F/RK9LMC-90F", "device = \"RK9C-90\""},
    {"RK9MC-90F/RK9MC-90D", "device = \"RK9MC-90\""},
};

const char CONVER_ERROR[] = "can no conver param: %1";

constexpr int LANES_PER_QUAD = 4;
constexpr int MAX_QUADS = 2;

bool listHolds(const char *list, const QString &device)
{
    return QString::fromLatin1(list).split(QLatin1Char('/')).contains(device);
}

// A lane or quad for which a family has rows.
struct Place
{
    QString namePrefix; // "q0_ln1_" or "q0_"
    QString section;    // "[q0.ln1]." or "[q0]."
    QString lane;       // "q0_ln1"; empty for a quad
};

QVector<Place> placesOf(Scope scope, int quadCount)
{
    QVector<Place> places;
    const int quads = scope == Scope::BothQuads ? MAX_QUADS : quadCount;
    for (int q = 0; q < quads; ++q) {
        if (scope != Scope::Lane) {
            places.append({QStringLiteral("q%1_").arg(q), QStringLiteral("[q%1].").arg(q), {}});
            continue;
        }
        for (int m = 0; m < LANES_PER_QUAD; ++m) {
            const QString lane = QStringLiteral("q%1_ln%2").arg(q).arg(m);
            places.append(
                {lane + QLatin1Char('_'), QStringLiteral("[q%1.ln%2].").arg(q).arg(m), lane});
        }
    }
    return places;
}

void addConverRows(QMap<QString, QString> &map, const TierTables &tables)
{
    for (const Family &family : tables.families) {
        for (const Place &place : placesOf(family.scope, tables.quadCount)) {
            for (const ValuePair &pair : family.pairs) {
                map.insert(place.namePrefix + QLatin1String(family.name) + QLatin1Char(' ')
                               + QLatin1String(pair.protocol),
                           place.section + QLatin1String(family.field) + QLatin1Char(' ')
                               + QLatin1String(pair.device));
            }
        }
    }
    for (const Place &place : placesOf(Scope::Lane, tables.quadCount)) {
        for (const MasterSelect &select : tables.masterSelects) {
            for (const ValuePair &pair : tables.masterLanes) {
                map.insert(place.namePrefix + QLatin1String(select.name) + QLatin1Char(' ')
                               + QLatin1String(pair.protocol),
                           place.section + QLatin1String(select.field) + QLatin1Char(' ')
                               + QLatin1String(pair.device));
            }
        }
    }
    for (const Line &line : tables.chipLines)
        map.insert(QLatin1String(line.key), QLatin1String(line.value));
}

void addDefaultRows(QMap<QString, QString> &map, const TierTables &tables)
{
    for (const Family &family : tables.families) {
        if (!family.defaultValue)
            continue;
        for (const Place &place : placesOf(family.scope, tables.quadCount))
            map.insert(place.namePrefix + QLatin1String(family.name),
                       QLatin1String(family.defaultValue));
    }
    // A lane is its own master until a protocol bonds it to another.
    for (const Place &place : placesOf(Scope::Lane, tables.quadCount)) {
        for (const MasterSelect &select : tables.masterSelects)
            map.insert(place.namePrefix + QLatin1String(select.name), place.lane);
    }
    for (const Line &line : tables.chipDefaults)
        map.insert(QLatin1String(line.key), QLatin1String(line.value));
}

int asciiDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9') ? c.unicode() - '0' : -1;
}

// The number in front of a two-letter unit; what cannot be read counts as 0.
// Wide enough that no int the text can hold overflows in the rules' arithmetic.
qint64 millivolts(const QString &value)
{
    QString number = value;
    number.chop(2);
    return number.toInt();
}

QString applyRule(ValueRule rule, const QString &value)
{
    switch (rule) {
    case ValueRule::Text:
        break;
    case ValueRule::Upper:
        return value.toUpper();
    case ValueRule::Swing:
        return QString::number((millivolts(value) - 180) / 48);
    case ValueRule::Threshold:
        return QString::number((millivolts(value) - 25) / 25);
    case ValueRule::Hex:
        return QString::number(value.toInt(nullptr, 16));
    }
    return value;
}

} // namespace

parser *parser::instance()
{
    if (!p)
        p = new parser;
    return p;
}

void parser::destory()
{
    delete p;
    p = nullptr;
}

void parser::initialize(const QString &device)
{
    deviceName = device;
    if (listHolds(DEVICES_370K, device)) {
        initConverMap_370k();
        initDefaultMap_370k();
        return;
    }
    if (listHolds(DEVICES_90K, device)) {
        initConverMap_90k();
        initDefaultMap_90k();
        return;
    }
    initConverMap_880k();
    initDefaultMap_880k();
}

QStringList parser::converIniToToml(const QStringList &iniLines, QStringList &errors)
{
    QStringList lines = iniLines;
    QSet<QString> given;
    for (const QString &line : iniLines)
        given.insert(line.left(line.indexOf(QLatin1Char(' '))));
    for (auto it = defaultMap.cbegin(); it != defaultMap.cend(); ++it) {
        if (!given.contains(it.key()))
            lines.append(it.key() + QLatin1Char(' ') + it.value());
    }

    QStringList result;
    result.reserve(lines.size() + 1);
    for (const DeviceLine &device : DEVICE_LINES) {
        if (listHolds(device.parts, deviceName)) {
            result.append(QLatin1String(device.line));
            break;
        }
    }

    for (const QString &line : qAsConst(lines)) {
        const auto row = converMap.constFind(line);
        if (row != converMap.cend()) {
            result.append(row.value());
            continue;
        }
        // Blanks beyond the first two parts cut the value off; a missing value
        // counts as empty.
        const QVector<QStringRef> parts = line.splitRef(QLatin1Char(' '));
        const QString converted
            = parameterConver(parts.at(0).toString(), parts.value(1).toString());
        if (converted.isEmpty()) {
            const QString error = QString::fromLatin1(CONVER_ERROR).arg(line);
            qCritical("%s", qPrintable(error));
            errors.append(error);
        }
        // An empty line keeps the place of the one that failed; the writer
        // drops it.
        result.append(converted);
    }
    return result;
}

QString parser::parameterConver(const QString &name, const QString &value) const
{
    // Split "q<n>_ln<m>_<rest>" and "q<n>_<rest>" once, then compare the rest
    // with each rule of the matching scope.
    int quad = -1;
    int lane = -1;
    QStringRef quadRest;
    QStringRef laneRest;
    if (name.size() > 3 && name.at(0) == QLatin1Char('q') && name.at(2) == QLatin1Char('_')) {
        quad = asciiDigit(name.at(1));
        quadRest = name.midRef(3);
        if (name.size() > 7 && name.midRef(3, 2) == QLatin1String("ln")
            && name.at(6) == QLatin1Char('_')) {
            lane = asciiDigit(name.at(5));
            laneRest = name.midRef(7);
        }
    }

    for (const Rule &rule : parsertables::RULES) {
        const QLatin1String ruleName(rule.name);
        QString section;
        switch (rule.scope) {
        case RuleScope::Lane:
            if (lane < 0 || lane >= LANES_PER_QUAD || quad < 0 || quad >= rule.quads
                || laneRest != ruleName)
                continue;
            section = QStringLiteral("[q%1.ln%2]").arg(quad).arg(lane);
            break;
        case RuleScope::Quad:
            if (quad < 0 || quad >= rule.quads || quadRest != ruleName)
                continue;
            section = QStringLiteral("[q%1]").arg(quad);
            break;
        case RuleScope::Chip:
            if (name != ruleName)
                continue;
            section = QStringLiteral("[q0]");
            break;
        }
        return section + QLatin1Char('.') + QLatin1String(rule.field) + QLatin1Char(' ')
               + QString::fromLatin1(rule.value).arg(applyRule(rule.rule, value));
    }
    return QString();
}

void parser::initConverMap_880k()
{
    addConverRows(converMap, parsertables::TABLES_880K);
}

void parser::initConverMap_370k()
{
    addConverRows(converMap, parsertables::TABLES_370K);
}

void parser::initConverMap_90k()
{
    addConverRows(converMap, parsertables::TABLES_90K);
}

void parser::initDefaultMap_880k()
{
    addDefaultRows(defaultMap, parsertables::TABLES_880K);
}

void parser::initDefaultMap_370k()
{
    addDefaultRows(defaultMap, parsertables::TABLES_370K);
}

void parser::initDefaultMap_90k()
{
    addDefaultRows(defaultMap, parsertables::TABLES_90K);
}

} // namespace IPSERDESIP
