// SPDX-License-Identifier: MIT

#include "translate/parser.h"

#include "tiers/tierdata.h"
#include "translate/parsertables.h"

#include <QSet>
#include <QStringRef>
#include <QVector>
#include <QtGlobal>

namespace IPSERDESIP {

using parsertables::DeviceLine;
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
    // The tables come from the same entry of the list of tiers as the clock
    // network, so that a part never gets the tables of one tier and the
    // network of another.
    loadTier(tierOf(device));
}

void parser::loadTier(Tier tier)
{
    const TierTables &tables = *tierData(tier).parameters;
    addConverRows(converMap, tables);
    addDefaultRows(defaultMap, tables);
    tablesChanged();
}

QStringList parser::converIniToToml(const QStringList &iniLines, QStringList &errors)
{
    const auto report = [&errors](const QString &line) {
        const QString error = QString::fromLatin1(CONVER_ERROR).arg(line);
        qCritical("%s", qPrintable(error));
        errors.append(error);
    };

    QSet<QString> given;
    for (const QString &line : iniLines)
        given.insert(line.left(line.indexOf(QLatin1Char(' '))));

    QStringList result;
    result.reserve(iniLines.size() + defaultMap.size() + 1);
    for (const DeviceLine &device : tierData(tierOf(deviceName)).deviceLines) {
        if (listHolds(device.parts, deviceName)) {
            result.append(QLatin1String(device.line));
            break;
        }
    }

    // An empty line keeps the place of one that failed; the writer drops it.
    for (const QString &line : iniLines) {
        const QString converted = translate(line);
        if (converted.isEmpty())
            report(line);
        result.append(converted);
    }
    // Defaults stand behind the given lines, in name order; a given name
    // suppresses its default whatever its value.
    for (const TranslatedDefault &row : translatedDefaults()) {
        if (given.contains(row.name))
            continue;
        if (row.translated.isEmpty())
            report(row.name + QLatin1Char(' ') + defaultMap.value(row.name));
        result.append(row.translated);
    }
    return result;
}

QString parser::translate(const QString &line) const
{
    const auto row = converMap.constFind(line);
    if (row != converMap.cend())
        return row.value();
    // Blanks beyond the first two parts cut the value off; a missing value
    // counts as empty.
    const QVector<QStringRef> parts = line.splitRef(QLatin1Char(' '));
    return parameterConver(parts.at(0).toString(), parts.value(1).toString());
}

const QVector<parser::TranslatedDefault> &parser::translatedDefaults()
{
    if (!m_defaultsTranslated) {
        m_translatedDefaults.clear();
        m_translatedDefaults.reserve(defaultMap.size());
        for (auto it = defaultMap.cbegin(); it != defaultMap.cend(); ++it)
            m_translatedDefaults.append(
                {it.key(), translate(it.key() + QLatin1Char(' ') + it.value())});
        m_defaultsTranslated = true;
    }
    return m_translatedDefaults;
}

void parser::tablesChanged()
{
    m_defaultsTranslated = false;
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
        QString line;
        switch (rule.scope) {
        case RuleScope::Lane:
            if (lane < 0 || lane >= LANES_PER_QUAD || quad < 0 || quad >= rule.quads
                || laneRest != ruleName)
                continue;
            line = QLatin1String("[q") + name.at(1) + QLatin1String(".ln") + name.at(5)
                   + QLatin1Char(']');
            break;
        case RuleScope::Quad:
            if (quad < 0 || quad >= rule.quads || quadRest != ruleName)
                continue;
            line = QLatin1String("[q") + name.at(1) + QLatin1Char(']');
            break;
        case RuleScope::Chip:
            if (name != ruleName)
                continue;
            line = QStringLiteral("[q0]");
            break;
        }
        // The template holds "%1" once; the value goes in as it stands.
        const QLatin1String pattern(rule.value);
        const int at = pattern.indexOf(QLatin1String("%1"));
        line += QLatin1Char('.') + QLatin1String(rule.field) + QLatin1Char(' ');
        if (at < 0)
            return line + pattern;
        return line + pattern.left(at) + applyRule(rule.rule, value) + pattern.mid(at + 2);
    }
    return QString();
}

// The entries of each tier by name, kept for the callers that name a tier.

void parser::initConverMap_880k()
{
    addConverRows(converMap, *tierData(Tier::T880k).parameters);
    tablesChanged();
}

void parser::initConverMap_370k()
{
    addConverRows(converMap, *tierData(Tier::T370k).parameters);
    tablesChanged();
}

void parser::initConverMap_90k()
{
    addConverRows(converMap, *tierData(Tier::T90k).parameters);
    tablesChanged();
}

void parser::initDefaultMap_880k()
{
    addDefaultRows(defaultMap, *tierData(Tier::T880k).parameters);
    tablesChanged();
}

void parser::initDefaultMap_370k()
{
    addDefaultRows(defaultMap, *tierData(Tier::T370k).parameters);
    tablesChanged();
}

void parser::initDefaultMap_90k()
{
    addDefaultRows(defaultMap, *tierData(Tier::T90k).parameters);
    tablesChanged();
}

} // namespace IPSERDESIP
