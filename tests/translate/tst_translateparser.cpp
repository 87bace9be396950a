// SPDX-License-Identifier: MIT
//
// Translation of protocol lines into device lines: the tier a part gets, the
// free-valued parameters and their value rules, defaults, and what cannot be
// translated.

#include "translate/parser.h"

#include <QtTest>

using IPSERDESIP::parser;

namespace {

QStringList convert(const QStringList &lines, QStringList &errors)
{
    return parser::instance()->converIniToToml(lines, errors);
}

void expectError(const QString &line)
{
    QTest::ignoreMessage(QtCriticalMsg, qPrintable("can no conver param: " + line));
}

} // namespace

class tst_Parser : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void cleanup() { parser::destory(); }
    void tierChoice_data();
    void tierChoice();
    void valueRules_data();
    void valueRules();
    void ruleNames();
    void givenLinesThenDefaults();
    void givenNameSuppressesDefault_data();
    void givenNameSuppressesDefault();
    void untranslatable_data();
    void untranslatable();
    void lifecycle();
};

void tst_Parser::tierChoice_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<int>("defaultRows");
    // Null for a part without a device line.
    QTest::addColumn<QString>("deviceLine");

    QTest::newRow("880D") << "RK9C-880D" << 633 << "device = \"RK9C-880\"";
    QTest::newRow("PC-880E") << "RK9PC-880E" << 633 << "device = \"RK9PC-880\"";
    QTest::newRow("440E") << "RK9C-440E" << 633 << "device = \"RK9C-440\"";
    QTest::newRow("370Q") << "RK9C-370Q" << 341 << "device = \"RK9C-370\"";
    QTest::newRow("LMC-90F") << "RK9LMC-90F" << 337 << "device = \"RK9C-90\"";
    QTest::newRow("MC-90D") << "RK9MC-90D" << 337 << "device = \"RK9MC-90\"";
    QTest::newRow("RK9-370D") << "RK9-370D" << 633 << QString();
    QTest::newRow("lower case") << "rk9c-370d" << 633 << QString();
    QTest::newRow("whole list") << "RK9C-370D/RK9C-370Q" << 633 << QString();
}

void tst_Parser::tierChoice()
{
    QFETCH(QString, device);
    QFETCH(int, defaultRows);
    QFETCH(QString, deviceLine);

    parser *tables = parser::instance();
    tables->initialize(device);
    QCOMPARE(tables->getDeviceName(), device);
    QCOMPARE(tables->getDefaultMap().size(), defaultRows);

    QStringList errors;
    const QStringList lines = convert({}, errors);
    QCOMPARE(errors, QStringList());
    QCOMPARE(lines.size(), defaultRows + (deviceLine.isNull() ? 0 : 1));
    QCOMPARE(lines.first().startsWith(QLatin1String("device =")), !deviceLine.isNull());
    if (!deviceLine.isNull())
        QCOMPARE(lines.first(), deviceLine);
}

void tst_Parser::valueRules_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    // Null for a name without a rule.
    QTest::addColumn<QString>("line");

    auto row = [](const char *name, const char *value, const char *line) {
        QTest::addRow("%s %s", name, value) << name << value << QString::fromLatin1(line);
    };
    row("q0_ln0_tx_differential_swing", "804mV", "[q0.ln0].txlev 13");
    row("q1_ln2_tx_differential_swing", "150mV", "[q1.ln2].txlev 0");
    row("q0_ln1_tx_differential_swing", "100mV", "[q0.ln1].txlev -1");
    row("q0_ln0_tx_differential_swing", "xxmV", "[q0.ln0].txlev -3");
    row("q0_ln0_tx_differential_swing", "9", "[q0.ln0].txlev -3");
    row("q0_ln0_tx_differential_swing", "-2147483648mV", "[q0.ln0].txlev -44739246");
    row("q1_ln3_rx_sd_thsel", "100mV", "[q1.ln3].sr_sd_thsel 3");
    row("q0_ln0_rx_sd_thsel", "49mV", "[q0.ln0].sr_sd_thsel 0");
    row("q0_ln0_rx_sd_thsel", "xxmV", "[q0.ln0].sr_sd_thsel -1");
    row("q0_ln0_word_align_pattern", "k28.5", "[q0.ln0].comma \"K28.5\"");
    row("q0_ln0_channel_bonding_align_pattern", "7C", "[q0.ln0].chbond_align_pattern0 124");
    row("q1_ln0_4th_channel_bonding_align_pattern", "3ff", "[q1.ln0].chbond_align_pattern3 1023");
    row("q0_ln3_ctc_2nd_pattern", "K28.5", "[q0.ln3].ctc_skipb_pattern 0");
    row("q0_ln0_tx_rate", "1.25", "[q0.ln0].tx_data_rate \"1.25G\"");
    row("q0_refclk0_freq", "125", "[q0].ref_pad0_freq \"125M\"");
    row("mclk_freq", "50", "[q0].mclk_freq \"50M\"");
    row("q0_ln3_rx_64b67b_decode_ilk_metaframe_len", "2048", "[q0.ln3].ilk_metaframe_len \"2048\"");
    row("q0_ln0_tx_ffe_c0", "", "[q0.ln0].ffe_c0 ");
    row("q1_ln0_rx_64b67b_decode_ilk_metaframe_len", "32", nullptr);
    row("q1_refclk2_freq", "125", nullptr);
    row("q0_ln4_tx_rate", "1.25", nullptr);
    row("Q0_ln0_tx_rate", "1.25", nullptr);
    row("q0_tx_rate", "1.25", nullptr);
    row("q0_ln0_rx_eq_bias", "7", nullptr);
    row("q0_ln0_vddt", "950", nullptr);
}

void tst_Parser::valueRules()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    QFETCH(QString, line);

    const QString converted = parser::instance()->parameterConver(name, value);
    QCOMPARE(converted, line);
    QCOMPARE(converted.isNull(), line.isNull());
}

// Each free-valued name with its device field, tried on q0 to q2 and ln0 to
// ln4 and without a prefix: 264 names are known, whatever the tier.
void tst_Parser::ruleNames()
{
    // "name:field", or the name alone where the field has the same name.
    const QStringList rules
        = QStringLiteral(
              "tx_rate:tx_data_rate rx_rate:rx_data_rate word_align_pattern:comma "
              "word_align_pattern_mask:comma_mask tx_differential_swing:txlev tx_ffe_cm:ffe_cm "
              "tx_ffe_c0:ffe_c0 tx_ffe_c1:ffe_c1 rx_sd_thsel:sr_sd_thsel "
              "rx_att_boost:dr_rx_att_boost rx_att:dr_rx_att rx_boost:dr_rx_boost "
              "channel_bonding_align_pattern:chbond_align_pattern0 "
              "2nd_channel_bonding_align_pattern:chbond_align_pattern1 "
              "3rd_channel_bonding_align_pattern:chbond_align_pattern2 "
              "4th_channel_bonding_align_pattern:chbond_align_pattern3 "
              "channel_bonding_max_skew:chbond_max_skew ctc_pattern:ctc_skipa_pattern "
              "ctc_2nd_pattern:ctc_skipb_pattern ctc_rd_start_depth tx_slip_distance "
              "rx_slip_distance tx_if_rd_start_depth:tx_if_cfg_rd_start_depth "
              "rx_if_rd_start_depth:rx_if_cfg_rd_start_depth "
              "rx_bonding_rd_start_depth:chbond_cfg_rd_start_depth mux_cpll_ref_sel "
              "rxsd_idle_low_filter:idle_low_filter rxsd_idle_high_filter:idle_high_filter "
              "cdr_gc_counter rx_64b67b_decode_ilk_metaframe_len:ilk_metaframe_len "
              "refclk0_freq:ref_pad0_freq refclk1_freq:ref_pad1_freq refclk2_freq:ref_pad2_freq "
              "refclk3_freq:ref_pad3_freq gpio0_freq gpio1_freq gpio2_freq gpio3_freq gpio_freq "
              "rx_eq_bias oe_l oe_r mux_refin_0_sel mux_refin_1_sel mux_refout_sel "
              "mux_qpll0_ref_sel mux_qpll1_ref_sel mclk_freq")
              .split(' ');
    QCOMPARE(rules.size(), 48);

    parser::instance()->initialize(QStringLiteral("RK9C-370D"));
    int known = 0;
    auto check = [&](const QString &name, const QString &section, const QString &field) {
        const QString line = parser::instance()->parameterConver(name, QStringLiteral("1"));
        if (line.isNull())
            return;
        ++known;
        QVERIFY2(line.startsWith(section + '.' + field + ' '), qPrintable(line));
    };
    for (const QString &rule : rules) {
        const QString suffix = rule.section(':', 0, 0);
        const QString field = rule.section(':', -1);
        check(suffix, QStringLiteral("[q0]"), field);
        for (int q = 0; q < 3; ++q) {
            check(QStringLiteral("q%1_%2").arg(q).arg(suffix), QStringLiteral("[q%1]").arg(q),
                  field);
            for (int m = 0; m < 5; ++m) {
                check(QStringLiteral("q%1_ln%2_%3").arg(q).arg(m).arg(suffix),
                      QStringLiteral("[q%1.ln%2]").arg(q).arg(m), field);
            }
        }
    }
    QCOMPARE(known, 264);
}

// Given lines first, in their order, then the defaults that no given line
// names (the order within a section is pinned by the generator's worked
// example). The same name twice is translated twice, in order; a value holding
// two device lines stays one line; a third part is cut off.
void tst_Parser::givenLinesThenDefaults()
{
    QStringList errors;
    parser::instance()->initialize(QStringLiteral("RK9C-880E"));
    const QStringList twice = convert(
        {"q1_ln3_tx_rate 5", "common_clk_src_sel q1", "q1_ln3_tx_rate 6.25 Gb/s"}, errors);
    QCOMPARE(twice.mid(0, 4), (QStringList{"device = \"RK9C-880\"", "[q1.ln3].tx_data_rate \"5G\"",
                                           "[q0].mac_quad_clk_sel \"Q1\" && "
                                           "[q1].mac_quad_clk_sel \"Q1\"",
                                           "[q1.ln3].tx_data_rate \"6.25G\""}));
    QCOMPARE(twice.size(), 1 + 3 + 633 - 2);
    QCOMPARE(errors, QStringList());
}

void tst_Parser::givenNameSuppressesDefault_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("given");
    // Null where the given line has no translation.
    QTest::addColumn<QString>("translated");

    const auto row
        = [](const char *tag, const char *device, const char *given, const QString &translated) {
              QTest::newRow(tag) << QString(device) << QString(given) << translated;
          };
    row("table value", "RK9C-90D", "q0_ln2_pll_sel qpll1", "[q0.ln2].pcs_tx_clk_src 2");
    row("free value", "RK9C-880D", "q1_ln1_tx_differential_swing 948mV", "[q1.ln1].txlev 16");
    row("bad value", "RK9C-370Q", "q0_ln2_pll_sel pll9", QString());
    row("no value", "RK9C-370Q", "q0_ln2_pll_sel", QString());
    row("bad chip value", "RK9C-880D", "common_clk_src_sel q2", QString());
}

// A given name takes the place of its default whatever its value: the default
// is not added behind it, not even when the given value fails.
void tst_Parser::givenNameSuppressesDefault()
{
    QFETCH(QString, device);
    QFETCH(QString, given);
    QFETCH(QString, translated);

    parser *tables = parser::instance();
    tables->initialize(device);
    const QString name = given.section(' ', 0, 0);
    QStringList errors;
    const QStringList withoutGiven = convert({}, errors);
    const QString defaultLine = withoutGiven.at(1 + tables->getDefaultMap().keys().indexOf(name));
    QVERIFY(!defaultLine.isEmpty());

    if (translated.isNull())
        expectError(given);
    const QStringList lines = convert({given}, errors);
    QCOMPARE(lines.at(1), translated.isNull() ? QString() : translated);
    QCOMPARE(lines.size(), withoutGiven.size());
    QCOMPARE(lines.count(defaultLine), 0);
    QCOMPARE(errors.size(), translated.isNull() ? 1 : 0);
}

void tst_Parser::untranslatable_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("line");

    const auto row = [](const char *tag, const char *device, const char *line) {
        QTest::newRow(tag) << QString(device) << QString(line);
    };
    row("vddt 950", "RK9C-370D", "q0_ln0_vddt 950");
    row("metaframe of q1", "RK9C-90D", "q1_ln0_rx_64b67b_decode_ilk_metaframe_len 32");
    row("table row, no tables", "", "q0_ln0_pll_sel qpll0");
    row("empty line", "RK9C-880D", "");
}

// The failing line is reported with its whole text, in the diagnostics and
// behind the errors already there, leaves an empty line in its place, and the
// lines around it are still translated.
void tst_Parser::untranslatable()
{
    QFETCH(QString, device);
    QFETCH(QString, line);

    // An empty device stands for tables that were never loaded.
    if (!device.isEmpty())
        parser::instance()->initialize(device);
    expectError(line);
    QStringList errors{"earlier"};
    const QStringList lines
        = convert({"q0_ln1_tx_rate 3.125", line, "q0_ln1_rx_rate 3.125"}, errors);
    QCOMPARE(errors, (QStringList{"earlier", "can no conver param: " + line}));
    const int first = device.isEmpty() ? 0 : 1;
    QCOMPARE(lines.mid(first, 3), (QStringList{"[q0.ln1].tx_data_rate \"3.125G\"", QString(),
                                               "[q0.ln1].rx_data_rate \"3.125G\""}));
    if (device.isEmpty())
        QCOMPARE(lines.size(), 3);
}

// A destroyed parser comes back empty; a second initialize merges tiers.
void tst_Parser::lifecycle()
{
    parser *tables = parser::instance();
    QCOMPARE(parser::instance(), tables);
    tables->initialize(QStringLiteral("RK9C-370D"));
    tables->initialize(QStringLiteral("RK9C-90D"));
    QCOMPARE(tables->getDeviceName(), QStringLiteral("RK9C-90D"));
    QCOMPARE(tables->getConverMap().size(), 665 + 4 * 2);
    QCOMPARE(tables->getDefaultMap().size(), 341 + 2);

    parser::destory();
    parser::destory();
    tables = parser::instance();
    QVERIFY(tables->getConverMap().isEmpty());
    QVERIFY(tables->getDefaultMap().isEmpty());
    QVERIFY(tables->getDeviceName().isEmpty());
}

QTEST_APPLESS_MAIN(tst_Parser)
#include "tst_translateparser.moc"
