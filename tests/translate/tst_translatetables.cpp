// SPDX-License-Identifier: MIT
//
// The parameter tables as the parser hands them out: their sizes, and every
// value list, rule and tier-specific default checked against the values
// written down below.

#include "translate/parser.h"

#include <QRegularExpression>
#include <QtTest>

using IPSERDESIP::parser;

namespace {

const char FAMILIES[] = R"(
# tiers scope family field protocol=device ... default
# Tiers: "*" all three, or a list; a family stands in no other tier. Scope: lane, quad, both
# (q0 and q1 whatever the tier), chip (the field names its section; "+" joins two). value>device:
# translated by rule, for q0 and q1 or, in lane0 and quad0, for q0 alone. Default: "-" none,
# "own" the lane's own name. Indented lines continue the line above.
* lane word_align word_align_enable enable=true disable=false disable
370k,90k lane rx_64b66b_decode_10gbaser 10GBASE-R enable=true disable=false disable
* quad enable enable true=true false=false false
* both por_toggle_by_fabric por_toggle_by_fabric true=true false=false false
370k,90k lane rxsd_use_dlogic rxsd_use_dlogic true=true false=false false
* quad pma_reset_source lane_reset_by_fabric fabric=true csr=false fabric
* lane pcs_tx_reset_src_sel pcs_tx_reset_by_fabric fabric=true csr=false -
* lane pll_sel pcs_tx_clk_src cpll=0 qpll0=1 qpll1=2 qclk=3 cpll
880k lane cdr_refclk_sel cdr_calib_clk_src auto="AUTO" refmux0="REFMUX0" refmux1="REFMUX1" auto
370k lane cdr_refclk_sel cdr_calib_clk_src auto="AUTO" refmux0="REFMUX0" refmux1="REFMUX1"
    refmux2="REFMUX2" refmux3="REFMUX3" auto
90k lane cdr_refclk_sel cdr_calib_clk_src auto="AUTO" refmux0="REFMUX0" refmux1="REFMUX1"
    gpio="GPIO" mclk="MCLK" auto
* quad rx_quad_clk_sel rx_quad_clk_sel internal="Internal" common="Mac" internal
* quad tx_quad_clk_internal_sel tx_quad_clk_internal_sel qpll0="CM0" qpll1="CM1" qpll0
* quad rx_quad_clk_internal_sel rx_quad_clk_internal_sel ln0_pma_rx_clk="LN0_PMA_RX_CLK"
    ln1_pma_rx_clk="LN1_PMA_RX_CLK" ln2_pma_rx_clk="LN2_PMA_RX_CLK"
    ln3_pma_rx_clk="LN3_PMA_RX_CLK" ln0_pma_rx_clk
* lane tx_gearbox tx_gear_rate 1="1:1" 2="1:2" 4="1:4" 1
* lane vddt vddt 900=900.0 900
* lane rx_eq_mode eq_manual auto=false manual=true auto
* lane tx_ffe_mode ffe_manual manual=true auto=false auto
* lane channel_bonding_align_length chbond_align_length 1=0 2=1 3=2 4=3 1
880k lane loopback_mode loopBack off="OFF" lb_nes="LB_NES" lb_fes="LB_FES" lb_enc="LB_ENC"
    rx_only="RX_ONLY" off
370k,90k lane loopback_mode loopBack off="OFF" lb_nes="LB_NES" lb_fes="LB_FES" lb_enc="LB_ENC"
    rx_only="RX_ONLY" tx_only="TX_ONLY" off
* lane bert_rx_pattern rxPattern prbs31="PRBS31" prbs23="PRBS23" prbs15="PRBS15" prbs7="PRBS7"
    udp="UDP" prbs31
* lane tx_ovs_mode tx_ovs_mode off="OFF" buildin="BuildIn" off
* lane rx_ovs_mode rx_ovs_mode off="OFF" buildin="BuildIn" fabric="Fabric" off
* lane tx_ovs_ratio tx_ovs_ratio na="N/A" 5x="5x" 10x="10x" 20x="20x" 40x="40x" na
* lane rx_ovs_ratio rx_ovs_ratio na="N/A" 5x="5x" 10x="10x" 20x="20x" na
* lane rx_ovs_pll_sel rx_ovs_pll_src na="N/A" cpll="CPLL" qpll0="QPLL0" na
* lane rx_bonding_clk_src_sel chbond_clk_src quad_rx_clk="quad" lane_rx_clk="lane" lane_rx_clk
* lane ctc_clk_src_sel ctc_clk_src fabric_clk="fabric_c2i_clk" lane_bond_clk="pcs_rx_b2c_clk"
    lane_tx_clk="pcs_tx_clk" fabric_clk
* lane rx_coupling rx_coupling ac="AC" dc="DC" ac
880k lane pma_width_mode width_mode 8=8 16=16 10=10 20=20 10
370k,90k lane pma_tx_width_mode width_mode 8=8 16=16 10=10 20=20 10
370k,90k lane pma_rx_width_mode rx_seperated_width_mode 8="8" 16="16" 10="10" 20="20"
    share_tx="share" 10
880k lane 8b10b_encode encode_mode enable="8b10b" disable="OFF" disable
880k lane 8b10b_decode decode_mode enable="8b10b" disable="OFF" disable
370k,90k lane tx_encode encode_mode 8b10b="8b10b" off="OFF" 64b66b="64b66b" 64b67b="64b67b" off
370k,90k lane rx_decode decode_mode 8b10b="8b10b" off="OFF" 64b66b="64b66b" 64b67b="64b67b" off
* lane tx_if_mst_sel tx_if_cfg_mst_sel q0_ln0="q0.ln0" q0_ln1="q0.ln1" q0_ln2="q0.ln2"
    q0_ln3="q0.ln3" q1_ln0="q1.ln0" q1_ln1="q1.ln1" q1_ln2="q1.ln2" q1_ln3="q1.ln3" own
880k chip common_clk_src_sel [q0].mac_quad_clk_sel+[q1].mac_quad_clk_sel q0="Q0" q1="Q1" q0
370k,90k chip common_clk_src_sel [q0].mac_quad_clk_sel q0="Q0" q0
* chip common_clk_from_q0_sel [q0].quad_clk_to_mac_sel qpll0="CM0" qpll1="CM1"
    ln0_pma_rx_clk="LN0_PMA_RX_CLK" ln1_pma_rx_clk="LN1_PMA_RX_CLK"
    ln2_pma_rx_clk="LN2_PMA_RX_CLK" ln3_pma_rx_clk="LN3_PMA_RX_CLK" qpll0
880k chip common_clk_from_q1_sel [q1].quad_clk_to_mac_sel qpll0="CM0" qpll1="CM1"
    ln0_pma_rx_clk="LN0_PMA_RX_CLK" ln1_pma_rx_clk="LN1_PMA_RX_CLK"
    ln2_pma_rx_clk="LN2_PMA_RX_CLK" ln3_pma_rx_clk="LN3_PMA_RX_CLK" qpll0
* quad refclk0_freq ref_pad0_freq 125>"125M" 0
* quad refclk1_freq ref_pad1_freq 156.25>"156.25M" 0
370k quad0 refclk2_freq ref_pad2_freq 100>"100M" 0
370k quad0 refclk3_freq ref_pad3_freq 312.5>"312.5M" 0
370k quad0 gpio0_freq gpio0_freq 10>"10M" 0
370k quad0 gpio1_freq gpio1_freq 11>"11M" 0
370k quad0 gpio2_freq gpio2_freq 12>"12M" 0
370k quad0 gpio3_freq gpio3_freq 13>"13M" 0
90k quad0 gpio_freq gpio_freq 25>"25M" 0
90k chip mclk_freq [q0].mclk_freq 50>"50M" 0
* lane tx_rate tx_data_rate 10.3125>"10.3125G" 1.25
* lane rx_rate rx_data_rate 2.5>"2.5G" 1.25
* lane word_align_pattern comma k28.5>"K28.5" k28.5
* lane word_align_pattern_mask comma_mask 0011111111>"0011111111" 1111111111
* lane tx_differential_swing txlev 900mV>15 900mV
* lane tx_ffe_cm ffe_cm 4>4 0
- lane tx_ffe_c0 ffe_c0 30>30 -
* lane tx_ffe_c1 ffe_c1 6>6 0
* lane rx_sd_thsel sr_sd_thsel 100mV>3 100mV
* quad rx_eq_bias rx_eq_bias 5>5 7
* lane rx_att_boost dr_rx_att_boost 1>1 0
* lane rx_att dr_rx_att 3>3 7
* lane rx_boost dr_rx_boost 4>4 9
* lane channel_bonding_align_pattern chbond_align_pattern0 7C>124 7C
* lane 2nd_channel_bonding_align_pattern chbond_align_pattern1 3ff>1023 7C
* lane 3rd_channel_bonding_align_pattern chbond_align_pattern2 BC>188 7C
* lane 4th_channel_bonding_align_pattern chbond_align_pattern3 1c>28 7C
* lane channel_bonding_max_skew chbond_max_skew 16>16 8
* lane ctc_pattern ctc_skipa_pattern 1C>28 1C
* lane ctc_2nd_pattern ctc_skipb_pattern F7>247 1C
* lane ctc_rd_start_depth ctc_rd_start_depth 12>"12" 8
* lane tx_slip_distance tx_slip_distance 2>2 8
* lane rx_slip_distance rx_slip_distance 3>3 8
* lane tx_if_rd_start_depth tx_if_cfg_rd_start_depth 4>4 8
* lane rx_if_rd_start_depth rx_if_cfg_rd_start_depth 5>5 8
* lane rx_bonding_rd_start_depth chbond_cfg_rd_start_depth 6>6 8
- quad oe_l oe_l 1>1 -
- quad oe_r oe_r 0>0 -
- quad mux_refin_0_sel mux_refin_0_sel 2>2 -
- quad mux_refin_1_sel mux_refin_1_sel 3>3 -
- quad mux_refout_sel mux_refout_sel 1>1 -
- lane mux_cpll_ref_sel mux_cpll_ref_sel 2>2 -
- quad mux_qpll0_ref_sel mux_qpll0_ref_sel 1>1 -
- quad mux_qpll1_ref_sel mux_qpll1_ref_sel 3>3 -
* lane rxsd_idle_low_filter idle_low_filter 7>7 0
* lane rxsd_idle_high_filter idle_high_filter 9>9 0
* lane cdr_gc_counter cdr_gc_counter 500>500 250
370k,90k lane0 rx_64b67b_decode_ilk_metaframe_len ilk_metaframe_len 2048>"2048" 32
)";

const QStringList TIERS{"880k", "370k", "90k"};

parser *load(const QString &tier)
{
    const char *part = tier == QLatin1String("880k")   ? "RK9C-880D"
                       : tier == QLatin1String("370k") ? "RK9C-370Q"
                                                       : "RK9C-90F";
    parser::instance()->initialize(QLatin1String(part));
    return parser::instance();
}

int keysStartingWith(const QMap<QString, QString> &map, const QString &prefix)
{
    int count = 0;
    for (auto it = map.lowerBound(prefix); it != map.cend() && it.key().startsWith(prefix); ++it)
        ++count;
    return count;
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
};

void tst_ParserTables::tier_data()
{
    QTest::addColumn<QString>("tier");
    QTest::addColumn<int>("converRows");
    QTest::addColumn<int>("defaultRows");
    QTest::newRow("880k") << "880k" << 1194 << 633;
    QTest::newRow("370k") << "370k" << 665 << 341;
    QTest::newRow("90k") << "90k" << 665 << 337;
}

// The sizes tell a family added or lost; the families below, the values.
void tst_ParserTables::tier()
{
    QFETCH(QString, tier);
    QFETCH(int, converRows);
    QFETCH(int, defaultRows);
    QCOMPARE(load(tier)->getConverMap().size(), converRows);
    QCOMPARE(parser::instance()->getDefaultMap().size(), defaultRows);
}

// One row a family and tier: the family's line for the tier, or, where the
// tier has none, its first line, whose rules still hold.
void tst_ParserTables::family_data()
{
    QTest::addColumn<QString>("tier");
    QTest::addColumn<QStringList>("words"); // scope family field pairs... default
    QTest::addColumn<bool>("listed");

    // "<scope> <family>" to its first line, "<tier> <scope> <family>" to the tier's.
    QMap<QString, QStringList> lines;
    QStringList families;
    const QString text = QString::fromLatin1(FAMILIES).replace(QRegularExpression("\n +"), " ");
    for (const QString &line : text.split('\n', Qt::SkipEmptyParts)) {
        if (line.startsWith('#'))
            continue;
        QStringList words = line.split(' ', Qt::SkipEmptyParts);
        const QString tiers = words.takeFirst();
        const QString family = words.at(0) + ' ' + words.at(1);
        if (!lines.contains(family))
            families << family;
        lines.insert(family, lines.value(family, words));
        for (const QString &tier : TIERS) {
            if (tiers == QLatin1String("*") || tiers.split(',').contains(tier))
                lines.insert(tier + ' ' + family, words);
        }
    }
    for (const QString &family : qAsConst(families)) {
        for (const QString &tier : TIERS) {
            const QString key = tier + ' ' + family;
            QTest::newRow(qPrintable(key))
                << tier << lines.value(key, lines.value(family)) << lines.contains(key);
        }
    }
}

// Each name the family might be given under, on q0 to q2 and ln0 to ln4:
// where the tier has it, every value and the default are as written down and
// there is no other value; elsewhere there is no row. A rule translates its
// names whatever the tier.
void tst_ParserTables::family()
{
    QFETCH(QString, tier);
    QFETCH(QStringList, words);
    QFETCH(bool, listed);
    const QString scope = words.at(0);
    const QString family = words.at(1);
    const QString field = words.at(2);
    const QStringList pairs = words.mid(3, words.size() - 4);
    const QString byDefault = words.last();
    const parser *tables = load(tier);

    const bool chip = scope == QLatin1String("chip");
    const bool lanes = scope.startsWith(QLatin1String("lane"));
    const int tierQuads = tier == QLatin1String("880k") || scope == QLatin1String("both") ? 2 : 1;
    const int ruleQuads = scope.endsWith('0') ? 1 : 2;
    for (int q = 0; q < (chip ? 1 : 3); ++q) {
        for (int m = 0; m < (lanes ? 5 : 1); ++m) {
            const QString place = chip    ? QString()
                                  : lanes ? QStringLiteral("q%1_ln%2").arg(q).arg(m)
                                          : QStringLiteral("q%1").arg(q);
            const QString name = chip ? family : place + '_' + family;
            const QString section
                = chip ? QString() : '[' + QString(place).replace('_', '.') + "].";
            const auto covers = [&](int quads) {
                return chip || (q < quads && m < 4);
            };
            const bool here = listed && covers(tierQuads);
            int rows = 0;
            for (const QString &pair : pairs) {
                const QChar split = pair.contains('>') ? '>' : '=';
                const QString from = pair.section(split, 0, 0);
                const QString to = ' ' + pair.section(split, 1);
                const QString line = section + QString(field).replace('+', to + " && ") + to;
                if (split == '>') {
                    QCOMPARE(tables->parameterConver(name, from), covers(ruleQuads) ? line : "");
                } else {
                    ++rows;
                    QCOMPARE(tables->getConverMap().value(name + ' ' + from), here ? line : "");
                }
            }
            QCOMPARE(keysStartingWith(tables->getConverMap(), name + ' '), here ? rows : 0);
            const QString expected = !here || byDefault == QLatin1String("-") ? QString()
                                     : byDefault == QLatin1String("own")      ? place
                                                                              : byDefault;
            QCOMPARE(tables->getDefaultMap().contains(name), !expected.isNull());
            QCOMPARE(tables->getDefaultMap().value(name), expected);
        }
    }
}

QTEST_APPLESS_MAIN(tst_ParserTables)
#include "tst_translatetables.moc"
