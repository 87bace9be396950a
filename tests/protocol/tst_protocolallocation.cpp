// SPDX-License-Identifier: MIT
//
// Requests of a protocol plug-in on the transceiver model: what addItem
// places or refuses with which words, what deleteItem gives back, and the
// answers by which a second protocol learns what it may share.

#include "protocolclient.h"

#include "page/refusalreport.h"

#include <vector>

using namespace IPSERDESIP;
using namespace protocolclient;

namespace {
const QString T880K = QStringLiteral("RK9C-880D");
const QString T370K = QStringLiteral("RK9C-370D");
const QString T90K = QStringLiteral("RK9C-90F");
} // namespace

class tst_ProtocolAllocation : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void malformedRow();
    void requests_data();
    void requests();
    void wholeLaneHoldsSourceTwice();
    void pllSharing();
    void releaseGivesBackTheTrialOnly();
    void refusalWords_data();
    void refusalWords();

private:
    QPluginLoader m_loader;
    BaseProtocol *m_protocol = nullptr;
};

void tst_ProtocolAllocation::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    QString error;
    m_protocol = loadTestProtocol(m_loader, error);
    QVERIFY2(m_protocol, qPrintable(error));
}

void tst_ProtocolAllocation::cleanupTestCase()
{
    delete m_protocol;
    serdes::destory();
}

// A row one field short is refused by add and by release, the latter by its
// result alone.
void tst_ProtocolAllocation::malformedRow()
{
    auto msg = request(m_protocol, {"Q0_LANE0 Q0_QPLL0 Q0_REFCLK0 100 5 0"}, "m");
    serdes *model = freshModel(T880K);
    QString err;
    QTest::ignoreMessage(QtCriticalMsg, "List size not equal");
    QVERIFY(!msg->check());
    QTest::ignoreMessage(QtCriticalMsg, "List size not equal");
    QVERIFY(!model->addItem(msg.get(), err));
    QCOMPARE(err, QStringLiteral("check error"));
    err.clear();
    QTest::ignoreMessage(QtCriticalMsg, "List size not equal");
    QVERIFY(!model->deleteItem(msg.get(), err));
    QCOMPARE(err, QString());
    QCOMPARE(held(model), QString());
}

void tst_ProtocolAllocation::requests_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<QString>("err");
    QTest::addColumn<QString>("critical");
    QTest::addColumn<QString>("held");
    QTest::addColumn<QString>("routes");

    // Rows: LANE PLL REF FREQ RATE RXRATE TXRATE [OPTION].
    QTest::newRow("880k tx line")
        << T880K << QString() << QStringList{"Q0_LANE0_TX Q0_QPLL0 Q0_REFCLK0 156.25 0 0 10.3125"}
        << "" << ""
        << "Q0_LANE0_TX=1:10.3125:Q0_QPLL0 Q0_MUX0=1@0 Q0_QPLL0=1@0 Q0_REFCLK0=1:156.25"
        << "Q0_LANE0_TX>Q0_QPLL0>Q0_MUX0>Q0_REFCLK0";
    // A direct hit beats a descent: Q0_MUX0 sees REFCLK1 at select 3.
    QTest::newRow("880k rx line, pll dropped")
        << T880K << QString() << QStringList{"Q0_LANE1_RX Q0_QPLL1 Q0_REFCLK1 125 0 5 0"} << ""
        << "" << "Q0_LANE1_RX=1:5:Q0_MUX0 Q0_MUX0=1@3 Q0_REFCLK1=1:125"
        << "Q0_LANE1_RX>Q0_MUX0>Q0_REFCLK1";
    QTest::newRow("880k lane across the bridge")
        << T880K << QString() << QStringList{"Q1_LANE0 Q1_QPLL0 Q0_REFCLK0 100 5 2 3"} << ""
        << ""
        << "MUX_Q0_TO_Q1=2@0/0 Q0_REFCLK0=2:100 Q1_LANE0_RX=1:5:Q1_MUX0 "
           "Q1_LANE0_TX=1:5:Q1_QPLL0 Q1_MUX0=2@1 Q1_QPLL0=1@0"
        << "Q1_LANE0_RX>Q1_MUX0>MUX_Q0_TO_Q1>Q0_REFCLK0 "
           "Q1_LANE0_TX>Q1_QPLL0>Q1_MUX0>MUX_Q0_TO_Q1>Q0_REFCLK0";
    QTest::newRow("880k lane rate 0: own rates")
        << T880K << QString() << QStringList{"Q0_LANE2 Q0_CPLL2 Q0_REFCLK1 100 0 2 3"} << ""
        << ""
        << "Q0_CPLL2=1@0 Q0_LANE2_RX=1:2:Q0_MUX0 Q0_LANE2_TX=1:3:Q0_CPLL2 Q0_MUX0=2@3 "
           "Q0_REFCLK1=2:100"
        << "Q0_LANE2_RX>Q0_MUX0>Q0_REFCLK1 Q0_LANE2_TX>Q0_CPLL2>Q0_MUX0>Q0_REFCLK1";
    QTest::newRow("880k lane over a mux option")
        << T880K << QString() << QStringList{"Q0_LANE3 Q0_QPLL1 Q0_REFCLK0 100 5 0 0 REFMUX1"}
        << "" << ""
        << "Q0_LANE3_RX=1:5:Q0_MUX1 Q0_LANE3_TX=1:5:Q0_QPLL1 Q0_MUX1=2@3 Q0_QPLL1=1@1 "
           "Q0_REFCLK0=2:100"
        << "Q0_LANE3_RX>Q0_MUX1>Q0_REFCLK0 Q0_LANE3_TX>Q0_QPLL1>Q0_MUX1>Q0_REFCLK0";
    QTest::newRow("370k tx line from a fabric clock")
        << T370K << QString() << QStringList{"Q0_LANE0_TX Q0_QPLL0 Q0_GPIO1 100 0 0 5"} << ""
        << "" << "Q0_GPIO1=1:100 Q0_LANE0_TX=1:5:Q0_QPLL0 Q0_MUX0=1@1 Q0_QPLL0=1@0"
        << "Q0_LANE0_TX>Q0_QPLL0>Q0_MUX0>Q0_GPIO1";
    QTest::newRow("90k pll select reaches the fabric clock")
        << T90K << QString() << QStringList{"Q0_LANE0_TX Q0_CPLL0 Q0_GPIO 100 0 0 5"} << ""
        << "" << "Q0_CPLL0=1@2 Q0_GPIO=1:100 Q0_LANE0_TX=1:5:Q0_CPLL0"
        << "Q0_LANE0_TX>Q0_CPLL0>Q0_GPIO";
    QTest::newRow("90k rx line clocked directly")
        << T90K << QString() << QStringList{"Q0_LANE1_RX 0 Q0_MCLK 50 0 5 0"} << "" << ""
        << "Q0_LANE1_RX=1:5:Q0_MCLK Q0_MCLK=1:50" << "Q0_LANE1_RX>Q0_MCLK";
    QTest::newRow("bcdr lane hangs rx on the pll")
        << T880K << "BCDR" << QStringList{"Q0_LANE0 Q0_QPLL0 Q0_REFCLK0 100 5 0 0"} << "" << ""
        << "Q0_LANE0_RX=1:5:Q0_QPLL0 Q0_LANE0_TX=1:5:Q0_QPLL0 Q0_MUX0=2@0 Q0_QPLL0=2@0 "
           "Q0_REFCLK0=2:100"
        << "Q0_LANE0_RX>Q0_QPLL0>Q0_MUX0>Q0_REFCLK0 Q0_LANE0_TX>Q0_QPLL0>Q0_MUX0>Q0_REFCLK0";

    // Refusals keep what was placed up to the refusal.
    QTest::newRow("frequency conflict")
        << T880K << QString()
        << QStringList{"Q0_LANE0_TX Q0_QPLL0 Q0_REFCLK0 100 0 0 5",
                       "Q0_LANE1_TX Q0_QPLL0 Q0_REFCLK0 125 0 0 5"}
        << "frequence set error" << ""
        << "Q0_LANE0_TX=1:5:Q0_QPLL0 Q0_LANE1_TX=1:5:Q0_QPLL0 Q0_MUX0=1@0 Q0_QPLL0=1@0 "
           "Q0_REFCLK0=1:100"
        << "Q0_LANE0_TX>Q0_QPLL0>Q0_MUX0>Q0_REFCLK0";
    QTest::newRow("held pll refuses another source")
        << T880K << QString()
        << QStringList{"Q0_LANE0_TX Q0_QPLL0 Q0_REFCLK0 100 0 0 5",
                       "Q0_LANE1_TX Q0_QPLL0 Q0_REFCLK1 100 0 0 5"}
        << "tx route error" << ""
        << "Q0_LANE0_TX=1:5:Q0_QPLL0 Q0_LANE1_TX=1:5:Q0_QPLL0 Q0_MUX0=1@0 Q0_QPLL0=1@0 "
           "Q0_REFCLK0=1:100 Q0_REFCLK1=1:100"
        << "Q0_LANE0_TX>Q0_QPLL0>Q0_MUX0>Q0_REFCLK0";
    QTest::newRow("option names a mux held elsewhere")
        << T880K << QString()
        << QStringList{"Q0_LANE0_RX 0 Q0_REFCLK0 100 0 5 0",
                       "Q0_LANE1_RX 0 Q0_REFCLK1 100 0 5 0 REFMUX0"}
        << "rx route error" << ""
        << "Q0_LANE0_RX=1:5:Q0_MUX0 Q0_LANE1_RX=1:5:Q0_MUX0 Q0_MUX0=1@0 Q0_REFCLK0=1:100 "
           "Q0_REFCLK1=1:100"
        << "Q0_LANE0_RX>Q0_MUX0>Q0_REFCLK0";
    // A whole lane routes both lines before it is refused.
    QTest::newRow("lane refused on tx still routes rx")
        << T880K << QString()
        << QStringList{"Q0_LANE0_TX Q0_QPLL0 Q0_REFCLK0 100 0 0 5",
                       "Q0_LANE1 Q0_QPLL0 Q0_REFCLK1 100 5 0 0"}
        << "tx route error" << ""
        << "Q0_LANE0_TX=1:5:Q0_QPLL0 Q0_LANE1_RX=1:5:Q0_MUX1 Q0_LANE1_TX=1:5:Q0_QPLL0 "
           "Q0_MUX0=1@0 Q0_MUX1=1@0 Q0_QPLL0=1@0 Q0_REFCLK0=1:100 Q0_REFCLK1=2:100"
        << "Q0_LANE0_TX>Q0_QPLL0>Q0_MUX0>Q0_REFCLK0 Q0_LANE1_RX>Q0_MUX1>Q0_REFCLK1";
    QTest::newRow("bcdr lane names both failing halves, rx first")
        << T880K << "BCDR"
        << QStringList{"Q0_LANE0_TX Q0_QPLL0 Q0_REFCLK0 100 0 0 5",
                       "Q0_LANE1 Q0_QPLL0 Q0_REFCLK1 100 5 0 0"}
        << "rx route errortx route error" << ""
        << "Q0_LANE0_TX=1:5:Q0_QPLL0 Q0_LANE1_RX=1:5:Q0_QPLL0 Q0_LANE1_TX=1:5:Q0_QPLL0 "
           "Q0_MUX0=1@0 Q0_QPLL0=1@0 Q0_REFCLK0=1:100 Q0_REFCLK1=2:100"
        << "Q0_LANE0_TX>Q0_QPLL0>Q0_MUX0>Q0_REFCLK0";
    QTest::newRow("bcdr rx line without a pll")
        << T880K << "BCDR" << QStringList{"Q0_LANE0_RX 0 Q0_REFCLK0 100 0 5 0"}
        << "rx route error" << "" << "Q0_LANE0_RX=1:5: Q0_REFCLK0=1:100" << "";
    QTest::newRow("no such lane")
        << T370K << QString() << QStringList{"Q1_LANE0_TX Q1_QPLL0 Q1_REFCLK0 100 0 0 5"} << ""
        << "Lane name Error : \"Q1_LANE0_TX\"" << "" << "";
    QTest::newRow("no such source")
        << T880K << QString() << QStringList{"Q0_LANE0_TX Q0_QPLL0 Q0_REFCLK3 100 0 0 5"} << ""
        << "refs name error" << "" << "";
}

void tst_ProtocolAllocation::requests()
{
    QFETCH(QString, device);
    QFETCH(QString, type);
    QFETCH(QStringList, rows);
    QFETCH(QString, err);
    QFETCH(QString, critical);
    QFETCH(QString, held);
    QFETCH(QString, routes);

    serdes *model = freshModel(device);
    auto msg = request(m_protocol, rows, "inst", type);
    QString words;
    if (!critical.isEmpty())
        QTest::ignoreMessage(QtCriticalMsg, qPrintable(critical));
    const bool accepted = model->addItem(msg.get(), words);
    QCOMPARE(accepted, err.isEmpty() && critical.isEmpty());
    QCOMPARE(words, err);
    QCOMPARE(protocolclient::held(model), held);
    QCOMPARE(protocolclient::routes(model), routes);
    QCOMPARE(model->moduleNames, accepted ? QStringList("inst") : QStringList());
    QCOMPARE(model->fileNames, accepted ? QStringList("inst_file") : QStringList());
    if (!accepted)
        return;

    QVERIFY(model->deleteItem(msg.get(), words));
    QCOMPARE(words, QString());
    QCOMPARE(protocolclient::held(model), QString());
    QCOMPARE(protocolclient::routes(model), QString());
    QCOMPARE(model->moduleNames, QStringList());
    QCOMPARE(model->fileNames, QStringList());
}

void tst_ProtocolAllocation::wholeLaneHoldsSourceTwice()
{
    serdes *model = freshModel(T880K);
    auto lane = request(m_protocol, {"Q0_LANE0 Q0_QPLL0 Q0_REFCLK0 100 5 0 0"}, "a");
    auto line = request(m_protocol, {"Q0_LANE1_TX Q0_QPLL0 Q0_REFCLK0 100 0 0 5"}, "b");
    QString err;
    QVERIFY(model->addItem(lane.get(), err));
    QVERIFY(model->addItem(line.get(), err));
    QCOMPARE(model->FormStringToREFSPtr("Q0_REFCLK0")->count, 3);

    // Released without its reference source, a row gives back lines and routes.
    model->resetLane(QStringLiteral("Q0_LANE1_TX"), false);
    QCOMPARE(model->FormStringToREFSPtr("Q0_REFCLK0")->count, 3);
    QCOMPARE(routes(model), QStringLiteral("Q0_LANE0_RX>Q0_MUX0>Q0_REFCLK0 "
                                           "Q0_LANE0_TX>Q0_QPLL0>Q0_MUX0>Q0_REFCLK0"));
    QVERIFY(model->deleteItem(lane.get(), err));
    QCOMPARE(held(model), QStringLiteral("Q0_REFCLK0=1:100"));
    QCOMPARE(model->moduleNames, QStringList("b"));
}

// A trial on the PLL that another instance runs, refused or accepted, is
// given back without touching that instance.
void tst_ProtocolAllocation::releaseGivesBackTheTrialOnly()
{
    serdes *model = freshModel(T880K);
    auto a = request(m_protocol, {"Q0_LANE0 Q0_QPLL0 Q0_REFCLK0 100 5 0 0"}, "a");
    QString err;
    QVERIFY(model->addItem(a.get(), err));
    const QString heldByA = "Q0_LANE0_RX=1:5:Q0_MUX0 Q0_LANE0_TX=1:5:Q0_QPLL0 Q0_MUX0=2@0 "
                            "Q0_QPLL0=1@0 Q0_REFCLK0=2:100";
    const QString routesOfA
        = "Q0_LANE0_RX>Q0_MUX0>Q0_REFCLK0 Q0_LANE0_TX>Q0_QPLL0>Q0_MUX0>Q0_REFCLK0";
    QCOMPARE(held(model), heldByA);

    auto trial = request(
        m_protocol,
        {"Q0_LANE1_TX Q0_QPLL0 Q0_REFCLK0 100 0 0 5", "Q0_LANE2_TX Q0_QPLL0 Q0_REFCLK1 100 0 0 5"},
        "trial");
    QVERIFY(!model->addItem(trial.get(), err));
    QVERIFY(model->releaseLastRequest());
    QCOMPARE(held(model), heldByA);
    QCOMPARE(routes(model), routesOfA);
    QCOMPARE(model->moduleNames, QStringList("a"));
    QVERIFY(!model->releaseLastRequest());

    QVERIFY(model->checkRoute({"Q0_LANE3_TX"}, {"Q0_QPLL0"}, {"Q0_REFCLK0"}, {"100"}));
    QVERIFY(model->releaseLastRequest());
    QCOMPARE(held(model), heldByA);
    QCOMPARE(routes(model), routesOfA);

    // A release is no undo of anything but the request just made.
    QVERIFY(model->deleteItem(a.get(), err));
    QVERIFY(!model->releaseLastRequest());
    QCOMPARE(held(model), QString());
}

void tst_ProtocolAllocation::pllSharing()
{
    serdes *model = freshModel(T880K);
    QString err;
    const QList<std::shared_ptr<Message>> requests{
        request(m_protocol, {"Q0_LANE0 Q0_QPLL0 Q0_REFCLK0 156.25 10.3125 0 0"}, "a"),
        request(m_protocol, {"Q0_LANE1_TX Q0_CPLL1 Q0_REFCLK1 125 0 0 6.25"}, "b"),
        request(m_protocol,
                {"Q0_LANE2_RX Q0_QPLL1 Q0_REFCLK1 125 0 8 0",
                 "Q0_LANE2_TX Q0_QPLL0 Q0_REFCLK0 156.25 0 0 10.3125"},
                "c", "BCDR"),
        request(m_protocol, {"Q1_LANE0_TX Q1_QPLL0 Q0_REFCLK0 156.25 0 0 10.3125"}, "d"),
    };
    for (const auto &msg : requests)
        QVERIFY2(model->addItem(msg.get(), err), qPrintable(err));

    QCOMPARE(model->occupiedLanes(), QStringList({"Q0 Lane0", "Q0 Lane1", "Q0 Lane2", "Q1 Lane0"}));
    QCOMPARE(model->notOccupiedLanes(),
             QStringList({"Q0 Lane3", "Q1 Lane1", "Q1 Lane2", "Q1 Lane3"}));

    // Only quad PLLs are offered, and only at exactly the same rate.
    QCOMPARE(model->checkPLLforQuad0(10.3125), QStringList("QPLL0"));
    QCOMPARE(model->checkPLLforQuad0(8), QStringList("QPLL1"));
    QCOMPARE(model->checkPLLforQuad0(6.25), QStringList());
    QCOMPARE(model->checkPLLforQuad0(10.31251), QStringList());
    QCOMPARE(model->checkPLLforQuad1(10.3125), QStringList("QPLL0"));

    QMap<QString, QVariant> qpll0 = model->getMessageByPLL(QStringLiteral("Q0_QPLL0"));
    QCOMPARE(qpll0.keys(), QStringList({"Reference_Clock_Frequency", "Reference_Clock_Source",
                                        "TX_Line_Rate"}));
    QCOMPARE(qpll0.value("Reference_Clock_Source").toString(), QStringLiteral("Q0 REFCLK0"));
    QCOMPARE(qpll0.value("Reference_Clock_Frequency").toDouble(), 156.25);
    QCOMPARE(qpll0.value("TX_Line_Rate").toDouble(), 10.3125);
    QMap<QString, QVariant> qpll1 = model->getMessageByPLL(QStringLiteral("Q0_QPLL1"));
    QCOMPARE(qpll1.value("Reference_Clock_Source").toString(), QStringLiteral("Q0 REFCLK1"));
    QCOMPARE(qpll1.value("RX_Line_Rate").toDouble(), 8.0);
    QVERIFY(!qpll1.contains("TX_Line_Rate"));
    QVERIFY(model->getMessageByPLL(QStringLiteral("Q1_QPLL1")).isEmpty());

    QVERIFY(model->checkPllEnable(QStringLiteral("Q0_QPLL1")));
    QVERIFY(!model->checkPllEnable(QStringLiteral("Q1_QPLL1")));
    QVERIFY(!model->checkPllEnable(QStringLiteral("Q0_MUX0")));

    // The RX line's PLL is asked first; a lane whose RX PLL leads elsewhere
    // is answered by its TX PLL. Three steps, over the bridge, is too deep.
    QCOMPARE(model->getMuxSelofPll(QStringLiteral("Q0_LANE2"), QStringLiteral("Q0_REFCLK1")), 1);
    QCOMPARE(model->getMuxSelofPll(QStringLiteral("Q0_LANE2"), QStringLiteral("Q0_REFCLK0")), 0);
    QCOMPARE(model->getMuxSelofPll(QStringLiteral("Q0_LANE0"), QStringLiteral("Q0_REFCLK0")), 0);
    QCOMPARE(model->getMuxSelofPll(QStringLiteral("Q1_LANE0"), QStringLiteral("Q0_REFCLK0")), -1);
    QCOMPARE(model->getMuxSelofPll(QStringLiteral("Q0_LANE3"), QStringLiteral("Q0_REFCLK0")), -1);
    QTest::ignoreMessage(QtCriticalMsg, "null Lane");
    QCOMPARE(model->getMuxSelofPll(QStringLiteral("Q0_LANE2_TX"), QStringLiteral("Q0_REFCLK0")),
             -1);

    // A one-quad device has no second quad to offer.
    model = freshModel(T90K);
    QCOMPARE(model->checkPLLforQuad1(10.3125), QStringList());
    QCOMPARE(model->notOccupiedLanes(),
             QStringList({"Q0 Lane0", "Q0 Lane1", "Q0 Lane2", "Q0 Lane3"}));
}

void tst_ProtocolAllocation::refusalWords_data()
{
    QTest::addColumn<QString>("device");
    // "@name [TYPE]" starts a placed instance; its rows follow.
    QTest::addColumn<QStringList>("placed");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<QStringList>("words");

    QTest::newRow("pinned mux held for another source")
        << T880K << QStringList{"@bcdr BCDR", "Q1_LANE0 Q1_QPLL0 Q1_REFCLK1 100 5 0 0"} << QString()
        << QStringList{"Q1_LANE2_TX Q1_QPLL1 Q1_REFCLK0 100 0 0 5 REFMUX0"}
        << QStringList{"Q1 Lane2 TX cannot reach Q1 REFCLK0 over Q1 REFMUX0: it is held by bcdr "
                       "for Q1 REFCLK1."};
    QTest::newRow("source at another frequency, whole lane")
        << T880K << QStringList{"@xaui_0", "Q0_LANE0 Q0_QPLL0 Q0_REFCLK0 100 3.125 0 0"}
        << QString() << QStringList{"Q0_LANE1 Q0_QPLL0 Q0_REFCLK0 156.250 3.125 0 0"}
        << QStringList{"Q0 Lane1 cannot use Q0 REFCLK0 at 156.25 MHz: it runs at 100 MHz for "
                       "xaui_0."};
    QTest::newRow("pll held from another source")
        << T880K << QStringList{"@xaui_0", "Q0_LANE0 Q0_QPLL0 Q0_REFCLK0 156.25 10.3125 0 0"}
        << QString() << QStringList{"Q0_LANE1_TX Q0_QPLL0 Q0_REFCLK1 125 0 0 5"}
        << QStringList{"Q0 Lane1 TX cannot reach Q0 REFCLK1: Q0 QPLL0 runs from Q0 REFCLK0 at "
                       "10.3125 Gbps for xaui_0."};
    // Held lines come first, ahead of the PLL that refuses the TX line.
    QTest::newRow("lane held by another instance")
        << T880K << QStringList{"@xaui_0", "Q0_LANE0 Q0_QPLL0 Q0_REFCLK0 156.25 10.3125 0 0"}
        << QString() << QStringList{"Q0_LANE0 Q0_QPLL0 Q0_REFCLK1 125 5 0 0"}
        << QStringList{"Q0 Lane0 is already held by xaui_0."};
    // Once the request took its line, the table has the request's route only;
    // the holder's still holds Q0_MUX0.
    QTest::newRow("held line rerouted, then no mux left")
        << T880K << QStringList{"@xaui_0", "Q0_LANE0_RX 0 Q0_REFCLK0 100 0 5 0"} << QString()
        << QStringList{"Q0_LANE0_RX 0 Q0_REFCLK1 100 0 5 0", "Q0_LANE1_RX 0 Q1_REFCLK0 100 0 5 0"}
        << QStringList{"Q0 Lane0 RX is already held by xaui_0.",
                       "Q0 Lane1 RX cannot reach Q1 REFCLK0: no mux that reaches it is free, "
                       "Q0 REFMUX0 is held by xaui_0 for Q0 REFCLK0 and Q0 REFMUX1 is held by "
                       "this instance's Q0 Lane0 RX for Q0 REFCLK1."};
    // Both muxes are held, one by the request's own first row, over the bridge.
    QTest::newRow("no mux left, one held by an earlier row")
        << T880K << QStringList{"@xaui_0", "Q0_LANE0 Q0_QPLL0 Q0_REFCLK0 156.25 10.3125 0 0"}
        << QString()
        << QStringList{"Q0_LANE2_TX Q0_QPLL1 Q1_REFCLK0 125 0 0 5",
                       "Q0_LANE3_RX 0 Q0_REFCLK1 125 0 5 0"}
        << QStringList{"Q0 Lane3 RX cannot reach Q0 REFCLK1: no mux that reaches it is free, "
                       "Q0 REFMUX0 is held by xaui_0 for Q0 REFCLK0 and Q0 REFMUX1 is held by "
                       "this instance's Q0 Lane2 TX for Q1 REFCLK0."};
    QTest::newRow("bridge held, two holders")
        << T880K
        << QStringList{"@a", "Q1_LANE0_TX Q1_QPLL0 Q0_REFCLK0 100 0 0 5", "@b",
                       "Q1_LANE3_TX Q1_QPLL0 Q0_REFCLK0 100 0 0 5"}
        << QString() << QStringList{"Q1_LANE1_RX 0 Q0_REFCLK1 100 0 5 0"}
        << QStringList{"Q1 Lane1 RX cannot reach Q0 REFCLK1: no mux that reaches it is free, "
                       "Q1 REFMUX0 is held by a and b for Q0 REFCLK0 and the bridge between "
                       "the quads is held by a and b for Q0 REFCLK0."};
    // The model shares a PLL at any rate; only the second row stops it.
    QTest::newRow("one quad: pll at another rate, no such route")
        << T370K << QStringList{"@sgmii_0", "Q0_LANE0_TX Q0_QPLL0 Q0_GPIO1 100 0 0 1.25"}
        << QString()
        << QStringList{"Q0_LANE1_TX Q0_QPLL0 Q0_GPIO1 100 0 0 5",
                       "Q0_LANE2_RX 0 Q0_REFCLK0 100 0 5 0 REFMUX2"}
        << QStringList{"Q0 Lane1 TX cannot use Q0 QPLL0 at 5 Gbps: it runs at 1.25 Gbps for "
                       "sgmii_0.",
                       "Q0 Lane2 RX has no route from Q0 REFCLK0 over Q0 REFMUX2 on this device."};
}

// The words must not depend on whether the refused request's partial
// reservations are still in the model.
void tst_ProtocolAllocation::refusalWords()
{
    QFETCH(QString, device);
    QFETCH(QStringList, placed);
    QFETCH(QString, type);
    QFETCH(QStringList, rows);
    QFETCH(QStringList, words);

    std::vector<std::unique_ptr<Message>> owned;
    QMap<QString, Message *> holders;
    for (int i = 0; i < placed.size();) {
        const QStringList head = placed.at(i).mid(1).split(QLatin1Char(' '));
        QStringList own;
        for (++i; i < placed.size() && !placed.at(i).startsWith(QLatin1Char('@')); ++i)
            own << placed.at(i);
        owned.push_back(request(m_protocol, own, head.first(), head.value(1)));
        holders.insert(head.first(), owned.back().get());
    }
    const auto placeHolders = [&] {
        serdes *model = freshModel(device);
        QString err;
        for (Message *msg : qAsConst(holders))
            QVERIFY2(model->addItem(msg, err), qPrintable(err));
    };

    placeHolders();
    auto msg = request(m_protocol, rows, "refused", type);
    QString err;
    QVERIFY(!serdes::instance()->addItem(msg.get(), err));
    QCOMPARE(explainRefusal(serdes::instance(), *msg, holders), words);

    placeHolders();
    QCOMPARE(explainRefusal(serdes::instance(), *msg, holders), words);
}

QTEST_GUILESS_MAIN(tst_ProtocolAllocation)
#include "tst_protocolallocation.moc"
