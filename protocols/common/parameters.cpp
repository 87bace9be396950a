// SPDX-License-Identifier: MIT
#include "parameters.h"

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <tiers/tier.h>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>

namespace samples {

// The text of the protocol's "<name>.json", which samples.cmake writes into a
// source of the plug-in.
const char *parameterDescription();

namespace {

struct Words
{
    Q_DECLARE_TR_FUNCTIONS(samples::Parameters)
};

QString member(const QJsonObject &parameter, const char *name)
{
    return parameter.value(QLatin1String(name)).toString();
}

// A value as a configuration file holds it: a list as "a, b".
QString shown(const QVariant &value)
{
    if (value.userType() == QMetaType::QStringList)
        return value.toStringList().join(QStringLiteral(", "));
    return value.toString();
}

// Values for a message: "off, 8b10b", the empty text as "".
QString valueList(const QStringList &values)
{
    QStringList texts;
    for (const QString &value : values)
        texts << (value.isEmpty() ? QStringLiteral("\"\"") : value);
    return texts.join(QStringLiteral(", "));
}

// The values a parameter may take on a tier; `any` when the description
// names none, `ofDevice` when they depend on the device.
struct Allowed
{
    QStringList values;
    bool any = true;
    bool ofDevice = false;
};

Allowed allowedValues(const QJsonObject &parameter, Tier tier)
{
    Allowed allowed;
    QJsonValue values = parameter.value(QLatin1String("values"));
    const QJsonObject byTier = parameter.value(QLatin1String("valuesByTier")).toObject();
    const QString tag = QLatin1String(IPSERDESIP::tierDescription(tier).tag);
    if (byTier.contains(tag)) {
        values = byTier.value(tag);
        allowed.ofDevice = true;
    }
    if (!values.isUndefined()) {
        allowed.any = false;
        for (const QJsonValue &value : values.toArray())
            allowed.values << value.toVariant().toString();
    }
    // The device's own vocabulary; "devices" is looked up in the database
    // instead of listed. samples.cmake refuses any other name.
    const QString of = member(parameter, "valuesOf");
    if (of.isEmpty() || of == QLatin1String("devices"))
        return allowed;
    allowed.any = false;
    allowed.ofDevice = true;
    if (of == QLatin1String("lanes")) {
        allowed.values << laneLabels(tier);
    } else if (of == QLatin1String("laneNames")) {
        for (const QString &label : laneLabels(tier))
            allowed.values << laneModelName(label);
    } else if (of == QLatin1String("referenceInputs")) {
        allowed.values << referencePins(tier) << fabricReferences(tier);
    } else if (of == QLatin1String("referencePins")) {
        allowed.values << referencePins(tier);
    } else if (of == QLatin1String("referenceMuxes")) {
        allowed.values << referenceMuxes(tier);
    }
    return allowed;
}

// The items of a list, or of a text of items joined by a separator; none for
// a parameter that holds one value.
QStringList itemsOf(const QJsonObject &parameter, const QVariant &value)
{
    if (member(parameter, "kind") == QLatin1String("list"))
        return value.toStringList();
    const QString separator = member(parameter, "separator");
    if (separator.isEmpty() || value.userType() == QMetaType::QStringList)
        return {};
    return value.toString().split(separator);
}

bool isItemised(const QJsonObject &parameter)
{
    return member(parameter, "kind") == QLatin1String("list")
           || !member(parameter, "separator").isEmpty();
}

// What is wrong with one value of `parameter` written under `key`.
QStringList valueProblems(const QJsonObject &parameter, const QString &key, const QVariant &value,
                          Tier tier, const QString &family)
{
    const QString kind = member(parameter, "kind");
    const QString form = member(parameter, "form");
    const QString text = shown(value);
    const auto problem = [&key, &text](const QString &what) {
        return QStringLiteral("%1 \"%2\": %3").arg(key, text, what);
    };
    const auto withForm = [&form](const QString &what) {
        return form.isEmpty() ? what : QStringLiteral("%1 (%2)").arg(what, form);
    };
    const Allowed allowed = allowedValues(parameter, tier);
    const auto notAllowed = [&](const QString &one) {
        const QString list = valueList(allowed.values);
        if (allowed.ofDevice && !family.isEmpty())
            return Words::tr("%1 is not one of %2 on the %3 family").arg(one, list, family);
        return Words::tr("%1 is not one of %2").arg(one, list);
    };

    // A configuration file gives "a, b" back as a list; only a list
    // parameter is written that way.
    if (kind != QLatin1String("list") && value.userType() == QMetaType::QStringList)
        return {problem(withForm(Words::tr("a list of %1 texts, where one text is written")
                                     .arg(value.toStringList().size())))};

    QStringList found;
    if (isItemised(parameter)) {
        QStringList seen;
        for (const QString &item : itemsOf(parameter, value)) {
            if (item.isEmpty())
                found << problem(withForm(Words::tr("an empty entry")));
            else if (seen.contains(item))
                found << problem(Words::tr("%1 is given twice").arg(item));
            else if (!allowed.any && !allowed.values.contains(item))
                found << problem(notAllowed(item));
            seen << item;
        }
        return found;
    }
    if (kind == QLatin1String("number")) {
        static const QRegularExpression decimal(QStringLiteral("^[0-9]+(\\.[0-9]+)?$"));
        if (!decimal.match(text).hasMatch())
            found << problem(withForm(Words::tr("not a decimal number")));
    } else if (kind == QLatin1String("boolean")) {
        if (text != QLatin1String("true") && text != QLatin1String("false"))
            found << problem(Words::tr("neither true nor false"));
    } else if (member(parameter, "valuesOf") == QLatin1String("devices")) {
        const DEV::DeviceDb *db = Core::IdeCore::deviceDataBase();
        if (!db || !db->findByID(text).isValid())
            found << problem(withForm(Words::tr("no device the generator knows")));
    } else if (!allowed.any && !allowed.values.contains(text)) {
        found << problem(allowed.values.size() == 1 && !allowed.ofDevice
                             ? Words::tr("not %1").arg(valueList(allowed.values))
                             : Words::tr("not one of %1%2")
                                   .arg(valueList(allowed.values),
                                        allowed.ofDevice && !family.isEmpty()
                                            ? Words::tr(" on the %1 family").arg(family)
                                            : QString()));
    }
    return found;
}

// The problems of the keys, each with the key it is about.
QList<QPair<QString, QString>> keyProblems(const QJsonArray &parameters, const QString &protocol,
                                           const QMap<QString, QVariant> &args, Tier tier,
                                           const QString &family)
{
    // The quads of the lanes that are the device's, for the per-quad keys.
    QStringList quads;
    for (const QJsonValue &entry : parameters) {
        const QJsonObject parameter = entry.toObject();
        if (member(parameter, "key") != QLatin1String("lanes"))
            continue;
        // Read leniently: a lane list in the wrong form is a problem of its
        // own, and the keys of its quads are no less the instance's.
        const Allowed allowed = allowedValues(parameter, tier);
        const QString separator = member(parameter, "separator");
        QStringList lanes = args.value(QStringLiteral("lanes")).toStringList();
        if (!separator.isEmpty())
            lanes = lanes.join(separator).split(separator);
        for (const QString &lane : qAsConst(lanes)) {
            if (allowed.any || allowed.values.contains(lane.trimmed()))
                quads << lane.trimmed().section(QRegularExpression(QStringLiteral("[ _]")), 0, 0);
        }
    }
    quads.removeDuplicates();
    quads.sort();

    QList<QPair<QString, QString>> found;
    QSet<QString> described;
    QMap<QString, QJsonObject> perQuad; // by the part of the key after "Q<n>_"
    const auto check = [&](const QJsonObject &parameter, const QString &key) {
        described.insert(key);
        if (!args.contains(key)) {
            if (!parameter.value(QLatin1String("optional")).toBool())
                found.append({key, Words::tr("%1: missing").arg(key)});
            return;
        }
        for (const QString &problem : valueProblems(parameter, key, args.value(key), tier, family))
            found.append({key, problem});
    };
    for (const QJsonValue &entry : parameters) {
        const QJsonObject parameter = entry.toObject();
        const QString key = member(parameter, "key");
        if (!parameter.value(QLatin1String("perQuad")).toBool()) {
            check(parameter, key);
            continue;
        }
        const QString own = key.section(QLatin1Char('_'), 1);
        perQuad.insert(own, parameter);
        for (const QString &quad : qAsConst(quads))
            check(parameter, quad + QLatin1Char('_') + own);
    }
    static const QRegularExpression quadKey(QStringLiteral("^(Q[0-9]+)_(.+)$"));
    for (auto it = args.cbegin(); it != args.cend(); ++it) {
        if (described.contains(it.key()))
            continue;
        const QRegularExpressionMatch match = quadKey.match(it.key());
        const QString value = shown(it.value());
        if (match.hasMatch() && perQuad.contains(match.captured(2)))
            found.append({it.key(), Words::tr("%1 \"%2\": no lane of the instance lies in %3")
                                        .arg(it.key(), value, match.captured(1))});
        else
            found.append(
                {it.key(),
                 Words::tr("%1 \"%2\": no parameter of %3").arg(it.key(), value, protocol)});
    }
    return found;
}

// The value a key found wrong takes to try the protocol's own checks without
// it: its default, else the first value it may take, else none.
QVariant standIn(const QJsonArray &parameters, const QString &key, Tier tier)
{
    for (const QJsonValue &entry : parameters) {
        const QJsonObject parameter = entry.toObject();
        QString described = member(parameter, "key");
        if (parameter.value(QLatin1String("perQuad")).toBool())
            described = key.section(QLatin1Char('_'), 0, 0) + QLatin1Char('_')
                        + described.section(QLatin1Char('_'), 1);
        if (described != key)
            continue;
        if (parameter.contains(QLatin1String("default")))
            return parameter.value(QLatin1String("default")).toVariant();
        const QStringList values = allowedValues(parameter, tier).values;
        if (values.isEmpty())
            return QVariant();
        if (member(parameter, "kind") == QLatin1String("list"))
            return QStringList{values.first()};
        return values.first();
    }
    return QVariant();
}

} // namespace

QJsonArray describedParameters()
{
    static const QJsonArray parameters = QJsonDocument::fromJson(QByteArray(parameterDescription()))
                                             .object()
                                             .value(QLatin1String("parameters"))
                                             .toArray();
    return parameters;
}

QStringList parameterProblems(const QJsonArray &parameters, const QString &protocol,
                              const QMap<QString, QVariant> &args, Tier tier, const QString &family)
{
    QStringList texts;
    for (const auto &problem : keyProblems(parameters, protocol, args, tier, family))
        texts << problem.second;
    return texts;
}

bool validateParameters(
    const QString &protocol, const QMap<QString, QVariant> &args, const DEV::DeviceArg &device,
    const std::function<QStringList(const QMap<QString, QVariant> &)> &ownProblems,
    QStringList &errors)
{
    const QString family = familyOfInstance(args, device);
    const Tier tier = tierOf(family);
    const QJsonArray parameters = describedParameters();
    const QList<QPair<QString, QString>> keys
        = keyProblems(parameters, protocol, args, tier, family);
    QStringList found;
    QMap<QString, QVariant> repaired = args;
    for (const auto &problem : keys) {
        found << problem.second;
        const QVariant value = standIn(parameters, problem.first, tier);
        if (value.isValid())
            repaired.insert(problem.first, value);
        else
            repaired.remove(problem.first);
    }
    // The protocol's own checks see how the settings go together. One of
    // their problems that goes away once the keys found wrong stand in with
    // good values is such a key's problem in other words, said above; the
    // others stand on their own.
    const QStringList own = ownProblems(args);
    const QStringList without = keys.isEmpty() ? own : ownProblems(repaired);
    for (const QString &problem : own) {
        if (without.contains(problem) && !found.contains(problem))
            found << problem;
    }
    errors << found;
    return found.isEmpty();
}

} // namespace samples
