// SPDX-License-Identifier: MIT
#include "page/refusalreport.h"

#include "model/serdes.h"
#include "model/serdesip_common.h"
#include "plugin/serdesipconstants.h"
#include "protocol/message.h"
#include "tiers/tier.h"

#include <QCoreApplication>
#include <QHash>
#include <QLatin1String>

namespace IPSERDESIP {

namespace {

// Who holds a route, a line or a source without being on the page's list:
// the page forgets an instance that a second one of the same name replaced,
// while the model keeps what it holds.
const char UNLISTED[] = QT_TRANSLATE_NOOP("IPSERDESIP::explainRefusal", "another instance");

bool isTx(const QString &name)
{
    return name.contains(QLatin1String("TX"));
}

bool isRx(const QString &name)
{
    return name.contains(QLatin1String("RX"));
}

bool rowsAligned(const Message &msg)
{
    const int rows = msg.lanes.size();
    return msg.plls.size() == rows && msg.refs.size() == rows && msg.refFreqs.size() == rows
           && msg.rates.size() == rows && msg.rxRates.size() == rows && msg.txRates.size() == rows;
}

// The number as the user typed it, without trailing zeros.
QString numberText(const QString &text)
{
    bool ok = false;
    const double value = text.toDouble(&ok);
    return ok ? QString::number(value, 'g', 12) : text;
}

// "a", "a and b", "a, b and c".
QString listed(const QStringList &items)
{
    if (items.size() < 2)
        return items.join(QString());
    return QCoreApplication::translate("IPSERDESIP::explainRefusal", "%1 and %2")
        .arg(items.mid(0, items.size() - 1).join(QLatin1String(", ")), items.last());
}

// "Q0_LANE2_TX" -> "Q0 Lane2 TX", "Q0_LANE2" -> "Q0 Lane2".
QString lineLabel(const QString &name)
{
    QString label = name;
    label.replace(QLatin1String("_LANE"), QLatin1String(" Lane"));
    return label.replace(QLatin1Char('_'), QLatin1Char(' '));
}

QString sourceLabel(const QString &name)
{
    const QString option = refsrcSerdesNameTransforOpt(name);
    return option.isEmpty() ? QString(name).replace(QLatin1Char('_'), QLatin1Char(' ')) : option;
}

// A PLL or mux as the floorplan and the protocol dialogs name it.
QString elementLabel(serdes &model, const QString &name)
{
    if (name == QLatin1String(MUX_Q0_TO_Q1))
        return QCoreApplication::translate("IPSERDESIP::explainRefusal",
                                           "the bridge between the quads");
    auto *pll = dynamic_cast<PLL *>(model.instances.value(name, nullptr));
    if (pll && pll->quad && name.contains(QLatin1String("CPLL")))
        return QCoreApplication::translate("IPSERDESIP::explainRefusal", "the CPLL of %1 Lane%2")
            .arg(pll->quad->name, name.right(1));
    QString label = name;
    label.replace(QLatin1String("_MUX"), QLatin1String(" REFMUX"));
    return label.replace(QLatin1Char('_'), QLatin1Char(' '));
}

QString pointAt(const MUX *mux, int sel, int dir)
{
    return mux->pointFn ? mux->pointFn(sel, dir) : QString();
}

// As the model's search: a position leads on only to a mux of the mux's own
// quad, and an open position names no source.
MUX *innerOf(const MUX *mux, const QString &point)
{
    return mux->quad && !point.isEmpty() ? mux->quad->mux(point) : nullptr;
}

// A holding of an element by a line: of a placed instance, or of the refused
// request itself when `owner` is empty.
struct Use
{
    QString owner;
    QString line;
    QString rate; // as typed; what a PLL that the line hangs on runs at
};

// The holders of an element as a sentence names them.
QString holderWords(const QList<Use> &uses)
{
    QStringList names;
    for (const Use &use : uses) {
        const QString name
            = use.owner.isEmpty()
                  ? QCoreApplication::translate("IPSERDESIP::explainRefusal", "this instance's %1")
                        .arg(lineLabel(use.line))
                  : use.owner;
        if (!names.contains(name))
            names << name;
    }
    return listed(names);
}

// A line's own name says nothing about who took it first.
QString lineHolderWords(const QList<Use> &uses)
{
    QStringList names;
    for (const Use &use : uses) {
        const QString name = use.owner.isEmpty() ? QCoreApplication::translate(
                                 "IPSERDESIP::explainRefusal", "an earlier row of this instance")
                                                 : use.owner;
        if (!names.contains(name))
            names << name;
    }
    return listed(names);
}

struct MuxHold
{
    int sel = 0;
    int dir = 0;
    QList<Use> uses; // held while not empty
};

struct SourceHold
{
    double freq = 0.0;
    QString freqText;
    QList<Use> uses;
};

struct Step
{
    MUX *mux;
    int sel;
    int dir;
};

// How addItem takes one line of a row.
struct LinePlan
{
    LINE *line = nullptr;
    QString rate;
    // The line hangs on the PLL that `pll` names; otherwise a CDR mux clocks it.
    bool overPll = false;
    QString pll;
    // Where its route may start, tried in this order.
    QList<MUX *> starts;
    // The mux a route from a PLL must pass next; empty for any.
    QString via;
    // The mux the row pins, for the words.
    QString option;
    // On the smallest tier an RX line takes the fabric or the master clock
    // with no mux at all.
    bool direct = false;
};

struct RowPlan
{
    QString label; // the row's lane or line
    LANE *lane = nullptr;
    QString refName;
    double freq = 0.0;
    QString freqText;
    QList<LinePlan> lines;
};

LinePlan overPll(LINE *line, const QString &rate, const QString &source, const QString &option)
{
    LinePlan plan;
    plan.line = line;
    plan.rate = rate;
    plan.overPll = true;
    plan.pll = source;
    plan.via = option;
    plan.option = option;
    if (PLL *pll = line->quad->pll(source))
        plan.starts << pll->Mux();
    return plan;
}

// A line with a source asks only that mux. One without asks the quad's CDR
// muxes, only the pinned one if any, in name order; the bridge only feeds them.
LinePlan overCdr(serdes &model, LINE *line, const QString &rate, const QString &source,
                 const QString &option, const QString &ref)
{
    LinePlan plan;
    plan.line = line;
    plan.rate = rate;
    plan.option = option;
    if (!source.isEmpty()) {
        if (MUX *mux = model.FormStringToMuxSPtr(source))
            plan.starts << mux;
        return plan;
    }
    for (auto it = line->quad->muxes.cbegin(); it != line->quad->muxes.cend(); ++it) {
        if (it.value() && it.key() != QLatin1String(MUX_Q0_TO_Q1)
            && (option.isEmpty() || it.key() == option))
            plan.starts << it.value();
    }
    plan.direct = option.isEmpty() && tierOf(model.device) == Tier::T90k
                  && (ref == QLatin1String(Q0_GPIO) || ref == QLatin1String(Q0_MCLK));
    return plan;
}

// Reads row `i` as addItem does: which lines, at which rates, from where.
// False where the model knows no such lane or source.
bool planRow(serdes &model, const Message &msg, int i, RowPlan &row)
{
    const QString &name = msg.lanes.at(i);
    row.label = lineLabel(name);
    row.refName = msg.refs.at(i);
    row.freqText = msg.refFreqs.at(i);
    row.freq = row.freqText.toDouble();
    row.lane = model.FormStringToLanePtr(name);
    if (!row.lane || !row.lane->quad || !model.FormStringToREFSPtr(row.refName))
        return false;
    LINE *tx = row.lane->tx;
    LINE *rx = row.lane->rx;
    row.label = lineLabel(isTx(name) ? tx->name : isRx(name) ? rx->name : row.lane->name);

    QString option = msg.muxOptions.value(name);
    if (!option.isEmpty()) {
        option.remove(QLatin1String("REF"));
        option = model.getMuxNamefromOption(row.lane->quad->name, option);
    }
    const QString &pll = msg.plls.at(i);
    const bool noPll = pll == QLatin1String("0");
    // One rate for both lines of a lane, unless it is 0.
    const bool oneRate = !isTx(name) && !isRx(name) && msg.rates.at(i).toDouble() != 0;
    const QString txRate = oneRate ? msg.rates.at(i) : msg.txRates.at(i);
    const QString rxRate = oneRate ? msg.rates.at(i) : msg.rxRates.at(i);

    if (msg.type == QLatin1String("BCDR")) {
        if (isRx(name))
            row.lines << overPll(rx, rxRate, noPll ? option : pll, option);
        else if (isTx(name))
            row.lines << overPll(tx, txRate, pll, option);
        else
            row.lines << overPll(rx, rxRate, pll, option) << overPll(tx, txRate, pll, option);
    } else if (isTx(name)) {
        row.lines << overPll(tx, txRate, pll, option);
    } else if (isRx(name)) {
        row.lines << overCdr(model, rx, rxRate, noPll ? option : QString(), option, row.refName);
    } else {
        row.lines << overPll(tx, txRate, pll, option)
                  << overCdr(model, rx, rxRate, option, option, row.refName);
    }
    return true;
}

// The lines that a request's rows name, once per row.
QStringList lineNames(serdes &model, const Message &msg)
{
    QStringList lines;
    for (const QString &name : msg.lanes) {
        LANE *lane = model.FormStringToLanePtr(name);
        if (lane && !isRx(name))
            lines << lane->tx->name;
        if (lane && !isTx(name))
            lines << lane->rx->name;
    }
    return lines;
}

struct Clause
{
    QString subject;
    QString predicate;
};

// What the model holds, with who holds it, rebuilt from the holders'
// requests and the route table. The model's counts alone would not do: they
// cannot tell holders apart, and they also count the refused request's
// partial reservations. They serve only to find routes that the table lost.
class Board
{
    Q_DECLARE_TR_FUNCTIONS(IPSERDESIP::explainRefusal)

public:
    Board(serdes &model, const Message &refused, const QList<const Message *> &holders);

    void addHolder(const QString &owner, const Message &msg);
    void settleRoutes();
    void addUnlisted();
    QString place(const RowPlan &row);

private:
    bool held(const MUX *mux) const { return !m_muxes.value(mux).uses.isEmpty(); }
    MUX *muxNamed(const QString &name) const;
    MUX *next(const MUX *mux, const QString &point, const QString *via) const;
    bool reaches(MUX *mux, const QString &ref, const QString *via, QList<Step> *steps,
                 bool ignoreHolds) const;
    void blockers(MUX *mux, const QString &ref, const QString *via, QList<MUX *> &found) const;
    QString heldSource(const MUX *mux) const;
    QString holding(MUX *mux, const QString &wanted) const;
    Clause unroutable(const RowPlan &row, const LinePlan &plan, const QString *via) const;
    QString rateConflict(const LinePlan &plan) const;
    void claim(const QList<Step> &steps, const Use &use);
    void holdRoute(const QStringList &route, const Use &use);
    void holdSource(const QString &name, double freq, const QString &freqText, const Use &use);
    QStringList lostRoute(const RowPlan &row, const LinePlan &plan);

    // A holder's line whose route is yet to be found.
    struct Holding
    {
        RowPlan row;
        LinePlan plan;
        Use use;
    };
    bool recordedFits(const Holding &holding) const;

    serdes &m_model;
    const QMap<QString, QStringList> m_routes;
    // Per mux, how many routes its count holds beyond those in the table.
    QHash<const MUX *, int> m_unrecorded;
    // The lines that the refused request names.
    QStringList m_requested;
    // How many rows of the holders and the refused request name each line.
    QHash<QString, int> m_namings;
    QList<Holding> m_unsettled;
    QHash<const MUX *, MuxHold> m_muxes;
    QHash<QString, SourceHold> m_sources;
    QHash<QString, QList<Use>> m_lines;
};

// The table keeps one route per line: where a request took a line that
// another one held, the earlier route is gone from it but still counted by its
// muxes.
Board::Board(serdes &model, const Message &refused, const QList<const Message *> &holders)
    : m_model(model)
    , m_routes(model.allAccess())
{
    m_requested = lineNames(model, refused);
    for (const QString &line : qAsConst(m_requested))
        ++m_namings[line];
    for (const Message *msg : holders) {
        const QStringList lines = lineNames(model, *msg);
        for (const QString &line : lines)
            ++m_namings[line];
    }
    for (Instance *element : qAsConst(model.instances)) {
        auto *pll = dynamic_cast<PLL *>(element);
        MUX *mux = pll ? pll->Mux() : dynamic_cast<MUX *>(element);
        if (mux && mux->count > 0)
            m_unrecorded.insert(mux, mux->count);
    }
    for (const QStringList &route : m_routes) {
        for (int k = 1; k + 1 < route.size(); ++k) {
            if (MUX *mux = muxNamed(route.at(k)))
                --m_unrecorded[mux];
        }
    }
}

MUX *Board::muxNamed(const QString &name) const
{
    Instance *element = m_model.instances.value(name, nullptr);
    if (auto *pll = dynamic_cast<PLL *>(element))
        return pll->Mux();
    return dynamic_cast<MUX *>(element);
}

MUX *Board::next(const MUX *mux, const QString &point, const QString *via) const
{
    MUX *inner = innerOf(mux, point);
    return inner && via && inner->name != *via ? nullptr : inner;
}

// The model's search, run on the board: a free mux may take any position,
// direct hits first; a held one keeps its selection. With `via`, a descent is
// made only into that mux, where the search may go on with or without it.
// On success `steps` gets the selection of every mux of the route.
bool Board::reaches(MUX *mux, const QString &ref, const QString *via, QList<Step> *steps,
                    bool ignoreHolds) const
{
    const auto descend = [&](MUX *inner) {
        return (via && reaches(inner, ref, via, steps, ignoreHolds))
               || reaches(inner, ref, nullptr, steps, ignoreHolds);
    };
    const auto take = [&](int sel, int dir) {
        if (steps)
            steps->append({mux, sel, dir});
        return true;
    };
    if (ignoreHolds || !held(mux)) {
        for (int dir = 0; dir < mux->dirCount; ++dir) {
            for (int sel = 0; sel < mux->selCount; ++sel) {
                const QString point = pointAt(mux, sel, dir);
                if (!point.isEmpty() && point == ref)
                    return take(sel, dir);
            }
        }
        for (int dir = 0; dir < mux->dirCount; ++dir) {
            for (int sel = 0; sel < mux->selCount; ++sel) {
                MUX *inner = next(mux, pointAt(mux, sel, dir), via);
                if (inner && descend(inner))
                    return take(sel, dir);
            }
        }
        return false;
    }
    const MuxHold hold = m_muxes.value(mux);
    const QString point = pointAt(mux, hold.sel, hold.dir);
    if (!point.isEmpty() && point == ref)
        return take(hold.sel, hold.dir);
    MUX *inner = next(mux, point, via);
    return inner && descend(inner) && take(hold.sel, hold.dir);
}

// The held muxes that keep a failed search from `mux` off `ref`: the mux
// itself when held, else the blockers of every position that would lead on
// to `ref` on a free device.
void Board::blockers(MUX *mux, const QString &ref, const QString *via, QList<MUX *> &found) const
{
    if (held(mux)) {
        if (!found.contains(mux))
            found << mux;
        return;
    }
    for (int dir = 0; dir < mux->dirCount; ++dir) {
        for (int sel = 0; sel < mux->selCount; ++sel) {
            MUX *inner = next(mux, pointAt(mux, sel, dir), via);
            if (!inner)
                continue;
            const QString *innerVia
                = via && reaches(inner, ref, via, nullptr, true) ? via : nullptr;
            if (reaches(inner, ref, innerVia, nullptr, true))
                blockers(inner, ref, innerVia, found);
        }
    }
}

QString Board::heldSource(const MUX *mux) const
{
    // The network has no cycles, so the chain always ends.
    while (mux) {
        const MuxHold hold = m_muxes.value(mux);
        const QString point = pointAt(mux, hold.sel, hold.dir);
        if (m_model.FormStringToREFSPtr(point))
            return point;
        mux = innerOf(mux, point);
    }
    return QString();
}

// "Q1 REFMUX0 is held by bcdr for Q1 REFCLK1", "Q0 QPLL0 runs from Q0 REFCLK0
// at 10.3125 Gbps for xaui_0", without the element's name. A holding that
// leads to the wanted source itself is in the way only by its mux, so that
// mux is named too.
QString Board::holding(MUX *mux, const QString &wanted) const
{
    const MuxHold hold = m_muxes.value(mux);
    const QString source = heldSource(mux);
    QString from = sourceLabel(source);
    if (source == wanted) {
        if (MUX *inner = innerOf(mux, pointAt(mux, hold.sel, hold.dir)))
            from += tr(" over ") + elementLabel(m_model, inner->name);
    }
    auto *pll = dynamic_cast<PLL *>(m_model.instances.value(mux->name, nullptr));
    if (!pll || pll->Mux() != mux)
        return tr("is held by %1 for %2").arg(holderWords(hold.uses), from);
    QStringList rates;
    for (const Use &use : hold.uses) {
        if (use.rate.toDouble() != 0 && !rates.contains(numberText(use.rate)))
            rates << numberText(use.rate);
    }
    const QString at = rates.isEmpty() ? QString() : tr(" at %1 Gbps").arg(listed(rates));
    return tr("runs from %1%2 for %3").arg(from, at, holderWords(hold.uses));
}

Clause Board::unroutable(const RowPlan &row, const LinePlan &plan, const QString *via) const
{
    const QString subject = lineLabel(plan.line->name);
    const QString ref = sourceLabel(row.refName);
    bool possible = false;
    QList<MUX *> found;
    for (MUX *start : plan.starts) {
        if (!reaches(start, row.refName, via, nullptr, true))
            continue;
        possible = true;
        blockers(start, row.refName, via, found);
    }
    if (!possible || found.isEmpty()) {
        QStringList over;
        if (!plan.option.isEmpty())
            over << elementLabel(m_model, plan.option);
        // A line that hangs on a PLL has nowhere to start without one of
        // its quad.
        QString without;
        if (plan.overPll && plan.starts.isEmpty()) {
            if (dynamic_cast<PLL *>(m_model.instances.value(plan.pll, nullptr)))
                over.prepend(elementLabel(m_model, plan.pll));
            else
                without = tr(" without a PLL");
        }
        return {subject,
                tr("has no route from %1%2%3 on this device")
                    .arg(ref, over.isEmpty() ? QString() : tr(" over ") + listed(over), without)};
    }
    QString cannot = tr("cannot reach ") + ref;
    if (!plan.option.isEmpty())
        cannot += tr(" over ") + elementLabel(m_model, plan.option);
    if (found.size() == 1) {
        MUX *mux = found.first();
        const QString name = mux->name == plan.option ? tr("it") : elementLabel(m_model, mux->name);
        return {subject, QStringLiteral("%1: %2 %3").arg(cannot, name, holding(mux, row.refName))};
    }
    QStringList each;
    for (MUX *mux : qAsConst(found))
        each << elementLabel(m_model, mux->name) + QLatin1Char(' ') + holding(mux, row.refName);
    return {subject, tr("%1: no mux that reaches it is free, %2").arg(cannot, listed(each))};
}

// A PLL runs at one rate, which the model does not compare.
QString Board::rateConflict(const LinePlan &plan) const
{
    const double rate = plan.rate.toDouble();
    if (!plan.overPll || plan.starts.isEmpty() || rate == 0)
        return QString();
    QList<Use> others;
    QStringList rates;
    for (const Use &use : m_muxes.value(plan.starts.first()).uses) {
        const double running = use.rate.toDouble();
        if (running == 0 || running == rate)
            continue;
        others << use;
        if (!rates.contains(numberText(use.rate)))
            rates << numberText(use.rate);
    }
    if (others.isEmpty())
        return QString();
    return tr("cannot use %1 at %2 Gbps: it runs at %3 Gbps for %4")
        .arg(elementLabel(m_model, plan.pll), numberText(plan.rate), listed(rates),
             holderWords(others));
}

void Board::claim(const QList<Step> &steps, const Use &use)
{
    for (const Step &step : steps) {
        MuxHold &hold = m_muxes[step.mux];
        if (hold.uses.isEmpty()) {
            hold.sel = step.sel;
            hold.dir = step.dir;
        }
        hold.uses << use;
    }
}

// Each mux of a recorded route selects the element that follows it.
void Board::holdRoute(const QStringList &route, const Use &use)
{
    QList<Step> steps;
    for (int k = 1; k + 1 < route.size(); ++k) {
        MUX *mux = muxNamed(route.at(k));
        if (!mux)
            break;
        bool found = false;
        for (int dir = 0; dir < mux->dirCount && !found; ++dir) {
            for (int sel = 0; sel < mux->selCount && !found; ++sel) {
                if (pointAt(mux, sel, dir) == route.at(k + 1)) {
                    steps.append({mux, sel, dir});
                    found = true;
                }
            }
        }
        if (!found)
            break;
    }
    claim(steps, use);
}

void Board::holdSource(const QString &name, double freq, const QString &freqText, const Use &use)
{
    SourceHold &hold = m_sources[name];
    if (hold.uses.isEmpty()) {
        hold.freq = freq;
        hold.freqText = freqText;
    }
    hold.uses << use;
}

// A holder's route that the table lost, found again by following the model's
// selections from where the line may start down to the row's source over
// muxes that hold unrecorded routes. Empty when there is none.
QStringList Board::lostRoute(const RowPlan &row, const LinePlan &plan)
{
    for (MUX *start : plan.starts) {
        QStringList route{plan.line->name};
        QList<MUX *> chain;
        for (MUX *mux = start; mux && m_unrecorded.value(mux) > 0 && !chain.contains(mux);
             mux = innerOf(mux, mux->point())) {
            chain << mux;
            route << mux->name;
            if (mux->point() != row.refName)
                continue;
            route << row.refName;
            for (MUX *taken : qAsConst(chain))
                --m_unrecorded[taken];
            return route;
        }
    }
    // Taken directly, the route holds no mux at all.
    if (plan.direct)
        return {plan.line->name, row.refName};
    return {};
}

void Board::addHolder(const QString &owner, const Message &msg)
{
    for (int i = 0; i < msg.lanes.size(); ++i) {
        RowPlan row;
        if (!planRow(m_model, msg, i, row))
            continue;
        for (const LinePlan &plan : qAsConst(row.lines)) {
            const Use use{owner, plan.line->name, plan.rate};
            m_lines[plan.line->name] << use;
            holdSource(row.refName, row.freq, row.freqText, use);
            m_unsettled << Holding{row, plan, use};
        }
    }
}

// Gives each holder's line its route. The table has one route per line, that
// of the row that took the line last; a route it lost still holds its muxes,
// and is found again through the model's selections. Of the holders that
// share a line, the route in the table goes to the first that it fits and
// that leaves every other one a lost route. The holders of a line that the
// refused request names too come last and look for a lost route first, as
// the request's route may have replaced theirs in the table.
void Board::settleRoutes()
{
    QStringList order;
    QHash<QString, QList<Holding>> byLine;
    for (const Holding &holding : qAsConst(m_unsettled)) {
        const QString &line = holding.plan.line->name;
        if (!byLine.contains(line))
            order << line;
        byLine[line] << holding;
    }
    m_unsettled.clear();

    QList<Holding> lost;
    QList<Holding> replaced;
    for (const QString &line : qAsConst(order)) {
        const QList<Holding> group = byLine.value(line);
        if (m_requested.contains(line)) {
            replaced << group;
            continue;
        }
        int keeper = -1;
        int fitting = -1;
        for (int k = 0; k < group.size() && keeper < 0; ++k) {
            if (!recordedFits(group.at(k)))
                continue;
            if (fitting < 0)
                fitting = k;
            const QHash<const MUX *, int> pool = m_unrecorded;
            bool othersFound = true;
            for (int o = 0; o < group.size() && othersFound; ++o)
                othersFound = o == k || !lostRoute(group.at(o).row, group.at(o).plan).isEmpty();
            m_unrecorded = pool;
            if (othersFound)
                keeper = k;
        }
        if (keeper < 0)
            keeper = fitting;
        for (int k = 0; k < group.size(); ++k) {
            if (k == keeper)
                holdRoute(m_routes.value(line), group.at(k).use);
            else
                lost << group.at(k);
        }
    }
    for (const Holding &holding : qAsConst(lost))
        holdRoute(lostRoute(holding.row, holding.plan), holding.use);
    QStringList given;
    for (const Holding &holding : qAsConst(replaced)) {
        const QString &line = holding.plan.line->name;
        QStringList route = lostRoute(holding.row, holding.plan);
        if (route.isEmpty() && !given.contains(line) && recordedFits(holding)) {
            route = m_routes.value(line);
            given << line;
        }
        holdRoute(route, holding.use);
    }
}

bool Board::recordedFits(const Holding &holding) const
{
    const QStringList route = m_routes.value(holding.plan.line->name);
    return route.size() >= 2 && route.last() == holding.row.refName
           && (!holding.plan.overPll || route.value(1) == holding.plan.pll);
}

// Routes in the table that neither a holder nor the refused request accounts
// for still hold their muxes, lines and source.
void Board::addUnlisted()
{
    const QString owner = tr(UNLISTED);
    for (auto it = m_routes.cbegin(); it != m_routes.cend(); ++it) {
        const QStringList &route = it.value();
        if (m_lines.contains(it.key()) || m_requested.contains(it.key()) || route.size() < 2)
            continue;
        const Use use{owner, it.key(), QString()};
        m_lines[it.key()] << use;
        if (REF_SOURCE *ref = m_model.FormStringToREFSPtr(route.last()))
            holdSource(ref->name, ref->freq, QString::number(ref->freq, 'g', 12), use);
        holdRoute(route, use);
    }
}

// Places the row as addItem would, beside what the board holds, and says what
// is in its way; empty when nothing is.
QString Board::place(const RowPlan &row)
{
    QList<Clause> clauses;
    QList<const LINE *> taken;
    // The model lets a second request take a held line, but the dialogs
    // offer free lanes only: a held line is the first thing in the way.
    for (const LinePlan &plan : row.lines) {
        const QList<Use> uses = m_lines.value(plan.line->name);
        if (!uses.isEmpty()) {
            clauses << Clause{lineLabel(plan.line->name),
                              tr("is already held by ") + lineHolderWords(uses)};
            taken << plan.line;
        }
    }
    for (const LinePlan &plan : row.lines)
        m_lines[plan.line->name] << Use{QString(), plan.line->name, plan.rate};

    const SourceHold source = m_sources.value(row.refName);
    if (!source.uses.isEmpty() && source.freq != row.freq) {
        clauses << Clause{row.label,
                          tr("cannot use %1 at %2 MHz: it runs at %3 MHz for %4")
                              .arg(sourceLabel(row.refName), numberText(row.freqText),
                                   numberText(source.freqText), holderWords(source.uses))};
    } else {
        for (const LinePlan &plan : row.lines)
            holdSource(row.refName, row.freq, row.freqText,
                       Use{QString(), plan.line->name, plan.rate});
        for (const LinePlan &plan : row.lines) {
            const QString *via = plan.via.isEmpty() ? nullptr : &plan.via;
            QList<Step> steps;
            bool placed = false;
            for (MUX *start : plan.starts) {
                if (reaches(start, row.refName, via, &steps, false)) {
                    placed = true;
                    break;
                }
            }
            placed = placed || plan.direct;
            if (!taken.contains(plan.line)) {
                const QString rate = placed ? rateConflict(plan) : QString();
                if (!rate.isEmpty())
                    clauses << Clause{lineLabel(plan.line->name), rate};
                else if (!placed)
                    clauses << unroutable(row, plan, via);
            }
            claim(steps, Use{QString(), plan.line->name, plan.rate});
        }
    }
    if (clauses.isEmpty())
        return QString();

    // Both lines of a lane stopped alike: the lane is named once.
    if (row.lines.size() == 2) {
        const QString tx = lineLabel(row.lane->tx->name);
        const QString rx = lineLabel(row.lane->rx->name);
        for (int i = 0; i < clauses.size(); ++i) {
            for (int j = clauses.size() - 1; j > i; --j) {
                const bool pair = (clauses.at(i).subject == tx && clauses.at(j).subject == rx)
                                  || (clauses.at(i).subject == rx && clauses.at(j).subject == tx);
                if (pair && clauses.at(i).predicate == clauses.at(j).predicate) {
                    clauses[i].subject = row.label;
                    clauses.removeAt(j);
                }
            }
        }
    }
    QStringList parts;
    for (const Clause &clause : qAsConst(clauses))
        parts << clause.subject + QLatin1Char(' ') + clause.predicate;
    return parts.join(QLatin1String("; ")) + QLatin1Char('.');
}

} // namespace

QStringList explainRefusal(serdes *model, const Message &refused,
                           const QMap<QString, Message *> &holders)
{
    if (!model || !rowsAligned(refused))
        return {};
    QMap<QString, const Message *> placed;
    for (auto it = holders.cbegin(); it != holders.cend(); ++it) {
        if (it.value() && it.value() != &refused && rowsAligned(*it.value()))
            placed.insert(it.key(), it.value());
    }
    Board board(*model, refused, placed.values());
    for (auto it = placed.cbegin(); it != placed.cend(); ++it)
        board.addHolder(it.key(), *it.value());
    board.settleRoutes();
    board.addUnlisted();

    QStringList sentences;
    for (int i = 0; i < refused.lanes.size(); ++i) {
        RowPlan row;
        QString sentence;
        if (planRow(*model, refused, i, row))
            sentence = board.place(row);
        else
            sentence = QCoreApplication::translate("IPSERDESIP::explainRefusal",
                                                   "%1 has no route from %2 on this device.")
                           .arg(row.label, sourceLabel(row.refName));
        if (!sentence.isEmpty())
            sentences << sentence;
    }
    return sentences;
}

} // namespace IPSERDESIP
