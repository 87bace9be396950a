// SPDX-License-Identifier: MIT

#include "model/serdes.h"
#include "plugin/serdesipconstants.h"

#include <QLocale>
#include <QtTest>

using namespace IPSERDESIP;

namespace {

const char DEVICE_880K[] = "RK9C-880D";
const char DEVICE_370K[] = "RK9C-370D";
const char DEVICE_90K[] = "RK9C-90F";

serdes *freshModel(const QString &device)
{
    serdes::destory();
    serdes::instance()->initilize(device);
    return serdes::instance();
}

template<typename T>
QStringList namesOfKind(serdes *model)
{
    QStringList names;
    for (Instance *element : model->allInstance()) {
        if (dynamic_cast<T *>(element))
            names << element->name;
    }
    return names;
}

} // namespace

class tst_ModelTopology : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void cleanupTestCase() { serdes::destory(); }

    void tierFromDevice_data();
    void tierFromDevice();
    void muxWiring_data();
    void muxWiring();
    void bridge_data();
    void bridge();
    void reinitialiseStartsFresh();
};

void tst_ModelTopology::tierFromDevice_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QStringList>("quads");
    QTest::addColumn<QStringList>("muxes");
    QTest::addColumn<QStringList>("refs");

    const QStringList both{"Q0", "Q1"};
    const QStringList muxes880k{"MUX_Q0_TO_Q1", "Q0_MUX0", "Q0_MUX1", "Q1_MUX0", "Q1_MUX1"};
    const QStringList refs880k{"Q0_REFCLK0", "Q0_REFCLK1", "Q1_REFCLK0", "Q1_REFCLK1"};
    for (const char *device :
         {"RK9C-880D", "RK9C-440D", "", "rk9c-370d", "RK9C-90F ", "RK9C-370D/RK9C-370Q"})
        QTest::newRow(device) << device << both << muxes880k << refs880k;
    for (const char *device : {"RK9C-370D", "RK9C-370Q"})
        QTest::newRow(device) << device << QStringList{"Q0"}
                              << QStringList{"Q0_MUX0", "Q0_MUX1", "Q0_MUX2", "Q0_MUX3"}
                              << QStringList{"Q0_GPIO0",   "Q0_GPIO1",   "Q0_GPIO2",
                                             "Q0_GPIO3",   "Q0_REFCLK0", "Q0_REFCLK1",
                                             "Q0_REFCLK2", "Q0_REFCLK3"};
    for (const char *device :
         {"RK9C-90F", "RK9MC-90F", "RK9MC-90D", "RK9C-90D", "RK9LC-90F", "RK9LMC-90F"})
        QTest::newRow(device) << device << QStringList{"Q0"} << QStringList{"Q0_MUX0", "Q0_MUX1"}
                              << QStringList{"Q0_GPIO", "Q0_MCLK", "Q0_REFCLK0", "Q0_REFCLK1"};
}

void tst_ModelTopology::tierFromDevice()
{
    QFETCH(QString, device);
    QFETCH(QStringList, quads);
    QFETCH(QStringList, muxes);
    QFETCH(QStringList, refs);

    serdes *model = freshModel(device);
    QCOMPARE(model->device, device);
    QCOMPARE(model->quads.keys(), quads);
    QCOMPARE(namesOfKind<MUX>(model), muxes);
    QCOMPARE(namesOfKind<REF_SOURCE>(model), refs);
    // Four lanes with two lines each and six PLLs in every quad, all free; the
    // elements of quad 1 belong to it.
    QCOMPARE(namesOfKind<LANE>(model).size(), 4 * quads.size());
    QCOMPARE(namesOfKind<LINE>(model).size(), 8 * quads.size());
    QCOMPARE(namesOfKind<PLL>(model).size(), 6 * quads.size());
    QCOMPARE(model->allInstance().size(), 18 * quads.size() + muxes.size() + refs.size());
    for (Instance *element : model->allInstance()) {
        QCOMPARE(element->quad->name, element->name.startsWith("Q1") ? QString(Q1) : QString(Q0));
        QCOMPARE(element->count, 0);
    }
    QVERIFY(model->allAccess().isEmpty());
}

void tst_ModelTopology::muxWiring_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("mux");
    QTest::addColumn<QStringList>("positions"); // select 0 upwards, "-" for open
    QTest::addColumn<QString>("line");

    const auto add = [](const char *device, const QString &mux, const QStringList &positions,
                        const QString &line) {
        QTest::addRow("%s %s", device, qPrintable(mux)) << device << mux << positions << line;
    };
    add(DEVICE_880K, Q0_MUX0, {"Q0_REFCLK0", "-", "MUX_Q0_TO_Q1", "Q0_REFCLK1"},
        "[q0].refimux0_sel %1");
    add(DEVICE_880K, Q0_MUX1, {"Q0_REFCLK1", "-", "MUX_Q0_TO_Q1", "Q0_REFCLK0"},
        "[q0].refimux1_sel %1");
    add(DEVICE_880K, Q1_MUX0, {"Q1_REFCLK0", "MUX_Q0_TO_Q1", "-", "Q1_REFCLK1"},
        "[q1].refimux0_sel %1");
    add(DEVICE_880K, Q1_MUX1, {"Q1_REFCLK1", "MUX_Q0_TO_Q1", "-", "Q1_REFCLK0"},
        "[q1].refimux1_sel %1");
    add(DEVICE_370K, Q0_MUX0, {"Q0_REFCLK0", "Q0_GPIO1", "Q0_REFCLK1", "Q0_GPIO0"},
        "[q0].refimux0_sel %1");
    add(DEVICE_370K, Q0_MUX1, {"Q0_REFCLK1", "Q0_GPIO1", "Q0_REFCLK0", "Q0_GPIO0"},
        "[q0].refimux1_sel %1");
    add(DEVICE_370K, Q0_MUX2, {"Q0_REFCLK2", "Q0_GPIO3", "Q0_REFCLK3", "Q0_GPIO2"},
        "[q0].refimux2_sel %1");
    add(DEVICE_370K, Q0_MUX3, {"Q0_REFCLK3", "Q0_GPIO3", "Q0_REFCLK2", "Q0_GPIO2"},
        "[q0].refimux3_sel %1");
    add(DEVICE_90K, Q0_MUX0, {"Q0_REFCLK0", "-", "Q0_REFCLK1", "-"}, "[q0].refimux0_sel %1");
    add(DEVICE_90K, Q0_MUX1, {"Q0_REFCLK1", "-", "Q0_REFCLK0", "-"}, "[q0].refimux1_sel %1");

    // Every PLL of a quad has the same select; its line follows from its name.
    const struct
    {
        const char *device;
        const char *quad;
        QStringList positions;
    } selects[] = {
        {DEVICE_880K, "0", {"Q0_MUX0", "Q0_MUX1"}},
        {DEVICE_880K, "1", {"Q1_MUX0", "Q1_MUX1"}},
        {DEVICE_370K, "0", {"Q0_MUX0", "Q0_MUX1", "Q0_MUX2", "Q0_MUX3"}},
        {DEVICE_90K, "0", {"Q0_MUX0", "Q0_MUX1", "Q0_GPIO", "Q0_MCLK"}},
    };
    for (const auto &select : selects) {
        const QString q = QString::fromLatin1(select.quad);
        for (int n = 0; n < 4; ++n)
            add(select.device, QStringLiteral("Q%1_CPLL%2").arg(q).arg(n), select.positions,
                QStringLiteral("[q%1.ln%2].cpll_ref_sel %3").arg(q).arg(n).arg("%1"));
        for (int n = 0; n < 2; ++n)
            add(select.device, QStringLiteral("Q%1_QPLL%2").arg(q).arg(n), select.positions,
                QStringLiteral("[q%1].qpll%2_ref_sel %3").arg(q).arg(n).arg("%1"));
    }
}

void tst_ModelTopology::muxWiring()
{
    QFETCH(QString, device);
    QFETCH(QString, mux);
    QFETCH(QStringList, positions);
    QFETCH(QString, line);

    serdes *model = freshModel(device);
    auto *pll = dynamic_cast<PLL *>(model->instances.value(mux));
    MUX *select = pll ? pll->Mux() : model->FormStringToMuxSPtr(mux);
    QVERIFY(select);
    QCOMPARE(select->name, mux);
    QCOMPARE(select->selCount, positions.size());
    QCOMPARE(select->dirCount, 1);
    QCOMPARE(select->count, 0);
    for (int sel = 0; sel < positions.size(); ++sel) {
        const QString expected = positions.at(sel) == "-" ? QString() : positions.at(sel);
        select->m_sel = sel;
        QCOMPARE(select->point(), expected);
        QCOMPARE(select->tomlParameter(), QStringList{line.arg(sel)});
    }
    QVERIFY(select->pointFn(positions.size(), 0).isEmpty());
    QVERIFY(select->pointFn(0, 1).isEmpty());
}

void tst_ModelTopology::bridge_data()
{
    QTest::addColumn<int>("dir");
    QTest::addColumn<int>("sel");
    QTest::addColumn<QString>("point");
    QTest::addColumn<QString>("values"); // direction both quads, output selects q0, q1

    QTest::newRow("free") << 0 << 0 << "Q0_REFCLK0"
                          << "1 1 0 0";
    QTest::newRow("quad 0, sel 1") << 0 << 1 << "Q0_REFCLK1"
                                   << "1 1 1 0";
    QTest::newRow("quad 1, sel 0") << 1 << 0 << "Q1_REFCLK0"
                                   << "2 2 0 0";
    QTest::newRow("quad 1, sel 1") << 1 << 1 << "Q1_REFCLK1"
                                   << "2 2 0 1";
}

void tst_ModelTopology::bridge()
{
    QFETCH(int, dir);
    QFETCH(int, sel);
    QFETCH(QString, point);
    QFETCH(QString, values);

    serdes *model = freshModel(DEVICE_880K);
    MUX *bridge = model->FormStringToMuxSPtr(MUX_Q0_TO_Q1);
    QCOMPARE(bridge->selCount, 2);
    QCOMPARE(bridge->dirCount, 2);
    // One object, owned by quad 0, standing in both quads' maps.
    QCOMPARE(bridge->quad, model->quads.value(Q0));
    QCOMPARE(model->quads.value(Q0)->mux(MUX_Q0_TO_Q1), bridge);
    QCOMPARE(model->quads.value(Q1)->mux(MUX_Q0_TO_Q1), bridge);

    bridge->m_dir = dir;
    bridge->m_sel = sel;
    QCOMPARE(bridge->point(), point);
    const QStringList v = values.split(' ');
    QCOMPARE(bridge->tomlParameter(),
             (QStringList{"[q0].ref_prop_dir " + v[0], "[q1].ref_prop_dir " + v[1],
                          "[q0].refomux0_sel " + v[2], "[q1].refomux0_sel " + v[3]}));
}

void tst_ModelTopology::reinitialiseStartsFresh()
{
    serdes *model = freshModel(DEVICE_880K);
    model->setData("key", 1);
    model->moduleNames << "m";
    model->fileNames << "f";
    MUX *oldMux = model->FormStringToMuxSPtr(Q0_MUX0);
    model->FormStringToLanePtr(Q0_LANE0)->tx->set(1.0, Q0_QPLL0);
    QList<QString> path;
    QVERIFY(model->generateAccess(Q0_REF0, Q0_LANE0_TX, path));

    model->initilize(DEVICE_370K);
    QCOMPARE(model->device, QString(DEVICE_370K));
    QVERIFY(model->allAccess().isEmpty());
    QVERIFY(model->FormStringToMuxSPtr(Q0_MUX0) != oldMux);
    QCOMPARE(model->FormStringToMuxSPtr(Q0_MUX0)->count, 0);
    QCOMPARE(model->FormStringToLanePtr(Q0_LANE0)->getLaneStatus(), 0);
    QCOMPARE(model->getData("key"), QVariant(1));
    QCOMPARE(model->moduleNames, QStringList{"m"});
    QCOMPARE(model->fileNames, QStringList{"f"});
    // What a plug-in still holds from before stays valid.
    QCOMPARE(oldMux->count, 1);
}

QTEST_GUILESS_MAIN(tst_ModelTopology)
#include "tst_modeltopology.moc"
