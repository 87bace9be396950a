// SPDX-License-Identifier: MIT
#include "laneplacement.h"

#include "devicetier.h"

#include <model/serdes.h>
#include <model/serdesip_common.h>
#include <protocol/message.h>

#include <QCoreApplication>
#include <QMap>
#include <QVariant>

#include <memory>

namespace samples {

namespace {

struct Placement
{
    Q_DECLARE_TR_FUNCTIONS(Placement)
};

// The rate a row asks of its PLL: the transmitter's, or the receiver's where
// the receiver alone hangs on it.
double pllRate(const LaneRow &row, Lines lines)
{
    return lines == Lines::ReceiverOnPll ? row.rxRate : row.txRate;
}

// Why the placement stopped at the first line of `rows` that got no route;
// no text when every line got one.
Refusal missingRoute(const QList<LaneRow> &rows, Lines lines)
{
    const QMap<QString, QStringList> routes = IPSERDESIP::serdes::instance()->allAccess();
    for (const LaneRow &row : rows) {
        const QString lane = laneLabel(row.lane);
        if (lines == Lines::Both && !routes.contains(QString(row.lane + QStringLiteral("_TX")))) {
            return {Cause::Reference, row.lane,
                    Placement::tr("No free reference mux brings %1 to %2 for %3.")
                        .arg(row.reference, pllText(row.pll), lane)};
        }
        if (routes.contains(QString(row.lane + QStringLiteral("_RX"))))
            continue;
        if (lines == Lines::ReceiverOnPll) {
            return {Cause::Reference, row.lane,
                    Placement::tr("No free reference mux brings %1 to %2 for the receiver of %3.")
                        .arg(row.reference, pllText(row.pll), lane)};
        }
        if (row.referenceMux.isEmpty()) {
            return {Cause::Reference, row.lane,
                    Placement::tr("No free reference mux brings %1 to the receiver of %2.")
                        .arg(row.reference, lane)};
        }
        return {Cause::ReferenceMux, row.lane,
                Placement::tr("%1 cannot bring %2 to the receiver of %3.")
                    .arg(row.referenceMux, row.reference, lane)};
    }
    return {};
}

} // namespace

QString pllText(const QString &pllModel)
{
    // "Q0_QPLL1" -> "QPLL1 of Q0", "Q0_CPLL2" -> "the CPLL of Q0 Lane2"
    if (pllModel.contains(QLatin1String("CPLL")))
        return Placement::tr("the CPLL of %1 Lane%2").arg(pllModel.left(2), pllModel.right(1));
    return Placement::tr("%1 of %2").arg(pllModel.mid(3), pllModel.left(2));
}

LaneRow laneRow(const QString &label, const QString &pll, const QString &reference, double refFreq,
                double txRate, double rxRate, const QString &referenceMux)
{
    LaneRow row;
    row.lane = laneModelName(label);
    row.pll = pllModelName(row.lane, pll);
    row.reference = reference;
    row.refFreq = refFreq;
    row.txRate = txRate;
    row.rxRate = rxRate;
    row.referenceMux = referenceMux;
    return row;
}

IPSERDESIP::Message *makeMessage(const QString &type, const QString &name, const QString &file,
                                 const QString &module, const QList<LaneRow> &rows, Lines lines)
{
    auto *msg = new IPSERDESIP::Message;
    msg->type = type;
    msg->name = name;
    msg->file = file;
    msg->module = module;
    for (const LaneRow &row : rows) {
        // A receiver on its PLL takes its lane's receiving line alone.
        const QString lane
            = lines == Lines::ReceiverOnPll ? QString(row.lane + QStringLiteral("_RX")) : row.lane;
        msg->lanes << lane;
        msg->plls << row.pll;
        msg->refs << IPSERDESIP::refsrcOptTransforSerdesName(row.reference);
        msg->refFreqs << numberText(row.refFreq);
        // One rate stands for both lines when they run alike.
        msg->rates << (row.txRate == row.rxRate ? numberText(row.txRate) : QStringLiteral("0"));
        msg->rxRates << numberText(row.rxRate);
        msg->txRates << numberText(row.txRate);
        if (!row.referenceMux.isEmpty())
            msg->muxOptions.insert(lane, row.referenceMux);
    }
    return msg;
}

PllOffer pllState(const QString &pllModel, double *rate)
{
    PllOffer state;
    state.pll = pllModel.mid(3);
    *rate = 0.0;
    const QMap<QString, QVariant> running
        = IPSERDESIP::serdes::instance()->getMessageByPLL(pllModel);
    if (running.isEmpty())
        return state;
    state.reference = running.value(QStringLiteral("Reference_Clock_Source")).toString();
    state.refFreq = running.value(QStringLiteral("Reference_Clock_Frequency")).toDouble();
    // A PLL runs at one rate for every line it clocks, transmitters and the
    // receivers that hang on it alike; the transmitters' stands for it.
    *rate
        = running
              .value(QStringLiteral("TX_Line_Rate"), running.value(QStringLiteral("RX_Line_Rate")))
              .toDouble();
    return state;
}

QList<PllOffer> runningPlls(const QString &quad, double rate)
{
    IPSERDESIP::serdes *model = IPSERDESIP::serdes::instance();
    const QStringList plls = quad == QLatin1String("Q1") ? model->checkPLLforQuad1(rate)
                                                         : model->checkPLLforQuad0(rate);
    QList<PllOffer> offers;
    for (const QString &pll : plls) {
        double running = 0.0;
        const PllOffer offer = pllState(QString(quad + QLatin1Char('_') + pll), &running);
        if (!offer.reference.isEmpty())
            offers << offer;
    }
    return offers;
}

bool provePlacement(const QList<LaneRow> &rows, Refusal &refusal, Lines lines)
{
    IPSERDESIP::serdes *model = IPSERDESIP::serdes::instance();
    const auto refuse = [&refusal](Cause cause, const LaneRow &row, const QString &why) {
        refusal = {cause, row.lane, why};
        return false;
    };
    if (rows.isEmpty()) {
        refusal = {Cause::Lanes, QString(), Placement::tr("Select at least one lane.")};
        return false;
    }

    // A reference input runs at one frequency, and a PLL at one rate from one
    // reference: the model compares, but only once the request is placed.
    QMap<QString, double> freqs;
    QMap<QString, const LaneRow *> plls;
    for (const LaneRow &row : rows) {
        if (freqs.contains(row.reference) && freqs.value(row.reference) != row.refFreq) {
            return refuse(Cause::RefFreq, row,
                          Placement::tr("%1 cannot run at %2 and %3 MHz at once.")
                              .arg(row.reference, numberText(freqs.value(row.reference)),
                                   numberText(row.refFreq)));
        }
        freqs.insert(row.reference, row.refFreq);
        const double held = model->getFreqByRefsrc(row.reference);
        if (held != 0.0 && held != row.refFreq) {
            return refuse(Cause::RefFreq, row,
                          Placement::tr("%1 runs at %2 MHz for another instance.")
                              .arg(row.reference, numberText(held)));
        }
        // A lane's own CPLL serves that lane alone, and the lane is free.
        if (row.pll.contains(QLatin1String("CPLL")))
            continue;
        if (const LaneRow *other = plls.value(row.pll, nullptr)) {
            if (pllRate(*other, lines) != pllRate(row, lines)
                || other->reference != row.reference) {
                return refuse(Cause::Pll, row,
                              Placement::tr("%1 cannot serve two rates or references at once.")
                                  .arg(pllText(row.pll)));
            }
        }
        plls.insert(row.pll, &row);
        double rate = 0.0;
        const PllOffer running = pllState(row.pll, &rate);
        if (running.reference.isEmpty())
            continue;
        if (rate != 0.0 && rate != pllRate(row, lines)) {
            return refuse(Cause::Rate, row,
                          Placement::tr("%1 runs at %2 Gbps for another instance.")
                              .arg(pllText(row.pll), numberText(rate)));
        }
        if (running.reference != row.reference || running.refFreq != row.refFreq) {
            return refuse(
                Cause::Reference, row,
                Placement::tr("%1 runs from %2 at %3 MHz for another instance.")
                    .arg(pllText(row.pll), running.reference, numberText(running.refFreq)));
        }
    }

    // The very request the generator will place, taken back at once: the
    // model returns to where it stood, whether it accepted it or not, and
    // what other instances hold on a shared PLL or mux stays theirs.
    const std::unique_ptr<IPSERDESIP::Message> trial(
        makeMessage(QStringLiteral("trial"), QString(), QString(), QString(), rows, lines));
    QString err;
    const bool placed = lines == Lines::ReceiverOnPll
                            ? model->addItemForRxConnectPll(trial.get(), err)
                            : model->addItem(trial.get(), err);
    if (!placed) {
        refusal = missingRoute(rows, lines);
        if (refusal.why.isEmpty()) {
            refusal = {Cause::Lanes, QString(),
                       Placement::tr("The transceiver model refuses the selection: %1").arg(err)};
        }
    }
    model->releaseLastRequest();
    return placed;
}

QString numberText(double value)
{
    return QString::number(value, 'g', 12);
}

} // namespace samples
