// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"
#include "tiers/tier.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

namespace IPSERDESIP {

// Translates the parameter lines of the protocols ("q0_ln0_pll_sel qpll0")
// into device lines ("[q0.ln0].pcs_tx_clk_src 1") and supplies a default for
// every parameter of the device that no protocol gave. One per dialog pass:
// the page destroys it with the model, so that the next pass starts clean.
class SERDESIP_TEST_EXPORT parser
{
public:
    static parser *instance();
    static void destory();

    // Loads the tables of the part's tier. Tables are merged, never emptied:
    // it is meant to be called once per object.
    void initialize(const QString &device);

    // The device line comes first, then one line per input line, then one per
    // default that no input line names. A line without translation is reported
    // in `errors` and leaves an empty line in its place.
    QStringList converIniToToml(const QStringList &iniLines, QStringList &errors);

    // Device line of a free-valued parameter; null for a name without a rule.
    // The same for every tier.
    QString parameterConver(const QString &name, const QString &value) const;

    void initConverMap_880k();
    void initConverMap_370k();
    void initConverMap_90k();
    void initDefaultMap_880k();
    void initDefaultMap_370k();
    void initDefaultMap_90k();

    // Parameter name to its default, protocol-side.
    const QMap<QString, QString> &getDefaultMap() const { return defaultMap; }
    // Whole protocol line to whole device line.
    const QMap<QString, QString> &getConverMap() const { return converMap; }
    const QString &getDeviceName() const { return deviceName; }

private:
    parser() = default;
    ~parser() = default;
    parser(const parser &) = delete;
    parser &operator=(const parser &) = delete;

    // A default's device line, or an empty one where it has no translation.
    struct TranslatedDefault
    {
        QString name;
        QString translated;
    };

    // The translation of one whole line; empty when there is none.
    QString translate(const QString &line) const;
    // Every default translated, in the order of defaultMap. Made once per
    // table load, since every design repeats most of them.
    const QVector<TranslatedDefault> &translatedDefaults();
    void loadTier(Tier tier);
    void tablesChanged();

    QMap<QString, QString> defaultMap;
    QMap<QString, QString> converMap;
    QString deviceName;
    QVector<TranslatedDefault> m_translatedDefaults;
    bool m_defaultsTranslated = false;
};

} // namespace IPSERDESIP
