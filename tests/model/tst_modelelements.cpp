// SPDX-License-Identifier: MIT

#include "model/serdes.h"
#include "model/serdesip_common.h"
#include "plugin/serdesipconstants.h"

#include <QLocale>
#include <QtTest>

#include <cmath>

using namespace IPSERDESIP;

class tst_ModelElements : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void cleanupTestCase() { serdes::destory(); }

    void useCounts();
    void laneStatusAndRate_data();
    void laneStatusAndRate();
    void storeAndSingleton();
    void lookups();
    void hues();
};

void tst_ModelElements::useCounts()
{
    // A reference source runs at one frequency, compared exactly.
    REF_SOURCE ref(nullptr, Q0_REF0);
    QVERIFY(ref.set(100.0));
    QVERIFY(ref.set(100.0));
    QVERIFY(!ref.set(std::nextafter(100.0, 200.0)));
    QCOMPARE(ref.count, 2);
    ref.reset();
    QCOMPARE(ref.freq, 100.0);
    ref.reset();
    ref.reset();
    QCOMPARE(ref.count, 0);
    QCOMPARE(ref.freq, 0.0);

    // A line counts every holder, and the last one's rate and source win.
    LINE line(nullptr, Q0_LANE0_TX);
    line.set(10.3125, Q0_QPLL0);
    line.set(6.25, Q0_CPLL0);
    QCOMPARE(line.count, 2);
    QCOMPARE(line.source, QString(Q0_CPLL0));
    line.reset();
    QCOMPARE(line.rate, 6.25);
    line.reset();
    QCOMPARE(line.count, 0);
    QCOMPARE(line.rate, 0.0);
    QVERIFY(line.source.isNull());

    // Resetting a free mux only clears its selection.
    MUX mux(nullptr, "M", nullptr, 4, 2, nullptr);
    mux.m_sel = 3;
    mux.m_dir = 1;
    mux.reset(Q0_REF0);
    QCOMPARE(mux.sel(), 0);
    QCOMPARE(mux.dir(), 0);
    QCOMPARE(mux.count, 0);
}

void tst_ModelElements::laneStatusAndRate_data()
{
    QTest::addColumn<bool>("tx");
    QTest::addColumn<double>("txRate");
    QTest::addColumn<bool>("rx");
    QTest::addColumn<double>("rxRate");
    QTest::addColumn<int>("status");
    QTest::addColumn<double>("rate");

    QTest::newRow("free") << false << 0.0 << false << 0.0 << 0 << 0.0;
    QTest::newRow("tx") << true << 3.0 << false << 0.0 << 1 << 3.0;
    QTest::newRow("rx") << false << 0.0 << true << 2.0 << 2 << 2.0;
    QTest::newRow("both, rx wins") << true << 3.0 << true << 2.0 << 3 << 2.0;
    QTest::newRow("rx at 0 gives tx") << true << 3.0 << true << 0.0 << 3 << 3.0;
}

void tst_ModelElements::laneStatusAndRate()
{
    QFETCH(bool, tx);
    QFETCH(double, txRate);
    QFETCH(bool, rx);
    QFETCH(double, rxRate);
    QFETCH(int, status);
    QFETCH(double, rate);

    LANE lane(nullptr, Q1_LANE2);
    QCOMPARE(lane.tx->name, QString("Q1_LANE2_TX"));
    QCOMPARE(lane.rx->name, QString("Q1_LANE2_RX"));
    if (tx)
        lane.tx->set(txRate, Q1_QPLL0);
    if (rx)
        lane.rx->set(rxRate, Q1_MUX0);
    QCOMPARE(lane.getLaneStatus(), status);
    QCOMPARE(lane.getLaneRate(), rate);
    lane.set(5.0, Q1_QPLL1);
    lane.reset();
    QCOMPARE(lane.getLaneStatus(), status);
    QVERIFY(!lane.enable());
}

void tst_ModelElements::storeAndSingleton()
{
    serdes *model = serdes::instance();
    model->initilize("RK9C-880D");
    model->setData("null", QVariant());
    model->setData("null string", QVariant(QString()));
    model->setData("flag", true);
    QVERIFY(!model->getData("missing").isValid());
    QVERIFY(!model->getData("null").isValid());
    QVERIFY(!model->getData("null string").isValid());
    QCOMPARE(model->getData("flag"), QVariant(true));
    model->removeData("flag");
    QVERIFY(!model->getData("flag").isValid());
    model->parseGlobalData({{"LANG", "verilog"}});
    QCOMPARE(model->data, (QMap<QString, QVariant>{{"LANG", "verilog"}}));
    model->setWorkingDir("/tmp/work");
    QCOMPARE(model->workingDir(), QString("/tmp/work"));

    serdes::destory();
    serdes::destory();
    model = serdes::instance();
    QCOMPARE(serdes::instance(), model);
    QVERIFY(model->quads.isEmpty() && model->instances.isEmpty() && model->data.isEmpty());
    QVERIFY(model->workingDir().isEmpty());
    QVERIFY(!model->FormStringToLanePtr(Q0_LANE0));
}

void tst_ModelElements::lookups()
{
    serdes::destory();
    serdes *model = serdes::instance();
    model->initilize("RK9C-880D");
    QUAD *q0 = model->quads.value(Q0);
    QUAD *q1 = model->quads.value(Q1);

    // A lane is found by any text holding its name; other kinds give null.
    QCOMPARE(model->FormStringToLanePtr("Q0_LANE2_RX"), q0->lane(Q0_LANE2));
    QCOMPARE(model->FormStringToLanePtr("at Q1_LANE3_TX"), q1->lane(Q1_LANE3));
    QVERIFY(!model->FormStringToLanePtr("Q0 Lane2"));
    QCOMPARE(model->FormStringToREFSPtr(Q1_REF1), q1->ref(Q1_REF1));
    QCOMPARE(model->FormStringToMuxSPtr(Q1_MUX1), q1->mux(Q1_MUX1));
    QVERIFY(!model->FormStringToREFSPtr(Q0_MUX0));
    QVERIFY(!model->FormStringToMuxSPtr(Q0_QPLL0));
    QVERIFY(!q0->mux(Q1_MUX0));

    // A lane is never enabled itself; its lines are.
    q0->lane(Q0_LANE1)->set(1.0, Q0_QPLL0);
    QVERIFY(!model->instanceEnable(Q0_LANE1));
    QVERIFY(model->instanceEnable(Q0_LANE1_TX));
    QVERIFY(!model->instanceEnable(Q0_LANE0_TX));
    QVERIFY(!model->instanceEnable("unknown"));

    // Muxes are followed by their selection, free ones at select 0.
    QCOMPARE(model->findRefsource(Q0_MUX1)->name, QString(Q0_REF1));
    model->FormStringToMuxSPtr(Q1_MUX0)->m_sel = 1;
    MUX *bridge = model->FormStringToMuxSPtr(MUX_Q0_TO_Q1);
    bridge->m_dir = 1;
    bridge->m_sel = 1;
    QCOMPARE(model->findRefsource(Q1_MUX0)->name, QString(Q1_REF1));
    model->FormStringToMuxSPtr(Q0_MUX0)->m_sel = 1;
    QVERIFY(!model->findRefsource(Q0_MUX0));
    QVERIFY(!model->findRefsource(Q0_QPLL0));

    model->initilize("RK9LC-90F");
    QVERIFY(!model->FormStringToLanePtr(Q1_LANE0));
}

void tst_ModelElements::hues()
{
    const QList<double> expected{0.1, 0.3, 0.5, 0.7, 0.9, 0.2, 0.4, 0.6, 0.8, 0.55, 0.3};
    for (int i = 0; i < expected.size(); ++i) {
        QCOMPARE(IPSERDESIP::getH(i), expected.at(i));
        QCOMPARE(serdes::instance()->getH(i), expected.at(i));
    }
    // Every hue averages two earlier ones, so all stay within the first five,
    // and a deep index comes back at once.
    for (int i = 0; i < 5000; ++i)
        QVERIFY2(getH(i) >= 0.1 && getH(i) <= 0.9, qPrintable(QString::number(i)));
}

QTEST_GUILESS_MAIN(tst_ModelElements)
#include "tst_modelelements.moc"
