// SPDX-License-Identifier: MIT

// Route checking on the singleton: a route ties one line to one reference
// source. A TX line is clocked by the PLL that its source names, an RX line by
// a mux of its quad (its CDR reference); in the ForRxConnectPll forms every
// line hangs on a PLL. Records run from the line over the muxes to the source.

#include "model/serdes.h"

#include "plugin/serdesipconstants.h"
#include "tiers/tier.h"

#include <QLatin1String>
#include <QtDebug>

namespace IPSERDESIP {

namespace {

bool isTx(const QString &line)
{
    return line.contains(QLatin1String("TX"));
}

bool isRx(const QString &line)
{
    return line.contains(QLatin1String("RX"));
}

// The muxes that may clock an RX line on their own: the quad's select muxes,
// in name order, which is the tie-break. The bridge only feeds them.
QList<MUX *> cdrMuxes(QUAD *quad)
{
    QList<MUX *> muxes;
    for (auto it = quad->muxes.cbegin(); it != quad->muxes.cend(); ++it) {
        if (it.value() && it.key() != QLatin1String(MUX_Q0_TO_Q1))
            muxes.append(it.value());
    }
    return muxes;
}

// The reference mux of the PLL named `pll` in `quad`, or null.
MUX *pllMux(QUAD *quad, const QString &pll)
{
    PLL *found = quad->pll(pll);
    return found ? found->Mux() : nullptr;
}

bool isTier90k(const QString &device)
{
    return tierOf(device) == Tier::T90k;
}

void finishRoute(serdes &model, const QString &line, const QString &ref, QList<QString> &path)
{
    path.append(ref);
    model.access.insert(line, path);
}

// Asks the PLL of the line, or, for a line without one yet, any PLL of its
// quad in name order.
bool checkOverPll(LINE *line, const QString &ref, const QString *via)
{
    const auto reaches = [&](MUX *mux) {
        return mux && (via ? mux->checkReachAccess(ref, *via) : mux->checkReachAccess(ref));
    };
    if (!line->source.isEmpty())
        return reaches(pllMux(line->quad, line->source));
    for (PLL *pll : qAsConst(line->quad->plls)) {
        if (pll && reaches(pll->Mux()))
            return true;
    }
    return false;
}

// Unlike the check, this never picks a PLL: the line must name one already.
bool generateOverPll(serdes &model, LINE *line, const QString &ref, const QString *via,
                     QList<QString> &path)
{
    if (line->source.isEmpty())
        return false;
    MUX *mux = pllMux(line->quad, line->source);
    if (!mux)
        return false;
    if (!(via ? mux->getReachAccess(ref, *via, path) : mux->getReachAccess(ref, path)))
        return false;
    finishRoute(model, line->name, ref, path);
    return true;
}

LINE *lineNamed(serdes &model, const QString &name)
{
    auto *line = dynamic_cast<LINE *>(model.instances.value(name, nullptr));
    return line && line->quad ? line : nullptr;
}

} // namespace

bool serdes::checkAccess(const QString &ref, const QString &line)
{
    LINE *found = lineNamed(*this, line);
    if (!found)
        return false;
    if (isTx(line))
        return checkOverPll(found, ref, nullptr);
    if (!isRx(line))
        return false;

    if (!found->source.isEmpty()) {
        MUX *mux = FormStringToMuxSPtr(found->source);
        return mux && mux->checkReachAccess(ref);
    }
    for (MUX *mux : cdrMuxes(found->quad)) {
        if (mux->checkReachAccess(ref))
            return true;
    }
    // On 90k an RX line may also be clocked directly by the fabric or master
    // clock; this check says yes without asking which source is meant.
    return isTier90k(device);
}

bool serdes::checkAccess(const QString &ref, const QString &via, const QString &line)
{
    LINE *found = lineNamed(*this, line);
    if (!found)
        return false;
    if (isTx(line))
        return checkOverPll(found, ref, &via);
    if (!isRx(line))
        return false;

    if (!found->source.isEmpty()) {
        MUX *mux = FormStringToMuxSPtr(found->source);
        return mux && mux->checkReachAccess(ref);
    }
    for (MUX *mux : cdrMuxes(found->quad)) {
        if (mux->name == via)
            return mux->checkReachAccess(ref);
    }
    return false;
}

bool serdes::generateAccess(const QString &ref, const QString &line, QList<QString> &path)
{
    LINE *found = lineNamed(*this, line);
    if (!found)
        return false;
    path.append(line);
    if (isTx(line))
        return generateOverPll(*this, found, ref, nullptr, path);
    if (!isRx(line))
        return false;

    if (!found->source.isEmpty()) {
        MUX *mux = FormStringToMuxSPtr(found->source);
        if (!mux || !mux->getReachAccess(ref, path))
            return false;
        finishRoute(*this, line, ref, path);
        return true;
    }
    for (MUX *mux : cdrMuxes(found->quad)) {
        if (mux->getReachAccess(ref, path)) {
            finishRoute(*this, line, ref, path);
            found->setSource(mux->name);
            return true;
        }
    }
    if (isTier90k(device) && (ref == QLatin1String(Q0_GPIO) || ref == QLatin1String(Q0_MCLK))) {
        finishRoute(*this, line, ref, path);
        found->setSource(ref);
        return true;
    }
    return false;
}

bool serdes::generateAccess(const QString &ref, const QString &via, const QString &line,
                            QList<QString> &path)
{
    LINE *found = lineNamed(*this, line);
    if (!found)
        return false;
    path.append(line);
    if (isTx(line))
        return generateOverPll(*this, found, ref, &via, path);
    if (!isRx(line))
        return false;

    if (!found->source.isEmpty()) {
        MUX *mux = FormStringToMuxSPtr(found->source);
        if (!mux || !mux->getReachAccess(ref, path))
            return false;
        finishRoute(*this, line, ref, path);
        return true;
    }
    for (MUX *mux : cdrMuxes(found->quad)) {
        if (mux->name != via)
            continue;
        if (!mux->getReachAccess(ref, path))
            return false;
        finishRoute(*this, line, ref, path);
        found->setSource(mux->name);
        return true;
    }
    return false;
}

bool serdes::checkAccessForRxConnectPll(const QString &ref, const QString &line)
{
    LINE *found = lineNamed(*this, line);
    return found && checkOverPll(found, ref, nullptr);
}

bool serdes::generateAccessForRxConnectPll(const QString &ref, const QString &line,
                                           QList<QString> &path)
{
    LINE *found = lineNamed(*this, line);
    if (!found)
        return false;
    path.append(line);
    return generateOverPll(*this, found, ref, nullptr, path);
}

bool serdes::generateAccessForRxConnectPll(const QString &ref, const QString &via,
                                           const QString &line, QList<QString> &path)
{
    LINE *found = lineNamed(*this, line);
    if (!found)
        return false;
    path.append(line);
    return generateOverPll(*this, found, ref, &via, path);
}

namespace {

enum class Batch {
    // A mux option per lane pins the RX route, and an RX row without PLL
    // takes its line with the option as source.
    WithOptions,
    // No options: an RX row takes no line count.
    Plain,
    // Every line hangs on the row's PLL.
    RxConnectPll,
};

bool batchSizesFit(const QStringList &lanes, const QStringList &plls, const QStringList &refs,
                   const QStringList &freqs)
{
    const int n = lanes.size();
    if (plls.size() != n || refs.size() != n || freqs.size() != n) {
        qCritical() << "The quantity is not equal";
        return false;
    }
    if (n == 0) {
        qCritical() << "The quantity of the lane selection or the pll selection or the reference "
                       "Clock or the reference Clock Frequence is empty";
        return false;
    }
    return true;
}

bool routeBatch(serdes &model, const QStringList &lanes, const QStringList &plls,
                const QStringList &refs, const QStringList &freqs,
                const QMap<QString, QString> &muxOptions, Batch mode)
{
    if (!batchSizesFit(lanes, plls, refs, freqs))
        return false;

    for (int i = 0; i < lanes.size(); ++i) {
        LANE *lane = model.FormStringToLanePtr(lanes.at(i));
        if (!lane || !lane->quad) {
            qCritical() << "Lane name Error :" << lanes.at(i);
            return false;
        }

        QString option = muxOptions.value(lanes.at(i));
        if (!option.isEmpty()) {
            option.remove(QLatin1String("REF"));
            option = model.getMuxNamefromOption(lane->quad->name, option);
        }

        QList<QString> txPath;
        QList<QString> rxPath;
        const auto generate = [&](LINE *line, QList<QString> &path) {
            if (mode == Batch::RxConnectPll)
                return model.generateAccessForRxConnectPll(refs.at(i), line->name, path);
            if (!option.isEmpty())
                return model.generateAccess(refs.at(i), option, line->name, path);
            return model.generateAccess(refs.at(i), line->name, path);
        };

        const QString &name = lanes.at(i);
        if (mode == Batch::RxConnectPll) {
            if (isRx(name)) {
                lane->rx->set(0.0, plls.at(i));
                if (!generate(lane->rx, rxPath))
                    return false;
            } else if (isTx(name)) {
                lane->tx->set(0.0, plls.at(i));
                if (!generate(lane->tx, txPath))
                    return false;
            } else {
                lane->set(0.0, plls.at(i));
                const bool rxOk = generate(lane->rx, rxPath);
                const bool txOk = generate(lane->tx, txPath);
                if (!rxOk || !txOk)
                    return false;
            }
            continue;
        }

        if (isTx(name)) {
            lane->tx->set(0.0, plls.at(i));
            if (!generate(lane->tx, txPath))
                return false;
        } else if (isRx(name)) {
            if (mode == Batch::WithOptions && plls.at(i) == QLatin1String("0"))
                lane->rx->set(0.0, option);
            if (!generate(lane->rx, rxPath))
                return false;
        } else {
            lane->tx->set(0.0, plls.at(i));
            const bool txOk = generate(lane->tx, txPath);
            const bool rxOk = generate(lane->rx, rxPath);
            if (!txOk || !rxOk)
                return false;
        }
    }
    return true;
}

} // namespace

bool serdes::checkRoute(const QStringList &lanes, const QStringList &plls, const QStringList &refs,
                        const QStringList &freqs)
{
    rememberBeforeRequest();
    return routeBatch(*this, lanes, plls, refs, freqs, {}, Batch::Plain);
}

bool serdes::checkRoute(const QStringList &lanes, const QStringList &plls, const QStringList &refs,
                        const QStringList &freqs, const QMap<QString, QString> &muxOptions)
{
    rememberBeforeRequest();
    return routeBatch(*this, lanes, plls, refs, freqs, muxOptions, Batch::WithOptions);
}

bool serdes::checkRouteForRxConnectPll(const QStringList &lanes, const QStringList &plls,
                                       const QStringList &refs, const QStringList &freqs)
{
    rememberBeforeRequest();
    return routeBatch(*this, lanes, plls, refs, freqs, {}, Batch::RxConnectPll);
}

} // namespace IPSERDESIP
