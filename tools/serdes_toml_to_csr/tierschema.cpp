// SPDX-License-Identifier: MIT

#include "tierschema.h"

#include "tiers/tierdata.h"
#include "translate/parsertables.h"

#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>

namespace IPSERDESIP {

using namespace parsertables;

namespace {

constexpr int LANES_PER_QUAD = 4;

QString quadName(int q)
{
    return QStringLiteral("q%1").arg(q);
}

QString laneName(int q, int m)
{
    return QStringLiteral("q%1.ln%2").arg(q).arg(m);
}

QStringList integers(int count)
{
    QStringList values;
    for (int i = 0; i < count; ++i)
        values.append(QString::number(i));
    return values;
}

// "[q0.ln1].field" of a device line or a select's template.
bool splitLine(const QString &line, QString &section, QString &field, QString &value)
{
    static const QRegularExpression form(QStringLiteral("^\\[([^\\]]+)\\]\\.(\\S+) (.*)$"));
    const QRegularExpressionMatch match = form.match(line);
    if (!match.hasMatch())
        return false;
    section = match.captured(1);
    field = match.captured(2);
    value = match.captured(3);
    return true;
}

// The device field of the rule of that name; null for none.
const char *ruleField(const char *name)
{
    for (const Rule &rule : RULES) {
        if (qstrcmp(rule.name, name) == 0)
            return rule.field;
    }
    return nullptr;
}

// Shortest text that reads back as the same double, so that two floats
// compare as texts exactly when they are equal.
QString floatText(double value)
{
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

// A frequency or rate as the writer passes it on: digits, perhaps with a
// fraction. Exponents, signs, infinities and NaN are not written by it.
bool isPlainDecimal(QStringView text)
{
    static const QRegularExpression form(QStringLiteral("^[0-9]+(\\.[0-9]+)?$"));
    return form.match(text.toString()).hasMatch();
}

} // namespace

tierschema::tierschema(Tier tier)
{
    const TierData &data = tierData(tier);
    m_tierName = QLatin1String(data.description.tag);
    addSections(data.parameters->quadCount);
    addTables(*data.parameters);
    addNetwork(data.network);

    // What the writer adds to every file: the main equaliser tap of each lane,
    // the reference mux scheme of each quad, and the regulator.
    for (const QString &section : sectionsOf(true, m_quads))
        require(section, QStringLiteral("ffe_c0"));
    for (int q = 0; q < m_quads; ++q)
        allow(quadName(q), QStringLiteral("refmux_scheme"),
              {Kind::String, {QStringLiteral("USER_DEFINED")}, {}, {}}, true);
    // The writer always leaves the regulator off, and the stand-in takes
    // nothing that the writer cannot make.
    allow(QStringLiteral("regulator"), QStringLiteral("regulator_enable"),
          {Kind::Boolean, {QStringLiteral("false")}, {}, {}}, true);

    // The device line of a part of this tier; a part without a name of its own
    // has none.
    Accept devices{Kind::String, {}, {}, {}};
    for (const DeviceLine &row : tierData(tier).deviceLines)
        devices.values += acceptOf(QString::fromLatin1(row.line).section(" = ", 1)).values;
    // No values would mean any string.
    if (!devices.values.isEmpty())
        allow(QString(), QStringLiteral("device"), devices, false);
}

QStringList tierschema::sectionsOf(bool lanes, int quads)
{
    QStringList sections;
    for (int q = 0; q < quads; ++q) {
        if (!lanes) {
            sections.append(quadName(q));
            continue;
        }
        for (int m = 0; m < LANES_PER_QUAD; ++m)
            sections.append(laneName(q, m));
    }
    return sections;
}

void tierschema::addTables(const TierTables &tables)
{
    // Free values: every rule, whatever the tier, as the translation has them.
    // allow() passes over the sections the tier lacks.
    for (const Rule &rule : RULES) {
        const QString field = QLatin1String(rule.field);
        const QStringList sections = rule.scope == RuleScope::Chip
                                         ? QStringList{quadName(0)}
                                         : sectionsOf(rule.scope == RuleScope::Lane, rule.quads);
        for (const QString &section : sections) {
            for (const Accept &accept : acceptsOf(rule))
                allow(section, field, accept, false);
        }
    }

    // A family with a default stands in every file, translated by its pairs or,
    // without pairs, by the rule of its name.
    for (const Family &family : tables.families) {
        const int quads = family.scope == Scope::BothQuads ? 2 : tables.quadCount;
        const bool required = family.defaultValue != nullptr;
        for (const QString &section : sectionsOf(family.scope == Scope::Lane, quads)) {
            if (family.pairs.size == 0) {
                if (const char *field = ruleField(family.name); field && required)
                    require(section, QLatin1String(field));
                continue;
            }
            for (const ValuePair &pair : family.pairs)
                allow(section, QLatin1String(family.field), acceptOf(QLatin1String(pair.device)),
                      required);
        }
    }
    for (const QString &section : sectionsOf(true, tables.quadCount)) {
        for (const MasterSelect &select : tables.masterSelects) {
            for (const ValuePair &pair : tables.masterLanes)
                allow(section, QLatin1String(select.field), acceptOf(QLatin1String(pair.device)),
                      true);
        }
    }

    const auto nameOf = [](const char *key) {
        return QString::fromLatin1(key).section(QLatin1Char(' '), 0, 0);
    };
    const auto hasDefault = [&tables](const QString &name) {
        for (const Line &line : tables.chipDefaults) {
            if (name == QLatin1String(line.key))
                return true;
        }
        return false;
    };
    for (const Line &line : tables.chipLines) {
        const bool required = hasDefault(nameOf(line.key));
        for (const QString &part : QString::fromLatin1(line.value).split(QLatin1String("&&")))
            allowLine(part.trimmed(), required);
    }
    // A chip default without a line of its own is translated by rule.
    for (const Line &line : tables.chipDefaults) {
        bool translated = false;
        for (const Line &chip : tables.chipLines)
            translated = translated || nameOf(chip.key) == QLatin1String(line.key);
        if (const char *field = ruleField(line.key); field && !translated)
            require(quadName(0), QLatin1String(field));
    }
}

// Every mux and PLL writes its select, and the bridge between the quads its
// direction and its output select to both quads.
void tierschema::addNetwork(const topology::Network &network)
{
    for (const topology::MuxRow &row : network.muxes) {
        const Accept select{Kind::Integer, integers(row.wiring.selCount), {}, {}};
        if (row.kind == topology::MuxKind::Bridge) {
            for (int q = 0; q < m_quads; ++q) {
                allow(quadName(q), QStringLiteral("ref_prop_dir"),
                      {Kind::Integer, {QStringLiteral("1"), QStringLiteral("2")}, {}, {}}, true);
                allow(quadName(q), QStringLiteral("refomux0_sel"), select, true);
            }
            continue;
        }
        QString section, field, value;
        if (splitLine(QLatin1String(row.line), section, field, value))
            allow(section, field, select, true);
    }
    for (const topology::PllRow &row : network.plls) {
        int selCount = 0;
        for (const topology::PllSelectRow &select : network.pllSelects) {
            if (qstrcmp(select.quad, row.quad) == 0)
                selCount = select.wiring.selCount;
        }
        QString section, field, value;
        if (splitLine(QLatin1String(row.line), section, field, value))
            allow(section, field, {Kind::Integer, integers(selCount), {}, {}}, true);
    }
}

void tierschema::addSections(int quads)
{
    m_quads = quads;
    m_sections.insert(QString(), {});
    m_sections.insert(QStringLiteral("regulator"), {});
    for (int q = 0; q < quads; ++q) {
        m_sections.insert(quadName(q), {});
        for (int m = 0; m < LANES_PER_QUAD; ++m)
            m_sections.insert(laneName(q, m), {});
    }
}

void tierschema::allow(const QString &section, const QString &field, const Accept &accept,
                       bool required)
{
    const auto place = m_sections.find(section);
    if (place == m_sections.end())
        return;
    Field &entry = (*place)[field];
    entry.required = entry.required || required;
    for (Accept &known : entry.accepts) {
        if (known.kind != accept.kind || known.prefix != accept.prefix
            || known.suffix != accept.suffix)
            continue;
        // Any value of the kind takes in every list of values.
        if (known.values.isEmpty() || accept.values.isEmpty()) {
            known.values.clear();
            return;
        }
        for (const QString &value : accept.values) {
            if (!known.values.contains(value))
                known.values.append(value);
        }
        return;
    }
    entry.accepts.append(accept);
}

void tierschema::require(const QString &section, const QString &field)
{
    const auto place = m_sections.find(section);
    if (place == m_sections.end())
        return;
    const auto entry = place->find(field);
    if (entry != place->end())
        entry->required = true;
}

void tierschema::allowLine(const QString &line, bool required)
{
    QString section, field, value;
    if (splitLine(line, section, field, value))
        allow(section, field, acceptOf(value), required);
}

tierschema::Accept tierschema::acceptOf(const QString &literal)
{
    if (literal.startsWith(QLatin1Char('"')))
        return {Kind::String, {literal.mid(1, literal.size() - 2)}, {}, {}};
    if (literal == QLatin1String("true") || literal == QLatin1String("false"))
        return {Kind::Boolean, {literal}, {}, {}};
    if (literal.contains(QLatin1Char('.')))
        return {Kind::Float, {floatText(literal.toDouble())}, {}, {}};
    return {Kind::Integer, {QString::number(literal.toLongLong())}, {}, {}};
}

// A free value's template: quoted, a string with what stands around "%1";
// bare, a number. The rules' arithmetic yields integers, but a value passed on
// as it stands is the protocol's number, which may have a fraction.
QVector<tierschema::Accept> tierschema::acceptsOf(const Rule &rule)
{
    const QString value = QLatin1String(rule.value);
    if (!value.startsWith(QLatin1Char('"'))) {
        if (rule.rule != ValueRule::Text)
            return {{Kind::Integer, {}, {}, {}}};
        return {{Kind::Integer, {}, {}, {}}, {Kind::Float, {}, {}, {}}};
    }
    const QString inner = value.mid(1, value.size() - 2);
    const int at = inner.indexOf(QLatin1String("%1"));
    return {{Kind::String, {}, inner.left(at), inner.mid(at + 2)}};
}

QStringList tierschema::check(const toml::table &file) const
{
    QStringList faults;
    QStringList seen;
    checkTable(file, QString(), faults, seen);
    for (auto section = m_sections.cbegin(); section != m_sections.cend(); ++section) {
        if (!section.key().isEmpty() && !seen.contains(section.key())) {
            faults.append(QStringLiteral("[%1]: section missing").arg(section.key()));
            continue;
        }
        const toml::node_view<const toml::node> table
            = section.key().isEmpty() ? toml::node_view<const toml::node>(file)
                                      : file.at_path(section.key().toStdString());
        for (auto field = section->cbegin(); field != section->cend(); ++field) {
            if (field->required && !table[field.key().toStdString()]) {
                faults.append(QStringLiteral("[%1] %2: missing").arg(section.key(), field.key()));
            }
        }
    }
    return faults;
}

void tierschema::checkTable(const toml::table &table, const QString &path, QStringList &faults,
                            QStringList &seen) const
{
    seen.append(path);
    const QMap<QString, Field> &fields = m_sections.value(path);
    for (const auto &[key, node] : table) {
        const QString name = QString::fromStdString(std::string(key.str()));
        const QString child = path.isEmpty() ? name : path + QLatin1Char('.') + name;
        if (node.is_table() && m_sections.contains(child)) {
            checkTable(*node.as_table(), child, faults, seen);
            continue;
        }
        const QString where = path.isEmpty() ? name : QStringLiteral("[%1] %2").arg(path, name);
        if (node.is_table()) {
            faults.append(
                QStringLiteral("[%1]: no such section in tier %2").arg(child, m_tierName));
            continue;
        }
        const auto field = fields.constFind(name);
        if (field == fields.cend()) {
            faults.append(QStringLiteral("%1: no such field in tier %2").arg(where, m_tierName));
            continue;
        }
        bool accepted = false;
        bool kindKnown = false;
        for (const Accept &accept : field->accepts) {
            accepted = accepted || matches(accept, node);
            kindKnown = kindKnown || isOfKind(accept.kind, node);
        }
        if (accepted)
            continue;
        // "expected 900.0, found 900" would hide that the number lacks its point.
        if (!kindKnown) {
            faults.append(QStringLiteral("%1: expected %2, found %3 (%4)")
                              .arg(where, describe(*field, true), nounOf(node), literal(node)));
            continue;
        }
        faults.append(QStringLiteral("%1: expected %2, found %3")
                          .arg(where, describe(*field, false), literal(node)));
    }
}

bool tierschema::isOfKind(Kind kind, const toml::node &node)
{
    switch (kind) {
    case Kind::String:
        return node.is_string();
    case Kind::Integer:
        return node.is_integer();
    case Kind::Boolean:
        return node.is_boolean();
    case Kind::Float:
        return node.is_floating_point();
    }
    return false;
}

bool tierschema::matches(const Accept &accept, const toml::node &node)
{
    if (!isOfKind(accept.kind, node))
        return false;
    // No protocol number is infinite or NaN.
    if (const auto *number = node.as_floating_point(); number && !std::isfinite(number->get()))
        return false;
    const QString value = canonical(node);
    if (!accept.values.isEmpty())
        return accept.values.contains(value);
    if (accept.prefix.isEmpty() && accept.suffix.isEmpty())
        return true;
    if (!value.startsWith(accept.prefix) || !value.endsWith(accept.suffix)
        || value.size() <= accept.prefix.size() + accept.suffix.size())
        return false;
    return isPlainDecimal(QStringView(value).mid(
        accept.prefix.size(), value.size() - accept.prefix.size() - accept.suffix.size()));
}

QString tierschema::describe(const Field &field, bool kinds)
{
    QStringList ways;
    for (const Accept &accept : field.accepts) {
        QString noun;
        switch (accept.kind) {
        case Kind::String:
            noun = QStringLiteral("a string");
            break;
        case Kind::Integer:
            noun = QStringLiteral("an integer");
            break;
        case Kind::Boolean:
            noun = QStringLiteral("a boolean");
            break;
        case Kind::Float:
            noun = QStringLiteral("a float");
            break;
        }
        if (!accept.values.isEmpty()) {
            QStringList values = accept.values;
            for (QString &value : values) {
                if (accept.kind == Kind::String)
                    value = QLatin1Char('"') + value + QLatin1Char('"');
                // As the file writes it, "900.0" rather than "900".
                else if (accept.kind == Kind::Float && !value.contains(QLatin1Char('.'))
                         && !value.contains(QLatin1Char('e')))
                    value += QStringLiteral(".0");
            }
            const QString text = values.size() == 1
                                     ? values.first()
                                     : QStringLiteral("one of ") + values.join(QLatin1String(", "));
            ways.append(kinds ? QStringLiteral("%1 (%2)").arg(noun, text) : text);
            continue;
        }
        if (!accept.prefix.isEmpty() || !accept.suffix.isEmpty()) {
            ways.append(
                QStringLiteral("a string \"%1<number>%2\"").arg(accept.prefix, accept.suffix));
            continue;
        }
        if (kinds)
            ways.append(noun);
        else if (accept.kind == Kind::Boolean)
            ways.append(QStringLiteral("true or false"));
        else if (accept.kind == Kind::Float)
            ways.append(QStringLiteral("a finite float"));
        else
            ways.append(noun);
    }
    return ways.join(QLatin1String(" or "));
}

QString tierschema::nounOf(const toml::node &node)
{
    switch (node.type()) {
    case toml::node_type::string:
        return QStringLiteral("a string");
    case toml::node_type::integer:
        return QStringLiteral("an integer");
    case toml::node_type::floating_point:
        return QStringLiteral("a float");
    case toml::node_type::boolean:
        return QStringLiteral("a boolean");
    case toml::node_type::array:
        return QStringLiteral("an array");
    case toml::node_type::table:
        return QStringLiteral("a table");
    case toml::node_type::date:
    case toml::node_type::time:
    case toml::node_type::date_time:
        return QStringLiteral("a date or time");
    case toml::node_type::none:
        break;
    }
    return QStringLiteral("nothing");
}

QString tierschema::canonical(const toml::node &node)
{
    if (const auto *text = node.as_string())
        return QString::fromStdString(text->get());
    if (const auto *number = node.as_integer())
        return QString::number(number->get());
    if (const auto *number = node.as_floating_point())
        return floatText(number->get());
    if (const auto *flag = node.as_boolean())
        return flag->get() ? QStringLiteral("true") : QStringLiteral("false");
    return literal(node);
}

QString tierschema::literal(const toml::node &node)
{
    // Strings always in double quotes, as the parameter file has them; toml++
    // would choose single quotes where it can.
    if (const auto *text = node.as_string()) {
        QString quoted = QStringLiteral("\"");
        for (const QChar c : QString::fromStdString(text->get())) {
            if (c == QLatin1Char('"') || c == QLatin1Char('\\'))
                quoted += QLatin1Char('\\') + QString(c);
            else if (c.unicode() < 0x20 || c.unicode() == 0x7f)
                quoted += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
            else
                quoted += c;
        }
        return quoted + QLatin1Char('"');
    }
    std::ostringstream text;
    node.visit([&text](const auto &value) { text << value; });
    return QString::fromStdString(text.str());
}

} // namespace IPSERDESIP
