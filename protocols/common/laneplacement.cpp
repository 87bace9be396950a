// SPDX-License-Identifier: MIT
#include "laneplacement.h"

#include "devicetier.h"

#include <model/lane.h>
#include <model/line.h>
#include <model/serdes.h>
#include <model/serdesip_common.h>
#include <protocol/message.h>

#include <QMap>
#include <QVariant>

namespace samples {

namespace {

QString pllText(const QString &pllModel)
{
    // "Q0_QPLL1" -> "QPLL1 of Q0"
    return QStringLiteral("%1 of %2").arg(pllModel.mid(3), pllModel.left(2));
}

// One line through checkRoute, as addItem will route it. A refused line has
// had its holder count raised before the route was refused; that is taken back
// here, since the line never got a route that resetLane could release.
bool tryLine(const QString &line, const QString &pll, const LaneRow &row)
{
    IPSERDESIP::serdes *model = IPSERDESIP::serdes::instance();
    QMap<QString, QString> mux;
    if (!row.referenceMux.isEmpty())
        mux.insert(line, row.referenceMux);
    const QString ref = IPSERDESIP::refsrcOptTransforSerdesName(row.reference);
    if (model->checkRoute({line}, {pll}, {ref}, {numberText(row.refFreq)}, mux))
        return true;
    IPSERDESIP::LANE *lane = model->FormStringToLanePtr(line);
    if (lane)
        (line.endsWith(QLatin1String("_TX")) ? lane->tx : lane->rx)->reset();
    return false;
}

} // namespace

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
                                 const QString &module, const QList<LaneRow> &rows)
{
    auto *msg = new IPSERDESIP::Message;
    msg->type = type;
    msg->name = name;
    msg->file = file;
    msg->module = module;
    for (const LaneRow &row : rows) {
        msg->lanes << row.lane;
        msg->plls << row.pll;
        msg->refs << IPSERDESIP::refsrcOptTransforSerdesName(row.reference);
        msg->refFreqs << numberText(row.refFreq);
        // One rate stands for both lines when they run alike.
        msg->rates << (row.txRate == row.rxRate ? numberText(row.txRate) : QStringLiteral("0"));
        msg->rxRates << numberText(row.rxRate);
        msg->txRates << numberText(row.txRate);
        if (!row.referenceMux.isEmpty())
            msg->muxOptions.insert(row.lane, row.referenceMux);
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

bool provePlacement(const QList<LaneRow> &rows, QString &why)
{
    IPSERDESIP::serdes *model = IPSERDESIP::serdes::instance();
    if (rows.isEmpty()) {
        why = QStringLiteral("Select at least one lane.");
        return false;
    }

    // A reference input runs at one frequency, and a PLL at one rate from one
    // reference: the model compares, but only once the request is placed.
    QMap<QString, double> freqs;
    QMap<QString, const LaneRow *> plls;
    for (const LaneRow &row : rows) {
        if (freqs.contains(row.reference) && freqs.value(row.reference) != row.refFreq) {
            why = QStringLiteral("%1 cannot run at %2 and %3 MHz at once.")
                      .arg(row.reference, numberText(freqs.value(row.reference)),
                           numberText(row.refFreq));
            return false;
        }
        freqs.insert(row.reference, row.refFreq);
        const double held = model->getFreqByRefsrc(row.reference);
        if (held != 0.0 && held != row.refFreq) {
            why = QStringLiteral("%1 already runs at %2 MHz for another instance; a reference "
                                 "input runs at one frequency, so choose %2 MHz or another "
                                 "reference.")
                      .arg(row.reference, numberText(held));
            return false;
        }
        if (row.pll.contains(QLatin1String("CPLL")))
            continue;
        if (const LaneRow *other = plls.value(row.pll, nullptr)) {
            if (other->txRate != row.txRate || other->reference != row.reference) {
                why = QStringLiteral("%1 cannot serve two rates or references at once.")
                          .arg(pllText(row.pll));
                return false;
            }
        }
        plls.insert(row.pll, &row);
        double rate = 0.0;
        const PllOffer running = pllState(row.pll, &rate);
        if (running.reference.isEmpty())
            continue;
        if (rate != 0.0 && rate != row.txRate) {
            why = QStringLiteral("%1 already runs at %2 Gbps for another instance; choose "
                                 "another PLL or that rate.")
                      .arg(pllText(row.pll), numberText(rate));
            return false;
        }
        if (running.reference != row.reference || running.refFreq != row.refFreq) {
            why = QStringLiteral("%1 already runs from %2 at %3 MHz for another instance; "
                                 "choose that reference to share it, or another PLL.")
                      .arg(pllText(row.pll), running.reference, numberText(running.refFreq));
            return false;
        }
    }

    QStringList taken;
    bool placed = true;
    for (const LaneRow &row : rows) {
        const QString tx = QString(row.lane + QStringLiteral("_TX"));
        const QString rx = QString(row.lane + QStringLiteral("_RX"));
        if (!tryLine(tx, row.pll, row)) {
            why = QStringLiteral("There is no clock route from %1 to %2 for %3: the reference "
                                 "muxes on the way are held by other instances for other "
                                 "references.")
                      .arg(row.reference, pllText(row.pll), laneLabel(row.lane));
            placed = false;
            break;
        }
        taken << tx;
        // A receiver is clocked by a mux, never by a PLL, so its row names none.
        if (!tryLine(rx, QStringLiteral("0"), row)) {
            why = row.referenceMux.isEmpty()
                      ? QStringLiteral("There is no clock route from %1 to the receiver of %2: "
                                       "the reference muxes are held by other instances for "
                                       "other references.")
                            .arg(row.reference, laneLabel(row.lane))
                      : QStringLiteral("%1 cannot bring %2 to the receiver of %3; choose another "
                                       "mux or Auto.")
                            .arg(row.referenceMux, row.reference, laneLabel(row.lane));
            placed = false;
            break;
        }
        taken << rx;
    }
    for (int i = taken.size() - 1; i >= 0; --i)
        model->resetLane(taken.at(i), false);
    return placed;
}

QString numberText(double value)
{
    return QString::number(value, 'g', 12);
}

} // namespace samples
