// SPDX-License-Identifier: MIT

#include "model/serdes.h"
#include "plugin/serdesipconstants.h"

#include <QLocale>
#include <QtTest>

using namespace IPSERDESIP;

namespace {

const char DEVICE_880K[] = "RK9C-880D";
const char DEVICE_370K[] = "RK9C-370Q";
const char DEVICE_90K[] = "RK9MC-90D";

serdes *freshModel(const QString &device)
{
    serdes::destory();
    serdes::instance()->initilize(device);
    return serdes::instance();
}

MUX *selectNamed(serdes *model, const QString &name)
{
    if (auto *pll = dynamic_cast<PLL *>(model->instances.value(name)))
        return pll->Mux();
    return model->FormStringToMuxSPtr(name);
}

LINE *line(serdes *model, const QString &name)
{
    return dynamic_cast<LINE *>(model->instances.value(name));
}

// "name=count@sel" of each named select.
QString held(serdes *model, const QString &names)
{
    QStringList out;
    for (const QString &name : names.split(' ')) {
        MUX *mux = selectNamed(model, name);
        out << QStringLiteral("%1=%2@%3").arg(name).arg(mux->count).arg(mux->sel());
    }
    return out.join(' ');
}

// Every select's count, sel and dir and every line's count and source.
QStringList state(serdes *model)
{
    QStringList out;
    for (Instance *element : model->allInstance()) {
        if (MUX *mux = selectNamed(model, element->name))
            out << QStringLiteral("%1 %2 %3 %4")
                       .arg(mux->name)
                       .arg(mux->count)
                       .arg(mux->sel())
                       .arg(mux->dir());
        else if (auto *l = dynamic_cast<LINE *>(element))
            out << QStringLiteral("%1 %2 %3").arg(l->name).arg(l->count).arg(l->source);
    }
    return out;
}

} // namespace

class tst_ModelRoutes : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void cleanupTestCase() { serdes::destory(); }

    void generatedRecords_data();
    void generatedRecords();
    void heldMuxIsSharedNotReselected();
    void failedSearchChangesNothing();
    void checkDiffersFromGenerate();
    void viaPinsTheMux();
    void checkRouteBatches();
    void checkRouteRefusals();
};

void tst_ModelRoutes::generatedRecords_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("pll");
    QTest::addColumn<QString>("record");
    QTest::addColumn<QString>("selects");

    const auto row = [](const char *tag, const char *device, const char *pll, const char *record,
                        const char *selects) {
        QTest::newRow(tag) << QString(device) << QString(pll) << QString(record)
                           << QString(selects);
    };
    row("880k quad 1 TX from quad 0", DEVICE_880K, Q1_QPLL0,
        "Q1_LANE0_TX Q1_QPLL0 Q1_MUX0 MUX_Q0_TO_Q1 Q0_REFCLK0",
        "Q1_QPLL0=1@0 Q1_MUX0=1@1 MUX_Q0_TO_Q1=1@0 Q1_MUX1=0@0");
    row("880k quad 0 TX from quad 1", DEVICE_880K, Q0_CPLL3,
        "Q0_LANE3_TX Q0_CPLL3 Q0_MUX0 MUX_Q0_TO_Q1 Q1_REFCLK1",
        "Q0_CPLL3=1@0 Q0_MUX0=1@2 MUX_Q0_TO_Q1=1@1");
    row("880k RX without PLL", DEVICE_880K, "", "Q0_LANE1_RX Q0_MUX0 Q0_REFCLK1",
        "Q0_MUX0=1@3 Q0_MUX1=0@0");
    row("880k RX over the bridge", DEVICE_880K, "", "Q1_LANE1_RX Q1_MUX0 MUX_Q0_TO_Q1 Q0_REFCLK1",
        "Q1_MUX0=1@1 MUX_Q0_TO_Q1=1@1 Q1_MUX1=0@0");
    row("370k TX from a fabric clock", DEVICE_370K, Q0_QPLL1,
        "Q0_LANE2_TX Q0_QPLL1 Q0_MUX2 Q0_GPIO2", "Q0_QPLL1=1@2 Q0_MUX2=1@3");
    row("90k TX direct", DEVICE_90K, Q0_CPLL0, "Q0_LANE0_TX Q0_CPLL0 Q0_MCLK",
        "Q0_CPLL0=1@3 Q0_MUX0=0@0");
    row("90k RX direct, master clock", DEVICE_90K, "", "Q0_LANE1_RX Q0_MCLK",
        "Q0_MUX0=0@0 Q0_MUX1=0@0");
}

void tst_ModelRoutes::generatedRecords()
{
    QFETCH(QString, device);
    QFETCH(QString, pll);
    QFETCH(QString, record);
    QFETCH(QString, selects);

    serdes *model = freshModel(device);
    const QStringList expected = record.split(' ');
    const QString name = expected.first();
    const QString ref = expected.last();
    if (!pll.isEmpty())
        line(model, name)->set(1.25, pll);
    QVERIFY(model->checkAccess(ref, name));
    QList<QString> path;
    QVERIFY(model->generateAccess(ref, name, path));
    QCOMPARE(path, expected);
    QCOMPARE(model->allAccess(), (QMap<QString, QStringList>{{name, expected}}));
    QStringList names;
    for (const QString &entry : selects.split(' '))
        names << entry.section('=', 0, 0);
    QCOMPARE(held(model, names.join(' ')), selects);
    // An RX line is clocked by what follows it: a mux, or on 90k the source.
    QCOMPARE(line(model, name)->source, pll.isEmpty() ? expected.at(1) : pll);
    // Routing reserves neither the line nor the source; that is the caller's.
    QCOMPARE(line(model, name)->count, pll.isEmpty() ? 0 : 1);
    QCOMPARE(model->FormStringToREFSPtr(ref)->count, 0);
}

void tst_ModelRoutes::heldMuxIsSharedNotReselected()
{
    serdes *model = freshModel(DEVICE_880K);
    QList<QString> rx;
    QVERIFY(model->generateAccess(Q0_REF0, Q0_LANE0_RX, rx));

    // Q0_MUX0 is held at REFCLK0, so the free PLL select passes it by.
    for (const char *name : {Q0_LANE0_TX, Q0_LANE1_TX, Q0_LANE2_TX})
        line(model, name)->set(0.0, Q0_QPLL0);
    QList<QString> first;
    QVERIFY(model->generateAccess(Q0_REF1, Q0_LANE0_TX, first));
    QCOMPARE(first, (QStringList{"Q0_LANE0_TX", "Q0_QPLL0", "Q0_MUX1", "Q0_REFCLK1"}));
    QList<QString> second;
    QVERIFY(model->generateAccess(Q0_REF1, Q0_LANE1_TX, second));
    QCOMPARE(second, (QStringList{"Q0_LANE1_TX", "Q0_QPLL0", "Q0_MUX1", "Q0_REFCLK1"}));
    QCOMPARE(held(model, "Q0_QPLL0 Q0_MUX1 Q0_MUX0"),
             QString("Q0_QPLL0=2@1 Q0_MUX1=2@0 Q0_MUX0=1@0"));

    // Another source is refused, though Q0_MUX0 carries it: the PLL's
    // selection stands. Another PLL of the quad can still have it.
    QVERIFY(!model->checkAccess(Q0_REF0, Q0_LANE2_TX));
    QList<QString> refused;
    QVERIFY(!model->generateAccess(Q0_REF0, Q0_LANE2_TX, refused));
    QCOMPARE(refused, QStringList{"Q0_LANE2_TX"});
    line(model, Q0_LANE2_TX)->setSource(Q0_QPLL1);
    QVERIFY(model->checkAccess(Q0_REF0, Q0_LANE2_TX));

    // Releasing goes down the whole chain, one holder at a time; the records
    // are the caller's to drop.
    model->clearAccess();
    QVERIFY(model->allAccess().isEmpty());
    selectNamed(model, Q0_QPLL0)->reset(Q0_REF1);
    QCOMPARE(held(model, "Q0_QPLL0 Q0_MUX1"), QString("Q0_QPLL0=1@1 Q0_MUX1=1@0"));
    selectNamed(model, Q0_QPLL0)->reset(Q0_REF1);
    QCOMPARE(held(model, "Q0_QPLL0 Q0_MUX1 Q0_MUX0"),
             QString("Q0_QPLL0=0@0 Q0_MUX1=0@0 Q0_MUX0=1@0"));
}

void tst_ModelRoutes::failedSearchChangesNothing()
{
    serdes *model = freshModel(DEVICE_880K);
    // With the bridge held at Q0_REFCLK0, quad 1 cannot get Q0_REFCLK1 over
    // either of its muxes, though the search enters both before giving up.
    line(model, Q1_LANE0_TX)->set(0.0, Q1_QPLL0);
    QList<QString> path;
    QVERIFY(model->generateAccess(Q0_REF0, Q1_LANE0_TX, path));
    line(model, Q1_LANE1_TX)->set(0.0, Q1_CPLL1);
    const QStringList before = state(model);
    const auto access = model->allAccess();

    // The caller's list comes back as it was, even where it already held the
    // names that the search appends and takes back.
    QList<QString> failed{"Q1_MUX0", "kept", "Q1_CPLL1"};
    QVERIFY(!selectNamed(model, Q1_CPLL1)->getReachAccess(Q0_REF1, failed));
    QVERIFY(!selectNamed(model, Q1_CPLL1)->getReachAccess(Q0_REF1, Q1_MUX1, failed));
    QCOMPARE(failed, (QStringList{"Q1_MUX0", "kept", "Q1_CPLL1"}));
    QList<QString> tx;
    QVERIFY(!model->generateAccess(Q0_REF1, Q1_LANE1_TX, tx));
    QCOMPARE(tx, QStringList{"Q1_LANE1_TX"});
    QList<QString> rx;
    QVERIFY(!model->generateAccess(Q0_REF1, Q1_LANE1_RX, rx));
    QCOMPARE(rx, QStringList{"Q1_LANE1_RX"});
    QCOMPARE(state(model), before);
    QCOMPARE(model->allAccess(), access);

    // Names that are no line are refused before the list is touched.
    QList<QString> none;
    QVERIFY(!model->generateAccess(Q0_REF0, Q1_LANE1, none));
    QVERIFY(!model->checkAccess(Q0_REF0, Q1_LANE1));
    QVERIFY(none.isEmpty());
}

void tst_ModelRoutes::checkDiffersFromGenerate()
{
    serdes *model = freshModel(DEVICE_880K);
    // A TX line without PLL: the check tries every PLL, the generator none.
    QVERIFY(model->checkAccess(Q1_REF1, Q0_LANE0_TX));
    QList<QString> path;
    QVERIFY(!model->generateAccess(Q1_REF1, Q0_LANE0_TX, path));
    QCOMPARE(path, QStringList{"Q0_LANE0_TX"});
    QVERIFY(!model->checkAccess(Q0_GPIO, Q0_LANE0_RX));

    // On 90k the check says yes to any source for an RX line without source,
    // even one the device lacks; only the direct clocks generate, and only
    // without `via`.
    model = freshModel(DEVICE_90K);
    for (const char *ref : {Q0_REF2, Q0_GPIO, "nonsense"})
        QVERIFY2(model->checkAccess(ref, Q0_LANE0_RX), ref);
    QVERIFY(!model->checkAccess(Q0_REF2, Q0_MUX0, Q0_LANE0_RX));
    QList<QString> refused;
    QVERIFY(!model->generateAccess(Q0_REF2, Q0_LANE0_RX, refused));
    QCOMPARE(refused, QStringList{"Q0_LANE0_RX"});
    QVERIFY(!model->generateAccess(Q0_GPIO, Q0_MUX0, Q0_LANE0_RX, refused));
    // An open position is no source, not even for an empty name.
    QVERIFY(!model->FormStringToMuxSPtr(Q0_MUX0)->checkReachAccess(QString()));
    QVERIFY(!model->generateAccess(QString(), Q0_LANE0_RX, refused));
    QVERIFY(model->allAccess().isEmpty());
    QVERIFY(line(model, Q0_LANE0_RX)->source.isEmpty());
}

void tst_ModelRoutes::viaPinsTheMux()
{
    serdes *model = freshModel(DEVICE_880K);
    line(model, Q0_LANE0_TX)->set(0.0, Q0_QPLL0);
    QVERIFY(model->checkAccess(Q0_REF0, Q0_MUX1, Q0_LANE0_TX));
    QList<QString> tx;
    QVERIFY(model->generateAccess(Q0_REF0, Q0_MUX1, Q0_LANE0_TX, tx));
    QCOMPARE(tx, (QStringList{"Q0_LANE0_TX", "Q0_QPLL0", "Q0_MUX1", "Q0_REFCLK0"}));
    QCOMPARE(held(model, "Q0_QPLL0 Q0_MUX1 Q0_MUX0"),
             QString("Q0_QPLL0=1@1 Q0_MUX1=1@3 Q0_MUX0=0@0"));

    // Past the mux named `via` the search goes on freely, over the bridge.
    line(model, Q1_LANE0_TX)->set(0.0, Q1_QPLL1);
    QList<QString> cross;
    QVERIFY(model->generateAccess(Q0_REF1, Q1_MUX1, Q1_LANE0_TX, cross));
    QCOMPARE(cross,
             (QStringList{"Q1_LANE0_TX", "Q1_QPLL1", "Q1_MUX1", "MUX_Q0_TO_Q1", "Q0_REFCLK1"}));

    // For RX only the mux named `via` is asked, never the bridge.
    QVERIFY(!model->checkAccess(Q1_REF0, Q1_MUX1, Q1_LANE2_RX));
    QVERIFY(model->checkAccess(Q1_REF0, Q1_LANE2_RX));
    QList<QString> rx;
    QVERIFY(model->generateAccess(Q0_REF1, Q1_MUX1, Q1_LANE3_RX, rx));
    QCOMPARE(rx, (QStringList{"Q1_LANE3_RX", "Q1_MUX1", "MUX_Q0_TO_Q1", "Q0_REFCLK1"}));
    QCOMPARE(line(model, Q1_LANE3_RX)->source, QString(Q1_MUX1));
    QList<QString> bridge;
    QVERIFY(!model->generateAccess(Q0_REF0, MUX_Q0_TO_Q1, Q1_LANE2_RX, bridge));

    // A source at hand needs no `via`.
    model = freshModel(DEVICE_90K);
    line(model, Q0_LANE0_TX)->set(0.0, Q0_CPLL0);
    QList<QString> direct;
    QVERIFY(model->generateAccess(Q0_GPIO, Q0_MUX0, Q0_LANE0_TX, direct));
    QCOMPARE(direct, (QStringList{"Q0_LANE0_TX", "Q0_CPLL0", "Q0_GPIO"}));
    QCOMPARE(held(model, "Q0_CPLL0 Q0_MUX0"), QString("Q0_CPLL0=1@2 Q0_MUX0=0@0"));
}

void tst_ModelRoutes::checkRouteBatches()
{
    serdes *model = freshModel(DEVICE_880K);
    QVERIFY(model->checkRoute({Q0_LANE0, Q0_LANE1_TX, Q0_LANE2_RX}, {Q0_QPLL0, Q0_QPLL0, "0"},
                              {Q0_REF0, Q0_REF0, Q0_REF0}, {"1", "1", "1"}));
    QCOMPARE(model->allAccess().value(Q0_LANE0_RX),
             (QStringList{"Q0_LANE0_RX", "Q0_MUX0", "Q0_REFCLK0"}));
    QCOMPARE(model->allAccess().value(Q0_LANE1_TX),
             (QStringList{"Q0_LANE1_TX", "Q0_QPLL0", "Q0_MUX0", "Q0_REFCLK0"}));
    QCOMPARE(model->allAccess().size(), 4);
    QCOMPARE(held(model, "Q0_QPLL0 Q0_MUX0"), QString("Q0_QPLL0=2@0 Q0_MUX0=4@0"));
    // Without options the RX lines are routed, not counted.
    QCOMPARE(line(model, Q0_LANE0_TX)->count, 1);
    QCOMPARE(line(model, Q0_LANE0_RX)->count, 0);
    QCOMPARE(line(model, Q0_LANE2_RX)->count, 0);
    QCOMPARE(model->FormStringToREFSPtr(Q0_REF0)->count, 0);

    // A mux option pins both directions to that mux; an RX row without PLL
    // takes its line with the mux as source.
    model = freshModel(DEVICE_880K);
    QVERIFY(model->checkRoute({Q0_LANE2_RX, Q0_LANE3}, {"0", Q0_CPLL3}, {Q0_REF0, Q0_REF0},
                              {"1", "1"}, {{Q0_LANE2_RX, "REFMUX1"}, {Q0_LANE3, "REFMUX1"}}));
    QCOMPARE(model->allAccess().value(Q0_LANE3_TX),
             (QStringList{"Q0_LANE3_TX", "Q0_CPLL3", "Q0_MUX1", "Q0_REFCLK0"}));
    QCOMPARE(model->allAccess().value(Q0_LANE3_RX),
             (QStringList{"Q0_LANE3_RX", "Q0_MUX1", "Q0_REFCLK0"}));
    QCOMPARE(line(model, Q0_LANE2_RX)->count, 1);
    QCOMPARE(line(model, Q0_LANE2_RX)->source, QString(Q0_MUX1));
    QCOMPARE(held(model, "Q0_MUX1 Q0_MUX0"), QString("Q0_MUX1=3@3 Q0_MUX0=0@0"));

    // RX lines on PLLs: both lines of a lane name the PLL and share it.
    model = freshModel(DEVICE_370K);
    QVERIFY(model->checkAccessForRxConnectPll(Q0_GPIO3, Q0_LANE0_RX));
    QList<QString> none;
    QVERIFY(!model->generateAccessForRxConnectPll(Q0_GPIO3, Q0_LANE0_RX, none));
    QVERIFY(model->checkRouteForRxConnectPll({Q0_LANE1, Q0_LANE2_RX}, {Q0_QPLL1, Q0_CPLL2},
                                             {Q0_GPIO3, Q0_REF3}, {"1", "1"}));
    QCOMPARE(model->allAccess().value(Q0_LANE1_RX),
             (QStringList{"Q0_LANE1_RX", "Q0_QPLL1", "Q0_MUX2", "Q0_GPIO3"}));
    QCOMPARE(model->allAccess().value(Q0_LANE1_TX),
             (QStringList{"Q0_LANE1_TX", "Q0_QPLL1", "Q0_MUX2", "Q0_GPIO3"}));
    QCOMPARE(model->allAccess().value(Q0_LANE2_RX),
             (QStringList{"Q0_LANE2_RX", "Q0_CPLL2", "Q0_MUX3", "Q0_REFCLK3"}));
    QCOMPARE(held(model, "Q0_QPLL1 Q0_MUX2 Q0_MUX3"),
             QString("Q0_QPLL1=2@2 Q0_MUX2=2@1 Q0_MUX3=1@0"));
    QCOMPARE(line(model, Q0_LANE1_RX)->source, QString(Q0_QPLL1));
    QCOMPARE(line(model, Q0_LANE1_RX)->count, 1);
    line(model, Q0_LANE3_RX)->set(0.0, Q0_CPLL3);
    QList<QString> via;
    QVERIFY(model->generateAccessForRxConnectPll(Q0_REF0, Q0_MUX1, Q0_LANE3_RX, via));
    QCOMPARE(via, (QStringList{"Q0_LANE3_RX", "Q0_CPLL3", "Q0_MUX1", "Q0_REFCLK0"}));
}

void tst_ModelRoutes::checkRouteRefusals()
{
    serdes *model = freshModel(DEVICE_880K);
    QTest::ignoreMessage(QtCriticalMsg, "The quantity is not equal");
    QVERIFY(!model->checkRoute({Q0_LANE0}, {}, {Q0_REF0}, {"1"}));
    QTest::ignoreMessage(QtCriticalMsg, "The quantity is not equal");
    QVERIFY(!model->checkRouteForRxConnectPll({}, {}, {}, {"1"}));
    QTest::ignoreMessage(QtCriticalMsg,
                         "The quantity of the lane selection or the pll selection or the "
                         "reference Clock or the reference Clock Frequence is empty");
    QVERIFY(!model->checkRoute({}, {}, {}, {}, {}));
    QTest::ignoreMessage(QtCriticalMsg, "Lane name Error : \"Q5_LANE0\"");
    QVERIFY(!model->checkRoute({"Q5_LANE0"}, {Q0_QPLL0}, {Q0_REF0}, {"1"}));
    QVERIFY(model->allAccess().isEmpty());

    // A refused row ends the batch; what came before, and what the refused
    // row took itself, stays.
    QVERIFY(!model->checkRoute({Q0_LANE0_TX, Q0_LANE1_TX, Q0_LANE2_TX},
                               {Q0_QPLL0, Q0_QPLL0, Q0_QPLL0}, {Q0_REF0, Q0_REF1, Q0_REF0},
                               {"1", "1", "1"}));
    QCOMPARE(model->allAccess().keys(), QStringList{"Q0_LANE0_TX"});
    QCOMPARE(line(model, Q0_LANE1_TX)->count, 1);
    QCOMPARE(line(model, Q0_LANE2_TX)->count, 0);
    QCOMPARE(held(model, "Q0_QPLL0 Q0_MUX0"), QString("Q0_QPLL0=1@0 Q0_MUX0=1@0"));
}

QTEST_GUILESS_MAIN(tst_ModelRoutes)
#include "tst_modelroutes.moc"
