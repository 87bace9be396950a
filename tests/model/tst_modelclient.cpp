// SPDX-License-Identifier: MIT

// The model as a protocol plug-in sees it: the public model headers only, the
// library linked, names and run-time casts crossing the library boundary.


#include "model/serdes.h"
#include "model/serdesip_common.h"

#include <QLocale>
#include <QtTest>

using namespace IPSERDESIP;

class tst_ModelClient : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void cleanupTestCase() { serdes::destory(); }

    void takeRoutes_data();
    void takeRoutes();
};

void tst_ModelClient::takeRoutes_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("lane");
    QTest::addColumn<QString>("pll");
    QTest::addColumn<QString>("refOption");
    QTest::addColumn<QString>("tx");
    QTest::addColumn<QString>("rx");
    QTest::addColumn<QString>("pllLine");
    QTest::addColumn<int>("elements");

    const auto row
        = [](const char *device, const char *lane, const char *pll, const char *refOption,
             const char *tx, const char *rx, const char *pllLine, int elements) {
              QTest::newRow(device)
                  << QString(device) << QString(lane) << QString(pll) << QString(refOption)
                  << QString(tx) << QString(rx) << QString(pllLine) << elements;
          };
    row("RK9C-880D", "Q1 Lane1", "Q1_QPLL0", "Q0 REFCLK1",
        "Q1_LANE1_TX Q1_QPLL0 Q1_MUX0 MUX_Q0_TO_Q1 Q0_REFCLK1",
        "Q1_LANE1_RX Q1_MUX0 MUX_Q0_TO_Q1 Q0_REFCLK1", "[q1].qpll0_ref_sel 0", 45);
    row("RK9C-370Q", "Q0 Lane0", "Q0_CPLL0", "Q0 REFIN1", "Q0_LANE0_TX Q0_CPLL0 Q0_MUX0 Q0_GPIO1",
        "Q0_LANE0_RX Q0_MUX0 Q0_GPIO1", "[q0.ln0].cpll_ref_sel 0", 30);
    row("RK9LMC-90F", "Q0 Lane3", "Q0_QPLL1", "GPIO", "Q0_LANE3_TX Q0_QPLL1 Q0_GPIO",
        "Q0_LANE3_RX Q0_GPIO", "[q0].qpll1_ref_sel 2", 24);
}

void tst_ModelClient::takeRoutes()
{
    QFETCH(QString, device);
    QFETCH(QString, lane);
    QFETCH(QString, pll);
    QFETCH(QString, refOption);
    QFETCH(QString, tx);
    QFETCH(QString, rx);
    QFETCH(QString, pllLine);
    QFETCH(int, elements);

    serdes::destory();
    serdes *model = serdes::instance();
    model->initilize(device);

    // Every element is free and of one of the exported kinds.
    const QMap<QString, Instance *> all = model->allInstance();
    QCOMPARE(all.size(), elements);
    for (Instance *element : all) {
        QCOMPARE(element->count, 0);
        const bool known = dynamic_cast<LANE *>(element) || dynamic_cast<LINE *>(element)
                           || dynamic_cast<MUX *>(element) || dynamic_cast<PLL *>(element)
                           || dynamic_cast<REF_SOURCE *>(element);
        QVERIFY2(known, qPrintable(element->name));
    }

    // The dialog's words become model names; the request path reserves the
    // lines and the source, the model finds the routes.
    LANE *target = model->FormStringToLanePtr(lane.toUpper().replace(' ', '_'));
    QVERIFY(target);
    const QString ref = FromRefOptionToRef(refOption);
    REF_SOURCE *source = model->FormStringToREFSPtr(ref);
    QVERIFY(source);
    QVERIFY(model->checkAccess(ref, target->tx->name));
    QVERIFY(model->checkAccess(ref, target->rx->name));
    target->tx->set(10.3125, pll);
    target->rx->set(10.3125, QString());
    QVERIFY(source->set(156.25));
    QVERIFY(source->set(156.25));
    QList<QString> txPath;
    QVERIFY(model->generateAccess(ref, target->tx->name, txPath));
    QList<QString> rxPath;
    QVERIFY(model->generateAccess(ref, target->rx->name, rxPath));

    // Read back what was taken.
    const QStringList txRecord = tx.split(' ');
    const QStringList rxRecord = rx.split(' ');
    QCOMPARE(txPath, txRecord);
    QCOMPARE(rxPath, rxRecord);
    QCOMPARE(model->allAccess(), (QMap<QString, QStringList>{{txRecord.first(), txRecord},
                                                             {rxRecord.first(), rxRecord}}));
    QCOMPARE(target->getLaneStatus(), 3);
    QCOMPARE(model->getFreqByRefsrc(refOption), 156.25);
    auto *thePll = dynamic_cast<PLL *>(model->allInstance().value(pll));
    QVERIFY(thePll);
    QCOMPARE(thePll->Mux()->tomlParameter(), QStringList{pllLine});
    QCOMPARE(model->findRefsource(thePll->Mux()->point()), source);
    QCOMPARE(FromRefOptionToRef(refsrcSerdesNameTransforOpt(txRecord.last())), ref);
}

QTEST_GUILESS_MAIN(tst_ModelClient)
#include "tst_modelclient.moc"
