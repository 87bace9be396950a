// SPDX-License-Identifier: MIT
//
// Random request sequences, seeded and reproducible, on every tier: what
// addItem accepted, deleteItem gives back to the last count. Requests take
// disjoint lines, as a protocol picks its lanes from notOccupiedLanes(), and
// share PLLs, muxes and reference sources freely.

#include "protocolclient.h"

#include <QRandomGenerator>

using namespace IPSERDESIP;
using namespace protocolclient;

namespace {

const double FREQS[] = {100, 125, 156.25};
const double RATES[] = {1.25, 5, 10.3125};

template<typename T>
const T &pick(QRandomGenerator &random, const QList<T> &list)
{
    return list.at(random.bounded(list.size()));
}

QString number(double value)
{
    return QString::number(value, 'g', 10);
}

// Rows for a random selection of free lanes: per lane a whole-lane row, a
// TX row, an RX row, or both single-line rows. A request mostly keeps to one
// kind of PLL and one reference source, and a source mostly to one frequency
// in a sequence, as a design would; the exceptions are there to be refused.
QStringList randomRows(QRandomGenerator &random, serdes *model, const QMap<QString, double> &freqs,
                       bool bcdr)
{
    const char *const kinds[] = {"QPLL0", "QPLL1", "CPLL"};
    const QString requestPll = QLatin1String(kinds[random.bounded(3)]);
    QStringList free = model->notOccupiedLanes();
    const int lanes = 1 + random.bounded(qMin(3, free.size()));
    const QStringList refs = freqs.keys();
    const QString requestRef = pick(random, refs);

    QStringList rows;
    for (int n = 0; n < lanes; ++n) {
        const QString lane = free.takeAt(random.bounded(free.size())).toUpper().replace(' ', '_');
        QUAD *quad = model->FormStringToLanePtr(lane)->quad;
        const QStringList plls = quad->plls.keys();
        const auto row = [&](const QString &name) {
            const bool rx = name.endsWith(QLatin1String("_RX"));
            QString pll = quad->name + '_' + requestPll;
            if (requestPll == QLatin1String("CPLL"))
                pll += lane.right(1);
            if (random.bounded(8) == 0)
                pll = pick(random, plls);
            // A plain RX line takes a mux, and says so with "0"; now and then
            // it names a PLL all the same, which the model drops. Where RX
            // lines hang on PLLs, "0" is the exception.
            if (rx && (random.bounded(4) != 0) != bcdr)
                pll = QStringLiteral("0");
            const double rate = random.bounded(2) ? RATES[random.bounded(3)] : 0;
            const QString ref = random.bounded(8) ? requestRef : pick(random, refs);
            const double freq = random.bounded(10) ? freqs.value(ref) : FREQS[random.bounded(3)];
            QString text = QStringLiteral("%1 %2 %3 %4 %5 %6 %7")
                               .arg(name, pll, ref, number(freq), number(rate),
                                    number(RATES[random.bounded(3)]),
                                    number(RATES[random.bounded(3)]));
            if (random.bounded(4) == 0)
                text += QStringLiteral(" REFMUX%1").arg(random.bounded(quad->muxes.size()));
            rows << text;
        };
        const int kind = random.bounded(4);
        if (kind == 0)
            row(lane);
        if (kind == 1 || kind == 3)
            row(lane + QStringLiteral("_TX"));
        if (kind >= 2)
            row(lane + QStringLiteral("_RX"));
    }
    return rows;
}

// Everything the model can hold, as far as any of it is still held.
QStringList leftovers(serdes *model)
{
    QStringList left{held(model), routes(model), model->moduleNames.join(','),
                     model->fileNames.join(',')};
    left.removeAll(QString());
    return left;
}

} // namespace

class tst_ProtocolProperty : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void releaseFreesEverything_data();
    void releaseFreesEverything();

private:
    QPluginLoader m_loader;
    BaseProtocol *m_protocol = nullptr;
};

void tst_ProtocolProperty::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    QString error;
    m_protocol = loadTestProtocol(m_loader, error);
    QVERIFY2(m_protocol, qPrintable(error));
}

void tst_ProtocolProperty::cleanupTestCase()
{
    delete m_protocol;
    serdes::destory();
}

void tst_ProtocolProperty::releaseFreesEverything_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<quint32>("seed");
    QTest::newRow("880k") << "RK9C-880D" << 880u;
    QTest::newRow("370k") << "RK9C-370Q" << 370u;
    QTest::newRow("90k") << "RK9LMC-90F" << 90u;
}

void tst_ProtocolProperty::releaseFreesEverything()
{
    QFETCH(QString, device);
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const int wanted = 2000;
    int done = 0;
    int refused = 0;
    int requests = 0;

    while (done < wanted) {
        serdes *model = freshModel(device);
        QMap<QString, double> freqs;
        for (Instance *element : model->allInstance()) {
            if (dynamic_cast<REF_SOURCE *>(element))
                freqs.insert(element->name, FREQS[random.bounded(3)]);
        }
        QList<std::shared_ptr<Message>> accepted;
        QStringList trail;
        const int length = 1 + random.bounded(5);
        bool ok = true;
        for (int n = 0; n < length && ok && !model->notOccupiedLanes().isEmpty(); ++n) {
            const bool bcdr = random.bounded(4) == 0;
            const QStringList rows = randomRows(random, model, freqs, bcdr);
            const QString type = bcdr ? QStringLiteral("BCDR") : QString();
            std::shared_ptr<Message> msg
                = request(m_protocol, rows, QStringLiteral("m%1").arg(n), type);
            trail << type + '[' + rows.join(QStringLiteral(" | ")) + ']';
            QString err;
            ok = model->addItem(msg.get(), err);
            if (ok)
                accepted << msg;
        }
        // A refusal is not rolled back: that sequence is over.
        if (!ok) {
            ++refused;
            continue;
        }

        requests += accepted.size();
        while (!accepted.isEmpty()) {
            std::shared_ptr<Message> msg = accepted.takeAt(random.bounded(accepted.size()));
            QString err;
            QVERIFY(model->deleteItem(msg.get(), err));
            QCOMPARE(err, QString());
        }
        const QStringList left = leftovers(model);
        QVERIFY2(left.isEmpty(),
                 qPrintable(QStringLiteral("sequence %1 left %2 after\n%3")
                                .arg(done)
                                .arg(left.join(QStringLiteral("; ")), trail.join('\n'))));
        ++done;
    }
    qInfo("%s: %d sequences of %d requests released, %d sequences refused", qPrintable(device),
          done, requests, refused);
    // The generator must reach both outcomes, or the property says little.
    QVERIFY(requests > wanted * 7 / 5);
    QVERIFY(refused > wanted / 20);
}

QTEST_GUILESS_MAIN(tst_ProtocolProperty)
#include "tst_protocolproperty.moc"
