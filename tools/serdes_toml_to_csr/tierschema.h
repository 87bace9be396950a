// SPDX-License-Identifier: MIT
#pragma once

#include "model/topology.h"
#include "tiers/tier.h"
#include "translate/parsertables.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

#include <toml++/toml.h>

#include <cstddef>

namespace IPSERDESIP {

// What a parameter file of one device tier may hold: its sections, the fields
// of each that the parameter tables, the value rules and the clock network's
// selects can produce, and the values each field takes. Built from the same
// rows as the translation and the network, so that the three cannot drift
// apart.
class tierschema
{
public:
    explicit tierschema(Tier tier);

    QString tierName() const { return m_tierName; }

    // One text per fault, naming the section and the field; empty when the
    // file is sound. Every fault is reported, not only the first.
    QStringList check(const toml::table &file) const;

    // A value as TOML writes it.
    static QString literal(const toml::node &node);

private:
    enum class Kind { String, Integer, Boolean, Float };

    // One way a field may be written.
    struct Accept
    {
        Kind kind;
        // Canonical texts of the values allowed; empty: any value of the kind.
        QStringList values;
        // A string made from a template with a unit, such as "%1M", holds a
        // number between these two.
        QString prefix;
        QString suffix;
    };

    struct Field
    {
        QVector<Accept> accepts;
        // Every file of the tier holds it.
        bool required = false;
    };

    static QStringList sectionsOf(bool lanes, int quads);
    void addSections(int quads);
    void addTables(const parsertables::TierTables &tables);
    void addNetwork(const topology::Network &network);
    void allow(const QString &section, const QString &field, const Accept &accept, bool required);
    void require(const QString &section, const QString &field);
    // A device line, "[q0.ln1].field value", with its value as the one allowed.
    void allowLine(const QString &line, bool required);

    void checkTable(const toml::table &table, const QString &path, QStringList &faults,
                    QStringList &seen) const;
    static Accept acceptOf(const QString &literal);
    static QVector<Accept> acceptsOf(const parsertables::Rule &rule);
    static bool isOfKind(Kind kind, const toml::node &node);
    static bool matches(const Accept &accept, const toml::node &node);
    // With `kinds`, each way names its kind, for a value of none of them.
    static QString describe(const Field &field, bool kinds);
    static QString nounOf(const toml::node &node);
    static QString canonical(const toml::node &node);

    QString m_tierName;
    int m_quads = 0;
    // Keyed by section name without brackets; "" holds the top-level keys.
    QMap<QString, QMap<QString, Field>> m_sections;
};

} // namespace IPSERDESIP
