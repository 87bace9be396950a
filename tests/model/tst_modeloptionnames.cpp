// SPDX-License-Identifier: MIT

#include "model/serdes.h"
#include "model/serdesip_common.h"
#include "plugin/serdesipconstants.h"

#include <QLocale>
#include <QtTest>

using namespace IPSERDESIP;

class tst_ModelOptionNames : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void cleanupTestCase() { serdes::destory(); }

    void referenceSources_data();
    void referenceSources();
    void unmatchedNames();
    void pllsAndLanes();
    void muxNameFromOption_data();
    void muxNameFromOption();
    void frequencyOfHeldSource();
};

void tst_ModelOptionNames::referenceSources_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("back");

    const auto row = [](const char *option, const char *name, const char *back) {
        QTest::newRow(option) << QString(option) << QString(name) << QString(back);
    };
    row("Q0 REFCLK0", Q0_REF0, "Q0 REFCLK0");
    row("Q0 REFCLK1", Q0_REF1, "Q0 REFCLK1");
    row("Q0 REFCLK2", Q0_REF2, "Q0 REFCLK2");
    row("Q0 REFCLK3", Q0_REF3, "Q0 REFCLK3");
    row("Q1 REFCLK0", Q1_REF0, "Q1 REFCLK0");
    row("Q1 REFCLK1", Q1_REF1, "Q1 REFCLK1");
    row("Q0 REFIN0", Q0_GPIO0, "Q0 REFIN0");
    row("Q0 REFIN1", Q0_GPIO1, "Q0 REFIN1");
    row("Q0 REFIN2", Q0_GPIO2, "Q0 REFIN2");
    row("Q0 REFIN3", Q0_GPIO3, "Q0 REFIN3");
    row("Q0 REFIN", Q0_GPIO, "Q0 REFIN");
    row("GPIO", Q0_GPIO, "Q0 REFIN");
    row("MCLK", Q0_MCLK, "MCLK");
}

void tst_ModelOptionNames::referenceSources()
{
    QFETCH(QString, option);
    QFETCH(QString, name);
    QFETCH(QString, back);

    QCOMPARE(refsrcOptTransforSerdesName(option), name);
    QCOMPARE(FromRefOptionToRef(option), name);
    QCOMPARE(refsrcSerdesNameTransforOpt(name), back);
    // The model name is found inside longer text as well.
    QCOMPARE(refsrcSerdesNameTransforOpt("top/" + name + "_pin"), back);
}

void tst_ModelOptionNames::unmatchedNames()
{
    // Options match whole and case-sensitively; model names by containment.
    for (const char *option : {"q0 refclk0", "Q0 REFCLK0 ", "Q0_REFCLK0", "", "Q0"})
        QVERIFY2(refsrcOptTransforSerdesName(option).isNull(), option);
    for (const char *name : {"Q0 REFCLK0", "q0_refclk0", "GPIO", "Q0_GPI", ""})
        QVERIFY2(refsrcSerdesNameTransforOpt(name).isNull(), name);
    QCOMPARE(FromRefOptionToRef("Q2 REFCLK0"), QString("Q2_REFCLK0"));
    QCOMPARE(FromRefOptionToRef("a b  c"), QString("a_b__c"));
}

void tst_ModelOptionNames::pllsAndLanes()
{
    QCOMPARE(FromPllToStringOption(Q0_QPLL0), QString("QPLL0"));
    QCOMPARE(FromPllToStringOption(Q1_QPLL1), QString("QPLL1"));
    for (const char *pll : {Q0_CPLL3, "q0_qpll0", ""})
        QCOMPARE(FromPllToStringOption(pll), QString("CPLL"));

    QCOMPARE(FromLaneToInt({"Q2 Lane0", "q0 lane0", "Q0_LANE0"}), 7);
    QCOMPARE(FromLaneToInt({"Q0 Lane0"}), 0);
    QCOMPARE(FromLaneToInt({"Q1 Lane2", "Q0 Lane3"}), 3);
    QCOMPARE(FromLaneToInt({"Q1 Lane3", "x", "Q1 Lane1"}), 5);
}

void tst_ModelOptionNames::muxNameFromOption_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("quad");
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("mux");

    const auto row = [](const char *tag, const char *device, const char *quad, const char *option,
                        const QString &mux) {
        QTest::newRow(tag) << QString(device) << QString(quad) << QString(option) << mux;
    };
    row("880k MUX0", "RK9C-880D", "Q0", "MUX0", "Q0_MUX0");
    row("880k any case", "RK9C-880D", "Q1", "mux1", "Q1_MUX1");
    row("880k no MUX2", "RK9C-880D", "Q0", "MUX2", QString());
    row("880k empty gives first", "RK9C-880D", "Q1", "", "MUX_Q0_TO_Q1");
    row("370k no Q1", "RK9C-370D", "Q1", "MUX0", QString());
    row("90k empty gives first", "RK9C-90F", "Q0", "", "Q0_MUX0");
    row("unknown quad", "RK9C-880D", "q0", "MUX0", QString());
}

void tst_ModelOptionNames::muxNameFromOption()
{
    QFETCH(QString, device);
    QFETCH(QString, quad);
    QFETCH(QString, option);
    QFETCH(QString, mux);

    serdes::destory();
    serdes::instance()->initilize(device);
    const QString name = serdes::instance()->getMuxNamefromOption(quad, option);
    QCOMPARE(name, mux);
    QCOMPARE(name.isNull(), mux.isNull());
}

void tst_ModelOptionNames::frequencyOfHeldSource()
{
    serdes::destory();
    serdes *model = serdes::instance();
    model->initilize("RK9C-90D");
    QCOMPARE(model->getFreqByRefsrc("MCLK"), 0.0);
    model->FormStringToREFSPtr(Q0_MCLK)->set(156.25);
    QCOMPARE(model->getFreqByRefsrc("MCLK"), 156.25);
    model->FormStringToREFSPtr(Q0_REF1)->set(100.0);
    QCOMPARE(model->getFreqByRefsrc("Q0 REFCLK1"), 100.0);
    for (const char *option : {"Q0 REFCLK0", "Q1 REFCLK0", "Q0_MCLK", ""})
        QCOMPARE(model->getFreqByRefsrc(option), 0.0);
}

QTEST_GUILESS_MAIN(tst_ModelOptionNames)
#include "tst_modeloptionnames.moc"
