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
    row("q0_ln0_rx_sd_thsel", "49mV", "[q0.ln0].sr_sd_thsel 0");
    row("q0_ln0_rx_sd_thsel", "xxmV", "[q0.ln0].sr_sd_thsel -1");
    row("q0_ln3_ctc_2nd_pattern", "K28.5", "[q0.ln3].ctc_skipb_pattern 0");
    row("q0_ln0_tx_ffe_c0", "", "[q0.ln0].ffe_c0 ");
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
