// SPDX-License-Identifier: MIT

// Requests of protocol instances on the singleton: a Message row names a lane
// ("Q0_LANE0", both lines) or one line ("Q0_LANE0_TX"), the PLL and the
// reference source at its frequency. Placing a row reserves its lines, the
// source and a route per line; a refused request keeps what it had placed,
// and the caller words the refusal from `err`.

#include "model/serdes.h"

#include "model/serdesip_common.h"
#include "plugin/serdesipconstants.h"
#include "protocol/message.h"

#include <QLatin1String>
#include <QtDebug>

namespace IPSERDESIP {

namespace {

const char *const QUAD_NAMES[] = {Q0, Q1};

bool isTx(const QString &name)
{
    return name.contains(QLatin1String("TX"));
}

bool isRx(const QString &name)
{
    return name.contains(QLatin1String("RX"));
}

// "Q0 Lane2" -> "Q0_LANE2".
QString laneModelName(const QString &label)
{
    return label.toUpper().replace(QLatin1Char(' '), QLatin1Char('_'));
}

// One row of a request, with its numbers converted; a text that is no number
// counts as 0.
struct Row
{
    LANE *lane;
    REF_SOURCE *ref;
    QString laneName;
    QString pll;
    QString refName;
    double freq;
    double rate;
    double rxRate;
    double txRate;
    QString option; // the mux that the row's routes must pass, or empty
};

// False, with the reason on the critical log, when the row names no lane or
// no reference source.
bool readRow(serdes &model, const Message &msg, int i, Row &row)
{
    row.laneName = msg.lanes.at(i);
    row.pll = msg.plls.at(i);
    row.refName = msg.refs.at(i);
    row.freq = msg.refFreqs.at(i).toDouble();
    row.rate = msg.rates.at(i).toDouble();
    row.rxRate = msg.rxRates.at(i).toDouble();
    row.txRate = msg.txRates.at(i).toDouble();
    row.option = msg.muxOptions.value(row.laneName);
    row.lane = model.FormStringToLanePtr(row.laneName);
    if (!row.lane) {
        qCritical() << "Lane name Error :" << row.laneName;
        return false;
    }
    row.ref = model.FormStringToREFSPtr(row.refName);
    if (!row.ref) {
        qCritical() << "refs name error";
        return false;
    }
    if (!row.option.isEmpty()) {
        row.option.remove(QLatin1String("REF"));
        row.option = model.getMuxNamefromOption(row.lane->quad->name, row.option);
    }
    return true;
}

// Each line's route starts a record of its own.
bool route(serdes &model, const Row &row, const LINE *line)
{
    QList<QString> path;
    return row.option.isEmpty() ? model.generateAccess(row.refName, line->name, path)
                                : model.generateAccess(row.refName, row.option, line->name, path);
}

bool routeOverPll(serdes &model, const Row &row, const LINE *line)
{
    QList<QString> path;
    return row.option.isEmpty()
               ? model.generateAccessForRxConnectPll(row.refName, line->name, path)
               : model.generateAccessForRxConnectPll(row.refName, row.option, line->name, path);
}

bool fail(QString &err, const char *reason)
{
    err.append(QLatin1String(reason));
    return false;
}

// The reference source at the end of the route that `select` now carries.
REF_SOURCE *sourceBehind(serdes &model, MUX *select)
{
    REF_SOURCE *ref = model.findRefsource(select->point());
    if (!ref)
        qCritical() << "Ref Error";
    return ref;
}

bool releaseTx(serdes &model, LINE *tx, bool releaseRef)
{
    PLL *pll = tx->quad->pll(tx->source);
    if (!pll) {
        qCritical() << "PLL Error";
        return false;
    }
    REF_SOURCE *ref = sourceBehind(model, pll->Mux());
    if (!ref)
        return false;
    tx->reset();
    pll->Mux()->reset(ref->name);
    if (releaseRef)
        ref->reset();
    return true;
}

bool releaseRx(serdes &model, LINE *rx, bool releaseRef)
{
    PLL *pll = rx->quad->pll(rx->source);
    MUX *mux = model.FormStringToMuxSPtr(rx->source);
    REF_SOURCE *ref = model.FormStringToREFSPtr(rx->source);
    if (!pll && !mux) {
        // Clocked directly by a reference source, as on the smallest tier.
        if (!ref) {
            qCritical() << "PLL or MUX or REF Error";
            return false;
        }
        rx->reset();
    } else {
        MUX *select = pll ? pll->Mux() : mux;
        ref = sourceBehind(model, select);
        if (!ref)
            return false;
        rx->reset();
        select->reset(ref->name);
    }
    if (releaseRef)
        ref->reset();
    return true;
}

// Labels of the lanes with a line held, or of those with none.
QStringList laneLabels(serdes &model, bool held)
{
    QStringList labels;
    for (const char *quad : QUAD_NAMES) {
        if (!model.quads.contains(QLatin1String(quad)))
            continue;
        for (int n = 0; n < 4; ++n) {
            auto *lane = dynamic_cast<LANE *>(
                model.instances.value(QStringLiteral("%1_LANE%2").arg(QLatin1String(quad)).arg(n)));
            if (lane && (lane->getLaneStatus() != 0) == held)
                labels << QStringLiteral("%1 Lane%2").arg(QLatin1String(quad)).arg(n);
        }
    }
    return labels;
}

// The PLL whose source names a PLL of the line's quad, if any.
PLL *linePll(const LINE *line)
{
    return line->source.isEmpty() ? nullptr : line->quad->pll(line->source);
}

} // namespace

bool serdes::addItem(Message *msg, QString &err)
{
    if (!msg)
        return false;
    rememberBeforeRequest();
    if (!msg->check())
        return fail(err, "check error");
    if (msg->type == QLatin1String("BCDR"))
        return addItemForRxConnectPll(msg, err);

    for (int i = 0; i < msg->lanes.size(); ++i) {
        Row row;
        if (!readRow(*this, *msg, i, row))
            return false;
        LINE *tx = row.lane->tx;
        LINE *rx = row.lane->rx;
        if (isTx(row.laneName)) {
            tx->set(row.txRate, row.pll);
            if (!row.ref->set(row.freq))
                return fail(err, "frequence set error");
            if (!route(*this, row, tx))
                return fail(err, "tx route error");
        } else if (isRx(row.laneName)) {
            // An RX line is clocked by a mux, never by the PLL a row may name:
            // the PLL is dropped, and the route below still follows the option.
            rx->set(row.rxRate, row.pll == QLatin1String("0") ? row.option : QString());
            if (!row.ref->set(row.freq))
                return fail(err, "frequence set error");
            if (!route(*this, row, rx))
                return fail(err, "rx route error");
        } else {
            tx->set(row.rate != 0 ? row.rate : row.txRate, row.pll);
            rx->set(row.rate != 0 ? row.rate : row.rxRate, row.option);
            // Each line holds the source once, so a whole lane holds it twice.
            if (!row.ref->set(row.freq) || !row.ref->set(row.freq))
                return fail(err, "frequence set error");
            // Both lines are routed before a refusal, so that the request
            // holds both routes it could get and names every failing half.
            const bool txRouted = route(*this, row, tx) || fail(err, "tx route error");
            const bool rxRouted = route(*this, row, rx) || fail(err, "rx route error");
            if (!txRouted || !rxRouted)
                return false;
        }
    }
    moduleNames.append(msg->module);
    fileNames.append(msg->file);
    return true;
}

bool serdes::addItemForRxConnectPll(Message *msg, QString &err)
{
    if (!msg)
        return false;
    rememberBeforeRequest();
    if (!msg->check())
        return fail(err, "check error");

    for (int i = 0; i < msg->lanes.size(); ++i) {
        Row row;
        if (!readRow(*this, *msg, i, row))
            return false;
        LINE *tx = row.lane->tx;
        LINE *rx = row.lane->rx;
        if (isRx(row.laneName)) {
            rx->set(row.rxRate, row.pll == QLatin1String("0") ? row.option : row.pll);
            if (!row.ref->set(row.freq))
                return fail(err, "frequence set error");
            if (!routeOverPll(*this, row, rx))
                return fail(err, "rx route error");
        } else if (isTx(row.laneName)) {
            tx->set(row.txRate, row.pll);
            if (!row.ref->set(row.freq))
                return fail(err, "frequence set error");
            if (!routeOverPll(*this, row, tx))
                return fail(err, "tx route error");
        } else {
            if (row.rate != 0) {
                row.lane->set(row.rate, row.pll);
            } else {
                tx->set(row.txRate, row.pll);
                rx->set(row.rxRate, row.pll);
            }
            if (!row.ref->set(row.freq) || !row.ref->set(row.freq))
                return fail(err, "frequence set error");
            const bool rxRouted = routeOverPll(*this, row, rx) || fail(err, "rx route error");
            const bool txRouted = routeOverPll(*this, row, tx) || fail(err, "tx route error");
            if (!rxRouted || !txRouted)
                return false;
        }
    }
    moduleNames.append(msg->module);
    fileNames.append(msg->file);
    return true;
}

bool serdes::deleteItem(Message *msg, QString &err)
{
    Q_UNUSED(err)
    if (!msg || !msg->check())
        return false;
    for (const QString &lane : qAsConst(msg->lanes))
        resetLane(lane, true);
    moduleNames.removeOne(msg->module);
    fileNames.removeOne(msg->file);
    return true;
}

void serdes::resetLane(const QString &name, bool releaseRef)
{
    forgetLastRequest();
    LANE *lane = FormStringToLanePtr(name);
    if (!lane) {
        qCritical() << "Lane name Error :" << name;
        return;
    }
    if (isTx(name)) {
        if (releaseTx(*this, lane->tx, releaseRef))
            access.remove(lane->tx->name);
    } else if (isRx(name)) {
        if (releaseRx(*this, lane->rx, releaseRef))
            access.remove(lane->rx->name);
    } else {
        // Should the RX half fail, the TX line stays released and both
        // records stay.
        if (releaseTx(*this, lane->tx, releaseRef) && releaseRx(*this, lane->rx, releaseRef)) {
            access.remove(lane->rx->name);
            access.remove(lane->tx->name);
        }
    }
}

void serdes::rememberBeforeRequest()
{
    m_beforeRequest.holdings.clear();
    const auto remember = [this](Instance *element) {
        Holding holding{element->count, 0.0, QString(), 0, 0};
        if (auto *line = dynamic_cast<LINE *>(element)) {
            holding.value = line->rate;
            holding.source = line->source;
        } else if (auto *ref = dynamic_cast<REF_SOURCE *>(element)) {
            holding.value = ref->freq;
        } else if (auto *mux = dynamic_cast<MUX *>(element)) {
            holding.sel = mux->m_sel;
            holding.dir = mux->m_dir;
        }
        m_beforeRequest.holdings.insert(element, holding);
    };
    for (Instance *element : qAsConst(instances)) {
        remember(element);
        // A PLL's select is a mux of its own, not among the named elements.
        if (auto *pll = dynamic_cast<PLL *>(element))
            remember(pll->Mux());
    }
    m_beforeRequest.access = access;
    m_beforeRequest.moduleNames = moduleNames;
    m_beforeRequest.fileNames = fileNames;
    m_requestRemembered = true;
}

void serdes::forgetLastRequest()
{
    m_requestRemembered = false;
    m_beforeRequest = Snapshot();
}

bool serdes::releaseLastRequest()
{
    if (!m_requestRemembered)
        return false;
    for (auto it = m_beforeRequest.holdings.cbegin(); it != m_beforeRequest.holdings.cend(); ++it) {
        Instance *element = it.key();
        const Holding &holding = it.value();
        element->count = holding.count;
        if (auto *line = dynamic_cast<LINE *>(element)) {
            line->rate = holding.value;
            line->source = holding.source;
        } else if (auto *ref = dynamic_cast<REF_SOURCE *>(element)) {
            ref->freq = holding.value;
        } else if (auto *mux = dynamic_cast<MUX *>(element)) {
            mux->m_sel = holding.sel;
            mux->m_dir = holding.dir;
        }
    }
    access = m_beforeRequest.access;
    moduleNames = m_beforeRequest.moduleNames;
    fileNames = m_beforeRequest.fileNames;
    forgetLastRequest();
    return true;
}

QStringList serdes::occupiedLanes()
{
    return laneLabels(*this, true);
}

QStringList serdes::notOccupiedLanes()
{
    return laneLabels(*this, false);
}

QStringList serdes::checkPLLforQuad(const char *quadName, const char *qpll0, const char *qpll1,
                                    double rate)
{
    QStringList plls;
    const QStringList occupied = occupiedLanes();
    QUAD *quad = quads.value(QLatin1String(quadName), nullptr);
    if (!quad)
        return plls;
    for (const QString &label : occupied) {
        LANE *lane = quad->lane(laneModelName(label));
        if (!lane)
            continue;
        for (const LINE *line : {lane->rx, lane->tx}) {
            // Rates are compared exactly: a PLL runs at one rate or another.
            if (line->source.isEmpty() || rate != line->rate)
                continue;
            const char *found = line->source == QLatin1String(qpll0)   ? "QPLL0"
                                : line->source == QLatin1String(qpll1) ? "QPLL1"
                                                                       : nullptr;
            if (found && !plls.contains(QLatin1String(found)))
                plls << QLatin1String(found);
        }
    }
    return plls;
}

QStringList serdes::checkPLLforQuad0(double rate)
{
    return checkPLLforQuad(Q0, Q0_QPLL0, Q0_QPLL1, rate);
}

QStringList serdes::checkPLLforQuad1(double rate)
{
    return checkPLLforQuad(Q1, Q1_QPLL0, Q1_QPLL1, rate);
}

QMap<QString, QVariant> serdes::getMessageByPLL(const QString &pllName)
{
    QMap<QString, QVariant> setting;
    auto *pll = dynamic_cast<PLL *>(instances.value(pllName, nullptr));
    if (!pll || !pll->Mux() || !pll->Mux()->enable())
        return setting;
    const QString point = pll->Mux()->point();
    if (point.isEmpty())
        return setting;
    if (REF_SOURCE *ref = findRefsource(point)) {
        setting.insert(QStringLiteral("Reference_Clock_Source"),
                       refsrcSerdesNameTransforOpt(ref->name));
        setting.insert(QStringLiteral("Reference_Clock_Frequency"), ref->freq);
    }
    const QStringList occupied = occupiedLanes();
    for (const QString &label : occupied) {
        LANE *lane = pll->quad ? pll->quad->lane(laneModelName(label)) : nullptr;
        if (!lane)
            continue;
        if (!lane->rx->source.isEmpty() && lane->rx->source == pllName)
            setting.insert(QStringLiteral("RX_Line_Rate"), lane->rx->rate);
        if (!lane->tx->source.isEmpty() && lane->tx->source == pllName)
            setting.insert(QStringLiteral("TX_Line_Rate"), lane->tx->rate);
    }
    return setting;
}

int serdes::getMuxSelofPll(const QString &laneName, const QString &ref)
{
    auto *lane = dynamic_cast<LANE *>(instances.value(laneName, nullptr));
    if (!lane) {
        qCritical() << "null Lane";
        return -1;
    }
    // Two steps deep only: the PLL's select, and one mux behind it. A route
    // over the bridge between quads is three, and gives no answer.
    const auto selectTo = [&](PLL *pll) {
        MUX *select = pll->Mux();
        const QString point = select->point();
        if (point == ref && FormStringToREFSPtr(point))
            return select->sel();
        MUX *inner = FormStringToMuxSPtr(point);
        if (inner && inner->point() == ref && FormStringToREFSPtr(ref))
            return select->sel();
        return -1;
    };
    if (PLL *pll = linePll(lane->rx)) {
        const int sel = selectTo(pll);
        if (sel != -1)
            return sel;
    }
    PLL *pll = linePll(lane->tx);
    return pll ? selectTo(pll) : -1;
}

bool serdes::checkPllEnable(const QString &pllName)
{
    auto *pll = dynamic_cast<PLL *>(instances.value(pllName, nullptr));
    return pll && pll->Mux() && pll->Mux()->count != 0;
}

} // namespace IPSERDESIP
