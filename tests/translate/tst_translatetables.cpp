// SPDX-License-Identifier: MIT
//
// The six parameter tables: their sizes, the shape of every row, sampled
// families of every kind and tier checked value by value, and the agreement
// of the tiers where they share rows.

#include "translate/parser.h"

#include <QRegularExpression>
#include <QtTest>

using IPSERDESIP::parser;
using Table = QMap<QString, QString>;

namespace {

parser *load(const QString &tier)
{
    const char *part = tier == QLatin1String("880k")   ? "RK9C-880D"
                       : tier == QLatin1String("370k") ? "RK9C-370Q"
                                                       : "RK9C-90F";
    parser::instance()->initialize(QLatin1String(part));
    return parser::instance();
}

int keysStartingWith(const Table &map, const QString &prefix)
{
    int count = 0;
    for (auto it = map.lowerBound(prefix); it != map.cend() && it.key().startsWith(prefix); ++it)
        ++count;
    return count;
}

// Keys of only one table go to `only`; keys of both with other values are returned.
QStringList differences(const Table &a, const Table &b, QStringList &only)
{
    QStringList differ;
    for (auto it = a.cbegin(); it != a.cend(); ++it) {
        if (!b.contains(it.key()))
            only.append(it.key());
        else if (b.value(it.key()) != it.value())
            differ.append(it.key());
    }
    for (auto it = b.cbegin(); it != b.cend(); ++it) {
        if (!a.contains(it.key()))
            only.append(it.key());
    }
    only.sort();
    return differ;
}

} // namespace

class tst_ParserTables : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void cleanup() { parser::destory(); }
    void tier_data();
    void tier();
    void family_data();
    void family();
    void writtenRows_data();
    void writtenRows();
    void tiersAgree();
};

void tst_ParserTables::tier_data()
{
    QTest::addColumn<QString>("tier");
    QTest::addColumn<int>("converRows");
    QTest::addColumn<int>("defaultRows");
    QTest::addColumn<int>("joinedRows");
    // Each lane of 880k has 143 translations; the smaller tiers have no lane in q1.
    QTest::addColumn<int>("q1LaneRows");
    QTest::newRow("880k") << "880k" << 1194 << 633 << 2 << 4 * 143;
    QTest::newRow("370k") << "370k" << 665 << 341 << 0 << 0;
    QTest::newRow("90k") << "90k" << 665 << 337 << 0 << 0;
}

// Every translation lands in the section of the lane or quad that its name
// carries.
void tst_ParserTables::tier()
{
    QFETCH(QString, tier);
    QFETCH(int, converRows);
    QFETCH(int, defaultRows);
    QFETCH(int, joinedRows);
    QFETCH(int, q1LaneRows);
    const Table &conver = load(tier)->getConverMap();
    QCOMPARE(conver.size(), converRows);
    QCOMPARE(parser::instance()->getDefaultMap().size(), defaultRows);
    QCOMPARE(keysStartingWith(conver, QStringLiteral("q1_ln")), q1LaneRows);

    const QRegularExpression laneName(QStringLiteral("^q(\\d)_ln(\\d)_\\S+ \\S+$"));
    const QRegularExpression quadName(QStringLiteral("^q(\\d)_\\S+ \\S+$"));
    const QRegularExpression deviceLine(QStringLiteral("^\\[q\\d(\\.ln\\d)?\\]\\.\\S+ \\S+$"));
    int joined = 0;
    for (auto it = conver.cbegin(); it != conver.cend(); ++it) {
        const QStringList lines = it.value().split(QStringLiteral(" && "));
        joined += lines.size() - 1;
        for (const QString &line : lines)
            QVERIFY2(deviceLine.match(line).hasMatch(), qPrintable(it.value()));
        const QRegularExpressionMatch lane = laneName.match(it.key());
        const QRegularExpressionMatch quad = quadName.match(it.key());
        QString section;
        if (lane.hasMatch())
            section = QStringLiteral("[q%1.ln%2].").arg(lane.captured(1), lane.captured(2));
        else if (quad.hasMatch())
            section = QStringLiteral("[q%1].").arg(quad.captured(1));
        QVERIFY2(it.value().startsWith(section), qPrintable(it.key() + " -> " + it.value()));
    }
    QCOMPARE(joined, joinedRows);
}

void tst_ParserTables::family_data()
{
    QTest::addColumn<QString>("tier");
    QTest::addColumn<QString>("scope");
    QTest::addColumn<QString>("family");
    QTest::addColumn<QString>("field");
    // "protocol=device ..."; empty for a family without rows in the tier.
    QTest::addColumn<QString>("pairs");
    // Null for no default row; "own" for the lane's own name.
    QTest::addColumn<QString>("byDefault");

    auto row = [](const char *tier, const char *scope, const char *family, const char *field,
                  const QString &pairs, const char *byDefault) {
        QTest::addRow("%s %s", tier, family)
            << tier << scope << family << field << pairs << QString::fromLatin1(byDefault);
    };
    const char onOff[] = "enable=true disable=false";
    const char flag[] = "true=true false=false";
    const char source[] = "fabric=true csr=false";
    const char masters[] = "q0_ln0=\"q0.ln0\" q0_ln1=\"q0.ln1\" q0_ln2=\"q0.ln2\" "
                           "q0_ln3=\"q0.ln3\" q1_ln0=\"q1.ln0\" q1_ln1=\"q1.ln1\" "
                           "q1_ln2=\"q1.ln2\" q1_ln3=\"q1.ln3\"";
    const char loopback[] = "off=\"OFF\" lb_nes=\"LB_NES\" lb_fes=\"LB_FES\" lb_enc=\"LB_ENC\" "
                            "rx_only=\"RX_ONLY\"";
    const char cdr[] = "auto=\"AUTO\" refmux0=\"REFMUX0\" refmux1=\"REFMUX1\"";

    row("880k", "lane", "word_align", "word_align_enable", onOff, "disable");
    row("370k", "lane", "rx_64b66b_decode_10gbaser", "10GBASE-R", onOff, "disable");
    row("880k", "lane", "rx_64b66b_decode_10gbaser", "", "", nullptr);
    row("880k", "quad", "enable", "enable", flag, "false");
    row("370k", "both", "por_toggle_by_fabric", "por_toggle_by_fabric", flag, "false");
    row("880k", "quad", "pma_reset_source", "lane_reset_by_fabric", source, "fabric");
    row("370k", "lane", "pcs_tx_reset_src_sel", "pcs_tx_reset_by_fabric", source, nullptr);
    row("880k", "lane", "channel_bonding_master_sel", "chbond_mst_sel", masters, "own");
    row("90k", "lane", "tx_if_mst_sel", "tx_if_cfg_mst_sel", masters, "own");
    row("880k", "lane", "pll_sel", "pcs_tx_clk_src", "cpll=0 qpll0=1 qpll1=2 qclk=3", "cpll");
    row("880k", "lane", "cdr_refclk_sel", "cdr_calib_clk_src", cdr, "auto");
    row("370k", "lane", "cdr_refclk_sel", "cdr_calib_clk_src",
        cdr + QStringLiteral(" refmux2=\"REFMUX2\" refmux3=\"REFMUX3\""), "auto");
    row("90k", "lane", "cdr_refclk_sel", "cdr_calib_clk_src",
        cdr + QStringLiteral(" gpio=\"GPIO\" mclk=\"MCLK\""), "auto");
    row("880k", "quad", "rx_quad_clk_internal_sel", "rx_quad_clk_internal_sel",
        "ln0_pma_rx_clk=\"LN0_PMA_RX_CLK\" ln1_pma_rx_clk=\"LN1_PMA_RX_CLK\" "
        "ln2_pma_rx_clk=\"LN2_PMA_RX_CLK\" ln3_pma_rx_clk=\"LN3_PMA_RX_CLK\"",
        "ln0_pma_rx_clk");
    row("90k", "lane", "rx_gearbox", "rx_gear_rate", "1=\"1:1\" 2=\"1:2\" 4=\"1:4\"", "1");
    row("370k", "lane", "channel_bonding_align_length", "chbond_align_length", "1=0 2=1 3=2 4=3",
        "1");
    row("880k", "lane", "loopback_mode", "loopBack", loopback, "off");
    row("90k", "lane", "loopback_mode", "loopBack",
        loopback + QStringLiteral(" tx_only=\"TX_ONLY\""), "off");
    row("880k", "lane", "rx_ovs_ratio", "rx_ovs_ratio",
        "na=\"N/A\" 5x=\"5x\" 10x=\"10x\" 20x=\"20x\"", "na");
    row("90k", "lane", "ctc_clk_src_sel", "ctc_clk_src",
        "fabric_clk=\"fabric_c2i_clk\" lane_bond_clk=\"pcs_rx_b2c_clk\" "
        "lane_tx_clk=\"pcs_tx_clk\"",
        "fabric_clk");
    row("880k", "lane", "pma_width_mode", "width_mode", "8=8 16=16 10=10 20=20", "10");
    row("370k", "lane", "pma_width_mode", "", "", nullptr);
    row("370k", "lane", "pma_rx_width_mode", "rx_seperated_width_mode",
        "8=\"8\" 16=\"16\" 10=\"10\" 20=\"20\" share_tx=\"share\"", "10");
    row("90k", "lane", "8b10b_encode", "", "", nullptr);
    row("90k", "lane", "tx_encode", "encode_mode",
        "8b10b=\"8b10b\" off=\"OFF\" 64b66b=\"64b66b\" 64b67b=\"64b67b\"", "off");
    row("880k", "lane", "tx_rate", "", "", "1.25");
    row("370k", "lane", "word_align_pattern", "", "", "k28.5");
    row("370k", "lane", "rx_64b67b_decode_ilk_metaframe_len", "", "", "32");
    row("880k", "lane", "rx_64b67b_decode_ilk_metaframe_len", "", "", nullptr);
    row("880k", "quad", "rx_eq_bias", "", "", "7");
    row("370k", "quad", "gpio2_freq", "", "", "0");
    row("90k", "lane", "ctc_2nd_pattern", "", "", "1C");
    row("880k", "lane", "tx_ffe_c0", "", "", nullptr);
    row("880k", "quad", "refclk3_freq", "", "", nullptr);
    row("370k", "lane", "mux_cpll_ref_sel", "", "", nullptr);
    row("90k", "quad", "oe_l", "", "", nullptr);
}

// Every value of the family stands for every lane or quad of its scope, and
// nothing more; so does its default.
void tst_ParserTables::family()
{
    QFETCH(QString, tier);
    QFETCH(QString, scope);
    QFETCH(QString, family);
    QFETCH(QString, field);
    QFETCH(QString, pairs);
    QFETCH(QString, byDefault);
    const parser *tables = load(tier);
    const QStringList values = pairs.split(' ', Qt::SkipEmptyParts);

    const bool lanes = scope == QLatin1String("lane");
    const int quads = tier == QLatin1String("880k") || scope == QLatin1String("both") ? 2 : 1;
    for (int q = 0; q < quads; ++q) {
        for (int m = 0; m < (lanes ? 4 : 1); ++m) {
            const QString place
                = lanes ? QStringLiteral("q%1_ln%2").arg(q).arg(m) : QStringLiteral("q%1").arg(q);
            const QString name = place + '_' + family;
            const QString section = '[' + QString(place).replace('_', '.') + "].";
            for (const QString &value : values) {
                const QString from = value.section('=', 0, 0);
                const QString to = value.section('=', 1);
                QCOMPARE(tables->getConverMap().value(name + ' ' + from),
                         QString(section + field + ' ' + to));
            }
            QCOMPARE(keysStartingWith(tables->getConverMap(), name + ' '), values.size());
            QCOMPARE(tables->getDefaultMap().contains(name), !byDefault.isNull());
            QCOMPARE(tables->getDefaultMap().value(name),
                     byDefault == QLatin1String("own") ? place : byDefault);
        }
    }
}

void tst_ParserTables::writtenRows_data()
{
    QTest::addColumn<QString>("tier");
    QTest::addColumn<QString>("key");
    // Null where the tier has no such row.
    QTest::addColumn<QString>("converted");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("byDefault");

    const auto row = [](const char *tier, const char *key, const QString &converted,
                        const char *name, const QString &byDefault) {
        QTest::addRow("%s %s", tier, key) << tier << key << converted << name << byDefault;
    };
    const QString none;
    row("880k", "common_clk_src_sel q1",
        "[q0].mac_quad_clk_sel \"Q1\" && [q1].mac_quad_clk_sel \"Q1\"", "common_clk_src_sel", "q0");
    row("370k", "common_clk_src_sel q0", "[q0].mac_quad_clk_sel \"Q0\"", "common_clk_src_sel",
        "q0");
    row("90k", "common_clk_src_sel q1", none, "mclk_freq", "0");
    row("880k", "common_clk_from_q1_sel ln2_pma_rx_clk",
        "[q1].quad_clk_to_mac_sel \"LN2_PMA_RX_CLK\"", "common_clk_from_q1_sel", "qpll0");
    row("90k", "common_clk_from_q0_sel qpll1", "[q0].quad_clk_to_mac_sel \"CM1\"",
        "common_clk_from_q0_sel", "qpll0");
    row("370k", "common_clk_from_q1_sel qpll0", none, "common_clk_from_q1_sel", none);
}

void tst_ParserTables::writtenRows()
{
    QFETCH(QString, tier);
    QFETCH(QString, key);
    QFETCH(QString, converted);
    QFETCH(QString, name);
    QFETCH(QString, byDefault);
    const parser *tables = load(tier);

    QCOMPARE(tables->getConverMap().contains(key), !converted.isNull());
    QCOMPARE(tables->getConverMap().value(key), converted);
    QCOMPARE(tables->getDefaultMap().contains(name), !byDefault.isNull());
    QCOMPARE(tables->getDefaultMap().value(name), byDefault);
}

// Where two tiers have the same row it reads the same, so that a slip in one
// tier's data shows against the others. 90k is 370k but for its reference
// inputs.
void tst_ParserTables::tiersAgree()
{
    const Table conver880 = load(QStringLiteral("880k"))->getConverMap();
    parser::destory();
    const Table conver370 = load(QStringLiteral("370k"))->getConverMap();
    const Table defaults370 = parser::instance()->getDefaultMap();
    parser::destory();
    const Table conver90 = load(QStringLiteral("90k"))->getConverMap();
    const Table defaults90 = parser::instance()->getDefaultMap();

    QStringList only;
    QCOMPARE(differences(conver90, conver370, only), QStringList());
    QStringList expected;
    for (const char *value : {"gpio", "mclk", "refmux2", "refmux3"}) {
        for (int m = 0; m < 4; ++m)
            expected.append(
                QStringLiteral("q0_ln%1_cdr_refclk_sel %2").arg(m).arg(QLatin1String(value)));
    }
    expected.sort();
    QCOMPARE(only, expected);

    only.clear();
    QCOMPARE(differences(defaults90, defaults370, only), QStringList());
    QCOMPARE(only,
             (QStringList{"mclk_freq", "q0_gpio0_freq", "q0_gpio1_freq", "q0_gpio2_freq",
                          "q0_gpio3_freq", "q0_gpio_freq", "q0_refclk2_freq", "q0_refclk3_freq"}));

    // 880k writes the common clock to both quads.
    QCOMPARE(differences(conver880, conver370, only), QStringList{"common_clk_src_sel q0"});
}

QTEST_APPLESS_MAIN(tst_ParserTables)
#include "tst_translatetables.moc"
